// Callbacks: their check, their storing, their running.
#include "Files/Graphics/Camera.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_GCProxy.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Values.h"
#include "Files/Javascript/Callable.h"
#include "Files/Object/Object_Base.h"
#include "Files/Run/Run_Globals.h"
#include "Files/Script/Script.h"

#include <new>

using namespace CameraModule;

namespace
{

bool CanBeScript(const RValue& value)
{
    switch (KvKind(value))
    {
    case VALUE_REAL:
    case VALUE_INT32:
    case VALUE_INT64:
    case VALUE_BOOL: return true;
    case VALUE_OBJECT: return value.pObj != nullptr && JS_IsCallable_Object(value.pObj);
    default: return false;
    }
}

// False: the index is "no script". Between rooms there is no instance to run a script in: nothing runs then, but the
// answer is true all the same, so that the camera does not follow a target either.
bool PerformScript(int index, RValue& result)
{
    if (index == NO_SCRIPT_INDEX)
        return false;
    CInstance* const instance = g_fIsJSProject ? g_pGlobal : g_CM.m_pScriptInstance;
    if (g_fIsJSProject || instance != nullptr)
        Script_Perform(index, instance, instance, 0, &result, nullptr);
    return true;
}

// Takes the callback by value: the running script may replace the field that holds it.
bool RunCallback(RValue callback)
{
    RValue result = EmptyValue(VALUE_UNSET);
    bool ran = true;
    if (KvKind(callback) == VALUE_OBJECT)
        Call_RValue(g_CM.m_pScriptInstance, &result, &callback, 0, nullptr);
    else
        ran = PerformScript(KvGetInt32(&callback, 0), result);
    ReleaseValue(result);
    return ran;
}

// Current_Object names the camera while its callback runs, and afterwards who ran before.
bool RunCallbackOf(int camera, const RValue& callback)
{
    const int caller = Current_Object;
    Current_Object = camera;
    const bool ran = RunCallback(callback);
    Current_Object = caller;
    return ran;
}

} // namespace

// ---- storing ----

void ValidateValidScriptValue(RValue* value, const char* name)
{
    if (!CanBeScript(*value))
        KvError("%s :: invalid script reference", name);
}

// The proxy stands on the context stack while the value is stored, because the collector takes the top of the stack for
// the owner of the new reference. Without a proxy it is null: no object of the collector owns the reference.
void CCamera::SetScript(RValue& field, RValue* script, const char* builtin)
{
    ValidateValidScriptValue(script, builtin);
    if (KvKind(*script) == VALUE_OBJECT && pGCProxy == nullptr)
    {
        pGCProxy = new (std::nothrow) Camera_GCProxy(this);
        if (pGCProxy == nullptr)
            return KvError("%s :: out of memory, the callback was not changed", builtin);
    }
    PushContextStack(pGCProxy);
    KvAssign(field, *script);
    PopContextStack(1);
}

void CCamera::SetBeginScript(RValue* script) { SetScript(m_beginScript, script, "camera_set_begin_script"); }

void CCamera::SetEndScript(RValue* script) { SetScript(m_endScript, script, "camera_set_end_script"); }

void CCamera::SetUpdateScript(RValue* script) { SetScript(m_updateScript, script, "camera_set_update_script"); }

void CCamera::Mark4GC(uint32_t*, int)
{
    AddGCRefRValue(&m_beginScript);
    AddGCRefRValue(&m_endScript);
    AddGCRefRValue(&m_updateScript);
}

// ---- running ----

bool CCamera::ExecuteScript(RValue* script)
{
    return script != nullptr && !IsNoScript(*script) && RunCallbackOf(m_ID, *script);
}

void CCamera::Begin() { ExecuteScript(&m_beginScript); }

void CCamera::End() { ExecuteScript(&m_endScript); }
