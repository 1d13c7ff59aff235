#include "Platform/Strict_Float.h"

#include "Runner/Api/Map_Room.h"

#include "Files/Graphics/Trigonometry.h"
#include "Runner/Api/Map_Files_Of_Game.h"
#include "Runner/Api/Map_Tiles.h"
#include "Runner/Api/Map_Views.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Lua/Map_Values.h"
#include "Runner/World/Map_Reader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Runner
{
MapModel ReadGameMap(const Arguments& call, const std::string& file)
{
    MapFilesOfGame files(call.game.scripts);
    MapModel model;
    std::string why;
    call.game.scripts.files.PathOf(file); // throws
    if (!ReadMap(file, files, model, why))
        call.Fail(why);
    return model;
}

namespace
{
// The work of one call: what it reads, and what it makes.
struct Making
{
    const Arguments& call;
    MapModel model;
    const ObjectsByClass& objects;
    RoomSpec& spec;
    TileNumbers numbers;
    std::shared_ptr<const TileLooks> tiles;
    RoomMap::Part room;
    int columns = 0, rows = 0;      // of the room
    int leftColumn = 0, topRow = 0; // of the map's grid, where the room begins
    std::vector<DrawnLayer> layers;
    std::map<int, size_t> placements; // by the id of the map's object: the place in the list of instances
};

// ---- the room's size ----

// An infinite map's room is the rectangle around all its cells.
void MeasureInfinite(Making& making)
{
    bool isFirst = true;
    int right = 0, bottom = 0;
    for (const MapLayer& layer : making.model.layers)
    {
        if (layer.kind != MapLayerKind::Tiles || layer.cells.empty())
            continue;
        making.leftColumn = isFirst ? layer.left : std::min(making.leftColumn, layer.left);
        making.topRow = isFirst ? layer.top : std::min(making.topRow, layer.top);
        right = isFirst ? layer.left + layer.columns : std::max(right, layer.left + layer.columns);
        bottom = isFirst ? layer.top + layer.rows : std::max(bottom, layer.top + layer.rows);
        isFirst = false;
    }
    if (isFirst)
        return;
    making.columns = right - making.leftColumn;
    making.rows = bottom - making.topRow;
}

void Measure(Making& making)
{
    making.columns = making.model.columns;
    making.rows = making.model.rows;
    if (making.model.infinite)
        MeasureInfinite(making);
    const int64_t width = int64_t{making.columns} * making.model.tileWidth;
    const int64_t height = int64_t{making.rows} * making.model.tileHeight;
    if (width < 1 || height < 1 || width > ROOM_SIDE_LIMIT || height > ROOM_SIDE_LIMIT)
        making.call.Fail("\"" + making.model.path + "\" is " + std::to_string(width) + " x " + std::to_string(height) +
                         " pixels: the sides of a room are 1 to " + std::to_string(ROOM_SIDE_LIMIT));
    making.room = {static_cast<double>(making.leftColumn) * making.model.tileWidth,
                   static_cast<double>(making.topRow) * making.model.tileHeight, static_cast<int>(width),
                   static_cast<int>(height)};
    making.spec.width = making.room.width;
    making.spec.height = making.room.height;
}

// ---- instances ----

const int* ObjectOf(const Making& making, const MapObject& object)
{
    const auto found = making.objects.find(object.className);
    return object.className.empty() || found == making.objects.end() ? nullptr : &found->second;
}

double NumberOr(const MapProperties& properties, const char* name, double otherwise)
{
    const MapProperty* property = FindProperty(properties, name);
    const bool isNumber =
        property != nullptr && (property->type == MapPropertyType::Int || property->type == MapPropertyType::Float);
    return isNumber ? property->number : otherwise;
}

// Layers lie 1000 apart. The first one whose objects are instances has depth 0, so that their own depths count.
void ChooseDepths(Making& making)
{
    const std::vector<MapLayer>& all = making.model.layers;
    const auto holdsInstances = [&making](const MapLayer& layer)
    {
        return std::any_of(layer.objects.begin(), layer.objects.end(),
                           [&making](const MapObject& object) { return ObjectOf(making, object) != nullptr; });
    };
    const auto middle = std::find_if(all.begin(), all.end(), holdsInstances) - all.begin();
    for (size_t i = 0; i < all.size(); ++i)
    {
        const double depth = 1000.0 * static_cast<double>(middle - static_cast<std::ptrdiff_t>(i));
        DrawnLayer layer;
        layer.number = static_cast<int>(i);
        layer.depth = static_cast<float>(NumberOr(all[i].properties, "depth", depth));
        making.layers.push_back(layer);
    }
}

struct Corner2
{
    double x, y;
};

// How far the top left corner of an object is from its x, y, in parts of its size.
Corner2 AlignedBy(MapAlignment alignment)
{
    const int number = static_cast<int>(alignment), column = number % 3, row = number / 3;
    return {-0.5 * column, -0.5 * row};
}

MapAlignment AlignmentOf(const Making& making, const MapObject& object)
{
    const MapTileset* tileset = object.shape == MapShape::Tile ? making.model.TilesetOf(object.cell) : nullptr;
    return tileset == nullptr ? MapAlignment::TopLeft : tileset->objectAlignment;
}

// An instance that stands for a tile has its sprite, or else its box, where the tile has its lower left corner.
void StandOnTile(const Making& making, const MapObject& object, RoomPlacement& placement)
{
    const Corner2 align = AlignedBy(AlignmentOf(making, object));
    const double left = object.x + align.x * object.width, bottom = object.y + (align.y + 1.0) * object.height;
    const ObjectTraits& traits = making.call.game.world.FindObject(placement.object)->traits;
    const SpriteExtent* sprite = making.call.game.world.FindSpriteExtent(traits.sprite);
    double originX = 0.0, originY = 0.0; // of what stands there, from its lower left corner
    if (sprite != nullptr)
    {
        originX = static_cast<double>(sprite->originX);
        originY = static_cast<double>(sprite->originY) - static_cast<double>(sprite->height);
    }
    else if (traits.hasBox)
    {
        originX = -static_cast<double>(traits.box.left);
        originY = -static_cast<double>(traits.box.bottom);
    }
    placement.x = static_cast<float>(left + originX - making.room.left);
    placement.y = static_cast<float>(bottom + originY - making.room.top);
}

void AddInstance(Making& making, const MapLayer& layer, float depth, const MapObject& object, int type)
{
    PlacedObject placed;
    placed.id = object.id;
    placed.visible = object.visible && layer.resolved.visible;
    placed.angle = static_cast<float>(-object.rotation);
    placed.depth = depth;
    placed.properties = object.properties;
    RoomPlacement placement = {};
    placement.object = type;
    placement.x = static_cast<float>(object.x - making.room.left);
    placement.y = static_cast<float>(object.y - making.room.top);
    if (object.shape == MapShape::Tile)
        StandOnTile(making, object, placement);
    placement.placed = std::make_shared<const PlacedObject>(std::move(placed));
    making.placements[object.id] = making.spec.instances.size();
    making.spec.instances.push_back(placement);
}

// ---- layers ----

void Turn(const MapObject& object, float (&point)[2], const Corner2& from)
{
    const float radians = static_cast<float>(object.rotation) * RADIANS_PER_DEGREE;
    const bool isTurned = object.rotation != 0.0;
    const double sine = isTurned ? static_cast<double>(GR_Sin(radians)) : 0.0;
    const double cosine = isTurned ? static_cast<double>(GR_Cos(radians)) : 1.0;
    point[0] = static_cast<float>(object.x + from.x * cosine - from.y * sine);
    point[1] = static_cast<float>(object.y + from.x * sine + from.y * cosine);
}

// An edge in the middle of a pixel leaves that pixel to what lies before it, as the editor's rounding does.
constexpr double HALVES_GO_ON = 1.0 / 128.0;

// The tileset's offset, which is scaled as the tile is.
Corner2 ScaledOffset(const MapTileset& tileset, const MapObject& object)
{
    const MapTile* tile = tileset.FindTile(static_cast<int>((object.cell & MAP_CELL_NUMBER) - tileset.firstNumber));
    const bool hasSize = tileset.IsCollection() && tile != nullptr && tile->width > 0 && tile->height > 0;
    const double width = hasSize ? tile->width : tileset.tileWidth,
                 height = hasSize ? tile->height : tileset.tileHeight;
    return {width > 0 ? tileset.offsetX * object.width / width : 0.0,
            height > 0 ? tileset.offsetY * object.height / height : 0.0};
}

MapSprite SpriteOf(const Making& making, const MapObject& object)
{
    const MapTileset& tileset = *making.model.TilesetOf(object.cell);
    const Corner2 align = AlignedBy(tileset.objectAlignment);
    const Corner2 offset = ScaledOffset(tileset, object);
    const double left = align.x * object.width + offset.x + HALVES_GO_ON;
    const double top = align.y * object.height + offset.y + HALVES_GO_ON;
    MapSprite sprite;
    sprite.cell = making.numbers.IndexOf(object.cell & MAP_CELL_NUMBER) | (object.cell & MAP_CELL_FLAGS);
    Turn(object, sprite.corners[0], {left, top});
    Turn(object, sprite.corners[1], {left + object.width, top});
    Turn(object, sprite.corners[2], {left + object.width, top + object.height});
    Turn(object, sprite.corners[3], {left, top + object.height});
    return sprite;
}

// Objects whose class is one of the game's become instances, other tiles are pictures of the layer.
void AddObjects(Making& making, const MapLayer& layer, DrawnLayer& drawn)
{
    std::vector<const MapObject*> shown;
    for (const MapObject& object : layer.objects)
    {
        if (const int* type = ObjectOf(making, object))
            AddInstance(making, layer, drawn.depth, object, *type);
        else if (object.shape == MapShape::Tile && object.visible)
            shown.push_back(&object);
    }
    if (layer.drawnByY)
        std::stable_sort(shown.begin(), shown.end(), [](const auto* a, const auto* b) { return a->y < b->y; });
    for (const MapObject* object : shown)
        drawn.sprites.push_back(SpriteOf(making, *object));
}

void AddCells(Making& making, MapLayer& layer, DrawnLayer& drawn)
{
    if (layer.cells.empty())
        return;
    if (!making.numbers.AreTheSame())
        for (MapCell& cell : layer.cells)
            cell = making.numbers.IndexOf(cell & MAP_CELL_NUMBER) | (cell & MAP_CELL_FLAGS);
    const LayerGrid::Size size = {layer.columns, layer.rows, static_cast<float>(making.model.tileWidth),
                                  static_cast<float>(making.model.tileHeight)};
    const MapOrder order = making.model.order;
    const TileOrder drawing = {order == MapOrder::LeftDown || order == MapOrder::LeftUp,
                               order == MapOrder::RightUp || order == MapOrder::LeftUp};
    drawn.grid = OpenedPainter(making.call).AddMapLayer(LayerGrid(making.tiles, size, drawing, std::move(layer.cells)));
    drawn.left = layer.left;
    drawn.top = layer.top;
    layer.cells.clear();
}

void AddImage(const Making& making, const MapLayer& layer, DrawnLayer& drawn)
{
    if (layer.picture.path.empty())
        return;
    drawn.image.sprite = LoadMapPicture(making.call, layer.picture);
    const SpriteInfo* info = OpenedPainter(making.call).FindSprite(drawn.image.sprite);
    drawn.image.width = static_cast<float>(info->width);
    drawn.image.height = static_cast<float>(info->height);
    drawn.image.repeatX = layer.repeatX;
    drawn.image.repeatY = layer.repeatY;
}

// An alpha that the painter takes as the nearest of its 255 steps: it drops what lies between two of them.
float PainterAlpha(double alpha)
{
    return static_cast<float>(std::min((std::floor(std::floor(alpha * 256.0) * 255.0 / 256.0) + 0.25) / 255.0, 1.0));
}

void TakeLook(const Making& making, const MapLook& look, DrawnLayer& drawn)
{
    drawn.visible = look.visible;
    drawn.tint = ScriptColour(look.tint);
    drawn.alpha = PainterAlpha(look.opacity * look.tint.alpha / 255.0);
    drawn.x = static_cast<float>(look.offsetX - making.room.left);
    drawn.y = static_cast<float>(look.offsetY - making.room.top);
    drawn.parallaxX = static_cast<float>(look.parallaxX);
    drawn.parallaxY = static_cast<float>(look.parallaxY);
}

void AddLayers(Making& making)
{
    for (DrawnLayer& drawn : making.layers)
    {
        MapLayer& layer = making.model.layers[static_cast<size_t>(drawn.number)];
        TakeLook(making, layer.resolved, drawn);
        AddCells(making, layer, drawn);
        AddObjects(making, layer, drawn);
        AddImage(making, layer, drawn);
    }
}

// The views whose cameras follow objects of the map.
void AddFollowers(Making& making, const FollowedObjects& followed)
{
    for (const auto& [view, id] : followed)
    {
        const auto found = making.placements.find(id);
        if (found == making.placements.end())
            making.call.Fail("\"" + making.model.path + "\": view" + std::to_string(view) + " follows object " +
                             std::to_string(id) + ", whose class is no object of the game");
        RoomPlacement& placement = making.spec.instances[found->second];
        PlacedObject placed = *placement.placed;
        placed.followers |= 1u << view;
        placement.placed = std::make_shared<const PlacedObject>(std::move(placed));
    }
}
} // namespace

void MakeRoomOfMap(const Arguments& call, MapModel model, const ObjectsByClass& objects, RoomSpec& spec)
{
    const TileNumbers numbers(model);
    Making making = {call, std::move(model), objects, spec, numbers, nullptr, {}, 0, 0, 0, 0, {}, {}};
    Measure(making);
    if (making.model.background.has_value())
        spec.background = ScriptColour(*making.model.background);
    const FollowedObjects followed = ReadMapViews(call, making.model, objects, spec);
    ChooseDepths(making);
    making.tiles = LoadTiles(call, making.model, making.numbers);
    AddLayers(making);
    AddFollowers(making, followed);
    spec.map = call.game.AddMap(std::make_unique<RoomMap>(std::move(making.model), making.numbers, making.tiles,
                                                          std::move(making.layers), making.room));
}
} // namespace Runner
