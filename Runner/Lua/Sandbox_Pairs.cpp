// pairs and next in a fixed order: numbers, strings, booleans, each ascending, instances by their numbers, other
// objects in the order in which they were made. Lua's own order depends on hashes and on the table's past.

#include "Runner/Lua/Sandbox.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Self.h"

#include <lua.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace Runner
{
namespace
{
constexpr size_t WORK_FOR_A_KEY = 30; // in instructions: told apart, sorted, and put into two tables

enum Rank
{
    RANK_NUMBER,
    RANK_TEXT,
    RANK_FLAG,
    RANK_INSTANCE, // by its number, which a save keeps
    RANK_OBJECT,
};

struct Key
{
    Rank rank = RANK_OBJECT;
    double number = 0.0;
    lua_Integer whole = 0;    // orders large integers that round to the same double, flags, instances and objects
    std::string_view text;    // points into Lua's string, which the table of keys keeps alive
    lua_Integer position = 0; // in the table of keys, from 1
};

void DescribeObject(lua_State* L, int index, Key& key)
{
    int instance = 0;
    if (SelfIdentifier(L, index, instance))
    {
        key.rank = RANK_INSTANCE;
        key.whole = instance;
    }
    else
        key.whole = static_cast<lua_Integer>(lua_serial(L, index));
}

Key DescribeKey(lua_State* L, int index, lua_Integer position)
{
    Key key;
    key.position = position;
    size_t size = 0;
    switch (lua_type(L, index))
    {
    case LUA_TNUMBER:
        key.rank = RANK_NUMBER;
        key.number = lua_tonumber(L, index);
        key.whole = lua_isinteger(L, index) != 0 ? lua_tointeger(L, index) : 0;
        break;
    case LUA_TSTRING:
        key.rank = RANK_TEXT;
        key.text = lua_tolstring(L, index, &size);
        key.text = std::string_view(key.text.data(), size);
        break;
    case LUA_TBOOLEAN:
        key.rank = RANK_FLAG;
        key.whole = lua_toboolean(L, index);
        break;
    default: DescribeObject(L, index, key); break;
    }
    return key;
}

bool ComesBefore(const Key& a, const Key& b)
{
    if (a.rank != b.rank)
        return a.rank < b.rank;
    if (a.number != b.number)
        return a.number < b.number;
    if (a.whole != b.whole)
        return a.whole < b.whole;
    if (a.text != b.text)
        return a.text < b.text;
    return a.position < b.position;
}

// Pushes a list of the table's keys in the fixed order.
void PushSortedKeys(lua_State* L, int table)
{
    lua_newtable(L);
    const int unsorted = lua_gettop(L);
    std::vector<Key> keys;
    for (lua_pushnil(L); lua_next(L, table) != 0; lua_pop(L, 1))
    {
        const auto position = static_cast<lua_Integer>(keys.size()) + 1;
        keys.push_back(DescribeKey(L, -2, position));
        lua_pushvalue(L, -2);
        lua_rawseti(L, unsorted, position);
    }
    luai_work(keys.size() * WORK_FOR_A_KEY);
    std::sort(keys.begin(), keys.end(), ComesBefore);
    lua_createtable(L, static_cast<int>(std::min<size_t>(keys.size(), 1 << 24)), 0);
    lua_Integer position = 0;
    for (const Key& key : keys)
    {
        lua_rawgeti(L, unsorted, key.position);
        lua_rawseti(L, -2, ++position);
    }
    lua_remove(L, unsorted);
}

// The iterator of pairs. Upvalue 1: the list of keys; upvalue 2: the position of the last one. Keys that were removed
// since are skipped.
int NextOfKeys(lua_State* L)
{
    luaL_checktype(L, 1, LUA_TTABLE); // a script can keep the iterator and hand it anything
    lua_Integer position = lua_tointeger(L, lua_upvalueindex(2));
    while (true)
    {
        if (lua_rawgeti(L, lua_upvalueindex(1), ++position) == LUA_TNIL)
            return 1;
        lua_pushvalue(L, -1);
        if (lua_rawget(L, 1) != LUA_TNIL)
            break;
        lua_pop(L, 2);
    }
    lua_pushinteger(L, position);
    lua_replace(L, lua_upvalueindex(2));
    return 2;
}

int PairsOf(lua_State* L)
{
    luaL_checkany(L, 1);
    if (luaL_getmetafield(L, 1, "__pairs") != LUA_TNIL)
    {
        lua_pushvalue(L, 1);
        lua_call(L, 1, 3);
        return 3;
    }
    luaL_checktype(L, 1, LUA_TTABLE);
    PushSortedKeys(L, 1);
    lua_pushinteger(L, 0);
    lua_pushcclosure(L, NextOfKeys, 2);
    lua_pushvalue(L, 1);
    lua_pushnil(L);
    return 3;
}

// next: the key after the given one. Each call sorts all keys again; pairs sorts once.
int NextOf(lua_State* L)
{
    luaL_checktype(L, 1, LUA_TTABLE);
    lua_settop(L, 2);
    PushSortedKeys(L, 1);
    lua_Integer position = 1;
    if (!lua_isnil(L, 2))
    {
        for (; lua_rawgeti(L, 3, position) != LUA_TNIL; ++position, lua_pop(L, 1))
            if (lua_rawequal(L, -1, 2) != 0)
                break;
        if (lua_isnil(L, -1))
            return luaL_error(L, "next() - the table has no such key");
        lua_pop(L, 1);
        ++position;
    }
    if (lua_rawgeti(L, 3, position) == LUA_TNIL)
        return 1;
    lua_pushvalue(L, -1);
    lua_rawget(L, 1);
    return 2;
}

int OrderedPairs(lua_State* L) { return RunForLua(L, PairsOf); }
int OrderedNext(lua_State* L) { return RunForLua(L, NextOf); }
} // namespace

void OpenOrderedPairs(lua_State* L)
{
    lua_register(L, "pairs", OrderedPairs);
    lua_register(L, "next", OrderedNext);
}
} // namespace Runner
