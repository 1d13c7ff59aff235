#pragma once
// A Lua function as an object of the collector, so that a camera can hold it.
//
// The object keeps its function alive. A table leads from a function to its object with weak references, so it keeps
// neither alive. As long as the object lives, Of answers the same object for the same function.

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

    // The object of the function at index; null when memory is refused. The collector owns the object. It is no root:
    // whoever stores it must make it reachable.
    static ScriptFunction* Of(lua_State* L, int index);
    static ScriptFunction* From(KvObjectBase* object); // null when the object is no script function

    void Push(lua_State* L) const; // pushes the function, or nil when its Lua state is closed
    int Reference() const { return m_reference; }

private:
    explicit ScriptFunction(int reference);

    const int m_reference;
};
} // namespace Runner
