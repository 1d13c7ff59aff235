// The same game gives the same text in every run: each test starts the runner several times, as processes of their own
// with addresses, clocks and seeds of their own, and compares what they print.

#include "Tests/Runner/Save/Save_Support.h"

#include <set>

namespace
{
using RunnerTest::StartRunner;
using RunnerTest::TestDirectory;

constexpr int RUNS = 6;

class Determinism : public ::testing::Test
{
protected:
    // What the game prints, once for each different answer of RUNS runs.
    std::set<std::string> Answers(const std::string& game, const std::string& options = "")
    {
        std::set<std::string> answers;
        directory.Write("main.lua", game + "\nroom_add{}");
        for (int run = 0; run < RUNS; ++run)
        {
            const int status =
                StartRunner(directory.Path("main.lua") + " --frames 1 " + options, directory.Path("printed"));
            EXPECT_EQ(status, 0) << directory.Read("printed");
            answers.insert(directory.Read("printed"));
        }
        return answers;
    }

    void ExpectOneAnswer(const std::string& game)
    {
        const std::set<std::string> answers = Answers(game);
        EXPECT_EQ(answers.size(), 1u) << *answers.begin() << "\nand\n" << *answers.rbegin();
        EXPECT_FALSE(answers.begin()->empty());
    }

    TestDirectory directory;
};

// Many entries compare equal, and their order is what the choice of pivots made it.
TEST_F(Determinism, SortOrdersEqualEntriesAlike)
{
    ExpectOneAnswer("local t = {}\n"
                    "for i = 1, 6000 do t[i] = { k = math.min(i, 6000 - i) // 40, i = i } end\n"
                    "table.sort(t, function(a, b) return a.k < b.k end)\n"
                    "local sum = 0\n"
                    "for i, e in ipairs(t) do sum = (sum * 31 + e.i) % 1000000007 end\n"
                    "print(sum)");
}

// What moves numbered entries into the array part of a table is a full hash part, and when that is full is a matter of
// collisions: of the seed for texts, of addresses for the rest.
constexpr char TABLES_WITH_HOLES[] = "local seed = 1\n"
                                     "local function draw(n) seed = seed * 16807 % 2147483647 return seed % n end\n"
                                     "local out = {}\n"
                                     "for round = 1, 400 do\n"
                                     "  local t = {}\n"
                                     "  for _ = 1, 40 do\n"
                                     "    local c = draw(4)\n"
                                     "    if c == 0 then t[KEY] = true\n"
                                     "    elseif c == 1 then t[draw(24) + 1] = nil\n"
                                     "    else t[draw(24) + 1] = 'v' end\n"
                                     "  end\n"
                                     "  USE\n"
                                     "end\n"
                                     "print(table.concat(out, ' '))";

std::string WithHoles(const std::string& key, const std::string& use)
{
    std::string text = TABLES_WITH_HOLES;
    text.replace(text.find("KEY"), 3, key);
    text.replace(text.find("USE"), 3, use);
    return text;
}

constexpr char TEXT_KEYS[] = "'key' .. draw(1000)";

TEST_F(Determinism, LengthsBesideTextKeysAreAlike) { ExpectOneAnswer(WithHoles(TEXT_KEYS, "out[#out + 1] = #t")); }

TEST_F(Determinism, LengthsBesideTableAndFunctionKeysAreAlike)
{
    ExpectOneAnswer(WithHoles("{}", "out[#out + 1] = #t"));
    ExpectOneAnswer(WithHoles("function() return draw end", "out[#out + 1] = #t"));
    ExpectOneAnswer(WithHoles("coroutine.create(draw)", "out[#out + 1] = #t"));
}

TEST_F(Determinism, InsertedAndRemovedEntriesAreAlike)
{
    ExpectOneAnswer(WithHoles(TEXT_KEYS, "table.insert(t, 'w') for i = 1, 30 do out[#out + 1] = t[i] or '-' end"));
    ExpectOneAnswer(WithHoles(TEXT_KEYS, "out[#out + 1] = tostring(table.remove(t))"));
}

TEST_F(Determinism, JoinedAndUnpackedTablesAreAlike)
{
    ExpectOneAnswer(WithHoles(TEXT_KEYS, "local ok, s = pcall(table.concat, t) out[#out + 1] = ok and s or 'hole'"));
    ExpectOneAnswer(WithHoles(TEXT_KEYS, "out[#out + 1] = select('#', table.unpack(t))"));
}

TEST_F(Determinism, PairsAndNextGoThroughObjectsInOneOrder)
{
    for (const char* key : {"{ i = i }", "function() return i end", "coroutine.create(print)"})
        ExpectOneAnswer(std::string("local t, text = {}, ''\n"
                                    "for i = 1, 60 do t[") +
                        key +
                        "] = i end\n"
                        "for _, v in pairs(t) do text = text .. v .. ' ' end\n"
                        "local _, first = next(t)\n"
                        "print(text .. first)");
}

TEST_F(Determinism, PairsGoThroughBuiltInFunctionsInOneOrder)
{
    ExpectOneAnswer("local t, text = {}, ''\n"
                    "for _, library in ipairs{ 'string', 'math', 'table', 'coroutine', 'utf8' } do\n"
                    "  for name, f in pairs(_G[library]) do if type(f) == 'function' then t[f] = name end end end\n"
                    "for name, f in pairs(_G) do if type(f) == 'function' then t[f] = name end end\n"
                    "for _, name in pairs(t) do text = text .. name .. ' ' end\n"
                    "print(text)");
}

TEST_F(Determinism, PairsGoThroughInstancesInOneOrder)
{
    ExpectOneAnswer("local o = object_add{ create = function(self) all = all or {} all[self] = self.id end }\n"
                    "local spec = {}\n"
                    "for i = 1, 40 do spec[i] = { o, i, 0 } end\n"
                    "room_add{ instances = spec, create = function()\n"
                    "  local text = '' for _, id in pairs(all) do text = text .. id .. ' ' end print(text) end }");
}

// When the collector comes is a matter of memory, which no two builds use alike.
TEST_F(Determinism, AWeakTableKeepsItsEntries)
{
    ExpectOneAnswer("local mode = {}\n"
                    "local t = setmetatable({}, mode)\n"
                    "mode.__mode = 'kv'\n"
                    "for i = 1, 3000 do t[i] = { i } t[{}] = i end\n"
                    "local waste for i = 1, 300000 do waste = { i } end\n"
                    "local n = 0 for _ in pairs(t) do n = n + 1 end\n"
                    "assert(n == 6000, n .. ' are left')\n"
                    "print(n)");
}

// The same steps give the same lengths, whether or not the collector comes between them. Keys are made anew each time:
// a text that nothing refers to is collected, and the next one like it is another object.
TEST_F(Determinism, WhenTheCollectorComesDoesNotShow)
{
    ExpectOneAnswer("local function lengths(collects)\n"
                    "  local seed, out = 1, {}\n"
                    "  local function draw(n) seed = seed * 16807 % 2147483647 return seed % n end\n"
                    "  for round = 1, 100 do\n"
                    "    local t = {}\n"
                    "    for step = 1, 200 do\n"
                    "      local c, key = draw(6), 'key' .. draw(40)\n"
                    "      if c == 0 then t[key] = true elseif c == 1 then t[key] = nil\n"
                    "      else t[draw(24) + 1] = c > 2 or nil end\n"
                    "      if collects and step % 7 == 0 then collect() end\n"
                    "    end\n"
                    "    out[round] = #t\n"
                    "  end\n"
                    "  return table.concat(out, ' ')\n"
                    "end\n"
                    "local without, with = lengths(false), lengths(true)\n"
                    "assert(without == with, without .. ' but ' .. with)\n"
                    "print(with)");
}

TEST_F(Determinism, TextsAndErrorsShowNoAddress)
{
    ExpectOneAnswer(
        "local named = setmetatable({}, { __name = 'mine' })\n"
        "local function tell(f, ...) local ok, e = pcall(f, ...) print(ok, tostring(e)) end\n"
        "for _, v in ipairs{ {}, print, function() end, coroutine.create(print), named, io or {} } do\n"
        "  print(tostring(v), string.format('%s %10s', v, v))\n"
        "  tell(string.format, '%p', v) tell(string.format, '%d', v) tell(string.rep, v)\n"
        "  tell(function() return v .. 'x' end) tell(function() return v + 1 end)\n"
        "  tell(function() return #v end) tell(function() return v < v end)\n"
        "  tell(function() return v() end) tell(error, v) tell(math.sin, v) tell(ipairs) tell(next, {}, v)\n"
        "  tell(setmetatable, v, v) tell(table.concat, { v }) tell(load, v) tell(camera_create, v)\n"
        "  tell(function() error(v) end) tell(coroutine.resume, v) tell(select, v)\n"
        "end");
}
} // namespace
