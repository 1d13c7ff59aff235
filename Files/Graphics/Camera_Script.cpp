// Storing callbacks.
#include "Files/Graphics/Camera.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_GCProxy.h"
#include "Files/Javascript/Callable.h"
#include "Files/Object/Object_Base.h"

#include <new>

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

} // namespace

void ValidateValidScriptValue(RValue* value, const char* name)
{
    if (!CanBeScript(*value))
        KvError("%s :: invalid script reference", name);
}

void CCamera::SetScript(RValue& field, RValue* script, const char* builtin)
{
    ValidateValidScriptValue(script, builtin);
    if (KvKind(*script) == VALUE_OBJECT && pGCProxy == nullptr)
    {
        pGCProxy = new (std::nothrow) Camera_GCProxy(this);
        if (pGCProxy == nullptr)
            return KvError("%s :: out of memory, the callback was not changed", builtin);
    }
    PushContextStack(
        pGCProxy); // the proxy is who refers to the new value; null tells that nobody of the collector does
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
