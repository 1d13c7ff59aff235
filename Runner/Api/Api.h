#pragma once
// The Runner's functions for scripts, besides the module's built-ins. Docs/Script_API.md describes both.

#include "Runner/Lua/Signature.h"

#include <vector>

struct lua_State;

namespace Runner
{
class Game;

// Makes the Runner's functions and the tables vars and colours global.
void OpenApi(lua_State* L, Game& game);

std::vector<Signature> ApiSignatures(); // of the Runner's functions, by subject
} // namespace Runner
