#include "Runner/Api/Api_Functions.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Convert.h"

namespace Runner
{
namespace
{
// ---- sprites ----

int ReturnSprite(const Arguments& call, const Painter& painter, int sprite)
{
    const SpriteInfo* info = painter.FindSprite(sprite);
    if (info != nullptr)
        call.game.world.SetSpriteExtent(
            sprite, {static_cast<float>(info->width), static_cast<float>(info->height), info->originX, info->originY});
    return call.Return(sprite);
}

int SpriteAdd(Arguments& call)
{
    Painter& painter = OpenedPainter(call);
    const std::string file = call.game.scripts.PathOf(call.Text(1));
    const int frames = call.Whole(2, 1);
    return ReturnSprite(call, painter, painter.LoadSprite(file, frames, call.Float(3, 0.0f), call.Float(4, 0.0f)));
}

int SpriteAddSheet(Arguments& call)
{
    Painter& painter = OpenedPainter(call);
    const std::string file = call.game.scripts.PathOf(call.Text(1));
    const int sprite = painter.LoadSheet(file, call.Whole(2), call.Whole(3), call.Float(4, 0.0f), call.Float(5, 0.0f));
    return ReturnSprite(call, painter, sprite);
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
    DrawingPainter(call).Sprite(call.Whole(1), NearestInteger<int>(call.Number(2)), call.Float(3), call.Float(4));
    return 0;
}

// Arguments from first on: x, y, x scale, y scale, angle, colour, alpha; all but the place may be missing.
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
    painter.Sprite(call.Whole(1), NearestInteger<int>(call.Number(2)), ReadPlacement(call, 3, painter));
    return 0;
}

// ---- surfaces ----

int SurfaceCreate(Arguments& call)
{
    return call.Return(OpenedPainter(call).CreateSurface(call.Whole(1), call.Whole(2)));
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
    painter.Surface(call.Whole(1), ReadPlacement(call, 2, painter));
    return 0;
}

// ---- tile maps; scripts count tiles from 1, so that 0 is no tile ----

void FillTiles(const Arguments& call, Fields& fields, Painter& painter, int map, int columns)
{
    if (!fields.PushTable("data"))
        return;
    const auto count = static_cast<int>(std::min<lua_Unsigned>(lua_rawlen(call.L, -1), INT32_MAX));
    for (int i = 0; i < count; ++i)
    {
        if (lua_rawgeti(call.L, -1, i + 1) != LUA_TNUMBER)
            fields.Fail("data[" + std::to_string(i + 1) + "]", "must be a number");
        painter.SetTile(map, i % columns, i / columns, WholeAt(call.L, -1) - 1);
        lua_pop(call.L, 1);
    }
    lua_pop(call.L, 1);
}

int TilemapAdd(Arguments& call)
{
    call.Table(1);
    Fields fields(call, 1);
    Painter& painter = OpenedPainter(call);
    const int sprite = fields.Whole("sprite", -1);
    const int columns = fields.Whole("columns", 1, 1, INT32_MAX);
    const int rows = fields.Whole("rows", 1);
    const SpriteInfo* info = painter.FindSprite(sprite);
    const float width = fields.Float("tile_width", info == nullptr ? 1.0f : static_cast<float>(info->width));
    const float height = fields.Float("tile_height", info == nullptr ? 1.0f : static_cast<float>(info->height));
    const int map = painter.CreateTileMap(sprite, columns, rows, width, height);
    if (map >= 0)
        FillTiles(call, fields, painter, map, columns);
    fields.Finish();
    return call.Return(map);
}

int TilemapSet(Arguments& call)
{
    OpenedPainter(call).SetTile(call.Whole(1), call.Whole(2), call.Whole(3), call.Whole(4) - 1);
    return 0;
}

int TilemapGet(Arguments& call)
{
    return call.Return(OpenedPainter(call).GetTile(call.Whole(1), call.Whole(2), call.Whole(3)) + 1);
}

int DrawTilemap(Arguments& call)
{
    DrawingPainter(call).TileMap(call.Whole(1), call.Float(2), call.Float(3));
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
