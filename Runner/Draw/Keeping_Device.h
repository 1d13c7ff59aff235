#pragma once
// A device that remembers what a frame drew on the screen, so that it can be drawn once more through other matrices
// while the game stands. What it forwards to, it does not change.

#include "Runner/Draw/Device.h"

#include <functional>

namespace Runner
{
// One call of a kept frame, onto the screen.
struct KeptCall
{
    enum class Kind
    {
        Clear,
        Triangles,
        Mesh,
    };
    Kind kind = Kind::Clear;
    DrawState state;
    float colour[4] = {};         // of a clear
    std::vector<Vertex> vertices; // of triangles, with their indices
    std::vector<uint16_t> indices;
    unsigned mesh = 0;
    int quads = 0;
};

class KeepingDevice : public Device
{
public:
    explicit KeepingDevice(std::unique_ptr<Device> device) : m_device(std::move(device)) {}

    void Keep(bool on); // off: forgets
    bool IsKeeping() const { return m_isKeeping; }
    void BeginFrame() { m_calls.clear(); }

    // Draws the kept calls in their order. change: may change the state of a call that is no clear.
    void Redraw(const std::function<void(DrawState& state)>& change);

    int LargestTexture() const override { return m_device->LargestTexture(); }
    unsigned CreateTexture(int width, int height, const uint8_t* rgba) override
    {
        return m_device->CreateTexture(width, height, rgba);
    }
    void DeleteTexture(unsigned texture) override { m_device->DeleteTexture(texture); }
    unsigned CreateTarget(int width, int height, unsigned& texture) override
    {
        return m_device->CreateTarget(width, height, texture);
    }
    void DeleteTarget(unsigned target) override { m_device->DeleteTarget(target); }
    unsigned CreateMesh() override { return m_device->CreateMesh(); }
    void SetMesh(unsigned mesh, const std::vector<Vertex>& vertices) override { m_device->SetMesh(mesh, vertices); }
    void DeleteMesh(unsigned mesh) override { m_device->DeleteMesh(mesh); }
    void Clear(const DrawState& state, const float (&colour)[4]) override;
    void DrawTriangles(const DrawState& state, const std::vector<Vertex>& vertices,
                       const std::vector<uint16_t>& indices) override;
    void DrawMesh(const DrawState& state, unsigned mesh, int quads) override;
    void BeginScreen() override { m_device->BeginScreen(); }
    void TakeBackScreen() override { m_device->TakeBackScreen(); }
    void Finish() override { m_device->Finish(); }
    void Show(const Showing& showing) override { m_device->Show(showing); }
    void Read(unsigned target, int width, int height, uint8_t* rgba) override
    {
        m_device->Read(target, width, height, rgba);
    }
    bool IsLost() override { return m_device->IsLost(); }
    std::string Driver() const override { return m_device->Driver(); }
    std::string TakeError() override { return m_device->TakeError(); }

private:
    bool IsKept(const DrawState& state) const { return m_isKeeping && state.target == 0; }

    const std::unique_ptr<Device> m_device;
    std::vector<KeptCall> m_calls;
    bool m_isKeeping = false;
};
} // namespace Runner
