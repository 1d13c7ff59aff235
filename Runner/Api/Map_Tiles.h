#pragma once

#include "Runner/Api/Api_Functions.h"
#include "Runner/Draw/Layer_Grid.h"
#include "Runner/Game/Tile_Numbers.h"

#include <memory>

namespace Runner
{
constexpr uint32_t MAP_TILES_LIMIT = 1 << 21; // of all tilesets of a map

// Loads the pictures of a map's tilesets as sprites of the game. The answer has the looks by the index of TileNumbers.
// Throws ScriptError.
std::shared_ptr<const TileLooks> LoadTiles(const Arguments& call, const MapModel& map, const TileNumbers& numbers);

int LoadMapPicture(const Arguments& call, const MapPicture& picture); // a sprite of one frame. Throws ScriptError
} // namespace Runner
