// What scripts are told of a map: its layers, objects, tiles and zones. Which maps make no room, and why.
#include "Tests/Runner/Api/Map_Room_Support.h"

#include <gmock/gmock.h>

namespace
{
using namespace RunnerTest;
using testing::HasSubstr;

class MapTables : public RoomFromMapTest
{
protected:
    // Runs statements in the room's create event, with the map's table in `map`; answers what they print.
    std::string Told(const std::string& map, const std::string& statements)
    {
        const std::string before = Log();
        EXPECT_EQ(PlayMap(map, "create = function()\nlocal map = map_info(ROOM)\n" + statements + "\nend"), "");
        return Log().substr(before.size());
    }
};

std::string Objects(const std::string& objects) { return "<objectgroup name=\"o\">" + objects + "</objectgroup>"; }

// Tile 2 with the flags of both mirrorings, 0xC0000000 + 2: turn 1 + 2.
TEST_F(MapTables, EachShapeHasItsNameAndFields)
{
    const std::string objects = R"(<object id="1" x="1" y="2" width="3" height="4"/>)"
                                R"(<object id="2" x="5" y="6" width="3" height="4"><ellipse/></object>)"
                                R"(<object id="3" x="7" y="8"><point/></object>)"
                                R"(<object id="4" x="10" y="20"><polygon points="0,0 4,0 4,-4"/></object>)"
                                R"(<object id="5" x="11" y="21"><polyline points="0,0 -1,2"/></object>)"
                                R"(<object id="6" x="1" y="1" width="9" height="9"><text pixelsize="12" )"
                                R"(color="#ff8000">Hello</text></object>)"
                                R"(<object id="7" gid="3221225474" x="8" y="8" width="8" height="8"/>)";
    EXPECT_EQ(Told(MapText(Objects(objects)), R"(
        for _, o in ipairs(map.layers[1].objects) do
            local last = o.points and o.points[#o.points]
            print(o.id, o.shape, last and last.x, last and last.y, o.text, o.text_size, o.tile, o.turn)
        end
        print(map.layers[1].objects[6].text_colour == colour_rgb(255, 128, 0)))"),
              "1\trectangle\tnil\tnil\tnil\tnil\tnil\tnil\n"
              "2\tellipse\tnil\tnil\tnil\tnil\tnil\tnil\n"
              "3\tpoint\tnil\tnil\tnil\tnil\tnil\tnil\n"
              "4\tpolygon\t14.0\t16.0\tnil\tnil\tnil\tnil\n"
              "5\tpolyline\t10.0\t23.0\tnil\tnil\tnil\tnil\n"
              "6\ttext\tnil\tnil\tHello\t12\tnil\tnil\n"
              "7\ttile\tnil\tnil\tnil\tnil\t2\t3\n"
              "true\n");
}

TEST_F(MapTables, LayersAreNumberedWithTheirKindAndTheGroupAroundThem)
{
    const std::string layers = "<group name=\"g\">" + Layer("1,0,0,0,0,0,0,0") +
                               R"(</group><imagelayer name="sky"><image source="tiles.png"/></imagelayer>)" +
                               Objects("");
    EXPECT_EQ(Told(MapText(layers), "for _, l in ipairs(map.layers) do print(l.number, l.kind, l.parent) end"),
              "1\tgroup\t0\n2\ttiles\t1\n3\timage\t0\n4\tobjects\t0\n");
}

TEST_F(MapTables, PropertiesHaveTheirTypes)
{
    const std::string properties =
        R"(<properties><property name="c" type="color" value="#80ff8000"/><property name="f" type="float" value="1.5"/>)"
        R"(<property name="off" type="bool" value="false"/><property name="file" type="file" value="tiles.png"/>)"
        R"(<property name="k" type="class" propertytype="K"><properties><property name="n" type="int" value="3"/>)"
        R"(</properties></property></properties>)";
    EXPECT_EQ(Told(MapText("", properties), "local p = map.properties\n"
                                            "print(p.c == colour_rgb(255, 128, 0), p.f, p.off, p.file, p.k.n)"),
              "true\t1.5\tfalse\ttiles.png\t3\n");
}

constexpr char MORE_TILES[] =
    R"(<tileset firstgid="11" name="more" tilewidth="8" tileheight="8" tilecount="4" columns="4">)"
    R"(<image source="tiles.png" width="32" height="8"/><tile id="2" type="door"><objectgroup>)"
    R"(<object id="1" x="1" y="2" width="3" height="4"/></objectgroup></tile></tileset>)"
    R"(<tileset firstgid="21" name="loose" tilewidth="8" tileheight="8" tilecount="2" columns="0">)"
    R"(<tile id="0"><image source="tiles.png"/></tile><tile id="4"><image source="tiles.png"/></tile></tileset>)"
    R"(<tileset firstgid="31" name="none" tilewidth="8" tileheight="8" tilecount="0" columns="0"/>)";

TEST_F(MapTables, TilesAreToldByTheirNumberAndThoseThatAreNotThereAreNil)
{
    EXPECT_EQ(Told(MapText(MORE_TILES), R"(
        for _, number in ipairs{1, 11, 13, 25} do
            local t = map_tile_info(number)
            print(number, t.tileset, t.id, t.class, #t.objects)
        end
        local box = map_tile_info(13).objects[1]
        print(box.shape, box.x, box.y, box.width, box.height)
        print(map_tile_info(0), map_tile_info(-1), map_tile_info(5), map_tile_info(22), map_tile_info(0x10000000)))"),
              "1\ttiles\t0\t\t0\n11\tmore\t0\t\t0\n13\tmore\t2\tdoor\t1\n25\tloose\t4\t\t0\n"
              "rectangle\t1.0\t2.0\t3.0\t4.0\nnil\tnil\tnil\tnil\tnil\n");
}

TEST_F(MapTables, AZoneIsAnUprightRectangleWithOrWithoutAName)
{
    const auto zones = [this](const std::string& object)
    {
        return Told(MapText(Objects("<object id=\"3\" type=\"zone\" " + object)),
                    "local good, all = pcall(map_zones, ROOM)\n"
                    "print(good and tostring(all[1].name) .. ' ' .. tostring(all[1].limits) or all)");
    };
    const std::string no = "main.lua:4: map_zones() - object 3 of the map must be a rectangle that is not turned: "
                           "it is a zone\n";
    EXPECT_EQ(zones(R"(x="1" y="1" width="2" height="2"/>)"), "nil nil\n");
    EXPECT_EQ(
        zones(R"(x="1" y="1" width="2" height="2"><properties><property name="limits" value="room"/></properties>)"
              "</object>"),
        "nil room\n");
    EXPECT_EQ(zones(R"(x="1" y="1" width="2" height="2" rotation="45"/>)"), no);
    EXPECT_EQ(zones(R"(x="1" y="1" width="2" height="2"><ellipse/></object>)"), no);
}

// ---- sizes ----

std::string Infinite(const std::string& layers)
{
    return Replaced(MapText(layers), "infinite=\"0\"", "infinite=\"1\"");
}

std::string Chunk(int x, int y, const std::string& cells)
{
    return "<chunk x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"2\" height=\"1\">" + cells +
           "</chunk>";
}

// Chunks at -4, -3 and 2, 5 of 2 x 1 cells: columns -4 to 4, rows -3 to 6 of tiles of 8. A second layer inside of that
// changes nothing, one that is empty neither.
TEST_F(MapTables, AnInfiniteMapsRoomIsTheRectangleAroundItsCells)
{
    const auto layer = [](const std::string& chunks)
    { return R"(<layer name="cells" width="4" height="2"><data encoding="csv">)" + chunks + "</data></layer>"; };
    const std::string map = Infinite(layer(Chunk(-1, 0, "3,3")) + layer(Chunk(-4, -3, "1,2") + Chunk(2, 5, "2,1")) +
                                     layer("") + Objects(R"(<object id="1" x="0" y="0"/>)"));
    EXPECT_EQ(Told(map,
                   "print(map.width, map.height, map.left, map.top, map_tile_get(2, 0, 0), map_tile_get(2, 6, 8))\n"
                   "print(map.layers[4].objects[1].x, map.layers[4].objects[1].y)"),
              "64\t72\t-32.0\t-24.0\t1\t2\t0\n32.0\t24.0\n");
}

TEST_F(MapTables, AnInfiniteMapWithoutCellsHasTheSizeThatItsFileSays)
{
    EXPECT_EQ(Told(Infinite(""), "print(map.width, map.height)"), "32\t16\n");
}

TEST_F(MapTables, AMapWhoseSidesFitNoRoomIsRefusedInOneLine)
{
    const auto refusal = [this](const char* side, const char* value)
    { return PlayMap(Replaced(Infinite(""), side, value)); };
    const std::string limits = " pixels: the sides of a room are 1 to 1000000";
    EXPECT_THAT(refusal("width=\"4\"", "width=\"0\""), HasSubstr("\"room.tmx\" is 0 x 16" + limits));
    EXPECT_THAT(refusal("height=\"2\"", "height=\"0\""), HasSubstr("\"room.tmx\" is 32 x 0" + limits));
    EXPECT_THAT(refusal("width=\"4\"", "width=\"200000\""), HasSubstr("\"room.tmx\" is 1600000 x 16" + limits));
    EXPECT_THAT(refusal("height=\"2\"", "height=\"200000\""), HasSubstr("\"room.tmx\" is 32 x 1600000" + limits));
}

// ---- depths and views ----

TEST_F(MapTables, ALayersDepthIsItsPropertyWhereThatIsANumber)
{
    const auto layer = [](const std::string& type, const std::string& value)
    {
        return "<objectgroup name=\"o\"><properties><property name=\"depth\" type=\"" + type + "\" value=\"" + value +
               "\"/></properties></objectgroup>";
    };
    // none holds instances, so the first lies 1000 times as deep as there are layers
    EXPECT_EQ(Told(MapText(layer("int", "-7") + layer("float", "2.5") + layer("string", "9")),
                   "for _, l in ipairs(map.layers) do print(l.depth) end"),
              "-7.0\n2.5\n1000.0\n");
}

// A target of none is no target; "view" alone, "viewer" and what starts otherwise are the game's own.
TEST_F(MapTables, AViewMayBeAClassAndOtherPropertiesAreLeftAlone)
{
    const std::string properties =
        R"(<properties><property name="view0" type="class" propertytype="View"><properties>)"
        R"(<property name="w" type="int" value="16"/><property name="h" type="int" value="8"/>)"
        R"(<property name="target" type="object" value="0"/></properties></property><property name="view" value="x"/>)"
        R"(<property name="viewer" value="x"/><property name="view.w" value="x"/><property name="other" value="x"/>)"
        R"(</properties>)";
    EXPECT_EQ(Told(MapText("", properties), "print(camera_get_view_width(view_get_camera(0)), map.properties.viewer)\n"
                                            "print(camera_get_view_target(view_get_camera(0)))"),
              "16\tx\n-1\n");
}

TEST_F(MapTables, APropertyThatNamesAViewButNoFieldOfItIsRefused)
{
    for (const char* name : {"view0", "view01.w", "view0.", "view9.w", "view0w.w"})
    {
        const std::string properties =
            std::string("<properties><property name=\"") + name + "\" value=\"1\"/></properties>";
        EXPECT_THAT(PlayMap(MapText("", properties)), HasSubstr("the map's property \"" + std::string(name) +
                                                                "\" must be view0 to view7, of a class, or one field"));
    }
    EXPECT_THAT(
        PlayMap(MapText("", R"(<properties><property name="view0.target" type="float" value="1.5"/></properties>)")),
        HasSubstr("room.tmx: view0.target"));
}

// ---- mistakes of the call ----

struct Mistake
{
    const char* call;
    const char* part; // of the one line
};

TEST_F(MapTables, MistakesOfCallsAreToldInOneLine)
{
    const Mistake mistakes[] = {
        {"room_from_map('room.tmx', {objects = {5}})", "objects must be a table of objects by the class in the map"},
        {"room_from_map('room.tmx', {objects = {npc = 7}})", "objects.npc must be an object, there is no object 7"},
        {"map_info(99)", "room 99 was not made by room_from_map"},
        {"map_info(OTHER)", "was not made by room_from_map"},
        {"map_tile_set(1, 0, 0, 1, 8)", "must be 0 to 7, got 8"},
        {"map_tile_set(1, 0, 0, 1, -1)", "must be 0 to 7, got -1"},
        {"map_tile_set(1, 0, 0, -1)", "there is no tile -1"},
        {"map_tile_set(1, 0, 0, 0x10000000)", "there is no tile 268435456"},
        {"map_tile_get({}, 0, 0)", "is a string or a whole number, got a table"},
    };
    for (const Mistake& mistake : mistakes)
    {
        const std::string told =
            Told(MapText(Layer("1,0,0,0,0,0,0,0")),
                 "OTHER = room_add{}\nprint(select(2, pcall(function() " + std::string(mistake.call) + " end)))");
        EXPECT_THAT(told, HasSubstr(mistake.part)) << mistake.call;
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
    }
}

// A cell that stands there says nothing of a tile: only one with a number does.
TEST_F(MapTables, AnObjectOfTileNumberZeroIsRefused)
{
    EXPECT_NE(PlayMap(MapText(Objects(R"(<object id="1" gid="0" x="0" y="8" width="8" height="8"/>)"))), "");
}

// Its size can be read, and nothing behind that.
TEST_F(MapTables, APictureThatIsCutIsNamed)
{
    WriteTiles(directory.Path("tiles.png"));
    directory.Write("cut.png", directory.Read("tiles.png").substr(0, 40));
    const std::string failure = PlayMap(MapText(R"(<imagelayer name="sky"><image source="cut.png"/></imagelayer>)"));
    EXPECT_THAT(failure, HasSubstr("cut.png"));
    EXPECT_EQ(failure.find('\n'), std::string::npos);
}
} // namespace
