#pragma once
// Whether a game can go on with a saved state.

#include "Runner/Save/Saved_State.h"

#include <string>

namespace Runner
{
class Game;

// Why something that another run has left is not of this game, in a few words; empty when it is.
std::string DifferenceOf(const GameIdentity& here, const GameIdentity& saved);

// True when the state is of this game, which has started a room, and everything that it names exists. path is for the
// message. Otherwise false, and why in one line. Changes nothing.
bool FitsGame(const Game& game, const SavedState& state, const std::string& path, std::string& why);
} // namespace Runner
