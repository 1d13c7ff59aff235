// The mathematics of games. C libraries differ in the last bit of these functions, and what a game computes ends in
// matrices and saved states: so they are the module's and the Runner's own, from floats to a float.

#include "Files/Graphics/Trigonometry.h"
#include "Runner/Base/Mathematics.h"
#include "Runner/Base/Random.h"
#include "Runner/Host/Convert.h"
#include "Runner/Lua/Sandbox.h"

#include <lua.hpp>

#include <climits>

namespace Runner
{
namespace
{
float FloatAt(lua_State* L, int index) { return NearestFloat(luaL_checknumber(L, index)); }

int PushFloat(lua_State* L, float number)
{
    lua_pushnumber(L, static_cast<double>(number));
    return 1;
}

template <float (*function)(float)> int ByFloat(lua_State* L) { return PushFloat(L, function(FloatAt(L, 1))); }

int AngleOfPoint(lua_State* L)
{
    const float y = FloatAt(L, 1);
    return PushFloat(L, ArcTangent(y, NearestFloat(luaL_optnumber(L, 2, 1.0))));
}

// To another base: the quotient of two logarithms, rounded to float.
int LogarithmToBase(lua_State* L)
{
    const float natural = Logarithm(FloatAt(L, 1));
    return PushFloat(L, lua_isnoneornil(L, 2) ? natural : natural / Logarithm(FloatAt(L, 2)));
}

int PowerOfNumbers(lua_State* L)
{
    lua_pushnumber(L, Power(luaL_checknumber(L, 1), luaL_checknumber(L, 2)));
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

// From atan2 on: what Lua keeps for older scripts.
constexpr luaL_Reg INEXACT[] = {
    {"sin", ByFloat<GR_Sin>},
    {"cos", ByFloat<GR_Cos>},
    {"acos", ByFloat<GR_Acos>},
    {"tan", ByFloat<Tangent>},
    {"asin", ByFloat<ArcSine>},
    {"exp", ByFloat<Exponential>},
    {"atan", AngleOfPoint},
    {"log", LogarithmToBase},
    {"atan2", AngleOfPoint},
    {"log10", ByFloat<DecimalLogarithm>},
    {"sinh", ByFloat<HyperbolicSine>},
    {"cosh", ByFloat<HyperbolicCosine>},
    {"tanh", ByFloat<HyperbolicTangent>},
    {"pow", PowerOfNumbers},
    {nullptr, nullptr},
};

constexpr luaL_Reg SEEDED[] = {{"random", RandomNumber}, {"randomseed", RandomSeed}, {nullptr, nullptr}};
} // namespace

void OpenSafeNumbers(lua_State* L, Random& random)
{
    lua_getglobal(L, "math");
    luaL_setfuncs(L, INEXACT, 0);
    lua_pushlightuserdata(L, &random);
    luaL_setfuncs(L, SEEDED, 1);
    lua_pop(L, 1);
}
} // namespace Runner
