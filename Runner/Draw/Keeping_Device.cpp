#include "Runner/Draw/Keeping_Device.h"

#include <algorithm>
#include <iterator>

namespace Runner
{
void KeepingDevice::Keep(bool on)
{
    m_isKeeping = on;
    m_calls.clear();
}

void KeepingDevice::Redraw(const std::function<void(DrawState& state)>& change)
{
    for (const KeptCall& call : m_calls)
    {
        DrawState state = call.state;
        if (call.kind != KeptCall::Kind::Clear)
            change(state);
        switch (call.kind)
        {
        case KeptCall::Kind::Clear: m_device->Clear(state, call.colour); break;
        case KeptCall::Kind::Triangles: m_device->DrawTriangles(state, call.vertices, call.indices); break;
        case KeptCall::Kind::Mesh: m_device->DrawMesh(state, call.mesh, call.quads); break;
        }
    }
    m_device->Finish();
}

void KeepingDevice::Clear(const DrawState& state, const float (&colour)[4])
{
    m_device->Clear(state, colour);
    if (!IsKept(state))
        return;
    KeptCall& call = m_calls.emplace_back();
    call.state = state;
    std::copy(std::begin(colour), std::end(colour), call.colour);
}

void KeepingDevice::DrawTriangles(const DrawState& state, const std::vector<Vertex>& vertices,
                                  const std::vector<uint16_t>& indices)
{
    m_device->DrawTriangles(state, vertices, indices);
    if (!IsKept(state))
        return;
    KeptCall& call = m_calls.emplace_back();
    call.kind = KeptCall::Kind::Triangles;
    call.state = state;
    call.vertices = vertices;
    call.indices = indices;
}

void KeepingDevice::DrawMesh(const DrawState& state, unsigned mesh, int quads)
{
    m_device->DrawMesh(state, mesh, quads);
    if (!IsKept(state))
        return;
    KeptCall& call = m_calls.emplace_back();
    call.kind = KeptCall::Kind::Mesh;
    call.state = state;
    call.mesh = mesh;
    call.quads = quads;
}
} // namespace Runner
