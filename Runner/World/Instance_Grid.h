#pragma once
// A uniform grid over the room: each instance is listed in the square cells that its draw area overlaps. The query of
// a view, made for every view and frame, then costs what the view shows and not what exists.

#include "Runner/World/Instance.h"

#include <cstdint>
#include <vector>

namespace Runner
{
class InstanceGrid
{
public:
    InstanceGrid(); // as after Reset(1, 1)

    // Empties the grid and lays it over a room of that size. The outermost cells reach beyond the room without end.
    void Reset(int roomWidth, int roomHeight);

    void Put(Instance& instance); // into the cells of its drawArea, and out of those that it was in
    void Remove(Instance& instance);

    // Appends the instances whose draw area touches the region, and all that are never culled, in no particular order.
    void Find(const RoomRegion& region, std::vector<Instance*>& found);

private:
    using Span = Instance::Span;

    Span SpanOf(const RoomArea& area) const;
    int CellAt(float position, int count) const;
    std::vector<Instance*>& Cell(int column, int row);

    float m_cellSize = 1.0f;
    int m_columns = 1, m_rows = 1;
    std::vector<std::vector<Instance*>> m_cells;
    std::vector<Instance*> m_unbounded; // never culled, or over too many cells
    uint64_t m_query = 0; // number of the last one: in 32 bits it would wrap after days and miss instances
};
} // namespace Runner
