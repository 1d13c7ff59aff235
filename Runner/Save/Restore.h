#pragma once
// A saved state becomes the running game, which goes on as if it had never stopped. It is called between two frames.

#include "Runner/Save/Saved_State.h"

namespace Runner
{
class Game;

// Puts a state that fits (Fit.h) in place of the running room and all cameras, then runs the room's load event. False
// when that fails: the game has failed then. A surface or camera for which memory is refused is missing afterwards.
bool RestoreGame(Game& game, const SavedState& state);
} // namespace Runner
