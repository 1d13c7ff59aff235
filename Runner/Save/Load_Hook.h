#pragma once
// on_load(from_version, data): a game's own function that turns what an older version of it has saved into what this
// version expects. It works on tables made of the saved state; the running game is not touched.

#include "Runner/Save/Saved_State.h"

#include <string>

namespace Runner
{
class Game;

bool HasLoadHook(Game& game); // whether the game has a global function on_load

// Calls it with the state's vars, instances and room, and takes over what it leaves there. False, and why in a few
// words, when it fails or leaves what no save can hold; the state is of no use then.
bool RunLoadHook(Game& game, SavedState& state, std::string& why);
} // namespace Runner
