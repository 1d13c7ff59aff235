#include "Runner/Lua/Sandbox.h"

#include <lua.hpp>

#include <initializer_list>

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

// setmetatable, which refuses finalisers and weak tables: when they act depends on when memory is collected. A __mode
// that is written into the metatable later is not seen here. Upvalue 1: Lua's setmetatable.
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
}
} // namespace Runner
