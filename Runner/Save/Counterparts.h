#pragma once
// A saved state of one version of a game becomes one of another: what its numbers mean is found again by name.
//
// Objects by their name, sprites by their file, numbered scripts and cameras by the name that a script gave them,
// cameras of views by their view, tile maps by their sprite. In the same version of the game, whose code has changed,
// what has no name keeps its number. What has no counterpart is left out.

#include "Runner/Save/Saved_State.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

// What this game calls the things that saves hold by number, with its own version and count of automatic saves.
SavedNames NamesOf(const Game& game);

// Turns the state, which is consistent in itself and holds names, into one of this game. left: a line for each kind of
// thing that is left out. False, and why in a few words, when the saved room has no counterpart.
bool FindCounterparts(const Game& game, SavedState& state, std::vector<std::string>& left, std::string& why);
} // namespace Runner
