// Implements Files/Script and Files/Javascript: the module runs callbacks through these.

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
    int reference; // to the function (ScriptEngine::Keep)
    const RValue* args;
    int argc;
    RValue* result;
};

// The error names the camera: the script has returned, so its file and line are no longer known.
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

// An error becomes the engine's failure: the module is in the middle of its work and must not be unwound.
void Perform(const ScriptCall& call)
{
    ScriptEngine* engine = ScriptEngine::Current();
    if (engine != nullptr && engine->IsOpen())
        engine->Protect(PerformCall, const_cast<ScriptCall*>(&call), call.reference);
}
} // namespace

// The last parameter, arguments in a host array, is always null: nothing in this runner makes one.
// Do nothing while an error waits: a callback that is no number was reported and converted to 0, but its camera did not
// ask for script 0.
bool Script_Perform(int index, CInstance*, CInstance*, int, RValue* result, DynamicArrayOfRValue*)
{
    ScriptEngine* engine = ScriptEngine::Current();
    if (Runner::HasError() || engine == nullptr || engine->Failed())
        return false;
    const int reference = engine->numbered.Find(index);
    if (reference < 0)
    {
        engine->missing.Tell(engine->warnings, Current_Object, index);
        return false;
    }
    Perform({reference, nullptr, 0, result});
    return true;
}

bool JS_IsCallable_Object(KvObjectBase* object) { return Runner::ScriptFunction::From(object) != nullptr; }

// The callable is made a root: the call may drop the last reference to it.
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
