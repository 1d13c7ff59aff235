#pragma once
// The painter's interface to a graphics device: textures, render targets, static meshes, draw calls. Identifiers are
// the device's own, 0 for none; the screen is target 0. Colours are premultiplied by their alpha.

#include "Platform/Matrix.h"
#include "Runner/Draw/Port.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Runner
{
struct Vertex
{
    float x, y, z;
    float u, v; // 0..1, row 0 of the texture at v = 0
    uint8_t colour[4];
};

// All that decides how triangles become pixels. Triangles of equal states can share a draw call.
struct DrawState
{
    unsigned target = 0;
    unsigned texture = 0;
    Port port;
    bool depthTest = false;
    kvMatrix toClip = {};                     // from room to clip space: depth 0 to 1, y as the cameras give it
    float tint[4] = {1.0f, 1.0f, 1.0f, 1.0f}; // multiplies the vertices' colours

    bool operator==(const DrawState& other) const;
};

// How the screen is shown in a window.
struct Showing
{
    Port where; // pixels of the window
    int windowWidth = 0, windowHeight = 0;
    bool smooth = false; // pixels are interpolated
    bool isAlone = true; // black around it; false: over what the window shows already
};

class Device
{
public:
    virtual ~Device() = default;

    virtual int LargestTexture() const = 0; // longest side, pixels

    // 0 when refused.
    virtual unsigned CreateTexture(int width, int height, const uint8_t* rgba) = 0;
    virtual void DeleteTexture(unsigned texture) = 0;

    // Creates a render target, transparent at first, and the texture that shows it. 0 when refused.
    virtual unsigned CreateTarget(int width, int height, unsigned& texture) = 0;
    virtual void DeleteTarget(unsigned target) = 0;

    // A mesh of quads: four vertices each, in order around the quad. SetMesh replaces what the mesh held.
    virtual unsigned CreateMesh() = 0;
    virtual void SetMesh(unsigned mesh, const std::vector<Vertex>& vertices) = 0;
    virtual void DeleteMesh(unsigned mesh) = 0;

    virtual void Clear(const DrawState& state, const float (&colour)[4]) = 0; // fills the port
    // No indices: the vertices are those of quads, as in a mesh, MESH_QUADS_LIMIT at most.
    virtual void DrawTriangles(const DrawState& state, const std::vector<Vertex>& vertices,
                               const std::vector<uint16_t>& indices) = 0;
    virtual void DrawMesh(const DrawState& state, unsigned mesh, int quads) = 0;

    // The screen is one of two pictures: drawing goes on in the other one, whose content is left over from before, and
    // TakeBackScreen returns to the one before, untouched since. A device with one picture goes on in it.
    virtual void BeginScreen() = 0;
    virtual void TakeBackScreen() = 0;

    virtual void Finish() = 0;
    virtual void Show(const Showing& showing) = 0; // in the window that the device was made for
    virtual void Read(unsigned target, int width, int height, uint8_t* rgba) = 0; // top row first

    // Whether everything that was made with it is gone, as a driver that was reset leaves it: only a new device draws.
    virtual bool IsLost() = 0;

    virtual std::string Driver() const = 0; // its name and version
    virtual std::string TakeError() = 0; // the first error that the driver reported since the last call; empty for none
};

// A mesh holds at most this many quads: the indices of their vertices fit in 16 bits.
constexpr int MESH_QUADS_LIMIT = 16384;

// The device of this build, without a window; null and one line in error when there is none.
std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error);
} // namespace Runner
