#pragma once
// The host's registered built-ins as Lua functions.

#include "Runner/Lua/Signature.h"

#include <vector>

struct lua_State;

namespace Runner
{
// Makes each built-in of the registry a global function. Built-ins must not be registered after that.
void OpenBuiltins(lua_State* L);

std::vector<Signature> BuiltinSignatures(); // of the module's built-ins, in the order of its table
} // namespace Runner
