#include "Runner/Api/Map_Tables.h"

#include "Runner/Lua/Map_Values.h"

#include <algorithm>

namespace Runner
{
namespace
{
void SetText(lua_State* L, const char* name, const std::string& text)
{
    lua_pushlstring(L, text.data(), text.size());
    lua_setfield(L, -2, name);
}

void SetNumber(lua_State* L, const char* name, double number)
{
    lua_pushnumber(L, number);
    lua_setfield(L, -2, name);
}

void SetWhole(lua_State* L, const char* name, int64_t number)
{
    lua_pushinteger(L, number);
    lua_setfield(L, -2, name);
}

void SetFlag(lua_State* L, const char* name, bool flag)
{
    lua_pushboolean(L, flag ? 1 : 0);
    lua_setfield(L, -2, name);
}

void SetTable(lua_State* L, const char* name, const MapProperties& properties)
{
    PushProperties(L, properties);
    lua_setfield(L, -2, name);
}

// ---- objects ----

const char* ShapeName(MapShape shape)
{
    switch (shape)
    {
    case MapShape::Rectangle: return "rectangle";
    case MapShape::Ellipse: return "ellipse";
    case MapShape::Point: return "point";
    case MapShape::Polygon: return "polygon";
    case MapShape::Polyline: return "polyline";
    case MapShape::Text: return "text";
    case MapShape::Tile: return "tile";
    }
    return "";
}

void PushPoints(lua_State* L, const MapObject& object, double x, double y)
{
    lua_createtable(L, static_cast<int>(object.points.size()), 0);
    lua_Integer number = 0;
    for (const MapPoint& point : object.points)
    {
        lua_createtable(L, 0, 2);
        SetNumber(L, "x", x + point.x);
        SetNumber(L, "y", y + point.y);
        lua_rawseti(L, -2, ++number);
    }
}

void PushObject(lua_State* L, const MapObject& object, const RoomMap::Part& room)
{
    const double x = object.x - room.left, y = object.y - room.top;
    lua_createtable(L, 0, 16);
    SetWhole(L, "id", object.id);
    SetText(L, "name", object.name);
    SetText(L, "class", object.className);
    SetText(L, "shape", ShapeName(object.shape));
    SetNumber(L, "x", x);
    SetNumber(L, "y", y);
    SetNumber(L, "width", object.width);
    SetNumber(L, "height", object.height);
    SetNumber(L, "rotation", object.rotation);
    SetFlag(L, "visible", object.visible);
    SetTable(L, "properties", object.properties);
    if (object.shape == MapShape::Tile)
    {
        SetWhole(L, "tile", object.cell & MAP_CELL_NUMBER);
        SetWhole(L, "turn", TurnOf(object.cell));
    }
    if (!object.points.empty())
    {
        PushPoints(L, object, x, y);
        lua_setfield(L, -2, "points");
    }
    if (object.text.has_value())
    {
        SetText(L, "text", object.text->text);
        SetWhole(L, "text_size", object.text->pixelSize);
        SetWhole(L, "text_colour", ScriptColour(object.text->colour));
    }
}

// ---- layers ----

const char* KindName(MapLayerKind kind)
{
    switch (kind)
    {
    case MapLayerKind::Tiles: return "tiles";
    case MapLayerKind::Objects: return "objects";
    case MapLayerKind::Picture: return "image";
    case MapLayerKind::Group: return "group";
    }
    return "";
}

void PushLayer(lua_State* L, const RoomMap& map, int number)
{
    const MapLayer& layer = map.Model().layers[static_cast<size_t>(number)];
    const DrawnLayer* drawn = map.FindLayer(number);
    lua_createtable(L, 0, 16);
    SetWhole(L, "number", number + 1);
    SetText(L, "name", layer.name);
    SetText(L, "class", layer.className);
    SetText(L, "kind", KindName(layer.kind));
    SetWhole(L, "parent", layer.parent + 1);
    SetFlag(L, "visible", layer.resolved.visible);
    SetNumber(L, "opacity", layer.resolved.opacity);
    SetNumber(L, "depth", drawn == nullptr ? 0.0 : static_cast<double>(drawn->depth));
    SetTable(L, "properties", layer.properties);
    lua_createtable(L, static_cast<int>(layer.objects.size()), 0);
    lua_Integer count = 0;
    for (const MapObject& object : layer.objects)
    {
        PushObject(L, object, map.Room());
        lua_rawseti(L, -2, ++count);
    }
    lua_setfield(L, -2, "objects");
}

// ---- zones ----

bool IsZone(const MapObject& object) { return object.className == "zone"; }

void PushZone(const Arguments& call, const MapObject& object, const RoomMap::Part& room)
{
    lua_State* L = call.L;
    if (object.shape != MapShape::Rectangle || object.rotation != 0.0)
        call.Fail("object " + std::to_string(object.id) +
                  " of the map must be a rectangle that is not turned: it is a zone");
    lua_createtable(L, 0, 8);
    if (!object.name.empty())
        SetText(L, "name", object.name);
    SetNumber(L, "left", object.x - room.left);
    SetNumber(L, "top", object.y - room.top);
    SetNumber(L, "right", object.x + object.width - room.left);
    SetNumber(L, "bottom", object.y + object.height - room.top);
    for (const MapProperty& property : object.properties)
    {
        if (property.name == "limits" && property.text == "none")
            lua_pushboolean(L, 0);
        else
            PushProperty(L, property);
        lua_setfield(L, -2, property.name.c_str());
    }
}
} // namespace

int TurnOf(MapCell cell)
{
    return ((cell & MAP_FLIP_HORIZONTAL) != 0 ? 1 : 0) + ((cell & MAP_FLIP_VERTICAL) != 0 ? 2 : 0) +
           ((cell & MAP_FLIP_DIAGONAL) != 0 ? 4 : 0);
}

MapCell FlagsOf(int turn)
{
    return ((turn & 1) != 0 ? MAP_FLIP_HORIZONTAL : 0) | ((turn & 2) != 0 ? MAP_FLIP_VERTICAL : 0) |
           ((turn & 4) != 0 ? MAP_FLIP_DIAGONAL : 0);
}

void PushMap(lua_State* L, const RoomMap& map)
{
    const MapModel& model = map.Model();
    lua_createtable(L, 0, 16);
    SetText(L, "file", model.path);
    SetText(L, "class", model.className);
    SetWhole(L, "width", map.Room().width);
    SetWhole(L, "height", map.Room().height);
    SetWhole(L, "tile_width", model.tileWidth);
    SetWhole(L, "tile_height", model.tileHeight);
    SetNumber(L, "left", map.Room().left);
    SetNumber(L, "top", map.Room().top);
    SetTable(L, "properties", model.properties);
    lua_createtable(L, static_cast<int>(model.layers.size()), 0);
    for (int i = 0; i < static_cast<int>(model.layers.size()); ++i)
    {
        PushLayer(L, map, i);
        lua_rawseti(L, -2, i + 1);
    }
    lua_setfield(L, -2, "layers");
}

void PushZones(const Arguments& call, const RoomMap& map)
{
    lua_newtable(call.L);
    lua_Integer count = 0;
    for (const MapLayer& layer : map.Model().layers)
        for (const MapObject& object : layer.objects)
        {
            if (!IsZone(object))
                continue;
            PushZone(call, object, map.Room());
            lua_rawseti(call.L, -2, ++count);
        }
}

void PushTile(lua_State* L, const MapModel& model, MapCell number)
{
    const MapTileset* tileset = number == 0 || number > MAP_CELL_NUMBER ? nullptr : model.TilesetOf(number);
    const int id = tileset == nullptr ? 0 : static_cast<int>(number - tileset->firstNumber);
    if (tileset == nullptr || !tileset->HasTile(id))
        return lua_pushnil(L);
    const MapTile* tile = tileset->FindTile(id);
    lua_createtable(L, 0, 8);
    SetText(L, "tileset", tileset->name);
    SetWhole(L, "id", id);
    SetText(L, "class", tile == nullptr ? "" : tile->className);
    SetTable(L, "properties", tile == nullptr ? MapProperties() : tile->properties);
    lua_newtable(L);
    lua_Integer count = 0;
    if (tile != nullptr)
        for (const MapObject& object : tile->objects)
        {
            PushObject(L, object, RoomMap::Part());
            lua_rawseti(L, -2, ++count);
        }
    lua_setfield(L, -2, "objects");
}
} // namespace Runner
