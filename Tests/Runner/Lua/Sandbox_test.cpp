// Lua as games get it: alike in every run, and without a way out.

#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using RunnerTest::GameTest;

class SandboxTest : public GameTest
{
};

TEST_F(SandboxTest, NothingThatReachesOutIsThere)
{
    EXPECT_EQ(Run("for _, name in ipairs{'io', 'os', 'debug', 'package', 'require', 'dofile', 'loadfile',\n"
                  "  'collectgarbage', 'warn'} do assert(_G[name] == nil, name) end\n"
                  "assert(string.dump == nil)"),
              "");
}

TEST_F(SandboxTest, PairsGoesThroughNumbersThenStringsThenBooleans)
{
    EXPECT_EQ(
        Run("local text = ''\n"
            "for k, v in pairs{ b = 1, a = 2, [3] = 3, [1] = 4, [2.5] = 5, [-7] = 6, [true] = 7, [false] = 8 } do\n"
            "  text = text .. tostring(k) .. '=' .. v .. ' ' end\n"
            "assert(text == '-7=6 1=4 2.5=5 3=3 a=2 b=1 false=8 true=7 ', text)"),
        "");
}

TEST_F(SandboxTest, PairsPassesOverWhatIsRemovedMeanwhile)
{
    EXPECT_EQ(Run("local t, text = { a = 1, b = 2, c = 3 }, ''\n"
                  "for k in pairs(t) do text = text .. k t.b = nil t[k] = nil end\n"
                  "assert(text == 'ac' and next(t) == nil)"),
              "");
}

TEST_F(SandboxTest, NextGoesInTheSameOrder)
{
    EXPECT_EQ(Run("local t, text, k, v = { z = 1, [2] = 2, [1] = 3 }, ''\n"
                  "repeat k, v = next(t, k) text = text .. tostring(k) .. tostring(v) until k == nil\n"
                  "assert(text == '1322z1nilnil', text)\n"
                  "assert(not pcall(next, t, 'missing'))"),
              "");
}

TEST_F(SandboxTest, NoTextShowsAnAddress)
{
    EXPECT_EQ(
        Run("for _, v in ipairs{ {}, print, coroutine.create(print) } do\n"
            "  assert(tostring(v) == type(v) and string.format('%s', v) == type(v) and ('%s'):format(v) == type(v))\n"
            "end\n"
            "for _, format in ipairs{ '%p', '%-10p', '%5%%p', '\\0%p', '%s %p' } do\n"
            "  local ok, text = pcall(string.format, format, 'a', 'b')\n"
            "  assert(not ok and text:find('%p is not available', 1, true), format) end\n"
            "assert(string.format('100%% %5.1f %s', 2, 'p') == '100%   2.0 p')\n"
            "assert(tostring(setmetatable({}, { __tostring = function() return 'mine' end })) == 'mine')"),
        "");
}

TEST_F(SandboxTest, RandomNumbersAreInTheirRanges)
{
    EXPECT_EQ(
        Run("for i = 1, 2000 do\n"
            "  local a, b, c, d, e = random(), random_range(-2, 3), irandom(4), math.random(6), math.random(-1, 1)\n"
            "  assert(a >= 0 and a < 1 and b >= -2 and b < 3)\n"
            "  assert(c >= 0 and c <= 4 and d >= 1 and d <= 6 and e >= -1 and e <= 1)\n"
            "  assert(math.type(c) == 'integer' and math.type(d) == 'integer') end\n"
            "assert(not pcall(math.random, 0))\n"
            "random_set_seed(9) local x = random() random_set_seed(9) assert(random() == x)\n"
            "math.randomseed(9) assert(math.random() == x)"),
        "");
}

TEST_F(SandboxTest, LoadTakesTextAloneAndMayBeGivenAnEnvironment)
{
    EXPECT_EQ(Run("assert(load('return 1 + 1')() == 2)\n"
                  "assert(load('x = 5', 'chunk', 'bt', {}))\n"
                  "local env = {} load('x = 5', 'chunk', 't', env)() assert(env.x == 5 and x == nil)\n"
                  "assert(load(string.char(27) .. 'Lua') == nil)\n"
                  "local f, why = load('x =') assert(f == nil and type(why) == 'string')"),
              "");
}

TEST_F(SandboxTest, FinalisersAndWeakTablesAreRefused)
{
    EXPECT_EQ(Run("assert(not pcall(setmetatable, {}, { __gc = function() end }))\n"
                  "assert(not pcall(setmetatable, {}, { __mode = 'k' }))\n"
                  "assert(setmetatable({}, { __index = { a = 5 } }).a == 5)\n"
                  "assert(getmetatable(setmetatable({}, nil)) == nil)"),
              "");
}

TEST_F(SandboxTest, AFinaliserWrittenLaterNeverRuns)
{
    EXPECT_EQ(Run("local mt = {} setmetatable({}, mt) mt.__gc = function() error('ran') end collect() collect()", 3),
              "");
    game.reset(); // closes the Lua state
    EXPECT_EQ(Log(), "");
}

TEST_F(SandboxTest, IncludeRunsAFileOnce)
{
    directory.Write("part.lua", "COUNT = (COUNT or 0) + 1 return { answer = 42 }");
    EXPECT_EQ(Run("assert(include('part.lua').answer == 42)\n"
                  "assert(include('part.lua') == include('part.lua') and COUNT == 1)"),
              "");
}

TEST_F(SandboxTest, AnErrorInAnIncludedFileNamesThatFile)
{
    directory.Write("part.lua", "\ncamera_create(1)");
    EXPECT_EQ(Run("include('part.lua')"),
              "part.lua:2: camera_create() - doesn't take any arguments (none wanted; got 1)");
    directory.Write("bad.lua", "x = = 1");
    EXPECT_EQ(Run("include('bad.lua')"), "bad.lua:1: unexpected symbol near '='");
}

TEST_F(SandboxTest, IncludeStaysInTheGamesDirectory)
{
    for (const char* name : {"../main.lua", "/etc/passwd", "..", "a/../../b", ""})
        EXPECT_NE(Run(std::string("include('") + name + "')").find("is no file of the game"), std::string::npos)
            << name << ": " << game->Failure();
}

TEST_F(SandboxTest, ANameThatIsRefusedIsShownAsOneShortLine)
{
    const std::string failure = Run("include('/' .. ('x\\n'):rep(35000))");
    EXPECT_LT(failure.size(), 200u) << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos) << failure;
}

TEST_F(SandboxTest, TooMuchMemoryIsAnErrorAndNoCrash)
{
    EXPECT_EQ(Run("local s = string.rep('x', 1 << 28) local t = {} for i = 1, 100 do t[i] = s .. i end"),
              "main.lua:2: not enough memory: scripts may use 1024 MiB");
}

TEST_F(SandboxTest, EndlessRecursionIsAnErrorAndNoCrash)
{
    const std::string failure = Run("local function f() return 1 + f() end f()");
    EXPECT_NE(failure.find("main.lua:2: stack overflow"), std::string::npos) << failure;
}

TEST_F(SandboxTest, EventsCannotYield)
{
    const std::string failure = Run("coroutine.yield()");
    EXPECT_NE(failure.find("attempt to yield"), std::string::npos) << failure;
}
} // namespace
