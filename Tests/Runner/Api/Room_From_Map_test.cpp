// Rooms that are made of an editor's maps: what becomes instances, views and zones, and what is drawn.
#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Graphics_Support.h"

#include <gmock/gmock.h>
#include <png.h>

namespace
{
using testing::EndsWith;
using testing::HasSubstr;

// ---- pictures and maps as text ----

struct Rgb
{
    int red, green, blue;
    bool operator==(const Rgb& o) const { return red == o.red && green == o.green && blue == o.blue; }
};

std::ostream& operator<<(std::ostream& out, const Rgb& c)
{
    return out << "rgb(" << c.red << ", " << c.green << ", " << c.blue << ")";
}

constexpr Rgb RED = {255, 0, 0}, GREEN = {0, 255, 0}, BLUE = {0, 0, 255}, YELLOW = {255, 255, 0}, GREY = {40, 40, 40};

// Four tiles of 8 x 8 in a row. The first has a quarter of each colour: red, green, blue, yellow from the top left, row
// by row; the others are red, green and blue.
void WriteTiles(const std::string& path)
{
    constexpr int WIDTH = 32, HEIGHT = 8;
    std::vector<uint8_t> rgba;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
        {
            const Rgb quarters[] = {RED, GREEN, BLUE, YELLOW}, plain[] = {RED, GREEN, BLUE};
            const Rgb colour = x < 8 ? quarters[(y / 4) * 2 + x / 4] : plain[x / 8 - 1];
            for (const int channel : {colour.red, colour.green, colour.blue, 255})
                rgba.push_back(static_cast<uint8_t>(channel));
        }
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = WIDTH;
    image.height = HEIGHT;
    image.format = PNG_FORMAT_RGBA;
    ASSERT_NE(png_image_write_to_file(&image, path.c_str(), 0, rgba.data(), 0, nullptr), 0);
}

constexpr char TILESET[] =
    R"(<tileset version="1.8" name="tiles" tilewidth="8" tileheight="8" tilecount="4" columns="4">
 <image source="tiles.png" width="32" height="8"/>
 <tile id="1"><properties><property name="solid" type="bool" value="true"/></properties></tile>
 <tile id="3"><animation><frame tileid="3" duration="100"/><frame tileid="1" duration="50"/></animation></tile>
</tileset>)";

// A map of 4 x 2 cells. properties: of the map; layers: what follows the tileset.
std::string MapText(const std::string& layers, const std::string& properties = "")
{
    return R"(<map version="1.8" orientation="orthogonal" renderorder="right-down" width="4" height="2" tilewidth="8" )"
           R"(tileheight="8" infinite="0" backgroundcolor="#282828">)" +
           properties + R"(<tileset firstgid="1" source="tiles.tsx"/>)" + layers + "</map>";
}

// attributes: of the layer. cells: eight numbers.
std::string Layer(const std::string& cells, const std::string& attributes = "")
{
    return "<layer name=\"cells\" width=\"4\" height=\"2\" " + attributes + "><data encoding=\"csv\">" + cells +
           "</data></layer>";
}

class RoomFromMap : public RunnerTest::GameTest
{
protected:
    // Plays a game whose first room is the map, with these fields.
    std::string PlayMap(const std::string& map, const std::string& fields = "", const std::string& before = "")
    {
        WriteTiles(directory.Path("tiles.png"));
        directory.Write("tiles.tsx", TILESET);
        directory.Write("room.tmx", map);
        return Play(before + "\nROOM = room_from_map('room.tmx', {" + fields + "})");
    }

    // The same, drawn on a screen of 32 x 16 that shows the whole map.
    std::string DrawMap(const std::string& map, const std::string& fields = "")
    {
        options.draw = true;
        return PlayMap(map, fields, "screen_set_size(32, 16)");
    }

    Rgb Pixel(int x, int y)
    {
        const Runner::Picture screen = game->Screen();
        const uint8_t* pixel = &screen.rgba[screen.Offset(x, y)];
        return {pixel[0], pixel[1], pixel[2]};
    }

    // The four quarters of a cell.
    std::vector<Rgb> Quarters(int column, int row)
    {
        const int x = column * 8, y = row * 8;
        return {Pixel(x + 1, y + 1), Pixel(x + 6, y + 1), Pixel(x + 1, y + 6), Pixel(x + 6, y + 6)};
    }
};

constexpr char PERSON[] = "object_add{ name = 'person', create = function(self) print(self.x, self.y, self.name, "
                          "self.age, self.brave, self.depth, self.angle, self.visible) end }\n";

// ---- instances ----

TEST_F(RoomFromMap, AnObjectOfAClassOfTheGameIsAnInstanceWithItsPropertiesBeforeItsCreateEvent)
{
    const std::string object =
        R"(<objectgroup name="people"><object id="1" type="person" x="3" y="5" rotation="30"><properties>)"
        R"(<property name="age" type="int" value="7"/><property name="name" value="Ada"/>)"
        R"(<property name="brave" type="bool" value="true"/></properties><point/></object></objectgroup>)";
    ASSERT_EQ(PlayMap(MapText(Layer("0,0,0,0,0,0,0,0") + object), "", PERSON), "");
    EXPECT_EQ(Log(), "3.0\t5.0\tAda\t7\ttrue\t0.0\t-30.0\ttrue\n");
}

// The second group lies over the first, and its layer's depth is added; hidden groups have hidden instances.
TEST_F(RoomFromMap, InstancesOfALaterLayerAreNearerAndThoseOfAHiddenOneHidden)
{
    const std::string groups = R"(<objectgroup name="a"><object id="1" type="person" x="0" y="0"/></objectgroup>)"
                               R"(<objectgroup name="b" visible="0"><object id="2" type="person" x="1" y="0">)"
                               R"(</object></objectgroup>)";
    ASSERT_EQ(PlayMap(MapText(groups), "", PERSON), "");
    EXPECT_EQ(Log(), "0.0\t0.0\tnil\tnil\tnil\t0.0\t0.0\ttrue\n1.0\t0.0\tnil\tnil\tnil\t-1000.0\t0.0\tfalse\n");
}

TEST_F(RoomFromMap, AClassCanStandForAnObjectOfAnotherName)
{
    const std::string group = R"(<objectgroup name="a"><object id="1" type="npc" x="2" y="4"/></objectgroup>)";
    ASSERT_EQ(PlayMap(MapText(group), "objects = { npc = 0 }", PERSON), "");
    EXPECT_THAT(Log(), HasSubstr("2.0\t4.0"));
}

// A box of 2 x 6 above its origin: a tile of 8 x 8 at 16, 12 (its lower left corner) has its left edge at 16.
TEST_F(RoomFromMap, AnInstanceOfATileStandsWithItsLowerLeftCornerWhereTheTilesIs)
{
    const std::string group =
        R"(<objectgroup name="a"><object id="1" type="box" gid="2" x="16" y="12" width="8" height="8"/>)"
        R"(</objectgroup>)";
    ASSERT_EQ(PlayMap(MapText(group), "",
                      "object_add{ name = 'box', bbox = {-1, -6, 1, 0}, create = function(self) "
                      "print(self.bbox_left, self.bbox_bottom) end }"),
              "");
    EXPECT_EQ(Log(), "16.0\t12.0\n");
}

TEST_F(RoomFromMap, APropertyThatAnInstanceDoesNotTakeEndsTheGameInOneLine)
{
    const std::string group = R"(<objectgroup name="a"><object id="1" type="person" x="0" y="0"><properties>)"
                              R"(<property name="depth" value="near"/></properties></object></objectgroup>)";
    EXPECT_EQ(PlayMap(MapText(group), "", PERSON),
              "object 1 of the room's map: \"depth\" of an instance is a number, got the string \"near\"");
}

// ---- views and zones ----

TEST_F(RoomFromMap, ViewsTargetsAndBordersArePropertiesOfTheMap)
{
    const std::string views = R"(<properties><property name="view0.w" type="int" value="16"/>)"
                              R"(<property name="view0.h" type="int" value="8"/>)"
                              R"(<property name="view0.hborder" type="int" value="3"/>)"
                              R"(<property name="view0.target" value="person"/>)"
                              R"(<property name="view1.target" type="object" value="2"/></properties>)";
    const std::string group = R"(<objectgroup name="a"><object id="1" type="person" x="20" y="4"/>)"
                              R"(<object id="2" type="person" x="9" y="4"/></objectgroup>)";
    ASSERT_EQ(PlayMap(MapText(group, views), "", PERSON), "");
    const auto& room = *game->rooms.Running();
    const CCamera* first = g_CM.GetCamera(room.views[0].cameraID);
    EXPECT_EQ(first->GetViewWidth(), 16.0f);
    EXPECT_EQ(first->GetViewHeight(), 8.0f);
    EXPECT_EQ(first->GetViewBorderX(), 3.0f);
    EXPECT_EQ(first->GetTargetInstance(), 0) << "the object";
    EXPECT_EQ(first->GetViewX(), 20.0f + 3.0f - 16.0f) << "it follows the first instance";
    EXPECT_EQ(g_CM.GetCamera(room.views[1].cameraID)->GetTargetInstance(), game->world.Instances()[1]->m_id);
}

TEST_F(RoomFromMap, AWrongViewIsNamed)
{
    const auto play = [this](const std::string& property)
    { return PlayMap(MapText("", "<properties>" + property + "</properties>"), "", PERSON); };
    EXPECT_THAT(play(R"(<property name="view0.with" type="int" value="1"/>)"), HasSubstr("room.tmx: view0.with"));
    EXPECT_THAT(play(R"(<property name="view0.w" value="wide"/>)"), HasSubstr("room.tmx: view0.w is a whole number"));
    EXPECT_THAT(play(R"(<property name="view8.w" type="int" value="1"/>)"),
                HasSubstr("\"view8.w\" must be view0 to view7"));
    EXPECT_THAT(play(R"(<property name="view0.target" value="nobody"/>)"), HasSubstr("there is no \"nobody\""));
    EXPECT_THAT(play(R"(<property name="view0.target" type="object" value="9"/>)"),
                HasSubstr("view0 follows object 9, whose class is no object of the game"));
}

TEST_F(RoomFromMap, ZonesAreGivenAsTheKitTakesThem)
{
    const std::string group =
        R"(<objectgroup name="a"><object id="1" type="zone" name="hall" x="8" y="2" width="16" height="4">)"
        R"(<properties><property name="zoom" type="float" value="1.5"/>)"
        R"(<property name="limits" value="none"/></properties></object></objectgroup>)";
    ASSERT_EQ(PlayMap(MapText(group), "create = function() local z = map_zones(ROOM)[1] "
                                      "print(z.name, z.left, z.top, z.right, z.bottom, z.zoom, z.limits) end"),
              "");
    EXPECT_EQ(Log(), "hall\t8.0\t2.0\t24.0\t6.0\t1.5\tfalse\n");
}

// ---- cells ----

constexpr char CELLS[] = R"(print(map_tile_get('cells', 1, 0)); map_tile_set('cells', 1, 0, 3, 5)
print(map_tile_get(1, 1, 0)); print(map_tile_get(1, 9, 9)); print(map_tile_info(2).properties.solid, map_tile_info(5))
print(select(2, pcall(map_tile_set, 1, 4, 0, 1))); print(select(2, pcall(map_tile_set, 1, 0, 0, 5)))
print(select(2, pcall(map_tile_get, 'walls', 0, 0))))";

TEST_F(RoomFromMap, ScriptsReadAndChangeCells)
{
    ASSERT_EQ(
        PlayMap(MapText(Layer("1,2147483650,0,0,0,0,0,0")), "create = function()\n" + std::string(CELLS) + "\nend"),
        "");
    EXPECT_EQ(Log(),
              "2\t1\n3\t5\n0\t0\ntrue\tnil\n"
              "main.lua:5: map_tile_set() - the layer has no cell 4, 0\n"
              "main.lua:5: map_tile_set: argument 4 (map_tile) must be 0 or a tile of the map, there is no tile 5\n"
              "main.lua:6: map_tile_get: argument 1 (layer) must be a layer of the map, got the string \"walls\"\n");
}

TEST_F(RoomFromMap, ARoomThatStartsShowsItsFileAgain)
{
    ASSERT_EQ(
        PlayMap(MapText(Layer("1,1,1,1,1,1,1,1")),
                "create = function() print(map_tile_get(1, 0, 0)); map_tile_set(1, 0, 0, 2); room_goto(ROOM) end"),
        "");
    PlayOn(1);
    EXPECT_EQ(Log(), "1\t0\n1\t0\n1\t0\n");
}

// ---- files ----

TEST_F(RoomFromMap, TheMapItsTilesetsAndTheirPicturesCountAsCode)
{
    const std::string map = MapText(Layer("1,0,0,0,0,0,0,0"));
    ASSERT_EQ(PlayMap(map), "");
    std::vector<std::string> names;
    for (const Runner::GameFile& file : game->scripts.files.Read())
        names.push_back(file.name);
    EXPECT_THAT(names, testing::UnorderedElementsAre("main.lua", "room.tmx", "tiles.tsx", "tiles.png"));
    const uint64_t before = game->Identity().files;
    ASSERT_EQ(PlayMap(map), "");
    EXPECT_EQ(game->Identity().files, before);
    ASSERT_EQ(PlayMap(MapText(Layer("2,0,0,0,0,0,0,0"))), "");
    EXPECT_NE(game->Identity().files, before);
}

TEST_F(RoomFromMap, AMapThatCannotBeReadIsRefusedInOneLineAndWatched)
{
    EXPECT_THAT(Play("room_from_map('none.tmx')"), HasSubstr("none.tmx"));
    EXPECT_EQ(game->scripts.files.Read().back().name, "none.tmx");
    EXPECT_THAT(Play("room_from_map('../room.tmx')"), HasSubstr("is no file of the game"));
    EXPECT_THAT(PlayMap(MapText(""), "width = 5"), HasSubstr("width"));
}

// ---- drawing ----

// 1 mirrored exchanges left and right; the diagonal exchanges top right and bottom left.
TEST_F(RoomFromMap, CellsAreDrawnMirroredFlippedAndTurned)
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
TEST_F(RoomFromMap, OpacityTintOffsetAndVisibilityOfALayerAndItsGroupCount)
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

// Tile 4 shows itself, blue, for 100 milliseconds, 6 frames, then tile 2, red, for 50.
TEST_F(RoomFromMap, AnimatedTilesCountTheTimeByFrames)
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
TEST_F(RoomFromMap, ParallaxGoesByTheCamerasPositionTurnedAndZoomed)
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
TEST_F(RoomFromMap, InstancesStandBetweenTheLayersByDepth)
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

TEST_F(RoomFromMap, AnImageLayerRepeatsOverTheView)
{
    const std::string image =
        R"(<imagelayer name="sky" offsetx="16" repeatx="1"><image source="tiles.png"/></imagelayer>)";
    ASSERT_EQ(DrawMap(MapText(image)), "");
    EXPECT_EQ(Pixel(12, 4), BLUE) << "the end of the copy to the left";
    EXPECT_EQ(Quarters(2, 0), (std::vector<Rgb>{RED, GREEN, BLUE, YELLOW}));
    EXPECT_EQ(Pixel(4, 12), GREY) << "it does not repeat downwards";
}
} // namespace
