#pragma once
// The painter's data and helpers. Only the Painter_*.cpp sources include this.

#include "Runner/Draw/Batch.h"
#include "Runner/Draw/Device.h"
#include "Runner/Draw/Layer_Grid.h"
#include "Runner/Draw/Numbered.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Draw/Sheet.h"
#include "Runner/Draw/Tile_Grid.h"
#include "Runner/Host/Graphics.h"

namespace Runner
{
struct SpriteEntry
{
    SpriteInfo info;
    Sheet sheet;          // without pixels
    unsigned texture = 0; // 0 without a device
};

struct SurfaceEntry
{
    int width = 0, height = 0;
    unsigned target = 0, texture = 0; // 0 without a device
};

// What PopTarget restores.
struct SavedTarget
{
    int surface; // -1 for the screen
    Port port;
    kvMatrix view, projection, world;
    float areaX, areaY, areaW, areaH, areaA;
};

struct DrawingState
{
    unsigned colour = 0xFFFFFF;
    float alpha = 1.0f;
    float depth = 0.0f;
    float lineWidth = 1.0f;
    bool depthTest = false;
};

// A colour premultiplied by its alpha, as vertices hold it.
struct Ink
{
    uint8_t bytes[4];
};
Ink MixInk(unsigned colour, float alpha);

// Invariants:
// P1 without a device every texture, target and mesh number is 0, and nothing reaches the batch.
// P2 the device's draw calls are in the order of the painter's calls: what bypasses the batch flushes it first.
// P3 surface is -1 exactly while saved is empty, and g_RenderTargetActive equals it between two calls.
struct Painter::Parts
{
    // openDevice: null when a lost device cannot be replaced; the pixels of pictures are kept only for that.
    Parts(int width, int height, std::unique_ptr<Device> device, DeviceOpener openDevice);
    ~Parts();

    bool HasLostDevice() const; // one that can be replaced
    void Renew(); // after the device was lost: a new one, with everything uploaded anew; surfaces are empty
    void DropPixels(Sheet& sheet) const;                          // after its upload
    bool Fail(std::string line);                                  // keeps the first; always false
    SpriteEntry* NeedSprite(int sprite);                          // null after a Fail
    SurfaceEntry* NeedSurface(int surface);                       // null after a Fail
    bool MakeSurface(int width, int height, SurfaceEntry& entry); // false after a Fail
    SurfaceEntry* NeedShownSurface(int surface);                  // one that can be drawn now; null after a Fail
    TileGrid* NeedTileMap(int map);                               // null after a Fail

    // The current drawing state with that texture; null when nothing drawn could show.
    const DrawState* Prepare(unsigned texture);
    unsigned CurrentTarget() const; // the device's number
    Ink CurrentInk() const { return MixInk(state.colour, state.alpha); }

    void DrawPolygon(const Corner* corners, int count, Ink ink, unsigned texture); // convex, 3 to 255 corners
    // A convex polygon in the current colour and depth. points: x, y pairs.
    void DrawPlain(const float (*points)[2], int count);
    void DrawPlain3D(const kvVector3 (&corners)[4], Ink ink);
    void DrawPicture(unsigned texture, const TextureArea& area, const float (&points)[4][2], Ink ink);
    // Draws a picture of that size in room units, with its origin at the placement's position.
    void DrawPlaced(unsigned texture, const TextureArea& area, float width, float height, float originX, float originY,
                    const Placement& placement);
    void DrawLine(float x1, float y1, float x2, float y2, float lineWidth);
    void DrawFace(const SpriteEntry* sprite, int frame, const kvVector3 (&corners)[4], Ink ink);

    // The drawing state for meshes whose origin stands at x, y, in the current colour and alpha, after a flush of the
    // batch. False when nothing drawn could show.
    bool PrepareMeshes(unsigned texture, float x, float y, DrawState& out);
    void DrawChunk(TileGrid& grid, int chunkColumn, int chunkRow, const SpriteEntry& sprite, const DrawState& state);

    bool MapShows(int sprite) const; // a layer of a map has tiles of it
    void BuildChunk(LayerGrid& grid, int chunkColumn, int chunkRow, int64_t milliseconds);
    void DrawChunk(LayerGrid& grid, int chunkColumn, int chunkRow, int64_t milliseconds, DrawState& state);
    void KeepFewMeshes(LayerGrid& grid);

    const int width, height; // of the screen
    const DeviceOpener openDevice;
    std::unique_ptr<Device> device;
    bool isShown = true;
    Batch batch;
    std::string error;

    DrawingState state;
    Port port;
    int surface = -1; // the current render target; -1 for the screen
    std::vector<SavedTarget> saved;

    DrawState prepared; // Prepare's answer
    unsigned preparedVersion = 0;
    bool preparedFinite = false;

    Numbered<SpriteEntry> sprites;
    Numbered<SurfaceEntry> surfaces;
    int64_t surfacePixels = 0; // of all surfaces
    Numbered<TileGrid> tileMaps;
    Numbered<LayerGrid> mapLayers;
    std::vector<Vertex> chunkVertices;          // scratch
    std::vector<LayerGrid::BuiltRun> chunkRuns; // scratch
    Sheet font;
    unsigned fontTexture = 0;
};

inline float ChannelToFloat(uint8_t channel) { return static_cast<float>(channel) / 255.0f; }

inline std::string SizeText(int width, int height) { return std::to_string(width) + " x " + std::to_string(height); }

// The frame modulo their number, for negative frames too.
inline int WrapFrame(int frame, int frames)
{
    const int rest = frame % frames;
    return rest < 0 ? rest + frames : rest;
}
} // namespace Runner
