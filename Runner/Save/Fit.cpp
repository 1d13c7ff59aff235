#include "Runner/Save/Fit.h"

#include "Runner/Base/Printable.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Runner/Save/Changed_Map.h"
#include "Runner/Save/Counterparts.h"
#include "Runner/Save/Load_Hook.h"
#include "Runner/Save/Save_File.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
std::string SeedDifference(const GameIdentity& here, const GameIdentity& saved)
{
    if (!saved.usesSeed || saved.seed == here.seed)
        return "";
    return "it was made with --seed " + std::to_string(saved.seed) + ", this game was started with --seed " +
           std::to_string(here.seed);
}
} // namespace

std::string DifferenceOf(const GameIdentity& here, const GameIdentity& saved)
{
    if (saved.files != here.files && saved.name != here.name)
        return "it is of another game (" + Printable(saved.name) + ", not " + Printable(here.name) + ")";
    if (saved.files != here.files)
        return "the game's files have changed since it was made";
    return SeedDifference(here, saved);
}

namespace
{
// ---- the game ----

bool GameFits(const Game& game, const SavedGame& saved)
{
    return saved.screenWidth == game.ScreenWidth() && saved.screenHeight == game.ScreenHeight() && saved.frame >= 0 &&
           saved.frame < COUNTERS_END;
}

// The first room or object that the save names and this game does not have, in one line; empty when there is none. The
// main file adds rooms and objects; those added later are missing in a fresh game.
std::string MissingRoom(const Game& game, const SavedGame& saved)
{
    for (const int room : {saved.room, saved.nextRoom})
        if (game.rooms.Find(room) == nullptr && (room == saved.room || room != NO_ROOM))
            return "it names room " + std::to_string(room) + ", which the game's main file does not add";
    return "";
}

std::string MissingObject(const Game& game, const SavedWorld& saved)
{
    for (const SavedInstance& instance : saved.instances)
        if (game.world.FindObject(instance.object) == nullptr)
            return "it names object " + std::to_string(instance.object) + ", which the game's main file does not add";
    return "";
}

// ---- instances ----

bool NumbersAreFinite(const SavedInstance& instance)
{
    const auto isFinite = [&instance](const InstanceField& field)
    {
        const auto* number = std::get_if<float InstanceFields::*>(&field.member);
        return number == nullptr || std::isfinite(instance.fields.*(*number));
    };
    return std::isfinite(instance.x) && std::isfinite(instance.y) &&
           std::all_of(std::begin(INSTANCE_FIELDS), std::end(INSTANCE_FIELDS), isFinite);
}

bool WorldFits(const SavedWorld& saved)
{
    int32_t last = INSTANCE_ID_FIRST - 1;
    for (const SavedInstance& instance : saved.instances)
    {
        if (instance.id <= last || !NumbersAreFinite(instance))
            return false;
        last = instance.id;
    }
    return saved.nextId > last && saved.nextId < COUNTERS_END;
}

// ---- pictures ----

bool IsSide(int32_t side) { return side >= 1 && side <= PICTURE_SIDE_LIMIT; }

bool SurfacesFit(const std::vector<SavedSurface>& saved)
{
    int64_t pixels = 0;
    int32_t last = -1;
    for (const SavedSurface& surface : saved)
    {
        if (surface.number <= last || surface.number >= SURFACE_NUMBERS_LIMIT || !IsSide(surface.width) ||
            !IsSide(surface.height))
            return false;
        last = surface.number;
        pixels += int64_t{surface.width} * surface.height;
    }
    return pixels <= SURFACE_PIXELS_LIMIT;
}

bool TilesFit(const Painter& painter, const SavedTileMap& map)
{
    const SpriteInfo* sprite = painter.FindSprite(map.sprite);
    const bool hasShape = sprite != nullptr && map.columns > 0 && map.rows > 0 && std::isfinite(map.tileWidth) &&
                          std::isfinite(map.tileHeight);
    return hasShape && static_cast<uint64_t>(map.columns) * static_cast<uint64_t>(map.rows) == map.tiles.size() &&
           std::all_of(map.tiles.begin(), map.tiles.end(),
                       [sprite](int32_t tile) { return tile >= -1 && tile < sprite->frames; });
}

// Tile maps are never freed while a game runs, so their numbers have no gaps.
bool TileMapsFit(const Painter& painter, const std::vector<SavedTileMap>& saved)
{
    int32_t next = 0;
    return std::all_of(saved.begin(), saved.end(),
                       [&painter, &next](const SavedTileMap& map)
                       { return map.number == next++ && TilesFit(painter, map); });
}

// What the state names exists here, and its numbers make sense. Empty when that is so.
std::string FaultOf(const Game& game, const SavedState& state)
{
    std::string reason = MissingRoom(game, state.game);
    if (reason.empty())
        reason = MissingObject(game, state.world);
    const bool makesSense = GameFits(game, state.game) && state.views.size() == ROOM_VIEWS && WorldFits(state.world) &&
                            SurfacesFit(state.surfaces) && TileMapsFit(*game.CurrentPainter(), state.tileMaps) &&
                            MapFits(game, state);
    return reason.empty() && !makesSense ? "it is damaged: its content makes no sense" : reason;
}

// ---- other code ----

std::string VersionText(int32_t version)
{
    return version == 0 ? "a version of the game that declares none" : "version " + std::to_string(version);
}

// Whether a state that other code has made may be loaded at all, and through on_load. Empty when it may.
std::string RefusalOf(Game& game, const SavedState& state, bool& needsHook)
{
    const int32_t version = game.names.version;
    needsHook = version != state.names.version;
    if (version == 0)
        return "the game's files have changed since it was made: declare game_version(n), so that saves outlive that";
    if (state.fileVersion < 2)
        return "it is of file version 1, which holds no names, and the game's files have changed since it was made";
    if (needsHook && !HasLoadHook(game))
        return "it was made by " + VersionText(state.names.version) + ", and this is version " +
               std::to_string(version) + ": give the game on_load(from_version, data), which turns it into this one's";
    return SeedDifference(game.Identity(), state.game.identity);
}

void TellChange(const SavedState& state, const Game& game, const std::string& path, std::vector<std::string> left)
{
    constexpr size_t LINES = 20;
    const std::string name = PrintableName(path);
    PrintLine(name + (state.names.version == game.names.version
                          ? ": the game's code has changed since it was made"
                          : ": it was made by " + VersionText(state.names.version) + " and goes on in version " +
                                std::to_string(game.names.version)));
    const size_t more = left.size() > LINES ? left.size() - LINES : 0;
    left.resize(left.size() - more);
    for (const std::string& line : left)
        PrintLine(name + ": left out: " + line);
    if (more > 0)
        PrintLine(name + ": left out: " + std::to_string(more) + " more");
}

std::string Adapt(Game& game, SavedState& state, const std::string& path)
{
    bool needsHook = false;
    std::vector<std::string> left;
    std::string why = RefusalOf(game, state, needsHook);
    if (!why.empty() || (needsHook && !RunLoadHook(game, state, why)) || !FindCounterparts(game, state, left, why))
        return why;
    why = FaultOf(game, state);
    if (why.empty())
        TellChange(state, game, path, std::move(left));
    return why;
}
} // namespace

bool FitToGame(Game& game, SavedState& state, const std::string& path, std::string& why)
{
    const bool isOtherCode = state.game.identity.files != game.Identity().files;
    std::string reason = DifferenceOf(game.Identity(), state.game.identity);
    if (isOtherCode && state.game.identity.name == game.Identity().name)
        reason = Adapt(game, state, path);
    else if (reason.empty())
        reason = FaultOf(game, state);
    if (!reason.empty())
        why = CannotLoad(path, reason);
    return reason.empty();
}
} // namespace Runner
