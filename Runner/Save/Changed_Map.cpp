#include "Runner/Save/Changed_Map.h"

#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"
#include "Runner/World/Map_Limits.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int32_t NO_TILESET = -1; // of an empty cell
constexpr int32_t NO_LAYER = -1;

const RoomMap* MapOf(const Game& game, int room)
{
    const RoomSpec* spec = game.rooms.Find(room);
    return spec == nullptr ? nullptr : game.FindMap(spec->map);
}

SavedMapCell SavedCell(const RoomMap& map, const ChangedCell& cell)
{
    const MapTileset* tileset = map.Model().TilesetOf(cell.cell);
    if (tileset == nullptr)
        return {cell.column, cell.row, NO_TILESET, 0};
    const auto index = static_cast<int32_t>(tileset - map.Model().tilesets.data());
    return {cell.column, cell.row, index, cell.cell - tileset->firstNumber};
}

// False when the map has no such place, or no such tile.
bool CellInMap(const Game& game, const RoomMap& map, int layer, const SavedMapCell& saved, ChangedCell& cell)
{
    const std::vector<MapTileset>& tilesets = map.Model().tilesets;
    cell = {layer, saved.column, saved.row, 0};
    if (saved.tileset < NO_TILESET || saved.tileset >= static_cast<int32_t>(tilesets.size()) ||
        !map.HasCell(*game.CurrentPainter(), layer, saved.column, saved.row))
        return false;
    if (saved.tileset == NO_TILESET)
        return saved.tile == 0;
    const MapTileset& tileset = tilesets[static_cast<size_t>(saved.tileset)];
    const MapCell id = saved.tile & MAP_CELL_NUMBER;
    cell.cell = (tileset.firstNumber + id) | (saved.tile & MAP_CELL_FLAGS);
    return id < static_cast<MapCell>(MapLimits::TILES) && tileset.HasTile(static_cast<int>(id)) &&
           (saved.tile & MAP_CELL_HEXAGONAL) == 0;
}

// The place of that name; where several have it, the same place as before is preferred.
template <typename Items> int32_t FindNamed(const Items& items, const std::string& name, int32_t before)
{
    const auto isNamed = [&name](const auto& item) { return item.name == name; };
    const auto count = static_cast<int32_t>(items.size());
    if (before >= 0 && before < count && isNamed(items[static_cast<size_t>(before)]))
        return before;
    const auto found = std::find_if(items.begin(), items.end(), isNamed);
    return found == items.end() ? -1 : static_cast<int32_t>(found - items.begin());
}

// Takes out the cells that have no counterpart, and answers how many those are.
size_t FindCells(const Game& game, const RoomMap& map, const std::vector<std::string>& names, SavedMapLayer& layer)
{
    const auto isGone = [&](SavedMapCell& cell)
    {
        ChangedCell ignored;
        const bool isNamed = cell.tileset >= 0 && cell.tileset < static_cast<int32_t>(names.size());
        if (isNamed)
            cell.tileset = FindNamed(map.Model().tilesets, names[static_cast<size_t>(cell.tileset)], cell.tileset);
        return (isNamed && cell.tileset == NO_TILESET) || !CellInMap(game, map, layer.number, cell, ignored);
    };
    const auto kept = std::remove_if(layer.cells.begin(), layer.cells.end(), isGone);
    const auto gone = static_cast<size_t>(layer.cells.end() - kept);
    layer.cells.erase(kept, layer.cells.end());
    return gone;
}

int32_t CounterpartOf(const RoomMap* map, const std::string& name, int32_t before)
{
    return map == nullptr ? NO_LAYER : FindNamed(map->Model().layers, name, before);
}

void FindShownLayers(const RoomMap* map, SavedState& state, std::vector<std::string>& left)
{
    const auto isGone = [&](SavedShownLayer& layer)
    {
        layer.number = CounterpartOf(map, layer.name, layer.number);
        if (layer.number == NO_LAYER)
            left.push_back("whether the map's layer \"" + Printable(layer.name) +
                           "\" is shown: it has no such layer now");
        return layer.number == NO_LAYER;
    };
    std::vector<SavedShownLayer>& layers = state.shownLayers;
    layers.erase(std::remove_if(layers.begin(), layers.end(), isGone), layers.end());
}
} // namespace

SavedMap CaptureMap(const Game& game)
{
    SavedMap saved;
    const RoomMap* map = game.RunningMap();
    if (map == nullptr)
        return saved;
    for (const ChangedCell& cell : map->Changes(*game.CurrentPainter())) // by layer
    {
        if (saved.layers.empty() || saved.layers.back().number != cell.layer)
            saved.layers.push_back({cell.layer, map->Model().layers[static_cast<size_t>(cell.layer)].name, {}});
        saved.layers.back().cells.push_back(SavedCell(*map, cell));
    }
    if (!saved.layers.empty())
        for (const MapTileset& tileset : map->Model().tilesets)
            saved.tilesets.push_back(tileset.name);
    return saved;
}

std::vector<SavedShownLayer> CaptureShownLayers(const Game& game)
{
    std::vector<SavedShownLayer> saved;
    if (const RoomMap* map = game.RunningMap())
        for (const ShownLayer& shown : map->ChangedLayers())
            saved.push_back({shown.layer, map->Model().layers[static_cast<size_t>(shown.layer)].name, shown.visible});
    return saved;
}

void RestoreMap(Game& game, const SavedState& state)
{
    RoomMap* map = game.RunningMap();
    if (map == nullptr)
        return;
    Painter& painter = *game.CurrentPainter();
    map->Reset(painter);
    ChangedCell change;
    for (const SavedMapLayer& layer : state.map.layers)
        for (const SavedMapCell& cell : layer.cells)
            if (CellInMap(game, *map, layer.number, cell, change))
                map->SetCell(painter, change);
    for (const SavedShownLayer& layer : state.shownLayers)
        map->SetVisible({layer.number, layer.visible});
}

bool MapFits(const Game& game, const SavedState& state)
{
    const RoomMap* map = MapOf(game, state.game.room);
    const auto fits = [&](const SavedMapLayer& layer)
    {
        return std::all_of(layer.cells.begin(), layer.cells.end(),
                           [&](const SavedMapCell& cell)
                           {
                               ChangedCell ignored;
                               return CellInMap(game, *map, layer.number, cell, ignored);
                           });
    };
    const std::vector<SavedMapLayer>& layers = state.map.layers;
    const std::vector<SavedShownLayer>& shown = state.shownLayers;
    const auto isThere = [map](const SavedShownLayer& layer) { return map->FindLayer(layer.number) != nullptr; };
    return (layers.empty() && shown.empty()) || (map != nullptr && std::all_of(layers.begin(), layers.end(), fits) &&
                                                 std::all_of(shown.begin(), shown.end(), isThere));
}

void FindMapCells(const Game& game, SavedState& state, std::vector<std::string>& left)
{
    const RoomMap* map = MapOf(game, state.game.room);
    FindShownLayers(map, state, left);
    std::vector<SavedMapLayer> layers = std::move(state.map.layers);
    state.map.layers.clear();
    for (SavedMapLayer& layer : layers)
    {
        layer.number = CounterpartOf(map, layer.name, layer.number);
        const size_t all = layer.cells.size();
        const size_t gone = layer.number == NO_LAYER ? all : FindCells(game, *map, state.map.tilesets, layer);
        if (gone > 0)
            left.push_back(std::to_string(gone) + " changed cells of the map's layer \"" + Printable(layer.name) +
                           "\": the map has no such cells or tiles now");
        if (gone < all)
            state.map.layers.push_back(std::move(layer));
    }
}
} // namespace Runner
