#pragma once

#include "Runner/World/Map_Model.h"

#include <vector>

namespace Runner
{
// The tiles of a map without the gaps that the map's own numbers may have: tilesets follow each other from index 1 on;
// index 0 is no tile. A table by index is then no larger than the tilesets, whatever a file says.
class TileNumbers
{
public:
    explicit TileNumbers(const MapModel& map);

    uint32_t Count() const { return m_count; } // of indices, with 0
    uint32_t FirstIndex(size_t tileset) const { return m_ranges[tileset].index; }
    uint32_t TilesOf(size_t tileset) const { return m_ranges[tileset].count; }
    bool AreTheSame() const { return m_areTheSame; } // every number is its index

    uint32_t IndexOf(MapCell number) const; // without flags; 0 for a number that no tileset has
    MapCell NumberOf(uint32_t index) const;

private:
    struct Range
    {
        uint32_t number, index, count; // of the first tile, and how many
    };
    std::vector<Range> m_ranges; // by tileset
    std::vector<Range> m_sorted; // by number
    uint32_t m_count = 1;
    bool m_areTheSame = true;
};
} // namespace Runner
