#pragma once
// What scripts have stored, taken out of Lua and put back: the table vars and the variables of instances.
//
// Kept: numbers (whole ones stay whole), strings, booleans, tables of these, and the self of an instance that still
// exists. A table that is stored in two places is one table again afterwards, and a cycle a cycle. Not kept: functions,
// coroutines, metatables, and entries under keys other than numbers, strings and booleans.

#include "Runner/Save/Saved_State.h"

struct lua_State;

namespace Runner
{
class World;

// For use inside ScriptEngine::Protect. state.world holds the instances of the world, in the same order; their
// variables are set.
void CaptureValues(lua_State* L, const World& world, SavedState& state);

// Likewise. The table vars stays the same table, with new content.
void RestoreValues(lua_State* L, const World& world, const SavedState& state);
} // namespace Runner
