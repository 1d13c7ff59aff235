#pragma once
// The bridge makes the built-ins that were registered with Function_Add callable from Lua.

#include "Runner/Lua/Signature.h"

#include <vector>

struct lua_State;

namespace Runner
{
// Makes each registered built-in a global function. The functions point into the registry, so nothing may be registered
// afterwards.
void OpenBuiltins(lua_State* L);

std::vector<Signature> BuiltinSignatures(); // of the module's built-ins, in the order of its table
} // namespace Runner
