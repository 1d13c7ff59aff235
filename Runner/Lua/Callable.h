#pragma once
// A Lua function as an object of the collector, so that a camera can hold it.
//
// The object holds the function; the table that finds the object of a function holds neither. While the object lives,
// the same function gives the same object.

#include "Files/Object/Object_Base.h"

struct lua_State;

namespace Runner
{
class ScriptEngine;

class ScriptFunction : public KvObjectBase
{
public:
    ~ScriptFunction() override;
    ScriptFunction(const ScriptFunction&) = delete;
    ScriptFunction& operator=(const ScriptFunction&) = delete;

    // The object of the function at index; null when memory is refused. The collector owns it, and no root leads to it
    // by this.
    static ScriptFunction* Of(lua_State* L, int index);
    static ScriptFunction* From(KvObjectBase* object); // null when it is something else

    void Push(lua_State* L) const; // the function; nil when its Lua state is gone
    int Reference() const { return m_reference; }

private:
    explicit ScriptFunction(int reference);

    const int m_reference;
};
} // namespace Runner
