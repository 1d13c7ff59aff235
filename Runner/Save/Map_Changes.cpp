#include "Runner/Save/Map_Changes.h"

#include "Runner/Base/Printable.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"

namespace Runner
{
namespace
{
const std::string& NameOfLayer(const RoomMap& map, int number)
{
    return map.Model().layers[static_cast<size_t>(number)].name;
}

int FindCounterpart(const RoomMap& map, const SavedMapLayer& saved)
{
    if (map.FindLayer(saved.number) != nullptr && NameOfLayer(map, saved.number) == saved.name)
        return saved.number;
    return map.FindLayerNamed(saved.name);
}

size_t RestoreLayer(RoomMap& map, Painter& painter, const SavedMapLayer& saved)
{
    const int layer = FindCounterpart(map, saved);
    size_t left = 0;
    for (const SavedCell& cell : saved.cells)
        left += map.SetCell(painter, {layer, cell.column, cell.row, cell.cell}) ? 0 : 1;
    return left;
}
} // namespace

std::vector<SavedMapLayer> CaptureMapChanges(const Game& game)
{
    std::vector<SavedMapLayer> saved;
    const RoomMap* map = game.RunningMap();
    if (map == nullptr)
        return saved;
    for (const ChangedCell& change : map->Changes(*game.CurrentPainter()))
    {
        if (saved.empty() || saved.back().number != change.layer)
            saved.push_back({change.layer, NameOfLayer(*map, change.layer), {}});
        saved.back().cells.push_back({change.column, change.row, change.cell});
    }
    return saved;
}

std::vector<std::string> RestoreMapChanges(Game& game, const std::vector<SavedMapLayer>& saved)
{
    std::vector<std::string> lines;
    RoomMap* map = game.RunningMap();
    if (map != nullptr)
        map->Reset(*game.CurrentPainter());
    for (const SavedMapLayer& layer : saved)
    {
        const size_t left = map == nullptr ? layer.cells.size() : RestoreLayer(*map, *game.CurrentPainter(), layer);
        if (left > 0)
            lines.push_back("the room's map has no place for " + std::to_string(left) + " changed cell" +
                            (left == 1 ? "" : "s") + " of layer \"" + Printable(layer.name) + "\"");
    }
    return lines;
}
} // namespace Runner
