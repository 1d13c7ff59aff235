// What the inspector says of a camera.
#include "Runner/Inspect/Inspector.h"
#include "Runner/Inspect/Lua_Lines.h"
#include "Runner/Inspect/Number_Text.h"
#include "Runner/Inspect/Overlay.h"
#include "Runner/Inspect/Step_Reason.h"
#include "Runner/World/Camera_Callbacks.h"
#include "Tests/Runner/Inspect/Inspect_Support.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace
{
using namespace Runner;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(NumberText, IsTheShortestThatReadsBackAsTheSame)
{
    EXPECT_EQ(NumberText(812.4f), "812.4");
    EXPECT_EQ(NumberText(0.1f), "0.1");
    EXPECT_EQ(NumberText(16777216.0f), "16777216");
    EXPECT_EQ(NumberText(1.0f / 3.0f), "0.33333334");
    EXPECT_EQ(NumberText(540.0f), "540") << "not 5.4e+02";
    EXPECT_EQ(NumberText(1e30f), "1e+30");
    EXPECT_EQ(NumberText(NAN), "nan");
}

TEST(NumberText, IsAnExpressionOfTheSameNumberForLua)
{
    EXPECT_EQ(LuaNumber(-0.0f), "-0.0") << "-0 is a whole number, and that has no minus zero";
    EXPECT_EQ(LuaNumber(0.0f), "0");
    EXPECT_EQ(LuaNumber(INFINITY), "math.huge");
    EXPECT_EQ(LuaNumber(-INFINITY), "-math.huge");
    EXPECT_EQ(LuaNumber(NAN), "(0/0)");
}

class Inspector : public RunnerTest::InspectTest
{
};

// 812 + 80 - 320 = 572; 860 - 320 = 540; 530 + 6 = 536. Down, the dead zone of 0 + 40 to 180 - 40 holds 90.
TEST_F(Inspector, TellsAStepInWordsAndNumbers)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    EXPECT_THAT(
        Panel().reason,
        ElementsAre("it follows instance 100000 of player",
                    "x: target 812.4, floored 812; right border wants 572; room allows 540; speed allows 536; "
                    "moves by 6",
                    "y: target 90, floored 90; the dead zone keeps 0; room allows 0; speed allows 0; stays at 0"));
}

TEST_F(Inspector, NamesTheOtherBordersAndTheLackOfAZoneALimitAndARoom)
{
    AxisNote axis = {530.0f, 320.0f, 80.0f, -1.0f, false, 0, {}, 489.0f};
    axis.stages = StagesOf(axis, 569.5f);
    EXPECT_EQ(FollowText(axis, DOWN), "y: target 569.5, floored 569; top border wants 489; without a room, allowed is "
                                      "489; no speed limit; moves by -41");
    axis.border = 160.0f;
    axis.stages = StagesOf(axis, 900.0f);
    EXPECT_THAT(FollowText(axis, ACROSS), HasSubstr("no dead zone, so that the centre wants 740"));
}

TEST_F(Inspector, TellsWhyNothingWasFollowed)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = {} } }"), "");
    EXPECT_THAT(Panel().reason, ElementsAre("it follows nothing, and no script moved it in its update"));
    ASSERT_EQ(Watch("local o = object_add{} room_add{ views = { [0] = { target = o } } }"), "");
    EXPECT_THAT(Panel().reason, ElementsAre("its target 0 stands for no active instance"));
}

TEST_F(Inspector, NamesTheLineOfAnUpdateCallbackAndWhatItDid)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = { x = 5 } }, create = function()\n"
                    "camera_set_update_script(view_get_camera(0), function()\n"
                    "camera_set_view_pos(camera_current(), 7, 8) end) end }"),
              "");
    EXPECT_THAT(Panel().reason, ElementsAre("its update callback ran instead of following: main.lua:2",
                                            "x: from 5 to 7", "y: from 0 to 8"));
    EXPECT_EQ(Row("callbacks", "update").value, "function at main.lua:2");
    EXPECT_EQ(Row("callbacks", "begin").value, "none");
    EXPECT_THAT(Row("registry", "proxy").value, HasSubstr("collector slot "));
}

TEST_F(Inspector, TellsWhatWasSetAfterTheUpdate)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = {} }, draw = function()\n"
                    "camera_set_view_pos(view_get_camera(0), 3, 0) end }"),
              "");
    EXPECT_THAT(Panel().reason, testing::Contains("x: after the update it was set to 3"));
}

TEST_F(Inspector, SaysThatACameraWithoutAViewHadNoUpdate)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = {} }, create = function() other = camera_create() end,\n"
                    "step = function() log(tostring(other)) end }"),
              "");
    const int other = static_cast<int>(Panel().cameras.back().id);
    EXPECT_THAT(Panel(other).reason, ElementsAre("no view was drawn through it in this frame, so it had no update"));
}

TEST_F(Inspector, ListsEveryCameraAndSelectsTheFirstThatDrew)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    const PanelContent panel = Panel();
    ASSERT_EQ(panel.cameras.size(), 2u) << "the default camera and the view's";
    EXPECT_EQ(panel.cameras[0].text, "0: the default camera");
    EXPECT_EQ(panel.cameras[1].text, "1: view 0, follows 0 (player, now 100000)");
    EXPECT_EQ(panel.selected, 1);
    EXPECT_EQ(Panel(0).selected, 0);
    EXPECT_EQ(Panel(77).selected, 1) << "no such camera";
}

TEST_F(Inspector, GivesEachPropertyItsValueUnitMeaningAndSetter)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    const PanelRow x = Row("view", "x");
    EXPECT_EQ(x.value, "536");
    EXPECT_STREQ(x.unit, "room units");
    EXPECT_EQ(x.meaning, "left edge of the view, room units");
    EXPECT_EQ(x.setBy, "camera_set_view_pos");
    EXPECT_EQ(Row("following", "border_x").value, "80");
    EXPECT_EQ(Row("following", "target").value, "0 (player, now 100000)");
    EXPECT_EQ(Row("flags", "flat").value, "yes");
    EXPECT_EQ(Row("flags", "dirty").value, "no");
    EXPECT_EQ(Row("flags", "clone").value, "no");
    EXPECT_EQ(Row("registry", "slot").value, "1");
    EXPECT_EQ(Row("registry", "proxy").value, "none");
    EXPECT_EQ(Row("matrices", "projection").value, "0.00625  0  0  0") << "2 / 320";
}

// ---- changes by hand ----

TEST_F(Inspector, AChangeByHandIsWhatTheScriptFunctionDoes)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    CCamera& camera = *g_CM.GetCamera(1);
    EXPECT_TRUE(Apply({1, 1, "speed_x", 2.0f}));
    EXPECT_EQ(camera.m_viewSpeedX, 2.0f);
    EXPECT_FALSE(camera.IsViewDirty());
    EXPECT_TRUE(Apply({1, 1, "x", 100.0f}));
    EXPECT_EQ(camera.m_viewX, 100.0f);
    EXPECT_TRUE(camera.IsViewDirty());
    EXPECT_TRUE(Apply({1, 1, "target", -1.0f}));
    EXPECT_EQ(camera.m_targetInstance, -1);
    EXPECT_FALSE(Apply({1, 1, "colour", 1.0f}));
    EXPECT_FALSE(Apply({1, 5, "x", 1.0f}));
}

TEST_F(Inspector, EveryChangeableRowCanBeFoundByItsName)
{
    for (const CameraField& field : CAMERA_FIELDS)
        EXPECT_EQ(FindCameraField(field.name), &field);
}

// ---- the lines of Lua ----

class LuaOfACamera : public Inspector, public testing::WithParamInterface<const char*>
{
};

// Everything but the identifier, the callbacks that are functions and what no script can set.
void ExpectSameRecord(const CCamera& made, const CCamera& wanted)
{
    const auto expectSame = [](const kvMatrix& a, const kvMatrix& b, const char* what)
    { EXPECT_EQ(std::memcmp(a.m, b.m, sizeof a.m), 0) << what; };
    expectSame(made.m_viewMat, wanted.m_viewMat, "view");
    expectSame(made.m_projMat, wanted.m_projMat, "projection");
    expectSame(made.m_viewProjMat, wanted.m_viewProjMat, "product");
    expectSame(made.m_invViewMat, wanted.m_invViewMat, "inverse view");
    expectSame(made.m_invProjMat, wanted.m_invProjMat, "inverse projection");
    expectSame(made.m_invViewProjMat, wanted.m_invViewProjMat, "inverse product");
    EXPECT_EQ(std::memcmp(&made.m_viewX, &wanted.m_viewX, 9 * sizeof(float)), 0) << "x, y, size, speed, border, angle";
    EXPECT_EQ(made.m_targetInstance, wanted.m_targetInstance);
    EXPECT_EQ(made.m_is2D, wanted.m_is2D);
    EXPECT_EQ(made.m_isViewDirty, wanted.m_isViewDirty);
}

// The test's scripts make a camera; the lines of the first game, run in a fresh one, make the same.
TEST_P(LuaOfACamera, MakesTheSameCameraInAFreshGame)
{
    ASSERT_EQ(Run(GetParam()), "");
    const CCamera* camera = PeekCamera(1);
    ASSERT_NE(camera, nullptr);
    const std::string lines = LuaLines(*camera);
    CCamera wanted;
    wanted.CopyFrom(g_CM.GetCamera(1));
    wanted.CopyViewFrom(*camera);
    wanted.m_is2D = camera->m_is2D;
    wanted.m_isViewDirty = camera->m_isViewDirty;
    int number = -1;
    const bool isNumber = ScriptNumberOf(camera->m_beginScript, number);
    ASSERT_EQ(Run("script_add(function() end) " + lines), "") << lines;
    const CCamera* made = PeekCamera(1);
    ASSERT_NE(made, nullptr) << lines;
    ExpectSameRecord(*made, wanted);
    int madeNumber = -1;
    EXPECT_EQ(ScriptNumberOf(made->m_beginScript, madeNumber), isNumber);
    EXPECT_EQ(madeNumber, number) << lines;
}

INSTANTIATE_TEST_SUITE_P(All, LuaOfACamera,
                         testing::Values("camera_create_view(530, 0.1, 320, 180, 12.5, 100007, 6, -1, 80, 40)",
                                         "camera_create_view(-0.0, 1e-45, 1/3, 1e30, -0.0, -1, math.huge, 0, -5, 2.5)",
                                         "local c = camera_create_view(0, 0, 64, 48) camera_set_view_pos(c, 5, 6)",
                                         "camera_create()",
                                         "local c = camera_create_view(1, 2, 64, 48)\n"
                                         "camera_set_proj_mat(c, matrix_perspective(60, 1.5, 1, 1000))",
                                         "local c = camera_create_view(1, 2, 64, 48)\n"
                                         "camera_set_view_mat(c, matrix_look_at(0, 0, -100, 5, 6, 7, 0, 1, 0))\n"
                                         "camera_set_view_pos(c, 9, 9)",
                                         "script_add(function() end) local c = camera_create_view(1, 2, 3, 4) "
                                         "camera_set_begin_script(c, 0)"));

TEST_F(Inspector, AFunctionInACallbackIsACommentWithItsLine)
{
    ASSERT_EQ(Run("local c = camera_create_view(1, 2, 3, 4)\ncamera_set_end_script(c, function() end)"), "");
    EXPECT_THAT(LuaLines(*PeekCamera(1)),
                HasSubstr("\n-- camera_set_end_script(camera, ...) with the function at main.lua:3\n"));
}
// The view's height and the border's y stay what the camera has, since one function sets both.
TEST_F(Inspector, ListsWhatAReloadHasLeftOut)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    const int camera = game->rooms.Running()->views[0].cameraID;
    const std::string number = std::to_string(camera);
    const PanelAside aside = DescribeAside({{0, camera, "border_x", 60.5f},
                                            {0, camera, "target", 3.0f},
                                            {0, camera, "width", 200.0f},
                                            {0, camera, "speed_x", 2.0f},
                                            {0, camera, "speed_y", 3.0f},
                                            {0, 99, "angle", 45.0f},
                                            {0, 99, "x", 4.0f}});
    EXPECT_THAT(aside.texts,
                ElementsAre("camera " + number + ": border_x = 60.5", "camera " + number + ": target = 3",
                            "camera " + number + ": width = 200", "camera " + number + ": speed_x = 2",
                            "camera " + number + ": speed_y = 3", "camera 99: angle = 45 (there is no such camera now)",
                            "camera 99: x = 4 (there is no such camera now)"));
    EXPECT_EQ(aside.lua, "camera_set_view_border(" + number + ", 60.5, 40)\ncamera_set_view_target(" + number +
                             ", 3)\ncamera_set_view_size(" + number + ", 200, 180)\ncamera_set_view_speed(" + number +
                             ", 2, 3)\n-- camera_set_view_angle(99, 45)\n-- camera_set_view_pos(99, 4, ?)\n");
    EXPECT_TRUE(Panel().aside.texts.empty());
}

// The view's centre is at 530 + 6 + 160, 90; the target's cross and the dead zone need no step that somebody watched.
TEST_F(Inspector, SeesAGameThatNobodyWatched)
{
    Play(RunnerTest::FOLLOWING_GAME, 3);
    const int camera = game->rooms.Running()->views[0].cameraID;
    g_CM.GetCamera(camera)->SetViewDirty();
    notes.Look(*game);
    EXPECT_TRUE(g_CM.GetCamera(camera)->IsViewDirty()) << "nothing is built in the game";
    EXPECT_EQ(notes.Frame(), 2);
    ASSERT_EQ(notes.Views().size(), 1u);
    EXPECT_EQ(notes.Views()[0].camera, camera);
    EXPECT_EQ(notes.Views()[0].port.width, 640);
    EXPECT_NEAR(notes.Views()[0].areaX, 540.0f, 0.001f);
    EXPECT_THAT(Panel().reason, ElementsAre("nobody watched its last update; the next one will be told"));
    const auto overlays = MakeOverlays(notes);
    ASSERT_EQ(overlays.size(), 1u);
    const auto has = [&overlays](OverlayKind kind)
    {
        return std::any_of(overlays[0].lines.begin(), overlays[0].lines.end(),
                           [kind](const OverlayLine& line) { return line.kind == kind; });
    };
    EXPECT_TRUE(has(OverlayKind::DeadZone));
    EXPECT_TRUE(has(OverlayKind::Target));
    game->observer = &notes;
    EXPECT_EQ(PlayOn(1), "");
    EXPECT_EQ(notes.Frame(), 3);
}

// ---- what is not there ----

TEST_F(Inspector, TellsOfTargetsThatAreNotThere)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    const auto target = [this](float number)
    {
        EXPECT_TRUE(Apply({1, 1, "target", number}));
        return Row("following", "target").value;
    };
    EXPECT_EQ(target(100000.0f), "100000");
    EXPECT_EQ(target(100007.0f), "100007 (not active)");
    EXPECT_EQ(target(57.0f), "57 (no object, none active)");
    EXPECT_EQ(target(-1.0f), "-1 (nothing)");
}

TEST_F(Inspector, ACameraMayBeShownByManyViewsAndBeTheDefaultOne)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = {}, [2] = {} }, create = function() local c = view_get_camera(0)\n"
                    "view_set_camera(2, c) camera_set_default(c) end }"),
              "");
    EXPECT_EQ(Row("registry", "shown by", game->rooms.Running()->views[0].cameraID).value,
              "view 0, 2, the default camera");
}

TEST_F(Inspector, WithoutACameraThereIsNothingToTell)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    EXPECT_EQ(SelectCamera(FrameNotes(), -1), 0) << "no view has drawn: the first of all";
    const int height = PanelHeight(Panel());
    g_CM.DestroyCamera(1);
    EXPECT_EQ(SelectCamera(notes, -1), 0) << "the view's camera is gone";
    EXPECT_EQ(LuaLines(std::vector<CameraChange>{{0, 1, "colour", 1.0f}}), "") << "no such property";
    g_CM.DestroyCamera(0);
    EXPECT_EQ(SelectCamera(notes, -1), -1);
    EXPECT_TRUE(Panel().cameras.empty());
    EXPECT_TRUE(Panel().sections.empty());
    EXPECT_LT(PanelHeight(Panel()), height);
    const std::vector<ViewOverlay> overlays = MakeOverlays(notes);
    ASSERT_EQ(overlays.size(), 1u);
    for (const OverlayLine& line : overlays[0].lines)
        EXPECT_TRUE(line.kind == OverlayKind::Area || line.kind == OverlayKind::Drawn) << static_cast<int>(line.kind);
}

// Twelve cameras have a line each; of thirteen one line tells the rest, and so it does of a hundred.
TEST_F(Inspector, OfManyCamerasThePanelNamesAFew)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    PanelContent content;
    content.selected = -1;
    const auto height = [&content](size_t cameras)
    {
        content.cameras.assign(cameras, {5, 0, "5: not shown"});
        return PanelHeight(content);
    };
    const int line = height(2) - height(1);
    EXPECT_GT(line, 0);
    EXPECT_EQ(height(12) - height(1), 11 * line);
    EXPECT_EQ(height(13) - height(12), line);
    EXPECT_EQ(height(100), height(13));
    const int plain = height(1);
    content.aside.texts = {"camera 5: x = 1", "camera 5: y = 2"};
    EXPECT_EQ(height(1) - plain, 4 * line) << "an empty line, a title and two changes";
}

// ---- reasons of steps that no game here takes ----

TEST_F(Inspector, TellsAStepOfACameraWhoseInstanceIsGone)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    const CCamera& camera = *PeekCamera(1);
    StepNote note = *notes.StepOf(1);
    note.instance = 100050;
    EXPECT_EQ(ReasonLines(&note, camera).at(0), "it follows instance 100050");
    note.kind = UpdateKind::Callback;
    note.target = 3;
    EXPECT_EQ(ReasonLines(&note, camera).at(0),
              "its update callback ran instead of following (the target 3 is not followed)")
        << "a callback that is no function has no line";
}

TEST_F(Inspector, APositionThatIsNoNumberAndStaysSoWasNotSet)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = {} } }"), "");
    CCamera& camera = *g_CM.GetCamera(1);
    StepNote note = *notes.StepOf(1);
    note.x.after = NAN;
    camera.m_viewX = NAN;
    EXPECT_EQ(ReasonLines(&note, camera).size(), 1u);
    camera.m_viewX = 5.0f;
    EXPECT_EQ(ReasonLines(&note, camera).at(1), "x: after the update it was set to 5");
    note.x.after = 5.0f;
    camera.m_viewX = NAN;
    EXPECT_EQ(ReasonLines(&note, camera).at(1), "x: after the update it was set to nan");
}

TEST_F(Inspector, ACloneIsToldOfWithOrWithoutItsRoom)
{
    ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
    CCamera& clone = *g_CM.CloneCamera(1);
    clone.SetCloned(true);
    EXPECT_THAT(Panel().cameras.back().text, HasSubstr("not shown, follows 0 (player, now 100000), clone"));
    EXPECT_THAT(LuaLines(clone), testing::EndsWith("-- it was a clone\n"));
    clone.SetPersistent(true);
    EXPECT_THAT(LuaLines(clone), testing::EndsWith("-- it was a clone that stays when its room ends\n"));
    EXPECT_EQ(Row("flags", "persistent", clone.GetID()).value, "yes");
}

// Views of 64 x 48 into surfaces of that size. Over 140 pixels they stand twice as large, one below the other with 8
// pixels between them; over 600 four times as large, two beside each other.
TEST_F(Inspector, SurfacesStandBesideAndBelowEachOther)
{
    ASSERT_EQ(
        Watch("local v = { w = 64, h = 48 }\nroom_add{ views = { [0] = v, [1] = v, [2] = v }, create = function()\n"
              "for i = 0, 2 do view_set_surface_id(i, surface_create(64, 48)) end end }"),
        "");
    int height = 0;
    SurfacePlaces places = PlaceSurfaces(notes, 140, 48, height);
    ASSERT_EQ(places.size(), 3u);
    EXPECT_EQ(places[0], (Port{0, 56, 128, 96}));
    EXPECT_EQ(places[1], (Port{0, 160, 128, 96}));
    EXPECT_EQ(places[2], (Port{0, 264, 128, 96}));
    EXPECT_EQ(height, 360);
    places = PlaceSurfaces(notes, 600, 48, height);
    EXPECT_EQ(places[1], (Port{264, 56, 256, 192}));
    EXPECT_EQ(places[2], (Port{0, 256, 256, 192}));
    EXPECT_EQ(height, 448);
}
} // namespace
