// Scripts that try to run, or to grow, for ever inside functions of Lua, where no instruction is executed: each ends by
// the limits on instructions and memory, in one line, also when it catches the errors.

#include "Tests/Runner/Support/Game_Support.h"

namespace
{
constexpr char SPENT[] = "the script did not come back: it has run 2 million instructions in one frame";

struct Bomb
{
    const char* name;
    const char* before; // what is made first, in the game's file
    const char* text;   // is repeated for ever
};

// A name is what takes the time.
constexpr Bomb BOMBS[] = {
    // ---- texts ----
    {"RepOfNothing", "", "string.rep('', 1 << 62)"},
    {"RepOfMuch", "", "string.rep('x', 30000000)"},
    {"RepWithASeparator", "", "string.rep('', 1 << 40, 'x')"},
    {"FormatOfWidth", "", "string.format('%99999d', 1)"},
    {"FormatOfQuotes", "s = ('\\0'):rep(3000000)", "string.format('%q', s)"},
    {"PatternThatGoesBack", "s = ('a'):rep(300)", "s:find('a*a*a*a*a*a*b')"},
    {"PatternThatTakesLittle", "s = ('a'):rep(300)", "s:match('.-.-.-.-.-.-b')"},
    {"PatternFromEveryPlace", "s = ('a'):rep(200000)", "s:match('.*b')"},
    {"PatternOfBrackets", "s = ('('):rep(200000)", "s:match('%b()')"},
    {"PatternWithALargeClass", "s, p = ('a'):rep(3000), '[' .. ('b'):rep(3000) .. ']'", "s:match(p)"},
    {"PatternOfCaptures", "s = ('a'):rep(3000)", "s:match('(.-)%1(.-)%2b')"},
    {"PatternOfFrontiers", "s = ('a'):rep(300000)", "s:find('%f[b]')"},
    {"PlainSearch", "s, p = ('a'):rep(300000), ('a'):rep(150000) .. 'b'", "s:find(p, 1, true)"},
    {"SearchForALongText", "p = ('a'):rep(20000000)", "('b'):find(p)"},
    {"Gsub", "s = ('a'):rep(2000000)", "s:gsub('', 'b')"},
    {"GsubThatGrows", "s, r = ('a'):rep(3000), ('b'):rep(10000)", "s:gsub('a', r)"},
    {"GsubOfManyReferences", "s, r = ('a'):rep(1000), ('%0'):rep(10000)", "s:gsub('a', r)"},
    {"Gmatch", "s = ('a'):rep(20000)", "string.gmatch(s, '.-b')()"},
    {"Pack", "", "string.pack('c30000000', '')"},
    {"PackOfManyOptions", "f = ('!1'):rep(2000000)", "string.packsize(f)"},
    {"UnpackOfManyOptions", "f = ('<'):rep(2000000)", "string.unpack(f, '')"},
    {"Reverse", "s = ('a'):rep(10000000)", "s:reverse()"},
    {"Concatenation", "s = ('a'):rep(10000000)", "local t = s .. 'b'"},
    {"Comparison", "s, t = ('a'):rep(10000000) .. 'b', ('a'):rep(10000000) .. 'c'", "local u = s < t"},
    {"Equality", "s, t = ('a'):rep(10000000) .. 'b', ('a'):rep(10000000) .. 'c'", "local u = s == t"},
    {"LongKeys", "s = ('a'):rep(10000000) t = { [s .. 'b'] = 1 } k = s .. 'b'", "local u = t[k]"},
    {"TextToNumber", "s = (' '):rep(10000000) .. '1'", "local u = tonumber(s)"},
    {"Bytes", "s = ('a'):rep(200000)", "s:byte(1, -1)"},
    {"Utf8Length", "s = ('a'):rep(10000000)", "utf8.len(s)"},
    {"Utf8Offset", "s = ('a'):rep(10000000)", "utf8.offset(s, -10000000)"},
    {"Utf8Codes", "s = 'a' .. ('\\x80'):rep(10000000) f = utf8.codes('')", "f(s, 1)"},
    // ---- tables ----
    {"ConcatOfEmpties", "t = setmetatable({}, { __index = function() return '' end })",
     "table.concat(t, '', 1, 1 << 62)"},
    {"ConcatByAFunctionOfLua", "t = setmetatable({}, { __index = type })", "table.concat(t, '', 1, 1 << 62)"},
    {"MoveOfNothing", "", "table.move({}, 1, 1 << 62, 2)"},
    {"MoveDown", "", "table.move({}, 2, 1 << 62, 1)"},
    {"InsertAtTheFront", "t = setmetatable({}, { __len = function() return 1 << 62 end })", "table.insert(t, 1, 0)"},
    {"RemoveFromTheFront", "t = setmetatable({}, { __len = function() return 1 << 62 end })", "table.remove(t, 1)"},
    {"Unpack", "t = {} for i = 1, 100000 do t[i] = i end", "table.unpack(t)"},
    {"PackOfUnpack", "t = {} for i = 1, 100000 do t[i] = i end", "table.pack(table.unpack(t))"},
    {"Sort", "t = {} for i = 1, 100000 do t[i] = (i * 7919) % 100003 end", "table.sort(table.move(t, 1, #t, 1, {}))"},
    {"SortWithoutAnOrder", "t = {} for i = 1, 100000 do t[i] = i end", "table.sort(t, function() return true end)"},
    {"SortByAFunctionOfLua", "t = {} for i = 1, 100000 do t[i] = i end", "table.sort(t, rawequal)"},
    {"Next", "t = {} for i = 1, 100000 do t[i] = i end", "next(t)"},
    {"Pairs", "t = {} for i = 1, 100000 do t[i] = i end", "pairs(t)"},
    {"NextOfAnEmptiedTable", "t = {} for i = 1, 200000 do t[i] = i end for i = 1, 200000 do t[i] = nil end", "next(t)"},
    {"KeysThatCollide", "t, n = {}, 0", "n = n + 1 t[n * 1048575] = n"},
    {"TableThatIsRebuilt", "t, n = {}, 131072 for i = 1, n do t[i + 0.5] = true end",
     "n = n + 1 t[n + 0.5] = true t[n - 131071.5] = nil"},
    {"IndexChain", "t = {} for i = 1, 1999 do t = setmetatable({}, { __index = t }) end", "local u = t.x"},
    {"IndexThatCallsItself", "t = setmetatable({}, {}) getmetatable(t).__index = function(u, k) return u[k] end",
     "local u = t.x"},
    {"CallOfItself", "t = setmetatable({}, {}) getmetatable(t).__call = t", "t()"},
    {"CallThatGrows", "m = {} m.__call = setmetatable({}, m) t = setmetatable({}, m)", "t()"},
    {"EqualThatNeverAnswers",
     "m = { __eq = function(a, b) return a == b end } a, b = setmetatable({}, m), setmetatable({}, m)",
     "local u = a == b"},
    {"CloseThatCloses",
     "function f() local c <close> = setmetatable({}, { __close = function() while true do end end }) end", "f()"},
    {"ErrorWithAHostileText", "e = setmetatable({}, { __tostring = function() while true do end end })", "tostring(e)"},
    {"NameThatIsNone", "e = setmetatable({}, { __name = ('x'):rep(10000000) })", "pcall(tostring, e)"},
    // ---- stacks and errors ----
    {"Recursion", "local function f() return 1 + f() end g = f", "g()"},
    {"RecursionThroughPcall", "function f() return pcall(f) end", "f()"},
    {"RecursionThroughGsub", "function f() return (('x'):gsub('x', f)) end", "f()"},
    {"RecursionThroughSort", "function f() table.sort({ 1, 2 }, f) end", "f()"},
    {"RecursionThroughLoad", "function f() return load(f) end", "f()"},
    {"RecursionThroughTostring",
     "t = setmetatable({}, {}) getmetatable(t).__tostring = function(u) return tostring(u) end", "tostring(t)"},
    {"HandlerOfErrorsThatLoops", "function f() while true do end end", "xpcall(f, f)"},
    {"HandlerOfErrorsThatFails", "function f() error('x') end", "xpcall(f, f)"},
    {"ErrorFarBelow",
     "function deep(n) if n == 0 then while true do pcall(error, 'x', 90000) end end deep(n - 1) return n end",
     "deep(100000)"},
    {"ErrorsInALargeFunction",
     "f = load('nothing() ' .. ('local a = b '):rep(199) .. ('a = b '):rep(50000) .. 'return a')", "pcall(f)"},
    {"Coroutines", "", "coroutine.wrap(function() for i = 1, 2000 do end end)()"},
    {"CoroutinesInEachOther", "function f() return coroutine.wrap(f)() end", "f()"},
    {"CoroutinesMadeBefore",
     "t = {} for i = 1, 100 do t[i] = coroutine.wrap(function() while true do coroutine.yield() end end) end",
     "for i = 1, 100 do t[i]() end"},
    {"CoroutineThatIsClosed",
     "function f() local c = coroutine.create(function() local d <close> = setmetatable({}, { __close = function() "
     "while "
     "true do end end }) coroutine.yield() end) coroutine.resume(c) coroutine.close(c) end",
     "f()"},
    {"CoroutinesThatFail",
     "s, t = 'x', {} for i = 1, 190 do t['key' .. i] = i end\n"
     "function f(n) local a, b, c, d, e = t, t, t, t, t if n == 0 then error(s) end f(n - 1) return n end",
     "coroutine.resume(coroutine.create(f), 20)"},
    {"CoroutinesThatFailWithALongText", "s = ('x'):rep(20000000) f = function() error(s, 0) end",
     "coroutine.resume(coroutine.create(f))"},
    {"EventsThatFail",
     "s, t = 'x', {} for i = 1, 190 do t['key' .. i] = i end\n"
     "function f(n) local a, b, c, d, e = t, t, t, t, t if n == 0 then error(s) end f(n - 1) return n end\n"
     "O = object_add{ create = function() f(20) end }",
     "pcall(instance_create, 0, 0, O)"},
    {"ManyArguments", "t = {} for i = 1, 100000 do t[i] = i end function f(...) return ... end", "f(table.unpack(t))"},
    // ---- texts that are compiled ----
    {"LoadOfALargeText", "s = ('a = 1 '):rep(500000)", "load(s)"},
    {"LoadOfBlanks", "s = (' '):rep(10000000)", "load(s)"},
    {"LoadOfAComment", "s = '--' .. ('x'):rep(10000000)", "load(s)"},
    {"LoadOfALongString", "s = 'return [[' .. ('x'):rep(10000000) .. ']]'", "load(s)"},
    {"LoadOfBrackets", "s = ('('):rep(1000000)", "load(s)"},
    {"LoadOfAFunctionThatNeverEnds", "", "load(math.random)"},
    {"LoadOfBranches", "s = 'if a then ' .. ('elseif a then '):rep(100000) .. 'end'", "load(s)"},
    {"LoadOfLabels", "t = {} for i = 1, 30000 do t[i] = '::l' .. i .. '::' end s = table.concat(t)", "load(s)"},
    {"LoadOfJumps", "t = {} for i = 1, 30000 do t[i] = 'goto l' .. i .. ' ' end s = table.concat(t)", "load(s)"},
    {"LoadOfNamesInManyFunctions",
     "local v = {} for i = 1, 190 do v[i] = 'v' .. i end local l = 'local ' .. table.concat(v, ',') .. ' '\n"
     "s = (l .. 'return function() '):rep(150) .. ('x=x '):rep(100000)",
     "load(s)"},
    {"LoadWithAHostileEnvironment", "e = setmetatable({}, { __index = function(t, k) return t[k .. 'x'] end })",
     "load('return a', 'c', 't', e)()"},
    // ---- numbers ----
    {"Remainder", "", "local a = 1e308 % 5e-324"},
    {"Fmod", "", "math.fmod(1e308, 5e-324)"},
    // ---- the Runner's own ----
    {"Collect", "t = {} for i = 1, 100000 do t[i] = {} end", "collect()"},
};

class Bombs : public RunnerTest::GameTest, public testing::WithParamInterface<Bomb>
{
protected:
    // What the bomb needs is made without a limit on instructions; then it is repeated in a step event. The failure.
    std::string Explode(const std::string& body)
    {
        options.check = false; // the walkers would take most of the time
        options.file =
            directory.Write("main.lua", std::string(GetParam().before) +
                                            "\nroom_add{ step = function() while true do " + body + " end end }");
        game = std::make_unique<Runner::Game>(options, Runner::OpenApi);
        if (!game->Load())
            return "not loaded: " + game->Failure();
        game->scripts.SetLimits({2000000, size_t{128} << 20});
        game->Frame();
        return game->Failure();
    }
};

TEST_P(Bombs, EndsByTheLimitOnInstructions)
{
    const std::string failure = Explode("pcall(function() " + std::string(GetParam().text) + " end)");
    EXPECT_NE(failure.find(SPENT), std::string::npos) << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos) << failure;
}

INSTANTIATE_TEST_SUITE_P(All, Bombs, testing::ValuesIn(BOMBS),
                         [](const testing::TestParamInfo<Bomb>& bomb) { return bomb.param.name; });

// ---- where a script is entered ----

struct Entry
{
    const char* name;
    const char* text; // BOMB stands where the script of the entry is
};

constexpr Entry ENTRIES[] = {
    {"File", "BOMB room_add{}"},
    {"Include", "include('part.lua') room_add{}"},
    {"RoomCreate", "room_add{ create = function() BOMB end }"},
    {"RoomStep", "room_add{ step = function() BOMB end }"},
    {"RoomDraw", "room_add{ draw = function() BOMB end }"},
    {"RoomDrawGui", "room_add{ draw_gui = function() BOMB end }"},
    {"RoomLoad", "room_add{ create = function() game_save('a') end, step = function() game_load('a') end, "
                 "load = function() BOMB end }"},
    {"ObjectCreate", "o = object_add{ create = function() BOMB end } room_add{ instances = { { o, 0, 0 } } }"},
    {"ObjectStep", "o = object_add{ step = function() BOMB end } room_add{ instances = { { o, 0, 0 } } }"},
    {"ObjectDraw", "o = object_add{ draw = function() BOMB end } room_add{ instances = { { o, 0, 0 } } }"},
    {"ObjectDestroy",
     "o = object_add{ destroy = function() BOMB end, step = function(self) instance_destroy(self) end } "
     "room_add{ instances = { { o, 0, 0 } } }"},
    {"CameraBegin", "room_add{ views = { [0] = {} }, create = function() "
                    "camera_set_begin_script(view_get_camera(0), function() BOMB end) end }"},
    {"CameraUpdate", "room_add{ views = { [0] = {} }, create = function() "
                     "camera_set_update_script(view_get_camera(0), function() BOMB end) end }"},
    {"CameraEnd", "room_add{ views = { [0] = {} }, create = function() "
                  "camera_set_end_script(view_get_camera(0), script_add(function() BOMB end)) end }"},
    {"ScriptByNumber", "n = script_add(function() BOMB end) room_add{ step = function() script_call(n) end }"},
    {"Coroutine", "room_add{ step = coroutine.wrap(function() BOMB end) }"},
    {"EventOfACall", "o = object_add{ create = function() BOMB end } "
                     "room_add{ step = function() while true do pcall(instance_create, 0, 0, o) end end }"},
    {"FieldsOfACall", "room_add{ step = function() room_add(setmetatable({}, { __index = function() BOMB end, "
                      "__pairs = function() BOMB end })) BOMB end }"},
    {"Settings", "setmetatable(settings, { __index = function() BOMB end, __newindex = function() BOMB end }) "
                 "room_add{ step = function() settings.a = 1 end }"},
    {"KitCallback", "local kit = include('kit/camera_kit.lua') n = script_add(function() BOMB end) "
                    "room_add{ views = { [0] = {} }, step = function() kit.step() end, "
                    "create = function() kit.camera{ view = 0 }:kick{ x = 4, y = 0, frames = 1, done = n } end }"},
};

class BombEntries : public RunnerTest::GameTest, public testing::WithParamInterface<Entry>
{
};

TEST_P(BombEntries, AnEndlessLoopInItEndsByTheLimit)
{
    options.limits.instructions = 2000000;
    options.kit = std::string(GAMES_DIR) + "/../kit";
    const std::string loop = "while true do pcall(function() while true do string.rep('x', 1000) end end) end";
    directory.Write("part.lua", loop);
    std::string text = GetParam().text;
    for (size_t at = text.find("BOMB"); at != std::string::npos; at = text.find("BOMB"))
        text.replace(at, 4, loop);
    const std::string failure = Play(text, 4);
    EXPECT_NE(failure.find(SPENT), std::string::npos) << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos) << failure;
}

INSTANTIATE_TEST_SUITE_P(All, BombEntries, testing::ValuesIn(ENTRIES),
                         [](const testing::TestParamInfo<Entry>& entry) { return entry.param.name; });
} // namespace
