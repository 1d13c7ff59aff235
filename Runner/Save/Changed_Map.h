#pragma once
// The cells of the running room's map that scripts have changed: only these are saved, the map's file has the others.

#include "Runner/Save/Saved_State.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

SavedMap CaptureMap(const Game& game);

// The running room's map as its file says, but for the saved cells. These must fit (MapFits).
void RestoreMap(Game& game, const SavedMap& saved);

// Whether the map of the saved room has every saved cell and tile. A room without a map has none.
bool MapFits(const Game& game, const SavedState& state);

// Turns the saved cells into ones of this game's map: layers and tilesets are found by their names. The room has been
// found. left: a line for what the map no longer has.
void FindMapCells(const Game& game, SavedState& state, std::vector<std::string>& left);
} // namespace Runner
