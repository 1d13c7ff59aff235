#pragma once
// Which instances does a view touch? Asked for every view and frame, so the answer must cost what is seen and not what
// exists: a room's instances are sorted into square cells.

#include "Runner/World/Instance.h"

#include <vector>

namespace Runner
{
class InstanceGrid
{
public:
    InstanceGrid(); // as after Reset(1, 1)

    // Empty, over a room of that size. Instances beyond its edges stand in the outermost cells.
    void Reset(int roomWidth, int roomHeight);

    void Place(Instance& instance); // at its drawArea; takes one that is placed already
    void Remove(Instance& instance);

    // Appends the instances whose draw area touches the region, and all that are never culled, in no particular order.
    void Find(const RoomRegion& region, std::vector<Instance*>& found);

private:
    using Span = Instance::Span;

    Span SpanOf(const RoomArea& area) const;
    int CellAt(float place, int count) const;
    std::vector<Instance*>& Cell(int column, int row);

    float m_cellSize = 1.0f;
    int m_columns = 1, m_rows = 1;
    std::vector<std::vector<Instance*>> m_cells;
    std::vector<Instance*> m_unbounded; // never culled, or larger than many cells
    unsigned m_query = 0;
};
} // namespace Runner
