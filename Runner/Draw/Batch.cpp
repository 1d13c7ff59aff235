#include "Runner/Draw/Batch.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Runner
{
namespace
{
constexpr size_t VERTEX_LIMIT = 65536; // what 16-bit indices reach

bool IsFinite(const Corner& corner)
{
    return std::isfinite(corner.x) && std::isfinite(corner.y) && std::isfinite(corner.z);
}
} // namespace

bool DrawState::operator==(const DrawState& other) const
{
    return target == other.target && texture == other.texture && port == other.port && depthTest == other.depthTest &&
           std::equal(std::begin(toClip.u), std::end(toClip.u), std::begin(other.toClip.u)) &&
           std::equal(std::begin(tint), std::end(tint), std::begin(other.tint));
}

void Batch::Add(const DrawState& state, const Corner* corners, int count, const uint8_t (&colour)[4])
{
    if (m_device == nullptr || !std::all_of(corners, corners + count, IsFinite))
        return;
    if (!m_vertices.empty() && (m_vertices.size() + static_cast<size_t>(count) > VERTEX_LIMIT || !(m_state == state)))
        Flush();
    m_state = state;
    const size_t first = m_vertices.size();
    m_vertices.resize(first + static_cast<size_t>(count)); // once for all corners: most polygons are quads of sprites
    for (int i = 0; i < count; i++)
    {
        const Corner& c = corners[i];
        m_vertices[first + static_cast<size_t>(i)] = {c.x, c.y, c.z,
                                                      c.u, c.v, {colour[0], colour[1], colour[2], colour[3]}};
    }
    AddIndices(first, static_cast<size_t>(count));
}

void Batch::AddIndices(size_t first, size_t count)
{
    const bool areQuads = m_indices.empty();
    if (areQuads && count == 4)
        return;
    for (size_t quad = 0; areQuads && quad < first; quad += 4)
        AddFan(quad, 4);
    AddFan(first, count);
}

void Batch::AddFan(size_t first, size_t count)
{
    size_t next = m_indices.size();
    m_indices.resize(next + (count - 2) * 3);
    for (size_t i = 2; i < count; i++)
    {
        for (const size_t corner : {first, first + i - 1, first + i})
            m_indices[next++] = static_cast<uint16_t>(corner);
    }
}

void Batch::Restart(Device* device)
{
    m_device = device;
    m_vertices.clear();
    m_indices.clear();
}

void Batch::Flush()
{
    if (m_vertices.empty())
        return;
    m_device->DrawTriangles(m_state, m_vertices, m_indices);
    Count(static_cast<int>(m_vertices.size()));
    m_vertices.clear();
    m_indices.clear();
}

void Batch::Count(int vertices)
{
    m_draws++;
    m_drawnVertices += vertices;
}

void Batch::ResetCounts()
{
    m_draws = 0;
    m_drawnVertices = 0;
}
} // namespace Runner
