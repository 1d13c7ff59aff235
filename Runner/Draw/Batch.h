#pragma once

#include "Runner/Draw/Device.h"

namespace Runner
{
// A corner of a polygon: position and texture coordinates.
struct Corner
{
    float x, y, z;
    float u, v;
};

// Batches triangles of equal drawing state into one draw call. The batch is flushed when the state changes, when its
// 16-bit vertex indices run out, and on request.
class Batch
{
public:
    explicit Batch(Device* device) : m_device(device) {}

    // Adds a convex polygon of 3 to 255 corners, in order around it. colour: premultiplied by its alpha. A polygon with
    // a corner that is not finite is left out.
    void Add(const DrawState& state, const Corner* corners, int count, const uint8_t (&colour)[4]);
    void Flush();

    void Restart(Device* device); // goes on with another device; what was added and not flushed is dropped

    int Draws() const { return m_draws; }
    int Vertices() const { return m_drawnVertices; }
    void Count(int vertices); // counts a draw call of a mesh, which does not go through the batch
    void ResetCounts();

private:
    void AddIndices(size_t first, size_t count); // of the polygon whose vertices stand from there on
    void AddFan(size_t first, size_t count);

    Device* m_device; // null: nothing is collected
    DrawState m_state;
    std::vector<Vertex> m_vertices;
    std::vector<uint16_t> m_indices; // none while every polygon is a quad: the device has the indices of quads
    int m_draws = 0;
    int m_drawnVertices = 0;
};
} // namespace Runner
