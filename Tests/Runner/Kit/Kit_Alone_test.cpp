// The camera kit needs nothing of the Runner: here it runs in plain Lua, on stand-ins of its host.

#include <gtest/gtest.h>

#include <lua.hpp>

#include <cmath>
#include <memory>
#include <string>

namespace
{
template <double (*FUNCTION)(double)> int Inexact(lua_State* L)
{
    lua_pushnumber(L, FUNCTION(luaL_checknumber(L, 1)));
    return 1;
}

// Our Lua leaves these to its host, so that they have the same bits everywhere.
void OpenInexact(lua_State* L)
{
    constexpr luaL_Reg functions[] = {{"sin", Inexact<std::sin>}, {"cos", Inexact<std::cos>}, {nullptr, nullptr}};
    lua_getglobal(L, LUA_MATHLIBNAME);
    luaL_setfuncs(L, functions, 0);
    lua_pop(L, 1);
}

void OpenLibraries(lua_State* L)
{
    constexpr luaL_Reg libraries[] = {{LUA_GNAME, luaopen_base},
                                      {LUA_TABLIBNAME, luaopen_table},
                                      {LUA_STRLIBNAME, luaopen_string},
                                      {LUA_MATHLIBNAME, luaopen_math}};
    for (const luaL_Reg& library : libraries)
    {
        luaL_requiref(L, library.name, library.func, 1);
        lua_pop(L, 1);
    }
    OpenInexact(L);
}

TEST(KitAlone, RunsInPlainLuaOnStandIns)
{
    const std::unique_ptr<lua_State, void (*)(lua_State*)> state(luaL_newstate(), lua_close);
    lua_State* L = state.get();
    ASSERT_NE(L, nullptr);
    OpenLibraries(L);
    lua_pushliteral(L, SOURCE_DIR "/kit");
    lua_setglobal(L, "KIT");
    EXPECT_EQ(luaL_dofile(L, TESTS_DIR "/Kit/support/alone.lua"), LUA_OK) << lua_tostring(L, -1);
}
} // namespace
