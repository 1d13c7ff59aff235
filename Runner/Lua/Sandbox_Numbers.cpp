// math, reproducible on every machine: functions such as sin are computed in floats. The C library's doubles differ in
// the last bit between machines, its floats do not; and what a game computes ends in matrices and saved states.

#include "Runner/Base/Random.h"
#include "Runner/Host/Convert.h"
#include "Runner/Lua/Sandbox.h"

#include <lua.hpp>

#include <climits>
#include <cmath>

namespace Runner
{
namespace
{
template <float (*function)(float)> int ByFloat(lua_State* L)
{
    lua_pushnumber(L, static_cast<double>(function(NearestFloat(luaL_checknumber(L, 1)))));
    return 1;
}

int ArcTangent(lua_State* L)
{
    const float y = NearestFloat(luaL_checknumber(L, 1));
    const float x = NearestFloat(luaL_optnumber(L, 2, 1.0));
    lua_pushnumber(L, static_cast<double>(atan2f(y, x)));
    return 1;
}

int Logarithm(lua_State* L)
{
    const float natural = logf(NearestFloat(luaL_checknumber(L, 1)));
    const bool hasBase = !lua_isnoneornil(L, 2);
    const float base = hasBase ? logf(NearestFloat(luaL_checknumber(L, 2))) : 1.0f;
    lua_pushnumber(L, static_cast<double>(natural / base));
    return 1;
}

Random& Generator(lua_State* L) { return *static_cast<Random*>(lua_touserdata(L, lua_upvalueindex(1))); }

// math.random as in Lua: a number in [0, 1), or a whole number in 1..n, or in m..n.
int RandomNumber(lua_State* L)
{
    const int count = lua_gettop(L);
    if (count == 0)
    {
        lua_pushnumber(L, Generator(L).Next01());
        return 1;
    }
    const lua_Integer low = count == 1 ? 1 : luaL_checkinteger(L, 1);
    const lua_Integer high = luaL_checkinteger(L, count == 1 ? 1 : 2);
    luaL_argcheck(L, low <= high, count == 1 ? 1 : 2, "interval is empty");
    luaL_argcheck(L, low >= INT_MIN && high <= INT_MAX, count == 1 ? 1 : 2, "interval too large");
    lua_pushinteger(L, Generator(L).Range(static_cast<int32_t>(low), static_cast<int32_t>(high)));
    return 1;
}

int RandomSeed(lua_State* L)
{
    Generator(L).Seed(static_cast<uint64_t>(luaL_checkinteger(L, 1)));
    return 0;
}

constexpr luaL_Reg BY_FLOAT[] = {
    {"sin", ByFloat<sinf>},   {"cos", ByFloat<cosf>},   {"tan", ByFloat<tanf>},
    {"asin", ByFloat<asinf>}, {"acos", ByFloat<acosf>}, {"exp", ByFloat<expf>},
    {"atan", ArcTangent},     {"log", Logarithm},       {nullptr, nullptr},
};

constexpr luaL_Reg SEEDED[] = {{"random", RandomNumber}, {"randomseed", RandomSeed}, {nullptr, nullptr}};
} // namespace

void OpenSafeNumbers(lua_State* L, Random& random)
{
    lua_getglobal(L, "math");
    luaL_setfuncs(L, BY_FLOAT, 0);
    lua_pushlightuserdata(L, &random);
    luaL_setfuncs(L, SEEDED, 1);
    lua_pop(L, 1);
}
} // namespace Runner
