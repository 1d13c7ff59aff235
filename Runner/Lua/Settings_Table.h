#pragma once
// The global table `settings`, which scripts read and write like any other.

#include "Runner/Base/Settings.h"

struct lua_State;

namespace Runner
{
class ScriptEngine;

void OpenSettings(lua_State* L, const Settings& settings); // makes the table. Inside ScriptEngine::Protect

// What the table holds now. False, and the engine has failed with one line, when it holds what cannot be kept.
bool TakeSettings(ScriptEngine& engine, Settings& settings);
} // namespace Runner
