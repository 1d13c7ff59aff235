#include "Runner/Save/Tile_Counterparts.h"

#include "Runner/Draw/Painter.h"

#include <algorithm>

namespace Runner
{
namespace
{
void CaptureTiles(const Painter& painter, SavedTileMap& saved)
{
    saved.tiles.reserve(static_cast<size_t>(saved.columns) * static_cast<size_t>(saved.rows));
    for (int row = 0; row < saved.rows; ++row)
        for (int column = 0; column < saved.columns; ++column)
            saved.tiles.push_back(painter.GetTile(saved.number, column, row));
}

bool IsAlike(const SavedTileMap& map, const SavedTileMap& other)
{
    return map.sprite == other.sprite && map.columns == other.columns && map.rows == other.rows &&
           map.tiles.size() == other.tiles.size();
}

// The n-th map that is like that one; null when there are fewer.
SavedTileMap* FindAlike(std::vector<SavedTileMap>& maps, const SavedTileMap& like, std::ptrdiff_t n)
{
    for (SavedTileMap& map : maps)
        if (IsAlike(map, like) && n-- == 0)
            return &map;
    return nullptr;
}

// Tiles that the sprite no longer has become empty. Answers how many.
size_t DropTiles(std::vector<int32_t>& tiles, int frames)
{
    size_t dropped = 0;
    for (int32_t& tile : tiles)
        if (tile < -1 || tile >= frames)
        {
            tile = -1;
            ++dropped;
        }
    return dropped;
}
} // namespace

void CaptureTileMaps(const Painter& painter, std::vector<SavedTileMap>& saved)
{
    TileMapInfo info;
    for (int number = 0; number < painter.TileMapNumbers(); ++number)
    {
        if (!painter.FindTileMap(number, info))
            continue;
        saved.push_back({number, info.sprite, info.columns, info.rows, info.tileWidth, info.tileHeight, {}});
        CaptureTiles(painter, saved.back());
    }
}

void FindTileMaps(const Painter& painter, const NameMatches& sprites, SavedState& state, std::vector<std::string>& left)
{
    std::vector<SavedTileMap> maps, saved = std::move(state.tileMaps);
    CaptureTileMaps(painter, maps);
    for (SavedTileMap& map : saved)
        map.sprite = sprites.Find(map.sprite);
    for (size_t i = 0; i < saved.size(); ++i)
    {
        const auto last = saved.begin() + static_cast<std::ptrdiff_t>(i);
        const auto before =
            std::count_if(saved.begin(), last, [&last](const auto& map) { return IsAlike(map, *last); });
        SavedTileMap* const map = FindAlike(maps, saved[i], before);
        const std::string name = "tile map " + std::to_string(saved[i].number);
        if (map == nullptr)
        {
            left.push_back(name + ": the game has none of its sprite and size now");
            continue;
        }
        map->tiles = saved[i].tiles;
        const SpriteInfo* const sprite = painter.FindSprite(map->sprite);
        if (const size_t dropped = DropTiles(map->tiles, sprite == nullptr ? 0 : sprite->frames))
            left.push_back(std::to_string(dropped) + " tiles of " + name + ": its sprite has fewer frames now");
    }
    state.tileMaps = std::move(maps);
}
} // namespace Runner
