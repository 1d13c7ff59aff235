#include "Runner/World/Map_Model.h"

#include <algorithm>

namespace Runner
{
const MapProperty* FindProperty(const MapProperties& properties, const std::string& name)
{
    const auto less = [](const MapProperty& property, const std::string& wanted) { return property.name < wanted; };
    const auto found = std::lower_bound(properties.begin(), properties.end(), name, less);
    return found == properties.end() || found->name != name ? nullptr : &*found;
}

const MapTile* MapTileset::FindTile(int id) const
{
    const auto less = [](const MapTile& tile, int wanted) { return tile.id < wanted; };
    const auto found = std::lower_bound(tiles.begin(), tiles.end(), id, less);
    return found == tiles.end() || found->id != id ? nullptr : &*found;
}

bool MapTileset::HasTile(int id) const { return IsCollection() ? FindTile(id) != nullptr : id >= 0 && id < tileCount; }

const MapTileset* MapModel::TilesetOf(MapCell cell) const
{
    const MapCell number = cell & MAP_CELL_NUMBER;
    const auto after = [](MapCell wanted, const MapTileset& tileset) { return wanted < tileset.firstNumber; };
    const auto found = std::upper_bound(tilesets.begin(), tilesets.end(), number, after);
    if (number == 0 || found == tilesets.begin())
        return nullptr;
    const MapTileset& tileset = *std::prev(found);
    return tileset.HasTile(static_cast<int>(number - tileset.firstNumber)) ? &tileset : nullptr;
}
} // namespace Runner
