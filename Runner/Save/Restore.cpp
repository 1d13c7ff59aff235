#include "Runner/Save/Restore.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Buffer.h"
#include "Runner/Host/Memory.h"
#include "Runner/Save/Changed_Map.h"
#include "Runner/Save/Script_Values.h"

#include <algorithm>

namespace Runner
{
namespace
{
// ---- pictures ----

void FreeSurfaces(Painter& painter)
{
    for (int number = 0; number < painter.SurfaceNumbers(); ++number)
        if (painter.SurfaceExists(number))
            painter.FreeSurface(number);
}

void RestoreSurfaces(Painter& painter, const std::vector<SavedSurface>& saved)
{
    FreeSurfaces(painter);
    for (const SavedSurface& surface : saved)
        painter.CreateSurfaceAt(surface.number, surface.width, surface.height);
    painter.TakeError(); // missing for want of memory, as the contract says
}

bool HasShape(const TileMapInfo& info, const SavedTileMap& saved)
{
    return info.sprite == saved.sprite && info.columns == saved.columns && info.rows == saved.rows &&
           info.tileWidth == saved.tileWidth && info.tileHeight == saved.tileHeight;
}

// A new map gets the lowest free number. Maps are restored in ascending order, so that is its old number.
void RestoreTileMap(Painter& painter, const SavedTileMap& saved)
{
    TileMapInfo info;
    const bool exists = painter.FindTileMap(saved.number, info);
    if (exists && !HasShape(info, saved))
        painter.FreeTileMap(saved.number);
    if (!exists || !HasShape(info, saved))
        painter.CreateTileMap(saved.sprite, saved.columns, saved.rows, saved.tileWidth, saved.tileHeight);
    for (size_t i = 0; i < saved.tiles.size(); ++i)
    {
        const int column = static_cast<int>(i % static_cast<size_t>(saved.columns));
        const int row = static_cast<int>(i / static_cast<size_t>(saved.columns));
        if (painter.GetTile(saved.number, column, row) != saved.tiles[i])
            painter.SetTile(saved.number, column, row, saved.tiles[i]);
    }
}

void RestoreTileMaps(Painter& painter, const std::vector<SavedTileMap>& saved)
{
    for (const SavedTileMap& map : saved)
        RestoreTileMap(painter, map);
    TileMapInfo info;
    for (int number = static_cast<int>(saved.size()); number < painter.TileMapNumbers(); ++number)
        if (painter.FindTileMap(number, info))
            painter.FreeTileMap(number);
}

// ---- the world ----

void RestoreInstance(World& world, const SavedInstance& saved)
{
    world.SetNextId(saved.id);
    Instance& instance = world.Create(*world.FindObject(saved.object), saved.x, saved.y);
    static_cast<InstanceFields&>(instance) = saved.fields;
    if (saved.isDeactivated)
        instance.m_flags |= eInstanceFlag_Deactivated;
    if (saved.isDestroyed)
        world.Destroy(instance);
}

void RestoreWorld(World& world, const RunningRoom& room, const SavedWorld& saved)
{
    world.SetRoomSize(room.r_width, room.r_height);
    for (const SavedInstance& instance : saved.instances)
        RestoreInstance(world, instance);
    world.SetNextId(saved.nextId);
}

// ---- the room ----

void RestoreViews(RunningRoom& room, const std::vector<SavedView>& saved)
{
    for (size_t i = 0; i < room.views.size(); ++i)
    {
        if (saved[i].isNew)
            continue;
        View& view = room.views[i];
        view.cameraID = saved[i].camera;
        static_cast<ViewFields&>(view) = saved[i].fields;
    }
}

// Starts the room in the normal way, then destroys the cameras made by that: the saved ones take their place.
void RestoreRoom(Game& game, const SavedState& state)
{
    game.EndRoom();
    RunningRoom& room = game.rooms.Start(state.game.room);
    game.DestroyAllCameras();
    RestoreViews(room, state.views);
    RestoreWorld(game.world, room, state.world);
}

// ---- cameras ----

// The module leaves out a camera that it is refused the memory for; a game that has lost one does not go on.
void ReadStream(const std::vector<uint8_t>& stream)
{
    const RefusalWatch memory;
    TypedBuffer buffer;
    buffer.WriteBytes(stream.data(), stream.size());
    buffer.Seek(0);
    g_CM.DeSerialize(&buffer);
    memory.ThrowIfRefused();
}

// Views that the saved room did not have start as in a new room.
void MakeNewCameras(Rooms& rooms, const std::vector<SavedView>& views)
{
    for (size_t view = 0; view < views.size(); ++view)
        if (views[view].isNew)
            rooms.MakeCamera(view);
}

// The camera table must be empty.
void RestoreCameras(Game& game, const SavedCameras& saved, const std::vector<SavedView>& views)
{
    std::vector<int> roomCameras;
    ReadStream(saved.stream);
    g_CM.m_InitialLoadHighPoint = saved.highPoint;
    g_DefaultCameraID = saved.defaultCamera;
    for (const SavedCameraFlags& flags : saved.flags)
    {
        CCamera* camera = g_CM.GetCamera(flags.id);
        if (camera == nullptr)
            continue;
        camera->SetCloned(flags.isClone);
        camera->SetPersistent(flags.isPersistent);
        if (flags.isOfRoom)
            roomCameras.push_back(flags.id);
    }
    game.rooms.AdoptCameras(roomCameras);
    game.AdoptDefaultCamera(saved.ownDefaultCamera);
    MakeNewCameras(game.rooms, views);
    g_CM.BuildRoomCameraList();
    g_CM.SetActiveCamera(saved.activeCamera);
}

void RestoreNames(GameNames& names, const SavedNames& saved)
{
    names.autosaves = std::max(saved.autosaves, 0);
    for (const SavedCameraName& camera : saved.cameras)
        names.SetCamera(camera.id, camera.name);
}

// ---- scripts ----

bool RestoreScripts(Game& game, const SavedState& state)
{
    struct Context
    {
        const World& world;
        const SavedState& state;
    };
    Context context = {game.world, state};
    const ScriptEngine::Body restore = [](lua_State* L, void* pointer)
    {
        const auto& from = *static_cast<const Context*>(pointer);
        RestoreValues(L, from.world, from.state);
    };
    return game.scripts.Protect(restore, &context);
}
} // namespace

bool RestoreGame(Game& game, const SavedState& state)
{
    RestoreSurfaces(*game.CurrentPainter(), state.surfaces);
    RestoreTileMaps(*game.CurrentPainter(), state.tileMaps);
    RestoreRoom(game, state);
    RestoreMap(game, state);
    RestoreCameras(game, state.cameras, state.views);
    RestoreNames(game.names, state.names);
    game.GotoRoom(state.game.nextRoom);
    game.SetFrameNumber(state.game.frame);
    game.random.SetState({state.game.randomPosition, state.game.randomIncrement});
    return RestoreScripts(game, state) && game.scripts.Call(game.rooms.Running()->spec.scripts.load);
}
} // namespace Runner
