// Rooms from an editor's maps, and what the maps say.
#include "Runner/Api/Map_Room.h"
#include "Runner/Api/Map_Tables.h"
#include "Runner/Api/Room_Fields.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Lua/Map_Values.h"

namespace Runner
{
namespace
{
// In instructions of Lua.
constexpr size_t WORK_OF_A_MAP = 1000000; // also of one that is refused
constexpr size_t WORK_OF_A_CELL = 10;
constexpr size_t WORK_OF_AN_OBJECT = 2000;

// ---- room_from_map ----

// The game's objects by their names, and as the table `objects` names them.
ObjectsByClass ReadObjects(const Arguments& call, Fields& fields)
{
    lua_State* L = call.L;
    const World& world = call.game.world;
    ObjectsByClass objects;
    for (int i = 0; i < world.ObjectCount(); ++i)
        objects.emplace(world.FindObject(i)->name, i);
    if (!fields.PushTable("objects"))
        return objects;
    const int table = lua_gettop(L);
    for (lua_pushnil(L); lua_next(L, table) != 0;)
    {
        if (lua_type(L, -2) != LUA_TSTRING)
            fields.Fail("objects", "must be a table of objects by the class in the map");
        const std::string name = TextAt(L, -2);
        const int object = PopEntry(fields, L, "objects." + name, WholeAt);
        if (world.FindObject(object) == nullptr)
            fields.Fail("objects." + name, "must be an object, there is no object " + std::to_string(object));
        objects[name] = object;
    }
    lua_pop(L, 1);
    return objects;
}

// Reads a map, and counts it as a script's work: the parts of a file and its cells, of which a small file can have
// many.
MapModel CountedMap(const Arguments& call, const std::string& file)
{
    luai_work(WORK_OF_A_MAP);
    MapModel map = ReadGameMap(call, file);
    size_t cells = 0, objects = 0;
    for (const MapLayer& layer : map.layers)
    {
        cells += layer.cells.size();
        objects += layer.objects.size();
    }
    luai_work(cells * WORK_OF_A_CELL + objects * WORK_OF_AN_OBJECT);
    return map;
}

// The file's own fields come after those of the map, so that they count.
int RoomFromMap(Arguments& call)
{
    const std::string file = call.Text(1);
    if (call.Has(2))
        call.Table(2);
    else
    {
        lua_settop(call.L, 1);
        lua_newtable(call.L);
    }
    Fields fields(call, 2);
    OpenedPainter(call);
    RoomSpec spec;
    const ObjectsByClass objects = ReadObjects(call, fields);
    MakeRoomOfMap(call, CountedMap(call, file), objects, spec);
    ReadRoomFields(call, fields, spec);
    fields.Finish();
    return call.Return(call.game.rooms.Add(std::move(spec)));
}

// ---- what a map says ----

const RoomMap& MapOfRoom(const Arguments& call, int argument)
{
    const int number = call.Whole(argument);
    const RoomSpec* room = call.game.rooms.Find(number);
    const RoomMap* map = room == nullptr ? nullptr : call.game.FindMap(room->map);
    if (map == nullptr)
        call.Fail("room " + std::to_string(number) + " was not made by room_from_map");
    return *map;
}

int MapInfo(Arguments& call)
{
    PushMap(call.L, MapOfRoom(call, 1));
    return 1;
}

int MapZones(Arguments& call)
{
    PushZones(call, MapOfRoom(call, 1));
    return 1;
}

// ---- layers and cells of the running room's map ----

RoomMap& RunningMap(const Arguments& call)
{
    RoomMap* map = call.game.RunningMap();
    if (map == nullptr)
        call.Fail("the running room was not made by room_from_map");
    return *map;
}

// Argument 1, a layer. Arguments are read before the map is looked for: a wrong kind is told in any room.
struct LayerArgument
{
    std::string layerName; // empty: the layer is named by its number
    int layer = 0;

    explicit LayerArgument(const Arguments& call)
    {
        const int type = lua_type(call.L, 1);
        if (type == LUA_TSTRING)
            layerName = call.Text(1);
        else if (type != LUA_TNUMBER)
            call.FailArgument(1, "is a string or a whole number, got " + DescribeAt(call.L, 1));
        else
            layer = call.Whole(1) - 1; // numbers count from 1 on
    }

    int In(const Arguments& call, const RoomMap& map) const
    {
        const int number = layerName.empty() ? layer : map.FindLayerNamed(layerName);
        if (map.FindLayer(number) == nullptr)
            call.FailArgument(1, "must be a layer of the map, got " + DescribeAt(call.L, 1));
        return number;
    }
};

// Arguments 1 to 3, a cell.
struct CellArguments
{
    LayerArgument layer;
    int column, row;

    explicit CellArguments(const Arguments& call) : layer(call), column(call.Whole(2)), row(call.Whole(3)) {}

    ChangedCell In(const Arguments& call, const RoomMap& map) const { return {layer.In(call, map), column, row, 0}; }
};

int MapTileGet(Arguments& call)
{
    const CellArguments where(call);
    const RoomMap& map = RunningMap(call);
    const ChangedCell at = where.In(call, map);
    const MapCell cell = map.Cell(OpenedPainter(call), at.layer, at.column, at.row);
    lua_pushinteger(call.L, cell & MAP_CELL_NUMBER);
    lua_pushinteger(call.L, TurnOf(cell));
    return 2;
}

int MapTileSet(Arguments& call)
{
    const CellArguments where(call);
    const int tile = call.Whole(4), turn = call.Whole(5, 0);
    RoomMap& map = RunningMap(call);
    Painter& painter = OpenedPainter(call);
    ChangedCell change = where.In(call, map);
    if (turn < 0 || turn > 7)
        call.FailArgument(5, "must be 0 to 7, got " + std::to_string(turn));
    if (!map.HasCell(painter, change.layer, change.column, change.row))
        call.Fail("the layer has no cell " + std::to_string(change.column) + ", " + std::to_string(change.row));
    change.cell = static_cast<MapCell>(tile) | FlagsOf(turn);
    if (tile < 0 || tile > static_cast<int>(MAP_CELL_NUMBER) || !map.SetCell(painter, change))
        call.FailArgument(4, "must be 0 or a tile of the map, there is no tile " + std::to_string(tile));
    return 0;
}

int MapTileInfo(Arguments& call)
{
    const int tile = call.Whole(1);
    PushTile(call.L, RunningMap(call).Model(), tile > 0 ? static_cast<MapCell>(tile) : 0);
    return 1;
}

int MapLayerGetVisible(Arguments& call)
{
    const LayerArgument layer(call);
    const RoomMap& map = RunningMap(call);
    return call.Return(map.IsVisible(layer.In(call, map)));
}

int MapLayerSetVisible(Arguments& call)
{
    const LayerArgument layer(call);
    const bool visible = call.Flag(2, true);
    RoomMap& map = RunningMap(call);
    map.SetVisible({layer.In(call, map), visible});
    return 0;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"room_from_map", 1, {"map_file", FIELDS_ARGUMENT}, RoomFromMap},
    {"map_info", 1, {"room"}, MapInfo},
    {"map_zones", 1, {"room"}, MapZones},
    {"map_tile_get", 3, {"layer", "column", "row"}, MapTileGet},
    {"map_tile_set", 4, {"layer", "column", "row", "map_tile", "turn"}, MapTileSet},
    {"map_layer_get_visible", 1, {"layer"}, MapLayerGetVisible},
    {"map_layer_set_visible", 2, {"layer", "visible"}, MapLayerSetVisible},
    {"map_tile_info", 1, {"map_tile"}, MapTileInfo},
};
} // namespace

ApiTable MapApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
