#pragma once
// Tile maps of a saved state as those of another version of the game.

#include "Runner/Save/Name_Matches.h"
#include "Runner/Save/Saved_State.h"

namespace Runner
{
class Painter;

// The tile maps by number as they are now, tiles and all.
void CaptureTileMaps(const Painter& painter, std::vector<SavedTileMap>& saved);

// Replaces the state's tile maps by those of this game. A map takes the saved tiles of the map of the same sprite and
// size, the first of several those of the first; without one it stays as it is. left: a line for each that is left out.
void FindTileMaps(const Painter& painter, const NameMatches& sprites, SavedState& state,
                  std::vector<std::string>& left);
} // namespace Runner
