#include "Runner/Save/Capture.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Draw/Reduced.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Buffer.h"
#include "Runner/Host/Console.h"
#include "Runner/Save/Changed_Map.h"
#include "Runner/Save/Counterparts.h"
#include "Runner/Save/Save_File.h"
#include "Runner/Save/Script_Values.h"
#include "Runner/Save/Tile_Counterparts.h"
#include "Runner/Save/Withheld_Callbacks.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int THUMBNAIL_WIDTH = 96, THUMBNAIL_HEIGHT = 54; // at most

void CaptureHead(const Game& game, SavedGame& saved)
{
    const Random::State random = game.random.GetState();
    saved.identity = game.Identity();
    saved.screenWidth = game.ScreenWidth();
    saved.screenHeight = game.ScreenHeight();
    saved.frame = game.FrameNumber();
    saved.room = game.rooms.Running()->index;
    saved.nextRoom = game.NextRoom();
    saved.randomPosition = random.position;
    saved.randomIncrement = random.increment;
}

void CaptureViews(const RunningRoom& room, std::vector<SavedView>& saved)
{
    for (const View& view : room.views)
        saved.push_back({view.cameraID, view});
}

SavedInstance CaptureInstance(const Instance& instance)
{
    SavedInstance saved;
    saved.id = instance.m_id;
    saved.object = instance.m_objectIndex;
    saved.isDestroyed = instance.IsDestroyed();
    saved.isDeactivated = (instance.m_flags & eInstanceFlag_Deactivated) != 0;
    saved.x = instance.x;
    saved.y = instance.y;
    saved.fields = instance;
    return saved;
}

void CaptureWorld(const World& world, SavedWorld& saved)
{
    saved.nextId = world.NextId();
    saved.instances.reserve(world.Instances().size());
    for (const auto& instance : world.Instances())
        saved.instances.push_back(CaptureInstance(*instance));
}

bool CaptureStream(std::vector<uint8_t>& stream, std::string& missing)
{
    TypedBuffer buffer;
    const WithheldCallbacks withheld;
    missing = withheld.Line();
    g_CM.Serialize(&buffer);
    stream.assign(buffer.Data(), buffer.Data() + buffer.Size());
    return buffer.Error() == BUFFER_DONE;
}

void CaptureFlags(const std::vector<int>& roomCameras, std::vector<SavedCameraFlags>& saved)
{
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
    {
        const CCamera* camera = g_CM.m_cameras[slot];
        if (camera == nullptr)
            continue;
        const bool isOfRoom = std::find(roomCameras.begin(), roomCameras.end(), slot) != roomCameras.end();
        saved.push_back({slot, camera->IsCloned(), camera->isPersistent(), isOfRoom});
    }
}

bool CaptureCameras(const Game& game, SavedCameras& saved, std::string& missing)
{
    const CCamera* active = g_CM.GetActiveCamera();
    saved.defaultCamera = g_DefaultCameraID;
    saved.ownDefaultCamera = game.OwnDefaultCamera();
    saved.activeCamera = active == nullptr ? NO_CAMERA : active->GetID();
    saved.highPoint = std::clamp(g_CM.m_InitialLoadHighPoint, 0, g_CM.m_cameraListSize);
    CaptureFlags(game.rooms.OwnCameras(), saved.flags);
    return CaptureStream(saved.stream, missing);
}

void CaptureSurfaces(const Painter& painter, std::vector<SavedSurface>& saved)
{
    for (int number = 0; number < painter.SurfaceNumbers(); ++number)
        if (painter.SurfaceExists(number))
            saved.push_back({number, painter.SurfaceWidth(number), painter.SurfaceHeight(number)});
}

// The screen as the last frame drew it. Nothing where nothing is drawn.
void CaptureThumbnail(Game& game, SavedThumbnail& saved)
{
    if (!game.CurrentPainter()->Draws())
        return;
    const Picture small = Reduced(game.Screen(), THUMBNAIL_WIDTH, THUMBNAIL_HEIGHT);
    saved.width = small.width;
    saved.height = small.height;
    for (size_t pixel = 0; pixel < small.rgba.size(); pixel += 4)
        saved.rgb.insert(saved.rgb.end(), {small.rgba[pixel], small.rgba[pixel + 1], small.rgba[pixel + 2]});
}

// A script error during the capture becomes the reason of the refusal, and the game goes on.
bool CaptureScripts(Game& game, SavedState& state, std::string& why)
{
    struct Context
    {
        const World& world;
        SavedState& state;
    };
    Context context = {game.world, state};
    const ScriptEngine::Body capture = [](lua_State* L, void* pointer)
    {
        const auto& into = *static_cast<const Context*>(pointer);
        CaptureValues(L, into.world, into.state);
    };
    const bool captured = game.scripts.Protect(capture, &context);
    if (!captured)
        why = game.scripts.TakeFailure();
    return captured;
}

// missing: one line about callbacks that cannot be saved; empty when there are none.
bool CaptureState(Game& game, SavedState& state, std::string& missing, std::string& why)
{
    CaptureHead(game, state.game);
    CaptureViews(*game.rooms.Running(), state.views);
    CaptureWorld(game.world, state.world);
    CaptureSurfaces(*game.CurrentPainter(), state.surfaces);
    CaptureTileMaps(*game.CurrentPainter(), state.tileMaps);
    state.map = CaptureMap(game);
    state.shownLayers = CaptureShownLayers(game);
    state.names = NamesOf(game);
    if (!CaptureCameras(game, state.cameras, missing))
        why = "there is no memory for the cameras' state";
    return why.empty() && CaptureScripts(game, state, why);
}
} // namespace

bool CaptureGame(Game& game, std::vector<uint8_t>& file, std::string& missing, std::string& why, bool withThumbnail)
{
    SavedState state;
    if (withThumbnail)
        CaptureThumbnail(game, state.thumbnail);
    if (CaptureState(game, state, missing, why) && EncodeState(state, file, why) && file.size() > SAVE_SIZE_MAX)
        why = "there is too much to save";
    return why.empty();
}

bool SaveGame(Game& game, const std::string& path, std::string& why)
{
    std::vector<uint8_t> file;
    std::string missing, reason;
    if (!CaptureGame(game, file, missing, reason, true))
        why = "cannot save " + PrintableName(path) + ": " + reason;
    if (!reason.empty() || !WriteFileAtomically(path, file.data(), file.size(), why))
        return false;
    if (!missing.empty())
        PrintLine("saved " + PrintableName(path) + ", but " + missing);
    return true;
}
} // namespace Runner
