#pragma once
// What scripts can call besides the module's built-ins: Docs/Script_API.md.

#include "Runner/Lua/Signature.h"

#include <vector>

struct lua_State;

namespace Runner
{
class Game;

// Makes all of the Runner's functions global, with the tables vars and colours.
void OpenApi(lua_State* L, Game& game);

std::vector<Signature> ApiSignatures(); // of these functions, by subject
} // namespace Runner
