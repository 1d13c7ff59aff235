#pragma once
// The host's registered built-ins as Lua functions.

struct lua_State;

namespace Runner
{
// Makes each built-in of the registry a global function. Built-ins must not be registered after that.
void OpenBuiltins(lua_State* L);
} // namespace Runner
