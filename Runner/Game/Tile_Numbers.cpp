#include "Runner/Game/Tile_Numbers.h"

#include <algorithm>

namespace Runner
{
namespace
{
uint32_t CountOf(const MapTileset& tileset)
{
    const int last = tileset.tiles.empty() ? -1 : tileset.tiles.back().id;
    return static_cast<uint32_t>(tileset.IsCollection() ? last + 1 : std::max(tileset.tileCount, 0));
}
} // namespace

TileNumbers::TileNumbers(const MapModel& map)
{
    for (const MapTileset& tileset : map.tilesets)
    {
        m_ranges.push_back({tileset.firstNumber, m_count, CountOf(tileset)});
        m_areTheSame = m_areTheSame && tileset.firstNumber == m_count;
        m_count += CountOf(tileset);
    }
    m_sorted = m_ranges;
    std::sort(m_sorted.begin(), m_sorted.end(), [](const Range& a, const Range& b) { return a.number < b.number; });
}

uint32_t TileNumbers::IndexOf(MapCell number) const
{
    const auto after = std::upper_bound(m_sorted.begin(), m_sorted.end(), number,
                                        [](MapCell sought, const Range& range) { return sought < range.number; });
    if (after == m_sorted.begin() || number - (after - 1)->number >= (after - 1)->count)
        return 0;
    return (after - 1)->index + (number - (after - 1)->number);
}

MapCell TileNumbers::NumberOf(uint32_t index) const
{
    for (const Range& range : m_ranges)
        if (index >= range.index && index - range.index < range.count)
            return range.number + (index - range.index);
    return 0;
}
} // namespace Runner
