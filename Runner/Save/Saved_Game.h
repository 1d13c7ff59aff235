#pragma once
// Saving a running game, whole, and going on with it later as if it had never stopped.
//
// All of it happens between two frames (Game::Frame). A save that is refused has changed nothing.

#include "Runner/Save/Saved_State.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

// Writes the game into a file, which holds the old save or the new one, whatever happens. False, and why in one line.
// A callback that is neither a function nor a number is saved as no script; one line on the console tells which.
bool SaveGame(Game& game, const std::string& path, std::string& why);

// Reads a file, checks it, and changes nothing. False, and why in one line.
bool ReadSavedGame(const std::string& path, SavedState& state, std::string& why);

// Whether the game, which has started a room, can go on with the state: it is of this game, and all that it names is
// there. path: for the message. False, and why in one line.
bool FitsGame(const Game& game, const SavedState& state, const std::string& path, std::string& why);

// Puts a state that fits in place of the running room and all cameras, then runs the room's load event. False when that
// fails: the game has failed then. A surface or camera for which there is no memory is missing afterwards.
bool RestoreGame(Game& game, const SavedState& state);

constexpr size_t SAVE_SIZE_MAX = size_t{1} << 28;
} // namespace Runner
