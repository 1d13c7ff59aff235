#include "Runner/Lua/Sandbox.h"

#include <lua.hpp>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

namespace Runner
{
namespace
{
constexpr luaL_Reg LIBRARIES[] = {
    {LUA_GNAME, luaopen_base},        {LUA_COLIBNAME, luaopen_coroutine}, {LUA_TABLIBNAME, luaopen_table},
    {LUA_STRLIBNAME, luaopen_string}, {LUA_MATHLIBNAME, luaopen_math},    {LUA_UTF8LIBNAME, luaopen_utf8},
};

constexpr const char* WITHHELD[] = {"dofile", "loadfile", "collectgarbage", "warn"};

// load, limited to text: Lua does not verify bytecode, which can crash it. Upvalue 1: Lua's load.
int LoadText(lua_State* L)
{
    const int count = lua_gettop(L);
    const bool hasEnvironment = count >= 4;
    lua_settop(L, 4);
    lua_pushliteral(L, "t");
    lua_replace(L, 3);
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_insert(L, 1);
    if (!hasEnvironment)
        lua_settop(L, 4);
    lua_call(L, lua_gettop(L) - 1, LUA_MULTRET);
    return lua_gettop(L);
}

// setmetatable, which refuses finalisers and weak tables: when they act would depend on when memory is collected. A
// __mode that is written into the metatable later has no effect. Upvalue 1: Lua's setmetatable.
int SetMetatable(lua_State* L)
{
    for (const char* name : {"__gc", "__mode"})
    {
        if (lua_type(L, 2) != LUA_TTABLE)
            break;
        lua_pushstring(L, name);
        if (lua_rawget(L, 2) != LUA_TNIL)
            return luaL_error(L, "setmetatable() - %s is not available to games", name);
        lua_pop(L, 1);
    }
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_insert(L, 1);
    lua_call(L, lua_gettop(L) - 1, 1);
    return 1;
}

void Wrap(lua_State* L, const char* name, lua_CFunction wrapper)
{
    lua_getglobal(L, name);
    lua_pushcclosure(L, wrapper, 1);
    lua_setglobal(L, name);
}

void RemoveFrom(lua_State* L, const char* library, const char* name)
{
    lua_getglobal(L, library);
    lua_pushnil(L);
    lua_setfield(L, -2, name);
    lua_pop(L, 1);
}

// Makes each C function of the table on top a closure, in the order of their names. A plain C function has nothing but
// an address to tell its place among the keys of a table; a closure has its place in the order of creation.
void NumberFunctions(lua_State* L)
{
    std::vector<std::string> names;
    for (lua_pushnil(L); lua_next(L, -2) != 0; lua_pop(L, 1))
        if (lua_type(L, -2) == LUA_TSTRING && lua_iscfunction(L, -1) != 0 && lua_serial(L, -1) == 0)
            names.emplace_back(lua_tostring(L, -2));
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
    {
        lua_getfield(L, -1, name.c_str());
        const lua_CFunction function = lua_tocfunction(L, -1);
        lua_pushnil(L);
        lua_pushcclosure(L, function, 1);
        lua_setfield(L, -3, name.c_str());
        lua_pop(L, 1);
    }
}

void NumberAllFunctions(lua_State* L)
{
    for (const luaL_Reg& library : LIBRARIES)
    {
        lua_getglobal(L, library.name);
        NumberFunctions(L);
        lua_pop(L, 1);
    }
    lua_pushliteral(L, "");
    lua_getmetatable(L, -1); // the operators of strings
    NumberFunctions(L);
    lua_pop(L, 2);
}
} // namespace

void OpenSandbox(lua_State* L, Random& random)
{
    for (const luaL_Reg& library : LIBRARIES)
    {
        luaL_requiref(L, library.name, library.func, 1);
        lua_pop(L, 1);
    }
    for (const char* name : WITHHELD)
    {
        lua_pushnil(L);
        lua_setglobal(L, name);
    }
    RemoveFrom(L, "string", "dump");
    Wrap(L, "load", LoadText);
    Wrap(L, "setmetatable", SetMetatable);
    OpenOrderedPairs(L);
    OpenSafeText(L);
    OpenSafeNumbers(L, random);
    NumberAllFunctions(L);
}
} // namespace Runner
