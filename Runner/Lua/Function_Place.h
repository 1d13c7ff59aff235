#pragma once
// Where the function behind a callback stands in the scripts.

#include "Files/LLVM/RValue.h"

#include <string>

namespace Runner
{
// "shake.lua:92", the line at which the function begins, for a Lua function and for a script's number that has one;
// "a C function" for another; empty for everything else. Runs no script, and leaves Lua as it is.
std::string PlaceOf(const RValue& callback);

// The Lua reference of the function (ScriptEngine::Keep), negative for none.
int CallbackReference(const RValue& callback);
} // namespace Runner
