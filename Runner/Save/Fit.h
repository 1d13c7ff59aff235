#pragma once
// Whether a game can go on with a saved state.

#include "Runner/Save/Saved_State.h"

#include <string>

namespace Runner
{
class Game;

// Why something that another run has left is not of this game, in a few words; empty when it is.
std::string DifferenceOf(const GameIdentity& here, const GameIdentity& saved);

// Makes a state that was read from a file one that this game can go on from: true then. One that another version of
// the game has made goes through the game's on_load, and what it names is found again by name (Counterparts.h); the
// console says so, with a line for each kind of thing that is left out. Otherwise false, and why in one line; the state
// is of no use then. path is for the messages. The game itself does not change.
bool FitToGame(Game& game, SavedState& state, const std::string& path, std::string& why);
} // namespace Runner
