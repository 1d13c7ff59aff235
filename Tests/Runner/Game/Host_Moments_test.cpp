// Moments at which the host calls the module outside of a script. A camera holds callbacks that are none: what the
// module reports about them in such a moment must not wait for the next script.

#include "Tests/Runner/Save/Save_Support.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Value.h"

#include <algorithm>

namespace
{
using RunnerTest::SaveTest;

// Camera B has three callbacks that are none, and is not drawn. The callback of the view's camera prints each frame.
std::string Game(const std::string& inFrameOne)
{
    return "room_add{ views = { [0] = {} }, create = function()\n"
           "B = camera_create() vars.b = B\n"
           "assert(not pcall(camera_set_begin_script, B, 'oops'))\n"
           "assert(not pcall(camera_set_update_script, B, { function() end }))\n"
           "assert(not pcall(camera_set_end_script, B, nil))\n"
           "camera_set_begin_script(view_get_camera(0), RAN) end,\n"
           "step = function() if frame_number() == 1 then\n" +
           inFrameOne + "\nend end }\nRAN = script_add(function() print('ran') end)\n";
}

struct Moment
{
    const char* name;
    const char* statements; // run in the step of frame 1
};

void PrintTo(const Moment& moment, std::ostream* out) { *out << moment.name; }

class HostMoments : public SaveTest, public ::testing::WithParamInterface<Moment>
{
};

TEST_P(HostMoments, LeaveNoReportToTheNextCallback)
{
    const std::string secondRoom = "room_add{ views = { [0] = {} },\n"
                                   "create = function() camera_set_begin_script(view_get_camera(0), RAN) end }";
    ASSERT_EQ(Play(Game(GetParam().statements) + secondRoom, 2), "");
    EXPECT_FALSE(Runner::HasError());
    const std::string before = Log();
    ASSERT_EQ(PlayOn(2), "");
    EXPECT_EQ(Log().substr(before.size()), "ran\nran\n");
    game.reset();
    EXPECT_FALSE(Runner::HasError()) << "left by the end of the game";
}

INSTANTIATE_TEST_SUITE_P(All, HostMoments,
                         ::testing::Values(Moment{"Save", "assert(game_save('s'))"}, //
                                           Moment{"ChangeOfRoom", "room_goto(1)"},
                                           Moment{"RestartOfTheRoom", "room_goto(0)"},
                                           Moment{"DefaultCamera",
                                                  "camera_set_default(B) view_set_visible(0, false) "
                                                  "view_set_visible(1, true) view_set_camera(1, view_get_camera(0))"},
                                           Moment{"Destruction", "camera_destroy(B)"},
                                           Moment{"SaveAndRestartOfTheRoom", "assert(game_save('s')) room_goto(0)"}),
                         [](const auto& test) { return std::string(test.param.name); });

class HostMomentsOfSaves : public SaveTest
{
};

TEST_F(HostMomentsOfSaves, ASaveNamesTheCallbackThatItCannotKeep)
{
    ASSERT_EQ(Play("room_add{ create = function() local c = camera_create()\n"
                   "pcall(camera_set_end_script, c, 'oops') end }"),
              "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Log(), "saved " + SavePath() +
                         ", but the end script of camera 1 is not saved: it is the string \"oops\", neither a function "
                         "nor a number\n");
    EXPECT_FALSE(Runner::HasError());
}

TEST_F(HostMomentsOfSaves, ASaveCountsFurtherCallbacksInTheSameLine)
{
    ASSERT_EQ(Play(Game("")), "");
    const std::string before = Log();
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(
        Log().substr(before.size()),
        "saved " + SavePath() +
            ", but the begin script of camera 2 is not saved: it is the string \"oops\", neither a function nor a "
            "number (other such callbacks, not saved either: 2)\n");
}

TEST_F(HostMomentsOfSaves, TheRunningCameraKeepsWhatTheSaveCannot)
{
    ASSERT_EQ(Play(Game("")), "");
    ASSERT_EQ(Save(), "");
    const CCamera& camera = *g_CM.GetCamera(2);
    EXPECT_STREQ(camera.m_beginScript.GetString(), "oops");
    EXPECT_EQ(camera.m_updateScript.kind, VALUE_ARRAY);
    EXPECT_EQ(camera.m_updateScript.pRefArray->m_refCount, 1);
    EXPECT_EQ(camera.m_endScript.kind, VALUE_UNDEFINED);
}

TEST_F(HostMomentsOfSaves, ALoadedCameraHasNoScriptInPlaceOfWhatWasNotKept)
{
    ASSERT_EQ(Play(Game("")), "");
    ASSERT_EQ(Save(), "");
    ASSERT_EQ(Load(), ""); // in the game that holds such callbacks
    EXPECT_FALSE(Runner::HasError());
    ASSERT_EQ(LoadAfresh(), "");
    EXPECT_FALSE(Runner::HasError());
    for (const RValue CCamera::*callback : {&CCamera::m_beginScript, &CCamera::m_updateScript, &CCamera::m_endScript})
        EXPECT_EQ(Runner::Describe(g_CM.GetCamera(2)->*callback), "the number -1");
    EXPECT_EQ(PlayOn(2), "");
}

TEST_F(HostMomentsOfSaves, NumbersAndFunctionsAreKeptWithoutAWord)
{
    ASSERT_EQ(Play("room_add{ create = function() local c = camera_create()\n"
                   "camera_set_begin_script(c, 3) camera_set_update_script(c, function() end)\n"
                   "pcall(camera_set_end_script, c, ' 4 ') end }"),
              "");
    ASSERT_EQ(Save(), "");
    EXPECT_EQ(Log(), "");
    ASSERT_EQ(LoadAfresh(), "");
    EXPECT_EQ(Runner::Describe(g_CM.GetCamera(1)->m_beginScript), "the number 3");
    EXPECT_EQ(Runner::Describe(g_CM.GetCamera(1)->m_updateScript), "the number -1");
    EXPECT_EQ(Runner::Describe(g_CM.GetCamera(1)->m_endScript), "the number 4");
}

TEST_F(HostMomentsOfSaves, ASaveThatFailsSaysOnlyThat)
{
    ASSERT_EQ(Play(Game("")), "");
    const std::string before = Log();
    std::filesystem::create_directory(SavePath());
    EXPECT_NE(Save(), "");
    EXPECT_EQ(Log(), before);
    EXPECT_FALSE(Runner::HasError());
}

class HostChecks : public RunnerTest::GameTest
{
};

TEST_F(HostChecks, AReportThatIsLeftOverFailsTheCheck)
{
    // Without a camera in the view no callback is asked for, and nobody else comes across the report.
    ASSERT_EQ(Play("room_add{ views = { [0] = {} }, create = function() view_set_camera(0, -1) end }"), "");
    KvError("left %s", "behind");
    EXPECT_EQ(PlayOn(1), "check of the reports: one is left over: left behind");
    EXPECT_FALSE(Runner::HasError());
}
} // namespace
