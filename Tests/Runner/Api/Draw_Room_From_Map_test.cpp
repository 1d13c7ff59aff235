// What is drawn of rooms that are made of an editor's maps.
#include "Tests/Runner/Api/Map_Room_Support.h"

#include <gmock/gmock.h>

namespace
{
using namespace RunnerTest;

using DrawRoomFromMap = RoomFromMapTest;

// 1 mirrored exchanges left and right; the diagonal exchanges top right and bottom left.
TEST_F(DrawRoomFromMap, CellsAreDrawnMirroredFlippedAndTurned)
{
    ASSERT_EQ(DrawMap(MapText(Layer("1,2147483649,1073741825,536870913,0,2,0,0"))), "");
    EXPECT_EQ(Quarters(0, 0), (std::vector<Rgb>{RED, GREEN, BLUE, YELLOW}));
    EXPECT_EQ(Quarters(1, 0), (std::vector<Rgb>{GREEN, RED, YELLOW, BLUE}));
    EXPECT_EQ(Quarters(2, 0), (std::vector<Rgb>{BLUE, YELLOW, RED, GREEN}));
    EXPECT_EQ(Quarters(3, 0), (std::vector<Rgb>{RED, BLUE, GREEN, YELLOW}));
    EXPECT_EQ(Pixel(4, 12), GREY) << "the map's background";
    EXPECT_EQ(Pixel(12, 12), RED);
}

// Red at half over grey 40: 147.5 and 20. A tint of half green leaves 128 of green 255.
TEST_F(DrawRoomFromMap, OpacityTintOffsetAndVisibilityOfALayerAndItsGroupCount)
{
    const std::string half = Layer("2,0,0,0,0,0,0,0", R"(opacity="0.5")");
    const std::string tinted =
        R"(<group name="g" offsetx="8"><layer name="t" width="4" height="2" tintcolor="#ff8000" )"
        R"(offsety="8"><data encoding="csv">3,0,0,0,0,0,0,0</data></layer></group>)";
    ASSERT_EQ(DrawMap(MapText(half + tinted + Layer("0,0,4,0,0,0,0,0", R"(visible="0")"))), "");
    EXPECT_NEAR(Pixel(4, 4).red, 147, 1);
    EXPECT_NEAR(Pixel(4, 4).green, 20, 1);
    EXPECT_EQ(Pixel(12, 12), (Rgb{0, 128, 0}));
    EXPECT_EQ(Pixel(20, 4), GREY);
}

// Red is in a layer of its own, green in a group, blue in a layer that the file hides.
TEST_F(DrawRoomFromMap, ScriptsShowAndHideLayersAndGroupsUntilTheRoomStartsAgain)
{
    const std::string group = "<group name=\"g\"><layer name=\"in g\" width=\"4\" height=\"2\"><data encoding=\"csv\">"
                              "0,3,0,0,0,0,0,0</data></layer></group>";
    const std::string layers = Layer("2,0,0,0,0,0,0,0") + group + Layer("0,0,2,0,0,0,0,0", R"(visible="0")");
    ASSERT_EQ(DrawMap(MapText(layers), "step = function() local f, show = frame_number(), map_layer_set_visible\n"
                                       "if f == 1 then show('cells', false) show('g', false) show(4, true) end\n"
                                       "if f == 2 then show('in g', true) print(map_layer_get_visible('in g'),\n"
                                       "map_layer_get_visible('g'), map_layer_get_visible(4)) end\n"
                                       "if f == 3 then show('g', true) end\n"
                                       "if f == 4 then room_goto(ROOM) end end"),
              "");
    std::string seen;
    for (int frame = 0; frame < 6; ++frame)
    {
        for (const int x : {4, 12, 20})
            seen += Pixel(x, 4) == GREY ? '-' : '#';
        seen += ' ';
        PlayOn(1);
    }
    EXPECT_EQ(seen, "##- --# --# -## ##- ##- ");
    EXPECT_EQ(Log(), "true\tfalse\ttrue\n");
}

// Tile 4 shows itself, blue, for 100 milliseconds, 6 frames, then tile 2, red, for 50.
TEST_F(DrawRoomFromMap, AnimatedTilesCountTheTimeByFrames)
{
    ASSERT_EQ(DrawMap(MapText(Layer("4,0,0,0,0,0,0,0"))), "");
    std::string seen;
    for (int frame = 0; frame < 12; ++frame)
    {
        seen += Pixel(4, 4) == BLUE ? 'b' : Pixel(4, 4) == RED ? 'r' : '?';
        PlayOn(1);
    }
    EXPECT_EQ(seen, "bbbbbbrrrbbb");
}

// A layer of factor 0 goes with the eye: its corner, the map's origin, stays in the middle of the picture. One of
// factor 0.5 goes half the way: the eye at 16, 8 moves it by 8, 4. Neither turning nor zooming changes that.
TEST_F(DrawRoomFromMap, ParallaxGoesByTheCamerasPositionTurnedAndZoomed)
{
    const std::string layers = Layer("2,2,2,2,2,2,2,2", R"(parallaxx="0" parallaxy="0")") +
                               Layer("0,3,0,0,0,0,0,0", R"(parallaxx="0.5" parallaxy="0.5")");
    const std::string views = "views = { [0] = { w = 32, h = 16 } }, ";
    ASSERT_EQ(DrawMap(MapText(layers), views), "");
    EXPECT_EQ(Pixel(15, 12), GREY) << "left of the corner";
    EXPECT_EQ(Pixel(16, 11), GREEN) << "the second layer's cell lies from 8 + 8, 0 + 4 to 24, 12";
    EXPECT_EQ(Pixel(16, 12), RED);
    ASSERT_EQ(DrawMap(MapText(layers), views + "create = function() camera_set_view_angle(view_get_camera(0), 90) "
                                               "camera_set_view_size(view_get_camera(0), 64, 32) "
                                               "camera_set_view_pos(view_get_camera(0), -16, -8) end"),
              "");
    EXPECT_EQ(Pixel(12, 6), GREY) << "what was to the right is above, what was below is to the right, half as large";
    EXPECT_EQ(Pixel(14, 6), GREEN);
    EXPECT_EQ(Pixel(22, 6), RED);
    EXPECT_EQ(Pixel(18, 10), GREY);
}

// A blue instance of depth 0 covers the layer below it and is covered by the one above.
TEST_F(DrawRoomFromMap, InstancesStandBetweenTheLayersByDepth)
{
    const std::string group = R"(<objectgroup name="a"><object id="1" type="man" x="0" y="0"/></objectgroup>)";
    options.draw = true;
    const std::string man = "screen_set_size(32, 16) object_add{ name = 'man', draw = function() "
                            "draw_set_colour(colours.blue) draw_rectangle(0, 0, 16, 8) end }";
    ASSERT_EQ(PlayMap(MapText(Layer("2,2,2,0,0,0,0,0") + group + Layer("0,3,0,0,0,0,0,0")), "", man), "");
    EXPECT_EQ(Pixel(4, 4), BLUE);
    EXPECT_EQ(Pixel(12, 4), GREEN);
    EXPECT_EQ(Pixel(20, 4), RED);
}

TEST_F(DrawRoomFromMap, AnImageLayerRepeatsOverTheView)
{
    const std::string image =
        R"(<imagelayer name="sky" offsetx="16" repeatx="1"><image source="tiles.png"/></imagelayer>)";
    ASSERT_EQ(DrawMap(MapText(image)), "");
    EXPECT_EQ(Pixel(12, 4), BLUE) << "the end of the copy to the left";
    EXPECT_EQ(Quarters(2, 0), (std::vector<Rgb>{RED, GREEN, BLUE, YELLOW}));
    EXPECT_EQ(Pixel(4, 12), GREY) << "it does not repeat downwards";
}

// ---- tiles of other sizes than their cells ----

// Two tiles of 16 x 8: 5 has the four colours on the left and red on the right, 6 green and blue.
std::string Wide(const std::string& attributes)
{
    return R"(<tileset firstgid="5" name="wide" tilewidth="16" tileheight="8" tilecount="2" columns="2" )" +
           attributes + R"(><image source="tiles.png" width="32" height="8"/></tileset>)";
}

// Cells of 8 x 4: 5 and 6 stand beside each other and overlap from 8 to 16, red of 2 above green of 3 from 0 to 4.
TEST_F(DrawRoomFromMap, WhereTilesOverlapTheOrderOfDrawingCounts)
{
    const std::string map =
        Replaced(MapText(Wide("") + Layer("5,6,0,2,0,0,0,3")), "tileheight=\"8\"", "tileheight=\"4\"");
    const auto drawn = [&](const std::string& order)
    {
        EXPECT_EQ(
            DrawMap(Replaced(map, "right-down", order), "views = { [0] = { w = 32, h = 8, wport = 32, hport = 8 } }"),
            "");
        return std::pair(Pixel(12, 2), Pixel(28, 2));
    };
    EXPECT_EQ(drawn("right-down"), std::pair(GREEN, GREEN));
    EXPECT_EQ(drawn("right-up"), std::pair(GREEN, RED));
    EXPECT_EQ(drawn("left-down"), std::pair(RED, GREEN));
    EXPECT_EQ(drawn("left-up"), std::pair(RED, RED));
}

// Of 16 x 8 in a cell of 8 x 8: half as wide, or half as large and in the middle.
TEST_F(DrawRoomFromMap, TilesCanBeScaledIntoTheirCell)
{
    ASSERT_EQ(DrawMap(MapText(Wide(R"(tilerendersize="grid")") + Layer("5,0,0,0,0,0,0,0"))), "");
    EXPECT_EQ(Pixel(6, 1), RED);
    EXPECT_EQ(Pixel(6, 6), RED);
    EXPECT_EQ(Pixel(0, 1), RED) << "the upper left of the four colours";
    EXPECT_EQ(Pixel(2, 6), YELLOW);
    EXPECT_EQ(Pixel(9, 4), GREY);
    ASSERT_EQ(
        DrawMap(MapText(Wide(R"(tilerendersize="grid" fillmode="preserve-aspect-fit")") + Layer("5,0,0,0,0,0,0,0"))),
        "");
    EXPECT_EQ(Pixel(6, 1), GREY);
    EXPECT_EQ(Pixel(6, 4), RED);
    EXPECT_EQ(Pixel(6, 6), GREY);
}

// Parts of one picture: 11 is its red tile, in the colour that is transparent there, 15 its green one.
constexpr char COLLECTION[] =
    R"(<tileset firstgid="11" name="loose" tilewidth="8" tileheight="8" tilecount="2" columns="0"><tileoffset x="2" y="0"/>)"
    R"(<tile id="0" x="8" width="8"><image source="tiles.png" trans="ff0000"/></tile>)"
    R"(<tile id="4" x="16" width="8"><image source="tiles.png"/></tile></tileset>)";

TEST_F(DrawRoomFromMap, ACollectionsTilesArePartsOfPicturesAndMayHaveATransparentColour)
{
    ASSERT_EQ(DrawMap(MapText(COLLECTION + Layer("2,15,0,0,0,0,0,0") + Layer("11,0,0,0,11,0,0,0"))), "");
    EXPECT_EQ(Pixel(4, 4), RED) << "what lies below";
    EXPECT_EQ(Pixel(4, 12), GREY);
    EXPECT_EQ(Pixel(9, 4), GREY) << "the tileset's offset moves it by 2";
    EXPECT_EQ(Pixel(10, 4), GREEN);
    EXPECT_EQ(Pixel(17, 4), GREEN);
}

// ---- tiles as objects ----

std::string Tiles(const std::string& objects, const std::string& attributes = "")
{
    return "<objectgroup name=\"o\" " + attributes + ">" + objects + "</objectgroup>";
}

// Red stands from 4 to 12 and green from 2 to 10.
TEST_F(DrawRoomFromMap, TileObjectsCoverEachOtherFromTheTopDownOrByTheirList)
{
    const std::string objects = R"(<object id="1" gid="2" x="0" y="12" width="8" height="8"/>)"
                                R"(<object id="2" gid="3" x="0" y="10" width="8" height="8"/>)"
                                R"(<object id="3" gid="4" x="8" y="10" width="8" height="8" visible="0"/>)";
    ASSERT_EQ(DrawMap(MapText(Tiles(objects))), "");
    EXPECT_EQ(Pixel(4, 7), RED);
    EXPECT_EQ(Pixel(4, 3), GREEN);
    EXPECT_EQ(Pixel(12, 7), GREY) << "hidden";
    ASSERT_EQ(DrawMap(MapText(Tiles(objects, R"(draworder="index")"))), "");
    EXPECT_EQ(Pixel(4, 7), GREEN);
}

// A quarter turn about the lower left corner, 16, 8, brings what was above to the right: the tile lies below that
// point.
TEST_F(DrawRoomFromMap, ATileObjectTurnsClockwiseAboutItsCorner)
{
    ASSERT_EQ(DrawMap(MapText(Tiles(R"(<object id="1" gid="1" x="16" y="8" width="8" height="8" rotation="90"/>)"))),
              "");
    EXPECT_EQ(Quarters(2, 1), (std::vector<Rgb>{BLUE, RED, YELLOW, GREEN}));
    EXPECT_EQ(Pixel(20, 4), GREY);
}

// Twice as wide as its tile, so that the tileset's offset of 2 becomes 4: from 4 to 20.
TEST_F(DrawRoomFromMap, ATileObjectsOffsetIsScaledWithIt)
{
    ASSERT_EQ(DrawMap(MapText(COLLECTION + Tiles(R"(<object id="1" gid="15" x="0" y="16" width="16" height="8"/>)"))),
              "");
    EXPECT_EQ(Pixel(2, 12), GREY);
    EXPECT_EQ(Pixel(6, 12), GREEN);
    EXPECT_EQ(Pixel(18, 12), GREEN);
    EXPECT_EQ(Pixel(21, 12), GREY);
}
} // namespace
