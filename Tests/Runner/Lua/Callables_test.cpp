// Lua functions as callbacks of cameras: identity, life, and what a callback may do.

#include "Files/Javascript/Callable.h"

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Run/Run_Globals.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Value.h"

#include <algorithm>

namespace
{
using RunnerTest::GameTest;

// A room with one view, whose camera is C. The statements run as its create event.
std::string WithView(const std::string& statements)
{
    return "room_add{ views = { [0] = {} }, create = function() C = view_get_camera(0)\n" + statements + "\nend }";
}

class Callables : public GameTest
{
};

TEST_F(Callables, AGetterGivesTheSameFunctionBack)
{
    EXPECT_EQ(Play(WithView("local function f() end\n"
                            "camera_set_begin_script(C, f) camera_set_end_script(C, f)\n"
                            "assert(camera_get_begin_script(C) == f and camera_get_end_script(C) == f)\n"
                            "assert(camera_get_update_script(C) == -1)")),
              "");
}

TEST_F(Callables, TheSameFunctionIsOneObject)
{
    ASSERT_EQ(Play(WithView("local function f() end\n"
                            "camera_set_begin_script(C, f) camera_set_end_script(C, f)")),
              "");
    const CCamera& camera = *g_CM.GetCamera(1);
    EXPECT_EQ(camera.m_beginScript.kind, VALUE_OBJECT);
    EXPECT_EQ(camera.m_beginScript.pObj, camera.m_endScript.pObj);
    EXPECT_TRUE(JS_IsCallable_Object(camera.m_beginScript.pObj));
}

TEST_F(Callables, NothingAndOtherObjectsAreNotCallable)
{
    ASSERT_EQ(Play(WithView("")), "");
    EXPECT_FALSE(JS_IsCallable_Object(nullptr));
    EXPECT_FALSE(JS_IsCallable_Object(g_pGlobal));
}

TEST_F(Callables, TheThreeCallbacksRunInOrderOnceAFrame)
{
    EXPECT_EQ(
        Play(WithView("for _, name in ipairs{'begin', 'update', 'end'} do\n"
                      "_G['camera_set_' .. name .. '_script'](C, function() print(name, camera_current()) end) end"),
             2),
        "");
    EXPECT_EQ(Log(), "begin\t1\nupdate\t1\nend\t1\nbegin\t1\nupdate\t1\nend\t1\n");
}

TEST_F(Callables, CameraCurrentIsMinusOneOutsideCallbacks)
{
    EXPECT_EQ(Run("assert(camera_current() == -1)"), "");
    EXPECT_EQ(Current_Object, -1);
}

TEST_F(Callables, ANumberFromScriptAddRuns)
{
    EXPECT_EQ(Play("S = script_add(function() print('zero') end)\n"
                   "T = script_add(function() print('one') end)\n" +
                   WithView("assert(S == 0 and T == 1) camera_set_update_script(C, T)\n"
                            "assert(camera_get_update_script(C) == 1)")),
              "");
    EXPECT_EQ(Log(), "one\n");
}

TEST_F(Callables, ANumberWithoutAScriptIsToldOnceForEachCallback)
{
    EXPECT_EQ(
        Play(WithView(
                 "camera_set_update_script(C, 99) camera_set_begin_script(C, -2)\n"
                 "pcall(camera_set_end_script, C, '99')"), // refused and stored: a text that is a number counts as it
             5),
        "");
    EXPECT_EQ(
        Log(),
        "warning: camera 1: its begin script is number -2, which script_add never gave, so nothing runs; set a "
        "number from script_add, or -1 for no script\n"
        "warning: camera 1: its update script is number 99, which script_add never gave, so nothing runs and the "
        "camera does not follow its target; set a number from script_add, or -1 for no script\n"
        "warning: camera 1: its end script is number 99, which script_add never gave, so nothing runs; set a number "
        "from script_add, or -1 for no script\n");
}

TEST_F(Callables, AnotherNumberAndAnotherCameraWithoutAScriptAreToldAgain)
{
    ASSERT_EQ(Play(WithView("camera_set_begin_script(C, 7)"), 2), "");
    const auto linesAfter = [this](const std::string& change)
    {
        const std::string before = Log();
        RValue number = Runner::MakeReal(change == "number" ? 8 : 7);
        if (change == "camera")
        {
            g_CM.DestroyCamera(1);
            EXPECT_EQ(g_CM.CreateCamera()->GetID(), 1);
        }
        g_CM.GetCamera(1)->SetBeginScript(&number);
        EXPECT_EQ(PlayOn(3), "");
        const std::string added = Log().substr(before.size());
        return std::count(added.begin(), added.end(), '\n');
    };
    EXPECT_EQ(linesAfter("nothing"), 0);
    EXPECT_EQ(linesAfter("number"), 1);
    EXPECT_EQ(linesAfter("nothing"), 0);
    EXPECT_EQ(linesAfter("camera"), 1);
}

TEST_F(Callables, NumbersWithoutAScriptAreToldUpToALimit)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, step = function()\n"
                   "camera_set_begin_script(view_get_camera(0), frame_number()) end }",
                   200),
              "");
    const std::string log = Log();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 51);
    EXPECT_NE(log.find("\nfurther callbacks with a number that script_add never gave are not told\n"),
              std::string::npos);
}

TEST_F(Callables, ANumberIsPerformedOnceItHasAScript)
{
    EXPECT_EQ(Play(WithView("camera_set_begin_script(C, 0)\n"
                            "camera_set_end_script(C, function() script_add(function() print('ran') end) end)"),
                   3),
              "");
    EXPECT_NE(Log().find("camera 1: its begin script is number 0"), std::string::npos);
    EXPECT_NE(Log().find("\nran\nran\n"), std::string::npos);
}

TEST_F(Callables, ACollectedFunctionIsGoneOnceNoCameraHoldsIt)
{
    ASSERT_EQ(Play(WithView("camera_set_begin_script(C, function() end) collect()")), "");
    const int held = Runner::Collector::GetStats().live;
    ASSERT_EQ(Play(WithView("camera_set_begin_script(C, function() end)\n"
                            "camera_set_begin_script(C, -1) collect()")),
              "");
    EXPECT_EQ(Runner::Collector::GetStats().live, held - 1); // the proxy stays with its camera
    ASSERT_EQ(Play(WithView("local c = camera_create() camera_set_begin_script(c, function() return c end)\n"
                            "camera_destroy(c) collect()")),
              "");
    EXPECT_EQ(Runner::Collector::GetStats().live, held - 2);
}

TEST_F(Callables, AFunctionThatOnlyItsCameraHoldsStaysAlive)
{
    options.gcStress = true;
    EXPECT_EQ(Play(WithView("camera_set_begin_script(C, function() print('alive') end) collect() collect()"), 2), "");
    EXPECT_EQ(Log(), "alive\nalive\n");
}

TEST_F(Callables, LuaForgetsAFunctionThatTheCollectorFreed)
{
    EXPECT_EQ(Play(WithView("WEIGHT = 0\n"
                            "for i = 1, 100 do local c = camera_create()\n"
                            "camera_set_update_script(c, function() return i end) camera_destroy(c) end\n"
                            "collect() collect()\n"
                            "local function f() return 1 end\n"
                            "camera_set_update_script(C, f) assert(camera_get_update_script(C) == f)")),
              "");
}

TEST_F(Callables, ACallbackThatIsNoneIsNamedByItsCamera)
{
    EXPECT_EQ(Play(WithView("assert(not pcall(camera_set_update_script, C, {}))")),
              "a callback of camera 1 cannot run: expected a number, got a table");
}

// ---- callbacks that do anything ----

struct Deed
{
    const char* name;
    const char* statements;
};

void PrintTo(const Deed& deed, std::ostream* out) { *out << deed.name; }

class CallbackDeeds : public GameTest, public ::testing::WithParamInterface<std::tuple<const char*, Deed>>
{
};

TEST_P(CallbackDeeds, LeaveEverythingWhole)
{
    const auto& [callback, deed] = GetParam();
    options.gcStress = true;
    EXPECT_EQ(Play("ROOM2 = room_add{}\n" +
                       WithView(std::string("camera_set_") + callback + "_script(C, function()\n" + deed.statements +
                                "\nend)") +
                       "\nroom_goto(1)",
                   4),
              "");
    EXPECT_EQ(Current_Object, -1);
}

INSTANTIATE_TEST_SUITE_P(
    All, CallbackDeeds,
    ::testing::Combine(
        ::testing::Values("begin", "update", "end"),
        ::testing::Values(
            Deed{"DestroyItself", "camera_destroy(camera_current()) collect()"},
            Deed{"ReplaceItself", "camera_set_begin_script(C, -1) camera_set_update_script(C, -1) "
                                  "camera_set_end_script(C, -1) collect()"},
            Deed{"CreateMany", "for i = 1, 100 do camera_create() end"},
            Deed{"ExchangeTheViewsCamera", "view_set_camera(0, camera_create_view(0, 0, 64, 64))"},
            Deed{"GoToAnotherRoom", "room_goto(ROOM2)"},
            Deed{"DestroyAndCreate", "camera_destroy(C) local c = camera_create() assert(c == C) collect()"},
            Deed{"TakeTheViewsCameraAway", "view_set_camera(0, -1)"}, Deed{"HideTheView", "view_set_visible(0, false)"},
            Deed{"ApplyAnother", "camera_apply(camera_create_view(0, 0, 10, 10))"})),
    [](const auto& test) { return std::string(std::get<0>(test.param)) + std::get<1>(test.param).name; });

class CallbackErrors : public GameTest, public ::testing::WithParamInterface<const char*>
{
};

TEST_P(CallbackErrors, StopTheGameWithFileAndLine)
{
    EXPECT_EQ(Play(WithView(std::string("camera_set_") + GetParam() + "_script(C, function()\n error('boom') end)")),
              "main.lua:3: boom");
    EXPECT_EQ(Current_Object, -1);
}

TEST_P(CallbackErrors, KeepLaterScriptsFromRunning)
{
    EXPECT_NE(Play(WithView(std::string("camera_set_") + GetParam() + "_script(C, function() error('boom') end)") +
                   "\nroom_goto(room_add{ draw_gui = function() print('late') end, views = { [0] = {} },\n"
                   "create = function() camera_set_" +
                   GetParam() + "_script(view_get_camera(0), function() error('boom') end) end })"),
              "");
    EXPECT_EQ(Log(), "");
}

INSTANTIATE_TEST_SUITE_P(All, CallbackErrors, ::testing::Values("begin", "update", "end"),
                         [](const auto& test) { return std::string(test.param); });

// Functions of the host have no line of their own: the error names the line that handed them over.

TEST_F(Callables, AFunctionOfTheHostThatFailsAsACallbackIsNamedByTheLineThatGaveIt)
{
    for (const char* callback : {"begin", "update", "end"})
        EXPECT_EQ(
            Play(WithView(std::string("\ncamera_set_") + callback + "_script(C,\n coroutine.yield)\n local x = 1")),
            "main.lua:3: attempt to yield from outside a coroutine");
    EXPECT_EQ(Play(WithView("S = script_add(draw_circle)\n camera_set_begin_script(C, S)")),
              "main.lua:2: draw_circle() - wrong number of arguments (3 to 4 wanted: x, y, radius [, outline]; got 0)");
}

TEST_F(Callables, AFunctionOfTheHostThatFailsIsNamedByTheLastLineThatGaveIt)
{
    EXPECT_EQ(Play(WithView("camera_set_begin_script(C, coroutine.yield)\ncamera_set_begin_script(C, -1)\n"
                            "camera_set_end_script(C, coroutine.yield)")),
              "main.lua:4: attempt to yield from outside a coroutine");
}

TEST_F(Callables, AFunctionOfTheHostThatFailsAsAnEventIsNamedByTheLineThatGaveIt)
{
    EXPECT_EQ(Play("local o = object_add{\n  step = coroutine.yield }\nroom_add{ instances = { {o, 0, 0} } }"),
              "main.lua:1: attempt to yield from outside a coroutine");
    EXPECT_EQ(Play("\nroom_add{ draw = coroutine.yield }"), "main.lua:2: attempt to yield from outside a coroutine");
}

TEST_F(Callables, AResultOfACallbackIsReleased)
{
    EXPECT_EQ(Play(WithView("camera_set_update_script(C, function() return {'a', {'b'}}, 2 end)\n"
                            "camera_set_begin_script(C, function() return 'text' end)"),
                   3),
              "");
}
} // namespace
