#include "Runner/World/Instance_Grid.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr float SMALLEST_CELL = 128.0f;
constexpr int MOST_CELLS_ACROSS = 256;
constexpr int MOST_CELLS_OF_ONE = 64; // an instance over more cells is tested by every query instead

void Drop(std::vector<Instance*>& from, const Instance* instance)
{
    const auto found = std::find(from.begin(), from.end(), instance);
    if (found == from.end())
        return;
    *found = from.back();
    from.pop_back();
}
} // namespace

InstanceGrid::InstanceGrid() { Reset(1, 1); }

void InstanceGrid::Reset(int roomWidth, int roomHeight)
{
    const float largest = static_cast<float>(std::max(roomWidth, roomHeight));
    m_cellSize = std::max(SMALLEST_CELL, largest / static_cast<float>(MOST_CELLS_ACROSS - 1));
    m_columns = static_cast<int>(static_cast<float>(roomWidth) / m_cellSize) + 1;
    m_rows = static_cast<int>(static_cast<float>(roomHeight) / m_cellSize) + 1;
    m_cells.clear();
    m_cells.resize(static_cast<size_t>(m_columns) * static_cast<size_t>(m_rows));
    m_unbounded.clear();
    m_query = 0;
}

int InstanceGrid::CellAt(float position, int count) const
{
    const float cell = position / m_cellSize;
    if (!(cell > 0.0f))
        return 0;
    return cell < static_cast<float>(count) ? static_cast<int>(cell) : count - 1;
}

InstanceGrid::Span InstanceGrid::SpanOf(const RoomArea& area) const
{
    Span span;
    span.left = CellAt(area.left, m_columns);
    span.top = CellAt(area.top, m_rows);
    span.right = CellAt(area.right, m_columns);
    span.bottom = CellAt(area.bottom, m_rows);
    return span;
}

std::vector<Instance*>& InstanceGrid::Cell(int column, int row)
{
    return m_cells[static_cast<size_t>(row) * static_cast<size_t>(m_columns) + static_cast<size_t>(column)];
}

void InstanceGrid::Put(Instance& instance)
{
    Remove(instance);
    const Span span = SpanOf(instance.drawArea);
    const int cells = (span.right - span.left + 1) * (span.bottom - span.top + 1);
    if (!instance.MayBeCulled() || cells > MOST_CELLS_OF_ONE)
    {
        instance.m_isUnbounded = true;
        m_unbounded.push_back(&instance);
        return;
    }
    instance.m_span = span;
    for (int row = span.top; row <= span.bottom; ++row)
        for (int column = span.left; column <= span.right; ++column)
            Cell(column, row).push_back(&instance);
}

void InstanceGrid::Remove(Instance& instance)
{
    if (instance.m_isUnbounded)
        Drop(m_unbounded, &instance);
    instance.m_isUnbounded = false;
    const Span span = instance.m_span;
    for (int row = span.top; row <= span.bottom; ++row)
        for (int column = span.left; column <= span.right; ++column)
            Drop(Cell(column, row), &instance);
    instance.m_span = Span();
}

void InstanceGrid::Find(const RoomRegion& region, std::vector<Instance*>& found)
{
    ++m_query;
    const auto take = [&](Instance* instance)
    {
        if (instance->m_lastQuery == m_query)
            return;
        instance->m_lastQuery = m_query;
        if (!instance->MayBeCulled() || region.Touches(instance->drawArea))
            found.push_back(instance);
    };
    for (Instance* instance : m_unbounded)
        take(instance);
    const Span span = SpanOf(region.bounds);
    for (int row = span.top; row <= span.bottom; ++row)
        for (int column = span.left; column <= span.right; ++column)
            for (Instance* instance : Cell(column, row))
                take(instance);
}
} // namespace Runner
