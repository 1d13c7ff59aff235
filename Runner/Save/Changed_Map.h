#pragma once
// What scripts have changed of the running room's map, its cells and which layers are shown: only this is saved, the
// map's file has the rest.

#include "Runner/Save/Saved_State.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

SavedMap CaptureMap(const Game& game);
std::vector<SavedShownLayer> CaptureShownLayers(const Game& game);

// The running room's map as its file says, but for the saved cells and layers. These must fit (MapFits).
void RestoreMap(Game& game, const SavedState& state);

// Whether the map of the saved room has every saved cell, tile and layer. A room without a map has none.
bool MapFits(const Game& game, const SavedState& state);

// Turns the saved cells and layers into ones of this game's map: layers and tilesets are found by their names. The room
// has been found. left: a line for what the map no longer has.
void FindMapCells(const Game& game, SavedState& state, std::vector<std::string>& left);
} // namespace Runner
