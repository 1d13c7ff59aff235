#include "Runner/Lua/Function_Place.h"

#include "Runner/Lua/Callable.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/World/Camera_Callbacks.h"

#include <lua.hpp>

namespace Runner
{
int CallbackReference(const RValue& callback)
{
    const ScriptEngine* const engine = ScriptEngine::Current();
    if (engine == nullptr || !engine->IsOpen())
        return -1;
    if (KvKind(callback) == VALUE_OBJECT)
    {
        const ScriptFunction* function = ScriptFunction::From(callback.pObj);
        return function == nullptr ? -1 : function->Reference();
    }
    int number = -1;
    return ScriptNumberOf(callback, number) ? engine->numbered.Find(number) : -1;
}

std::string PlaceOf(const RValue& callback)
{
    const int reference = CallbackReference(callback);
    lua_State* L = reference < 0 ? nullptr : ScriptEngine::Current()->Running();
    if (L == nullptr || lua_checkstack(L, 2) == 0)
        return "";
    ScriptEngine::Push(L, reference);
    if (!lua_isfunction(L, -1))
    {
        lua_pop(L, 1);
        return "";
    }
    lua_Debug about;
    lua_getinfo(L, ">S", &about);
    return about.linedefined < 0 ? "a C function"
                                 : std::string(about.short_src) + ":" + std::to_string(about.linedefined);
}
} // namespace Runner
