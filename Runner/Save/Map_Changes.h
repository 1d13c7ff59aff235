#pragma once

#include "Runner/Save/Saved_State.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

// What differs in the running room's map from its file, layer by layer.
std::vector<SavedMapLayer> CaptureMapChanges(const Game& game);

// Puts the cells of the running room's map back, which is as its file says otherwise. A layer is found by its number
// and name, or else by its name: other files may have made the save. The answer has a line for each layer of which
// something is left out.
std::vector<std::string> RestoreMapChanges(Game& game, const std::vector<SavedMapLayer>& saved);
} // namespace Runner
