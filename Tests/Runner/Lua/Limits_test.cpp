// Scripts that do not come back, or use too much: an error that names the place, however the script tries to catch it.
#include "Runner/Game/Failure_Report.h"

#include "Tests/Runner/Support/Game_Support.h"

#include <lua.hpp>

namespace
{
class Limits : public RunnerTest::GameTest
{
protected:
    Limits() { options.limits.instructions = 2000000; }

    static constexpr const char* SPENT = "the script did not come back: it has run 2 million instructions in one frame";
};

TEST_F(Limits, AnEndlessLoopIsAnErrorOfItsLine)
{
    EXPECT_EQ(Run("local n = 0\nwhile true do n = n + 1 end"), std::string("main.lua:3: ") + SPENT);
}

TEST_F(Limits, CatchingTheErrorDoesNotHelp)
{
    EXPECT_NE(Run("while true do pcall(function() while true do end end) end").find(SPENT), std::string::npos);
}

TEST_F(Limits, CoroutinesCountAsWell)
{
    const std::string failure = Run("while true do coroutine.wrap(function() for i = 1, 2000 do end end)() end");
    EXPECT_NE(failure.find(SPENT), std::string::npos) << failure;
}

TEST_F(Limits, TheMainFileIsLimitedToo) { EXPECT_EQ(Play("while true do end"), std::string("main.lua:1: ") + SPENT); }

// 1.5 million instructions in each of three frames.
TEST_F(Limits, EachFrameStartsAnew)
{
    EXPECT_EQ(Play("room_add{ step = function() for i = 1, 1500000 do end end }", 3), "");
}

// The instruction at which a script is stopped is the same everywhere. A round takes four: read n, add 1, write n, jump
// back. The limit is looked at every 10,000 instructions, so the script runs 2,010,000, of which few precede the loop.
TEST_F(Limits, TheStopComesAtACertainInstruction)
{
    Play("n = 0\nroom_add{ step = function() while true do n = n + 1 end end }");
    lua_State* const L = game->scripts.Running();
    lua_getglobal(L, "n");
    const lua_Integer rounds = lua_tointeger(L, -1);
    lua_pop(L, 1);
    EXPECT_LE(rounds, 2010000 / 4);
    EXPECT_GE(rounds, 2010000 / 4 - 25);
}

TEST_F(Limits, WithoutALimitALongLoopIsPlayed)
{
    options.limits.instructions = 0;
    EXPECT_EQ(Run("for i = 1, 3000000 do end"), "");
}

TEST_F(Limits, MemoryIsLimitedAndTheErrorNamesThePlace)
{
    options.limits.memory = size_t{16} << 20;
    EXPECT_EQ(Run("local t = {}\nfor i = 1, 1e9 do t[i] = {} end"),
              "main.lua:3: not enough memory: scripts may use 16 MiB");
}

TEST_F(Limits, AFailureNamesEventObjectFrameAndStack)
{
    const std::string text = "local function deep(n) if n == 0 then while true do end end deep(n - 1) return n end\n"
                             "local ball = object_add{ name = 'ball', step = function(self)\n"
                             "  if frame_number() == 2 then deep(2) end end }\n"
                             "room_add{ instances = { { ball, 0, 0 } } }";
    Play(text, 5);
    const Runner::FailureReport report = Runner::DescribeFailure(*game);
    EXPECT_EQ(report.line, std::string("main.lua:1: ") + SPENT);
    EXPECT_EQ(report.event, "ball: step");
    EXPECT_EQ(report.frame, 2);
    ASSERT_EQ(report.stack.size(), 4u);
    EXPECT_EQ(report.stack[0].place.find("main.lua:1: in"), 0u) << report.stack[0].place;
    EXPECT_EQ(report.stack[3].place.find("main.lua:3: in"), 0u) << report.stack[3].place;
}

TEST_F(Limits, AFailureInARoomOrACallbackSaysSo)
{
    Play("room_add{ name = 'cave', draw_gui = function() error('x') end }");
    EXPECT_EQ(Runner::DescribeFailure(*game).event, "room cave: draw_gui");
    Play("room_add{ views = { [0] = {} }, create = function() "
         "camera_set_update_script(view_get_camera(0), function() error('x') end) end }");
    EXPECT_EQ(Runner::DescribeFailure(*game).event, "camera 1: update");
    Play("error('x')");
    EXPECT_EQ(Runner::DescribeFailure(*game).event, "the game's file");
}
} // namespace
