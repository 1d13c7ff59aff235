#include "Runner/Lua/Bridge.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Run/Run_Globals.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Value.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Values.h"
#include "Runner/World/Instance.h"

#include <lua.hpp>

#include <string_view>

namespace Runner
{
namespace
{
// What the bridge checks because the handlers do not.
struct ArrayRule
{
    std::string_view builtin;
    int argument; // must be an array
    const char* complaint;
};

constexpr char NO_ARRAY[] = "camera_set_view_mat() - array invalid (has it been created properly?)";
constexpr ArrayRule ARRAY_RULES[] = {
    {"camera_set_view_mat", 2, NO_ARRAY}, {"camera_set_proj_mat", 2, NO_ARRAY}, // the built-ins share their texts
};

bool CountsItsArguments(std::string_view builtin)
{
    return builtin.substr(0, 5) != "view_" && builtin != "camera_set_default";
}

void CheckArguments(const Builtin& builtin, lua_State* L, int count)
{
    if (!CountsItsArguments(builtin.name) && count != builtin.argc)
        throw ScriptError(builtin.name + "() - wrong number of arguments");
    for (const ArrayRule& rule : ARRAY_RULES)
        if (rule.builtin == builtin.name && count == builtin.argc && !lua_istable(L, rule.argument))
            throw ScriptError(rule.complaint);
}

// A result is released like an argument, whatever becomes of the call.
struct Result
{
    RValue value = MakeUndefined();
    Result() { Collector::PushTemporaryRoots(&value, 1); }
    ~Result()
    {
        Release(value);
        Collector::PopTemporaryRoots();
    }
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
};

CInstance* CallingInstance(const ScriptEngine& engine)
{
    if (engine.Self() != nullptr)
        return engine.Self();
    return g_CM.m_pScriptInstance != nullptr ? g_CM.m_pScriptInstance : g_pGlobal;
}

int CallBuiltin(lua_State* L)
{
    const auto& builtin = *static_cast<const Builtin*>(lua_touserdata(L, lua_upvalueindex(1)));
    ScriptEngine& engine = *ScriptEngine::Current();
    const ScriptEngine::RunningGuard guard(engine, L);
    const int count = lua_gettop(L);
    CheckArguments(builtin, L, count);
    luaL_checkstack(L, 8, nullptr);
    HostArguments arguments(L, builtin.name, count, builtin.argc);
    Result result;
    CInstance* self = CallingInstance(engine);
    builtin.handler(result.value, self, self, count, arguments.Values());
    if (HasError())
        throw ScriptError(TakeError());
    PushFromHost(L, result.value);
    Collector::Safepoint();
    return 1;
}

int BuiltinEntry(lua_State* L) { return RunForLua(L, CallBuiltin); }
} // namespace

void OpenBuiltins(lua_State* L)
{
    for (const Builtin& builtin : Builtins())
    {
        lua_pushlightuserdata(L, const_cast<Builtin*>(&builtin));
        lua_pushcclosure(L, BuiltinEntry, 1);
        lua_setglobal(L, builtin.name.c_str());
    }
}
} // namespace Runner
