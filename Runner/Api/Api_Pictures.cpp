#include "Runner/Api/Api_Functions.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Convert.h"

#include <algorithm>

namespace Runner
{
namespace
{
// In instructions of Lua.
constexpr size_t WORK_OF_A_BAD_PICTURE = 20000000; // most of it may have been unpacked
constexpr size_t WORK_OF_A_LISTED_SPRITE = 5;

// ---- sprites ----

struct PictureFile
{
    std::string name; // as the script has it
    std::string path;
    bool isNoted; // its content was, for recordings to compare; false: it could not be read
};

// A recording would take it for a changed game when the content is noted another time.
int ReturnSprite(const Arguments& call, const Painter& painter, int sprite, const PictureFile& file)
{
    const SpriteInfo* info = painter.FindSprite(sprite);
    luai_work(info == nullptr ? WORK_OF_A_BAD_PICTURE
                              : static_cast<size_t>(info->width) * static_cast<size_t>(info->height) *
                                    static_cast<size_t>(info->frames));
    if (info != nullptr && !file.isNoted)
        call.Fail("the picture \"" + file.name + "\" was read once, and then could not be read");
    if (info != nullptr)
    {
        call.game.names.NoteSprite(sprite, file.name);
        call.game.world.SetSpriteExtent(
            sprite, {static_cast<float>(info->width), static_cast<float>(info->height), info->originX, info->originY});
    }
    return call.Return(sprite);
}

// The file that the first argument names, noted as one that the game has read.
PictureFile FileOf(const Arguments& call)
{
    const std::string name = call.Text(1);
    ScriptFiles& files = call.game.scripts.files;
    return {name, files.PathOf(name), files.Note(name)};
}

int SpriteAdd(Arguments& call)
{
    Painter& painter = OpenedPainter(call);
    const PictureFile file = FileOf(call);
    const int frames = call.Whole(2, 1);
    const float originX = call.Float(3, 0.0f);
    const float originY = call.Float(4, 0.0f);
    return ReturnSprite(call, painter, painter.LoadSprite(file.path, frames, originX, originY), file);
}

int SpriteAddSheet(Arguments& call)
{
    Painter& painter = OpenedPainter(call);
    const PictureFile file = FileOf(call);
    const int frameWidth = call.Whole(2);
    const int frameHeight = call.Whole(3);
    const float originX = call.Float(4, 0.0f);
    const float originY = call.Float(5, 0.0f);
    return ReturnSprite(call, painter, painter.LoadSheet(file.path, frameWidth, frameHeight, originX, originY), file);
}

const SpriteInfo& Info(const Arguments& call)
{
    const int sprite = call.Whole(1);
    const SpriteInfo* info = OpenedPainter(call).FindSprite(sprite);
    if (info == nullptr)
        call.Fail("there is no sprite " + std::to_string(sprite));
    return *info;
}

int SpriteWidth(Arguments& call) { return call.Return(Info(call).width); }
int SpriteHeight(Arguments& call) { return call.Return(Info(call).height); }
int SpriteFrames(Arguments& call) { return call.Return(Info(call).frames); }

int DrawSprite(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int sprite = call.Whole(1);
    const int frame = NearestInteger<int>(call.Number(2));
    const auto [x, y] = Floats<2>(call, 3);
    painter.Sprite(sprite, frame, x, y);
    return 0;
}

// Reads the arguments from `first` on: x, y and, each optional, x scale, y scale, angle, colour, alpha.
Placement ReadPlacement(const Arguments& call, int first, const Painter& painter)
{
    Placement placement;
    placement.x = call.Float(first);
    placement.y = call.Float(first + 1);
    placement.scaleX = call.Float(first + 2, 1.0f);
    placement.scaleY = call.Float(first + 3, 1.0f);
    placement.angle = call.Float(first + 4, 0.0f);
    placement.colour = call.Colour(first + 5, 0xFFFFFFu);
    placement.alpha = call.Float(first + 6, painter.Alpha());
    return placement;
}

int DrawSpriteExt(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int sprite = call.Whole(1);
    const int frame = NearestInteger<int>(call.Number(2));
    painter.Sprite(sprite, frame, ReadPlacement(call, 3, painter));
    return 0;
}

lua_Integer ListLength(const Arguments& call, int i)
{
    if (!lua_istable(call.L, i))
        call.FailArgument(i, "is a table of numbers, got " + DescribeAt(call.L, i));
    return static_cast<lua_Integer>(lua_rawlen(call.L, i));
}

// The places of a call's lists. The length of a list with holes may be any number up to 2^62: memory and work are taken
// as entries are found, and the first hole is refused.
std::vector<SpritePlace> ReadPlaces(const Arguments& call, lua_Integer count)
{
    constexpr lua_Integer entriesAtOnce = 1024;
    std::vector<SpritePlace> places;
    for (lua_Integer start = 1; start <= count; start += entriesAtOnce)
    {
        const lua_Integer entries = std::min(entriesAtOnce, count - start + 1);
        luai_work(static_cast<size_t>(entries) * WORK_OF_A_LISTED_SPRITE);
        for (lua_Integer i = start; i < start + entries; ++i)
        {
            const int frame = NearestInteger<int>(call.NumberEntry(2, i));
            const float x = call.FloatEntry(3, i);
            places.push_back({frame, x, call.FloatEntry(4, i)});
        }
    }
    return places;
}

// Everything is read before anything is drawn: a call that is refused draws nothing.
int DrawSprites(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int sprite = call.Whole(1);
    const lua_Integer count = ListLength(call, 2);
    for (int list = 3; list <= 4; ++list)
        if (ListLength(call, list) != count)
            call.FailArgument(list, "has as many entries as frame_list, " + std::to_string(count) + ", got " +
                                        DescribeListAt(call.L, list));
    Info(call); // refuses a sprite that is not there once, not for each entry
    painter.Sprites(sprite, ReadPlaces(call, count));
    return 0;
}

// ---- surfaces ----

int SurfaceCreate(Arguments& call)
{
    Painter& painter = OpenedPainter(call);
    const int width = call.Whole(1);
    return call.Return(painter.CreateSurface(width, call.Whole(2)));
}

int SurfaceFree(Arguments& call)
{
    OpenedPainter(call).FreeSurface(call.Whole(1));
    return 0;
}

int SurfaceExists(Arguments& call) { return call.Return(OpenedPainter(call).SurfaceExists(call.Whole(1))); }

int SurfaceSetTarget(Arguments& call)
{
    DrawingPainter(call);
    call.game.PushTarget(call.Whole(1));
    return 0;
}

int SurfaceResetTarget(Arguments& call)
{
    DrawingPainter(call);
    if (!call.game.PopTarget())
        call.Fail("there was no surface_set_target");
    return 0;
}

int DrawSurface(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int surface = call.Whole(1);
    painter.Surface(surface, ReadPlacement(call, 2, painter));
    return 0;
}

// ---- tile maps: scripts count tiles from 1, so that 0 is no tile ----

int PopTile(const Fields& fields, lua_State* L, const std::string& name, int sprite, int frames)
{
    const int tile = PopEntry(fields, L, name, WholeAt);
    if (tile < 0 || tile > frames)
        fields.Fail(name, "is no tile of sprite " + std::to_string(sprite) + ": it must be 0 to " +
                              std::to_string(frames) + ", got " + std::to_string(tile));
    return tile;
}

// The tiles row by row; empty when there is no data.
std::vector<int> ReadTiles(const Arguments& call, Fields& fields, int64_t count, int sprite, int frames)
{
    std::vector<int> tiles;
    if (!fields.PushTable("data"))
        return tiles;
    const auto length = static_cast<int64_t>(lua_rawlen(call.L, -1));
    if (length != count)
        fields.Fail("data", "must have " + std::to_string(count) + (count == 1 ? " entry" : " entries") +
                                ", columns times rows, got " + std::to_string(length));
    for (int64_t i = 1; i <= length; ++i)
    {
        lua_rawgeti(call.L, -1, i);
        tiles.push_back(PopTile(fields, call.L, "data[" + std::to_string(i) + "]", sprite, frames));
    }
    lua_pop(call.L, 1);
    return tiles;
}

void FillTiles(Painter& painter, int map, int columns, const std::vector<int>& tiles)
{
    for (size_t i = 0; i < tiles.size(); ++i)
    {
        const int place = static_cast<int>(i);
        painter.SetTile(map, place % columns, place / columns, tiles[i] - 1);
    }
}

// Everything is read before the map is made: a call that is refused makes none.
int TilemapAdd(Arguments& call)
{
    call.Table(1);
    Fields fields(call, 1);
    Painter& painter = OpenedPainter(call);
    const int sprite = fields.Whole("sprite", NO_SPRITE);
    const SpriteInfo* info = painter.FindSprite(sprite);
    if (info == nullptr)
        fields.Fail("sprite", "must be a sprite, there is no sprite " + std::to_string(sprite));
    const int columns = fields.Whole("columns", 1, 1, INT32_MAX);
    const int rows = fields.Whole("rows", 1, 1, INT32_MAX);
    const float width = fields.Float("tile_width", static_cast<float>(info->width));
    const float height = fields.Float("tile_height", static_cast<float>(info->height));
    const std::vector<int> tiles = ReadTiles(call, fields, int64_t{columns} * rows, sprite, info->frames);
    fields.Finish();
    const int map = painter.CreateTileMap(sprite, columns, rows, width, height);
    if (map >= 0)
        FillTiles(painter, map, columns, tiles);
    return call.Return(map);
}

int TilemapSet(Arguments& call)
{
    Painter& painter = OpenedPainter(call);
    const int map = call.Whole(1);
    const int column = call.Whole(2);
    const int row = call.Whole(3);
    painter.SetTile(map, column, row, call.Whole(4) - 1);
    return 0;
}

int TilemapGet(Arguments& call)
{
    const Painter& painter = OpenedPainter(call);
    const int map = call.Whole(1);
    const int column = call.Whole(2);
    return call.Return(painter.GetTile(map, column, call.Whole(3)) + 1);
}

int DrawTilemap(Arguments& call)
{
    Painter& painter = DrawingPainter(call);
    const int map = call.Whole(1);
    const auto [x, y] = Floats<2>(call, 2);
    painter.TileMap(map, x, y);
    return 0;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"sprite_add", 1, {"file", "frames", "origin_x", "origin_y"}, SpriteAdd},
    {"sprite_add_sheet", 3, {"file", "frame_width", "frame_height", "origin_x", "origin_y"}, SpriteAddSheet},
    {"sprite_width", 1, {"sprite"}, SpriteWidth},
    {"sprite_height", 1, {"sprite"}, SpriteHeight},
    {"sprite_frames", 1, {"sprite"}, SpriteFrames},
    {"draw_sprite", 4, {"sprite", "frame", "x", "y"}, DrawSprite},
    {"draw_sprite_ext",
     4,
     {"sprite", "frame", "x", "y", "xscale", "yscale", "angle", "colour", "alpha"},
     DrawSpriteExt},
    {"draw_sprites", 4, {"sprite", "frame_list", "x_list", "y_list"}, DrawSprites},
    {"surface_create", 2, {"w", "h"}, SurfaceCreate},
    {"surface_free", 1, {"surface"}, SurfaceFree},
    {"surface_exists", 1, {"surface"}, SurfaceExists},
    {"surface_set_target", 1, {"surface"}, SurfaceSetTarget},
    {"surface_reset_target", 0, {}, SurfaceResetTarget},
    {"draw_surface", 3, {"surface", "x", "y", "xscale", "yscale", "angle", "colour", "alpha"}, DrawSurface},
    {"tilemap_add", 1, {FIELDS_ARGUMENT}, TilemapAdd},
    {"tilemap_set", 4, {"map", "column", "row", "tile"}, TilemapSet},
    {"tilemap_get", 3, {"map", "column", "row"}, TilemapGet},
    {"draw_tilemap", 3, {"map", "x", "y"}, DrawTilemap},
};
} // namespace

ApiTable PictureApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
