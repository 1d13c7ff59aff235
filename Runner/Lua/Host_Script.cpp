// Files/Script and Files/Javascript: how the module runs what scripts gave it.

#include "Files/Javascript/Callable.h"
#include "Files/Run/Run_Globals.h"
#include "Files/Script/Script.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Value.h"
#include "Runner/Lua/Callable.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Values.h"

#include <lua.hpp>

namespace
{
using Runner::ScriptEngine;

struct ScriptCall
{
    int reference; // to the function, kept by the engine
    const RValue* args;
    int argc;
    RValue* result;
};

// The script has returned, so its file and line are no longer known: the camera tells where to look.
RValue ResultToHost(lua_State* L)
{
    try
    {
        return Runner::ToHost(L, -1);
    }
    catch (const Runner::ScriptError& error)
    {
        throw Runner::ScriptError("a callback of camera " + std::to_string(Current_Object) + " cannot return " +
                                  error.what());
    }
}

void PerformCall(lua_State* L, void* context)
{
    const auto& call = *static_cast<const ScriptCall*>(context);
    luaL_checkstack(L, call.argc + 4, nullptr);
    ScriptEngine::Push(L, call.reference);
    for (int i = 0; i < call.argc; ++i)
        Runner::PushFromHost(L, call.args[i]);
    lua_call(L, call.argc, 1);
    if (call.result != nullptr)
        *call.result = ResultToHost(L);
}

// Callbacks are run by the module in the middle of its work, so errors wait in the engine until it is back.
void Perform(const ScriptCall& call)
{
    ScriptEngine* engine = ScriptEngine::Current();
    if (engine != nullptr && engine->IsOpen())
        engine->Protect(PerformCall, const_cast<ScriptCall*>(&call), call.reference);
}
} // namespace

// Arguments in a host array never occur: nothing in this runner makes one.
// A callback that is no number was reported and counts as 0; script 0 is not what its camera asked for.
bool Script_Perform(int index, CInstance*, CInstance*, int, RValue* result, DynamicArrayOfRValue*)
{
    ScriptEngine* engine = ScriptEngine::Current();
    if (Runner::HasError() || engine == nullptr || engine->Failed())
        return false;
    const int reference = engine->numbered.Find(index);
    if (reference < 0)
    {
        engine->missing.Tell(Current_Object, index);
        return false;
    }
    Perform({reference, nullptr, 0, result});
    return true;
}

bool JS_IsCallable_Object(KvObjectBase* object) { return Runner::ScriptFunction::From(object) != nullptr; }

// The callable may lose its last holder during the call.
void Call_RValue(KvObjectBase*, RValue* result, RValue* callable, int argc, RValue* args)
{
    const bool isObject = callable != nullptr && KvKind(*callable) == VALUE_OBJECT;
    const auto* function = isObject ? Runner::ScriptFunction::From(callable->pObj) : nullptr;
    if (function == nullptr)
        return;
    const RValue held = *callable;
    Runner::Collector::PushTemporaryRoots(&held, 1);
    Perform({function->Reference(), args, argc, result});
    Runner::Collector::PopTemporaryRoots();
}
