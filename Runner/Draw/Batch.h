#pragma once

#include "Runner/Draw/Device.h"

namespace Runner
{
// A corner on its way into the batch.
struct Corner
{
    float x, y, z;
    float u, v;
};

// Collects triangles that share a drawing state and hands them to the device in one draw: when the state changes, when
// the vertex numbers run out, and when asked.
class Batch
{
public:
    explicit Batch(Device* device) : m_device(device) {}

    // Corners in order round a convex outline of 3 to 255. colour: multiplied by its alpha. Outlines with a corner that
    // is not finite are left out.
    void Add(const DrawState& state, const Corner* corners, int count, const uint8_t (&colour)[4]);
    void Flush();

    int Draws() const { return m_draws; }
    int Vertices() const { return m_drawnVertices; }
    void Count(int vertices); // one draw past the batch: a mesh
    void ResetCounts();

private:
    Device* m_device; // null: nothing is collected
    DrawState m_state;
    std::vector<Vertex> m_vertices;
    std::vector<uint16_t> m_indices;
    int m_draws = 0;
    int m_drawnVertices = 0;
};
} // namespace Runner
