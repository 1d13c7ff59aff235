// What is told of a script's error below its line, and warnings.

#include "Runner/Game/Failure_Report.h"
#include "Runner/Lua/Value_Text.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <algorithm>

namespace
{
using Lines = std::vector<std::string>;

class ErrorReport : public RunnerTest::GameTest
{
protected:
    Lines Details(const std::string& text, int frames = 1)
    {
        EXPECT_NE(Play(text, frames), "");
        return Runner::DescribeFailure(*game).Details();
    }

    // The text of a local variable x of this value, which a function in main.lua holds when it fails.
    std::string Shown(const std::string& value)
    {
        const Lines lines =
            Details("local function fail(x) error('no') end room_add{ create = function() fail(" + value + ") end }");
        for (const std::string& line : lines)
            if (line.find("    x = ") == 0)
                return line.substr(8);
        return "none";
    }
};

TEST_F(ErrorReport, NamesObjectAndEventRoomAndFrameThenTheStackWithLocalVariables)
{
    const Lines lines = Details("local function hurt(who, n)\n"
                                "  local left = who.life - n\n"
                                "  local later = 1\n"
                                "end\n"
                                "local o = object_add{ name = 'player', step = function(self)\n"
                                "  local speed = 2.5\n"
                                "  if frame_number() == 3 then hurt(self, 7) end\n"
                                "end }\n"
                                "room_add{ name = 'cave', instances = { {o, 0, 0} } }",
                                9);
    EXPECT_EQ(game->Failure(), "main.lua:2: attempt to perform arithmetic on a nil value (field 'life')");
    EXPECT_EQ(lines, (Lines{"player: step", "room cave, frame 3", "main.lua:2: in hurt",
                            "    who = instance 100000 (player)", "    n = 7", "main.lua:7: in a function of line 5",
                            "    self = instance 100000 (player)", "    speed = 2.5"}));
}

TEST_F(ErrorReport, NamesRoomsCallbacksAndTheGamesFile)
{
    EXPECT_EQ(Details("room_add{ name = 'cave', draw_gui = function() error('x') end }")[0], "room cave: draw_gui");
    EXPECT_EQ(Details("room_add{ views = { [0] = {} }, create = function()\n"
                      "camera_set_end_script(view_get_camera(0), function() error('x') end) end }")[0],
              "camera 1: end");
    EXPECT_EQ(Details("S = script_add(function() error('x') end) room_add{ views = { [0] = {} }, create = function()\n"
                      "camera_set_begin_script(view_get_camera(0), S) end }")[0],
              "camera 1: begin");
    EXPECT_EQ(Details("local a = 1 error('x')"),
              (Lines{"the game's file", "frame 0", "main.lua:1: in the file", "    a = 1"}));
    EXPECT_EQ(Details("room_add{"), Lines()); // nothing was running
}

TEST_F(ErrorReport, ShowsAtMostTwentyFunctions)
{
    const Lines lines =
        Details("local function deep(n) if n == 0 then error('x') end local r = deep(n - 1) return r end\n"
                "room_add{ create = function() deep(50) end }");
    EXPECT_EQ(
        std::count_if(lines.begin(), lines.end(), [](const std::string& line) { return line.find("main.lua") == 0; }),
        20);
    const Lines overflow =
        Details("local function f(n) return 1 + f(n + 1) end room_add{ create = function() f(1) end }");
    EXPECT_NE(game->Failure().find("stack overflow"), std::string::npos) << game->Failure();
    EXPECT_GE(overflow.size(), 20u);
}

TEST_F(ErrorReport, ShowsValuesInAtMostSixtyCharacters)
{
    EXPECT_EQ(Shown("nil"), "nil");
    EXPECT_EQ(Shown("true"), "true");
    EXPECT_EQ(Shown("-7"), "-7");
    EXPECT_EQ(Shown("0.5"), "0.5");
    EXPECT_EQ(Shown("'text'"), "\"text\"");
    EXPECT_EQ(Shown("print"), "a function of the Runner or of Lua");
    EXPECT_EQ(Shown("function() end"), "function of main.lua:1");
    EXPECT_EQ(Shown("coroutine.create(print)"), "a coroutine");
    EXPECT_EQ(Shown("{}"), "{}");
    EXPECT_EQ(Shown("{ 5, 'a', { 1 }, b = 2, a = 1, [true] = 0 }"), "{5, \"a\", {...}, [true] = 0, a = 1, b = 2}");
    EXPECT_EQ(Shown("('x'):rep(70)"), "\"" + std::string(59, 'x') + "...");
}

TEST_F(ErrorReport, HostileValuesAreHarmless)
{
    EXPECT_EQ(Shown("('x'):rep(1 << 26)"), "\"" + std::string(59, 'x') + "...");
    EXPECT_EQ(Shown("'a\\0b\\n\\27[31m\\127\\xC2\\x9B\\xFF\\xE4'"), "\"a?b??[31m????\"");
    EXPECT_EQ(Shown("('\\u{20AC}'):rep(70)").size(), 1u + 59u * 3u + 3u); // cut between characters
    EXPECT_EQ(Shown("(function() local t = {} t.t = t return t end)()"), "{t = {...}}");
    EXPECT_EQ(Shown("(function() local t = {} for i = 1, 1e5 do t = { t } end return t end)()"), "{{...}}");
    EXPECT_EQ(Shown("(function() local t = {} for i = 1, 1e5 do t['k' .. i] = i end return t end)()"),
              "{a table of more than 200 entries}");
    EXPECT_EQ(Shown("(function() local t = {} for i = 1, 1e6 do t[i] = i end return t end)()").size(), 63u);
}

TEST_F(ErrorReport, AsksNoMetamethod)
{
    EXPECT_EQ(Shown("setmetatable({ 1 }, { __index = error, __tostring = error, __pairs = error, __len = error, "
                    "__name = 'evil' })"),
              "{1}");
    const Lines lines = Details("room_add{ create = function()\n"
                                "error(setmetatable({ code = 3 }, { __tostring = function() log('ran') end })) end }");
    EXPECT_EQ(game->Failure(), "main.lua:2: an error without a message (a table value)");
    EXPECT_EQ(lines[2], "the error is {code = 3}");
    EXPECT_EQ(Log(), "");
}

TEST_F(ErrorReport, AnErrorForWantOfMemoryNamesTheEvent)
{
    options.limits.memory = size_t{16} << 20;
    const Lines lines = Details("local o = object_add{ name = 'hog', create = function() local t = {}\n"
                                "for i = 1, 1e9 do t[i] = {} end end }\n"
                                "room_add{ name = 'r', instances = { {o, 0, 0} } }");
    EXPECT_EQ(lines, (Lines{"hog: create", "room r, frame 0"}));
}

// ---- errors that are raised again ----

TEST_F(ErrorReport, AnEventThatAScriptsCallRunsIsNamedWithItsFunctions)
{
    const std::string bomb = "local function burst(n) error('boom') end\n"
                             "B = object_add{ name = 'bomb', EVENT = function(self) burst(4) end }\n";
    const std::string gun = "local o = object_add{ name = 'gun', step = function(self) local shots = 2 CALL end }\n"
                            "room_add{ instances = { {o, 0, 0} } }";
    const auto with = [](std::string text, const std::string& word, const std::string& put)
    { return text.replace(text.find(word), word.size(), put); };
    const Lines stack = {"main.lua:1: in burst",
                         "    n = 4",
                         "main.lua:2: in a function of line 2",
                         "    self = instance 100001 (bomb)",
                         "main.lua:3: in a function of line 3",
                         "    self = instance 100000 (gun)",
                         "    shots = 2"};
    Lines lines = Details(with(bomb, "EVENT", "create") + with(gun, "CALL", "instance_create(0, 0, B)"));
    EXPECT_EQ(game->Failure(), "main.lua:1: boom");
    Lines expected = {"bomb: create", "room room0, frame 0"};
    expected.insert(expected.end(), stack.begin(), stack.end());
    EXPECT_EQ(lines, expected);
    lines = Details(with(bomb, "EVENT", "destroy") + with(gun, "CALL", "instance_destroy(instance_create(0, 0, B))"));
    expected[0] = "bomb: destroy";
    EXPECT_EQ(lines, expected);
}

TEST_F(ErrorReport, TheFunctionsOfACoroutineComeBeforeThoseThatResumedIt)
{
    const std::string text = "local story = coroutine.MAKE(function(hero) local mood = 'glad' local inner =\n"
                             "coroutine.wrap(function(n) log(hero.friend.name) end)\n"
                             "inner(7) end)\n"
                             "local o = object_add{ name = 'ui', step = function(self) local page = 1\n"
                             "RESUME end }\n"
                             "room_add{ name = 'r', instances = { {o, 0, 0} } }";
    const auto with = [&text](const std::string& make, const std::string& resume)
    {
        std::string result = text;
        result.replace(result.find("MAKE"), 4, make);
        return result.replace(result.find("RESUME"), 6, resume);
    };
    const Lines stack = {"ui: step",
                         "room r, frame 0",
                         "main.lua:2: in a function of line 2",
                         "    n = 7",
                         "main.lua:3: in a function of line 1",
                         "    hero = {}",
                         "    mood = \"glad\"",
                         "    inner = a function of the Runner or of Lua",
                         "main.lua:5: in a function of line 4",
                         "    self = instance 100000 (ui)",
                         "    page = 1"};
    EXPECT_EQ(Details(with("wrap", "story({})")), stack);
    EXPECT_EQ(game->Failure(),
              "main.lua:5: main.lua:3: main.lua:2: attempt to index a nil value (field 'friend')"); // as pcall gives it
    EXPECT_EQ(Details(with("create", "assert(coroutine.resume(story, {}))")), stack);
    const Lines lines = Details("local c = coroutine.wrap(function(n) error({ code = n }) end)\n"
                                "room_add{ create = function() c(5) end }");
    EXPECT_EQ(lines,
              (Lines{"room room0: create", "room room0, frame 0", "the error is {code = 5}",
                     "main.lua:1: in a function of line 1", "    n = 5", "main.lua:2: in a function of line 2"}));
}

TEST_F(ErrorReport, AnErrorThatWasCaughtIsNotTakenForALaterOne)
{
    const std::string text = "local function fail(n) error('no', LEVEL) end\n"
                             "B = object_add{ name = 'bomb', create = function(self) fail(1) end }\n"
                             "local o = object_add{ name = 'gun', step = function(self)\n"
                             "pcall(instance_create, 0, 0, B) pcall(coroutine.wrap(fail), 2)\n"
                             "fail(3) end }\n"
                             "room_add{ instances = { {o, 0, 0} } }";
    const auto with = [&text](const std::string& level)
    { return std::string(text).replace(text.find("LEVEL"), 5, level); };
    const Lines expected = {"gun: step",
                            "room room0, frame 0",
                            "main.lua:1: in fail",
                            "    n = 3",
                            "main.lua:5: in a function of line 3",
                            "    self = instance 100000 (gun)"};
    EXPECT_EQ(Details(with("1")), expected);
    EXPECT_EQ(Details(with("0")), expected);
    EXPECT_EQ(Details(with("2")), expected);
}

// ---- warnings ----

class Mistakes : public RunnerTest::GameTest
{
};

TEST_F(Mistakes, AViewThatShowsNoCameraIsToldOnce)
{
    EXPECT_EQ(Play("room_add{ name = 'cave', views = { [0] = {}, [2] = {} }, create = function()\n"
                   "camera_destroy(view_get_camera(2)) view_set_camera(0, -1) end }",
                   5),
              "");
    EXPECT_EQ(Log(), "warning: view 2 of room \"cave\" shows camera 2, which does not exist, so nothing is drawn\n");
    EXPECT_EQ(game->scripts.warnings.Count(), 1u);
}

TEST_F(Mistakes, ATargetThatNeverExistedIsToldOnce)
{
    EXPECT_EQ(Play("O = object_add{} room_add{ views = { [0] = {}, [1] = {}, [2] = {} }, create = function()\n"
                   "camera_set_view_target(view_get_camera(0), 100009) camera_set_view_target(view_get_camera(1), 7)\n"
                   "local gone = instance_create(0, 0, O) camera_set_view_target(view_get_camera(2), gone)\n"
                   "instance_destroy(gone) end }",
                   5),
              "");
    EXPECT_EQ(Log(), "warning: camera 1 follows instance 100009, which never existed, so it stays where it is\n"
                     "warning: camera 2 follows object 7, which never existed, so it stays where it is\n");
}

TEST_F(Mistakes, StrictTellsOfVariablesThatNobodyHasSet)
{
    const std::string text = "O = object_add{ name = 'ball', create = function(self) self.speed = 1 end,\n"
                             "step = function(self)\n"
                             "local a, b, c = self.speed, self.speeed, self.x\n"
                             "local d, e = vars.score, vars.lives\n"
                             "self.speed, vars.score = nil, nil end }\n"
                             "room_add{ instances = { {O, 0, 0} }, create = function() vars.score = 3 end }";
    EXPECT_EQ(Play(text, 5), "");
    EXPECT_EQ(Log(), "");
    options.strict = true;
    EXPECT_EQ(Play(text, 5), "");
    EXPECT_EQ(Log(), "warning: main.lua:3: reads speeed of object \"ball\", which no script has set\n"
                     "warning: main.lua:4: reads lives of vars, which no script has set\n");
    EXPECT_EQ(game->scripts.warnings.Count(), 2u);
}
} // namespace
