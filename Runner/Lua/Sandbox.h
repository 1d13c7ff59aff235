#pragma once
// The sandbox: Lua's standard library without what reaches files, the clock, addresses or bytecode, and without what
// differs between two runs of the same game.

struct lua_State;

namespace Runner
{
class Random;

void OpenSandbox(lua_State* L, Random& random);

// ---- parts ----
void OpenOrderedPairs(lua_State* L);                // pairs, next (Sandbox_Pairs.cpp)
void OpenSafeText(lua_State* L);                    // tostring, print, string.format (Sandbox_Text.cpp)
void OpenSafeNumbers(lua_State* L, Random& random); // math: functions computed in floats, seeded random numbers
} // namespace Runner
