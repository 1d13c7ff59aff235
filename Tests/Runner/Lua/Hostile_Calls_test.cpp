// Every function that a script could get hold of, called with what it does not expect: only Lua errors may result.

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"

#include <lua.hpp>

#include <set>
#include <vector>

namespace
{
using RunnerTest::GameTest;

// Values that stay in the Lua state for the test: at index i of a table in the registry.
class Kept
{
public:
    explicit Kept(lua_State* state) : L(state)
    {
        lua_newtable(L);
        m_table = luaL_ref(L, LUA_REGISTRYINDEX);
    }

    void Add(int index)
    {
        lua_pushvalue(L, index);
        lua_rawgeti(L, LUA_REGISTRYINDEX, m_table);
        lua_insert(L, -2);
        lua_rawseti(L, -2, ++m_size);
        lua_pop(L, 1);
    }

    void Push(int number) const
    {
        lua_rawgeti(L, LUA_REGISTRYINDEX, m_table);
        lua_rawgeti(L, -1, number);
        lua_remove(L, -2);
    }

    int Size() const { return m_size; }

private:
    lua_State* L;
    int m_table = 0;
    int m_size = 0;
};

// Collects functions: those that a value leads to through tables, metatables, upvalues and user values.
class Search
{
public:
    Search(lua_State* state, Kept& functions) : L(state), m_functions(functions) {}

    // Takes the value at the top.
    void Follow()
    {
        luaL_checkstack(L, 10, nullptr);
        const void* identity = lua_topointer(L, -1);
        const bool isNew = identity != nullptr && m_seen.insert({lua_type(L, -1), identity}).second;
        if (isNew && lua_type(L, -1) != LUA_TSTRING)
            FollowParts(lua_gettop(L));
        lua_pop(L, 1);
    }

private:
    void FollowParts(int value)
    {
        if (lua_getmetatable(L, value) != 0)
            Follow();
        switch (lua_type(L, value))
        {
        case LUA_TTABLE: FollowEntries(value); break;
        case LUA_TFUNCTION:
            m_functions.Add(value);
            for (int i = 1; lua_getupvalue(L, value, i) != nullptr; ++i)
                Follow();
            break;
        case LUA_TUSERDATA:
            for (int i = 1; lua_getiuservalue(L, value, i) != LUA_TNONE; ++i)
                Follow();
            lua_pop(L, 1);
            break;
        default: break;
        }
    }

    void FollowEntries(int table)
    {
        for (lua_pushnil(L); lua_next(L, table) != 0;)
        {
            Follow(); // the entry
            lua_pushvalue(L, -1);
            Follow(); // its key
        }
    }

    lua_State* L;
    Kept& m_functions;
    std::set<std::pair<int, const void*>> m_seen;
};

// Makes what no table of the state leads to: iterators, coroutines, selves of instances, one of which is gone.
constexpr char SEED[] = R"(
    ITERATOR = pairs{ 1, 2 } ARRAY_ITERATOR = ipairs{} CODES = utf8.codes('abc') MATCHES = string.gmatch('a b', '%a')
    WRAPPED = coroutine.wrap(function() while true do coroutine.yield() end end)
    ENDED = coroutine.wrap(function() end) ENDED()
    THREAD = coroutine.create(function() coroutine.yield() end)
    LOADED = load('return ...')
    local o = object_add{ bbox = { 0, 0, 1, 1 } }
    SELF = instance_get(instance_create(1, 2, o)) SELF.own = {}
    GONE = instance_get(instance_create(3, 4, o)) instance_destroy(GONE)
    SELF_PAIRS = pairs(SELF))";

class HostileCalls : public GameTest
{
protected:
    void Open()
    {
        ASSERT_EQ(Run(SEED, 2), "");
        L = game->scripts.Running();
        functions = std::make_unique<Kept>(L);
        values = std::make_unique<Kept>(L);
        Search search(L, *functions);
        lua_pushvalue(L, LUA_REGISTRYINDEX);
        search.Follow();
        lua_pushliteral(L, ""); // its metatable is in no table
        lua_getmetatable(L, -1);
        search.Follow();
        lua_pop(L, 1);
        AddValues();
    }

    void Add()
    {
        values->Add(-1);
        lua_pop(L, 1);
    }

    void AddValues()
    {
        for (const lua_Integer number : {0LL, 1LL, -1LL, 5LL, 0x7FFFFFFFLL})
            lua_pushinteger(L, number), Add();
        for (const double number : {0.5, 1e300, std::numeric_limits<double>::quiet_NaN()})
            lua_pushnumber(L, number), Add();
        lua_pushnil(L), Add();
        lua_pushboolean(L, 1), Add();
        lua_pushliteral(L, "text"), Add();
        lua_pushlstring(L, "\0%p\0", 4), Add();
        lua_newtable(L), Add();
        lua_newuserdatauv(L, 1, 0), Add(); // smaller than what any function keeps in one
        lua_pushlightuserdata(L, this), Add();
        lua_pushcfunction(L, luaopen_base), Add();
        for (const char* name : {"SELF", "GONE", "THREAD", "WRAPPED", "ITERATOR"})
            lua_getglobal(L, name), Add();
    }

    // Whether the call came back in one of Lua's own ways.
    bool Call(int function, const std::vector<int>& arguments)
    {
        const int top = lua_gettop(L);
        luaL_checkstack(L, static_cast<int>(arguments.size()) + 10, nullptr);
        functions->Push(function);
        for (const int argument : arguments)
            values->Push(argument);
        const int status = lua_pcall(L, static_cast<int>(arguments.size()), LUA_MULTRET, 0);
        lua_settop(L, top);
        return status == LUA_OK || status == LUA_ERRRUN || status == LUA_ERRMEM || status == LUA_ERRERR;
    }

    std::string NameOf(int function)
    {
        functions->Push(function);
        lua_Debug about;
        lua_getinfo(L, ">S", &about);
        return "function " + std::to_string(function) + " (" + about.what + " " + about.short_src + ")";
    }

    void ExpectNothingBroke()
    {
        game->scripts.TakeFailure();
        EXPECT_EQ(g_CM.Validate(), nullptr);
        std::string why;
        EXPECT_TRUE(game->world.Check(why)) << why;
    }

    lua_State* L = nullptr;
    std::unique_ptr<Kept> functions, values;
};

TEST_F(HostileCalls, TheSearchFindsTheLibrariesTheBuiltinsAndTheMetamethods)
{
    Open();
    EXPECT_GT(functions->Size(), 220); // 47 built-ins, 71 functions of the Runner, about 100 of Lua, 4 of selves
}

TEST_F(HostileCalls, WithoutArgumentsAreErrorsAtMost)
{
    Open();
    for (int function = 1; function <= functions->Size(); ++function)
        EXPECT_TRUE(Call(function, {})) << NameOf(function);
    ExpectNothingBroke();
}

TEST_F(HostileCalls, WithAnyValueInEveryPlaceAreErrorsAtMost)
{
    Open();
    for (int function = 1; function <= functions->Size(); ++function)
        for (int value = 1; value <= values->Size(); ++value)
            for (const size_t count : {1, 2, 3, 4, 9, 300})
                EXPECT_TRUE(Call(function, std::vector<int>(count, value)))
                    << NameOf(function) << ", value " << value << " x " << count;
    ExpectNothingBroke();
}

TEST_F(HostileCalls, WithAnyPairOfValuesAreErrorsAtMost)
{
    Open();
    for (int function = 1; function <= functions->Size(); ++function)
        for (int first = 1; first <= values->Size(); ++first)
            for (int second = 1; second <= values->Size(); ++second)
                EXPECT_TRUE(Call(function, {first, second}))
                    << NameOf(function) << ", values " << first << " and " << second;
    ExpectNothingBroke();
}

TEST_F(HostileCalls, TheIteratorOfPairsTakesTablesAlone)
{
    EXPECT_EQ(Run("local f = pairs({ 1 })\n"
                  "local ok, text = pcall(f, 5)\n"
                  "assert(not ok and text:find('table expected, got number', 1, true), text)\n"
                  "for _, v in ipairs{ 'text', true, print, coroutine.create(print) } do assert(not pcall(f, v)) end\n"
                  "assert(not pcall(f))"),
              "");
}

TEST_F(HostileCalls, ATableThatHoldsItselfTwiceAtEveryDepthIsRefusedAtOnce)
{
    EXPECT_EQ(Run("local t = {} for i = 1, 31 do t = { t, t } end\n"
                  "assert(not pcall(camera_set_view_mat, camera_create(), t))"),
              "");
}
} // namespace
