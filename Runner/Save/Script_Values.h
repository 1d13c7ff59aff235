#pragma once
// The values that scripts have stored: the table vars and the variables of instances. Captured from Lua and restored.
//
// Kept: numbers (integers stay integers), strings, booleans, tables of these, and the self of an instance that still
// exists. Shared tables stay shared, and cycles stay cycles. Not kept: functions, coroutines, metatables, and entries
// under keys other than numbers, strings and booleans.

#include "Runner/Save/Saved_State.h"

struct lua_State;

namespace Runner
{
class World;

// Sets state.values, and `variables` of each instance in state.world, which must hold the world's instances in the same
// order. To be called inside ScriptEngine::Protect.
void CaptureValues(lua_State* L, const World& world, SavedState& state);

// Puts the captured values back. The table vars keeps its identity and gets new content. To be called inside
// ScriptEngine::Protect.
void RestoreValues(lua_State* L, const World& world, const SavedState& state);
} // namespace Runner
