// Built-ins as scripts call them, and what crosses between Lua and the host.

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Runner/Host/Code.h"

namespace
{
using RunnerTest::GameTest;

class Bridge : public GameTest
{
};

TEST_F(Bridge, EveryRegisteredBuiltinIsAGlobalFunction)
{
    ASSERT_EQ(Run(""), "");
    ASSERT_EQ(Runner::Builtins().size(), 47u);
    std::string checks;
    for (const Runner::Builtin& builtin : Runner::Builtins())
        checks += "assert(type(" + builtin.name + ") == 'function', '" + builtin.name + "')\n";
    EXPECT_EQ(Run(checks + "assert(camera_set_view == nil)"), "");
}

TEST_F(Bridge, BuiltinsAreRegisteredOnceHoweverManyGamesArePlayed)
{
    EXPECT_EQ(Run(""), "");
    EXPECT_EQ(Run("assert(camera_get_default() == 0)"), "");
    EXPECT_EQ(Runner::Builtins().size(), 47u);
}

TEST_F(Bridge, NumbersCrossBothWays)
{
    EXPECT_EQ(Run("local c = camera_create()\n"
                  "camera_set_view_pos(c, 1.5, -7)\n"
                  "assert(camera_get_view_x(c) == 1.5 and camera_get_view_y(c) == -7)\n"
                  "assert(math.type(camera_get_view_y(c)) == 'integer')\n"
                  "assert(math.type(camera_get_view_x(c)) == 'float')"),
              "");
}

TEST_F(Bridge, MinusZeroStaysMinusZero)
{
    EXPECT_EQ(Run("local c = camera_create() camera_set_view_pos(c, -0.0, 0)\n"
                  "assert(1 / camera_get_view_x(c) == -math.huge)"),
              "");
}

TEST_F(Bridge, NumbersBeyond32BitsComeBackAsTheyAre)
{
    EXPECT_EQ(Run("local c = camera_create() camera_set_view_pos(c, 2^40, 1e300)\n"
                  "assert(camera_get_view_x(c) == 2^40)\n"
                  "assert(camera_get_view_y(c) == math.huge)"),
              "");
}

TEST_F(Bridge, BooleansReachAViewAsNumbers)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function()\n"
                   "view_set_visible(0, false) assert(view_get_visible(0) == 0)\n"
                   "view_set_visible(0, true) assert(view_get_visible(0) == 1) end }"),
              "");
}

TEST_F(Bridge, AMatrixComesAsATableOfSixteenNumbers)
{
    EXPECT_EQ(Run("local m = camera_get_view_mat(camera_create())\n"
                  "assert(#m == 16)\n"
                  "for i = 1, 16 do assert(m[i] == ((i == 1 or i == 6 or i == 11 or i == 16) and 1 or 0), i) end"),
              "");
}

TEST_F(Bridge, AMatrixCanBeHandedBack)
{
    EXPECT_EQ(Run("local c, m = camera_create(), {}\n"
                  "for i = 1, 16 do m[i] = i / 4 end\n"
                  "assert(camera_set_proj_mat(c, m) == -1)\n"
                  "local n = camera_get_proj_mat(c)\n"
                  "for i = 1, 16 do assert(n[i] == i / 4) end"),
              "");
}

TEST_F(Bridge, AnInstanceStandsForItsIdentifier)
{
    EXPECT_EQ(Play("local o = object_add{ create = function(self)\n"
                   "local c = camera_create() camera_set_view_target(c, self)\n"
                   "assert(camera_get_view_target(c) == self.id and self.id == 100000) end }\n"
                   "room_add{ instances = { {o, 0, 0} } }"),
              "");
}

TEST_F(Bridge, SettersAnswerMinusOneAndViewSettersNothing)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function()\n"
                   "assert(camera_set_view_pos(camera_create(), 0, 0) == -1)\n"
                   "assert(view_set_xport(0, 5) == nil)\n"
                   "assert(camera_set_default(77) == nil) end }"),
              "");
}

// ---- errors ----

struct Mistake
{
    const char* statement;
    const char* complaint;
};

class BridgeMistakes : public GameTest, public ::testing::WithParamInterface<Mistake>
{
};

TEST_P(BridgeMistakes, StopTheGameWithFileAndLine)
{
    EXPECT_EQ(Run(GetParam().statement), std::string("main.lua:2: ") + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BridgeMistakes,
    ::testing::Values(
        Mistake{"camera_create(1)", "camera_create() - doesn't take any arguments (none wanted; got 1)"},
        Mistake{"camera_destroy()", "camera_destroy() - wrong number of arguments (1 wanted: camera; got 0)"},
        Mistake{"view_get_camera()", "view_get_camera() - wrong number of arguments (1 wanted: view; got 0)"},
        Mistake{"camera_set_proj_mat(0, nil)", "camera_set_view_mat() - array invalid (has it been created properly?)"
                                               " (camera_set_proj_mat: argument 2 (matrix) is a table of 16 numbers, "
                                               "got nil)"},
        Mistake{"camera_set_view_mat(0)",
                "camera_set_view_mat() - wrong number of arguments (2 wanted: camera, matrix; got 1)"},
        Mistake{"local t = {} t[1] = t camera_set_view_mat(0, t)",
                "camera_set_view_mat: argument 2 (matrix), entry 1 is a number, got a table nested too deeply"},
        Mistake{"no_such_function()", "attempt to call a nil value (global 'no_such_function')"}));

TEST_F(Bridge, AnErrorCanBeCaughtAndTheGameGoesOn)
{
    EXPECT_EQ(Run("local ok, text = pcall(camera_create, 1)\n"
                  "assert(not ok and text == \"main.lua:2: camera_create() - doesn't take any arguments \"\n"
                  "  .. '(none wanted; got 1)', text)\n"
                  "assert(camera_create() == 1)"),
              "");
}

TEST_F(Bridge, AnErrorInsideACoroutineNamesTheLineThere)
{
    EXPECT_EQ(Run("local co = coroutine.create(function()\n"
                  "camera_create(1) end)\n"
                  "local ok, text = coroutine.resume(co)\n"
                  "assert(not ok and text:find('main.lua:3: ', 1, true) == 1, text)"),
              "");
}

TEST_F(Bridge, ManyArgumentsAreTakenAndReleased)
{
    EXPECT_EQ(Run("local many = {}\n"
                  "for i = 1, 100 do many[i] = 'text ' .. i end\n"
                  "assert(not pcall(camera_destroy, table.unpack(many)))"),
              "");
}

TEST_F(Bridge, ArgumentsOfARefusedCallAreReleased)
{
    EXPECT_EQ(Run("for i = 1, 50 do\n"
                  "assert(not pcall(camera_set_view_pos, 'a', {'b', {'c', coroutine.create(print)}}, 0)) end"),
              "");
}
} // namespace
