#include "Runner/Lua/Callable.h"

#include "Runner/Host/Collector.h"
#include "Runner/Lua/Script_Engine.h"

#include <lua.hpp>

namespace Runner
{
namespace
{
// The registry's key of the table: function -> its object, while that lives. An address, because a text may have to be
// made, which takes memory.
constexpr char OBJECTS = 0;

void PushObjectTable(lua_State* L)
{
    if (lua_rawgetp(L, LUA_REGISTRYINDEX, &OBJECTS) == LUA_TTABLE)
        return;
    lua_pop(L, 1);
    lua_newtable(L);
    lua_pushvalue(L, -1);
    lua_rawsetp(L, LUA_REGISTRYINDEX, &OBJECTS);
}

// Nothing here takes memory: a destructor cannot report that there is none.
void RemoveFromObjectTable(lua_State* L, const ScriptFunction& function)
{
    if (lua_checkstack(L, 4) == 0)
        return;
    const int top = lua_gettop(L);
    if (lua_rawgetp(L, LUA_REGISTRYINDEX, &OBJECTS) == LUA_TTABLE)
    {
        function.Push(L);
        lua_pushvalue(L, -1);
        if (lua_rawget(L, -3) != LUA_TNIL) // an entry that is missing would be made
        {
            lua_pop(L, 1);
            lua_pushnil(L);
            lua_rawset(L, -3);
        }
    }
    lua_settop(L, top);
}
} // namespace

ScriptFunction::ScriptFunction(int reference) : KvObjectBase(0, OBJECT_VARIABLE_MASK), m_reference(reference)
{
    m_kind = OBJECT_KIND_SCRIPT_FUNCTION;
}

// Remove the entry with the object: a later look-up would answer a dead object.
ScriptFunction::~ScriptFunction()
{
    ScriptEngine* engine = ScriptEngine::Current();
    if (engine == nullptr || !engine->IsOpen())
        return;
    RemoveFromObjectTable(engine->Running(), *this);
    engine->Drop(m_reference);
}

ScriptFunction* ScriptFunction::Of(lua_State* L, int index)
{
    index = lua_absindex(L, index);
    PushObjectTable(L);
    lua_pushvalue(L, index);
    if (lua_rawget(L, -2) == LUA_TLIGHTUSERDATA)
    {
        auto* known = static_cast<ScriptFunction*>(lua_touserdata(L, -1));
        lua_pop(L, 2);
        ScriptEngine::Current()->NoteGiver(L, index, known->m_reference);
        return known;
    }
    lua_pop(L, 1);
    auto* made = new ScriptFunction(ScriptEngine::Current()->Keep(L, index));
    if (!Collector::Place(made))
    {
        lua_pop(L, 1);
        delete made;
        return nullptr;
    }
    lua_pushvalue(L, index);
    lua_pushlightuserdata(L, made);
    lua_rawset(L, -3);
    lua_pop(L, 1);
    return made;
}

ScriptFunction* ScriptFunction::From(KvObjectBase* object)
{
    const bool isFunction = object != nullptr && object->m_kind == OBJECT_KIND_SCRIPT_FUNCTION;
    return isFunction ? static_cast<ScriptFunction*>(object) : nullptr;
}

void ScriptFunction::Push(lua_State* L) const { ScriptEngine::Push(L, m_reference); }
} // namespace Runner
