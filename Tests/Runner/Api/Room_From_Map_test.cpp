// Rooms that are made of an editor's maps: what becomes instances, views and zones. Draw_Room_From_Map_test.cpp: what
// is drawn.
#include "Tests/Runner/Api/Map_Room_Support.h"

#include "Files/Graphics/Graphics_Support.h"

#include <gmock/gmock.h>

namespace
{
using namespace RunnerTest;
using testing::EndsWith;
using testing::HasSubstr;

using RoomFromMap = RoomFromMapTest;

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

TEST_F(RoomFromMap, TheKitTakesTheZonesOfAMap)
{
    const std::string group =
        R"(<objectgroup name="a"><object id="1" type="person" x="20" y="4"/><object id="2" type="zone" )"
        R"(name="hall" x="8" y="2" width="16" height="8"><properties>)"
        R"(<property name="zoom" type="float" value="2"/><property name="frames" type="int" value="0"/>)"
        R"(<property name="margin" type="int" value="1"/></properties></object></objectgroup>)";
    options.kit = SOURCE_DIR "/kit";
    ASSERT_EQ(
        PlayMap(MapText(group),
                "views = { [0] = { w = 32, h = 16 } }, create = function() kit.camera{ view = 0, follow = 0, style = "
                "'lock', zones = map_zones(ROOM) } end, step = function() kit.step() "
                "print(camera_get_view_width(view_get_camera(0))) end",
                std::string("kit = include('kit/camera_kit.lua')\n") + PERSON),
        "");
    EXPECT_THAT(Log(), EndsWith("\n16\n")) << "half of 32, by the zone's zoom";
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

TEST_F(RoomFromMap, WrongLayersAreRefusedBeforeAnythingIsHidden)
{
    ASSERT_EQ(PlayMap(MapText(Layer("1,0,0,0,0,0,0,0")),
                      "create = function() for _, layer in ipairs{ 'walls', 0, 2, true } do\n"
                      "print(select(2, pcall(map_layer_set_visible, layer, false))) end\n"
                      "print(select(2, pcall(map_layer_set_visible, 1, 'no')))\n"
                      "print(map_layer_get_visible('cells')) end"),
              "");
    const std::string line = "main.lua:3: map_layer_set_visible: argument 1 (layer) ";
    EXPECT_EQ(Log(), line + "must be a layer of the map, got the string \"walls\"\n" + line +
                         "must be a layer of the map, got the number 0\n" + line +
                         "must be a layer of the map, got the number 2\n" + line +
                         "is a string or a whole number, got true\n"
                         "main.lua:4: map_layer_set_visible: argument 2 (visible) is true or false, got the string "
                         "\"no\"\ntrue\n");
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
} // namespace
