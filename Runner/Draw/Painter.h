#pragma once
// The painter draws a game: shapes, text, sprites, tile maps, surfaces and simple 3D, through OpenGL ES without a
// display. A painter that draws nothing (--no-draw) keeps the sizes of sprites and the numbers of surfaces, and gives
// the same answers.
//
// Positions  room units of the current matrices (Runner/Host/Graphics.h). Flat drawing lies in the plane z = Depth().
//            A shape covers the points between its edges: a rectangle 0, 0, 1, 1 is one pixel of an unscaled view.
// Order      what is drawn later covers what was drawn earlier, except while the depth test is on.
// Colours    runner colours (Files/Graphics/Colour.h); alpha 0 (nothing) to 1 (covers).
// Angles     degrees, positive counter-clockwise on the screen of an unrotated view.
// Pictures   first row on top: files, surfaces, what is read back.
// Errors     an operation that cannot be done does nothing, answers false or -1 where it answers, and leaves one line
//            for TakeError. Positions that are not finite draw nothing, silently. Nothing throws.
//
// One painter draws at a time on one thread; painters may follow each other within a process.

#include "Platform/Matrix.h"
#include "Runner/Draw/Picture.h"
#include "Runner/Draw/Port.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Runner
{
// The draw calls of the current frame so far.
struct FrameCounts
{
    int batches = 0;  // draw calls to the device
    int vertices = 0; // in these calls
};

struct SpriteInfo
{
    int width = 0, height = 0; // of one frame, pixels
    int frames = 0;
    float originX = 0.0f, originY = 0.0f; // the point of a frame that is drawn at x, y
};

// Position, scale, rotation and colour with which a sprite or surface is drawn.
struct Placement
{
    float x = 0.0f, y = 0.0f;
    float scaleX = 1.0f, scaleY = 1.0f; // negative mirrors
    float angle = 0.0f;                 // about the origin; a surface's origin is its top left corner
    unsigned colour = 0xFFFFFF;         // multiplies the picture's colours
    float alpha = 1.0f;
};

// One of many sprites that are drawn alike.
struct SpritePlace
{
    int frame;
    float x, y;
};

class LayerGrid;

struct TileMapInfo
{
    int sprite = -1;
    int columns = 0, rows = 0;
    float tileWidth = 0.0f, tileHeight = 0.0f; // room units
};

class Device;
struct Showing;
using DeviceOpener = std::function<std::unique_ptr<Device>(int width, int height, std::string& error)>;

constexpr int64_t SURFACE_PIXELS_LIMIT = 1 << 26; // of all surfaces together
constexpr int SURFACE_NUMBERS_LIMIT = 1 << 16;    // surfaces have smaller numbers

class Painter
{
public:
    // ---- life ----
    // The screen's size in pixels, 1 to PICTURE_SIDE_LIMIT. draw false: a painter that draws nothing.
    // Null, and one line in error, when it cannot draw.
    // openDevice: what it draws with, called for a painter that draws; the device without a window unless given.
    static std::unique_ptr<Painter> Open(int width, int height, bool draw, std::string& error,
                                         const DeviceOpener& openDevice = nullptr);
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    bool Draws() const;         // false for a painter that draws nothing
    Device* CurrentDevice();    // what it draws with, until it is replaced; null for a painter that draws nothing
    std::string Driver() const; // name of the graphics driver: only equal drivers give equal pictures, bit for bit
    int ScreenWidth() const;
    int ScreenHeight() const;
    void SetShown(bool shown); // false: drawing has no effect on any picture until it is true again. True at first
    void RenewDevice();        // a lost device is replaced now, instead of at the end of the next frame
    void AbandonDevice();      // in a forked process: the device is its parent's, so it is neither used nor freed
    bool HasError() const;     // TakeError would tell one
    std::string TakeError();   // the first error since the last call; empty for none

    // ---- frame ----
    void BeginFrame();    // resets target and port to the whole screen, the drawing state, and the counts
    void TakeBackFrame(); // of a frame that failed: the screen is again as the frame before left it
    void EndFrame();      // flushes the batch, and pops the targets that are still pushed
    FrameCounts Counts() const;
    void Show(const Showing& showing); // the screen in a window; nothing for a painter that draws nothing

    // ---- drawing state: white, 1, 0, 1, off after BeginFrame ----
    void SetColour(unsigned colour);
    void SetAlpha(float alpha); // clamped to 0..1
    void SetDepth(float z);     // a flat camera sees -16000 to 16000
    void SetLineWidth(float width);
    void SetDepthTest(bool on); // on: what is nearer covers; fully transparent pixels cover nothing
    unsigned Colour() const;
    float Alpha() const;
    float Depth() const;
    float LineWidth() const;
    bool DepthTest() const;

    // ---- where to draw ----
    // Nothing is drawn outside of the port. It may reach beyond the target; without width or height nothing shows.
    void SetPort(const Port& port);
    void Clear(unsigned colour, float alpha = 1.0f); // fills the port, and clears its depths. The screen stays opaque

    // PushTarget makes a surface the render target: its whole area is the port, one room unit is a pixel (SetFlatView),
    // g_RenderTargetActive is its number. PopTarget restores port, matrices, view area and target. Up to 16 deep.
    bool PushTarget(int surface);
    bool PopTarget();

    // ---- shapes, in the current colour and alpha ----
    void Rectangle(float left, float top, float right, float bottom, bool outline = false);
    void Line(float x1, float y1, float x2, float y2); // LineWidth wide, square ends at the two points
    void Line(float x1, float y1, float x2, float y2, float width);
    void Circle(float x, float y, float radius, bool outline = false);
    void Triangle(float x1, float y1, float x2, float y2, float x3, float y3, bool outline = false);

    // ---- text, in the current colour and alpha ----
    // Monospaced, 8 x 12 units a character at scale 1; x, y is the top left corner. A new line starts at each '\n'; a
    // character beyond ASCII shows as one '?'.
    void Text(float x, float y, std::string_view text, float scale = 1.0f);
    static float TextWidth(std::string_view text, float scale = 1.0f); // of the longest line
    static float TextHeight(std::string_view text, float scale = 1.0f);

    // ---- sprites: numbers from 0; -1 when one cannot be made ----
    // A PNG file with frames side by side, equally wide.
    int LoadSprite(const std::string& file, int frames, float originX = 0.0f, float originY = 0.0f);
    // A PNG file with rows of frames, frameWidth x frameHeight each, from the top left. Pixels left over are not used.
    int LoadSheet(const std::string& file, int frameWidth, int frameHeight, float originX = 0.0f, float originY = 0.0f);
    int AddSheet(const Picture& picture, int frameWidth, int frameHeight, float originX = 0.0f, float originY = 0.0f);
    bool FreeSprite(int sprite);                          // refused while a tile map shows it
    const SpriteInfo* FindSprite(int sprite) const;       // null when there is none; valid until sprites change
    void Sprite(int sprite, int frame, float x, float y); // in the current alpha. Frames count modulo their number
    void Sprite(int sprite, int frame, const Placement& placement);   // not in the current colour and alpha
    void Sprites(int sprite, const std::vector<SpritePlace>& places); // each as Sprite would, in less time
    void SpriteStretched(int sprite, int frame, float left, float top, float right,
                         float bottom); // current colour, alpha

    // ---- surfaces: pictures to draw into; numbers from 0, a freed number is given again ----
    int CreateSurface(int width, int height); // 1 to PICTURE_SIDE_LIMIT; transparent; the lowest free number
    // Under a free number below SURFACE_NUMBERS_LIMIT, as a saved game gives it.
    bool CreateSurfaceAt(int surface, int width, int height);
    bool FreeSurface(int surface); // refused while it is drawn into
    bool SurfaceExists(int surface) const;
    int SurfaceWidth(int surface) const; // 0 when there is none
    int SurfaceHeight(int surface) const;
    int SurfaceNumbers() const;                  // all surfaces have smaller numbers
    void Surface(int surface, float x, float y); // in the current alpha
    void Surface(int surface, const Placement& placement);
    void SurfaceStretched(int surface, float left, float top, float right, float bottom);

    // ---- tile maps: grids whose cells hold a frame of one sprite, or none; numbers from 0 ----
    // Cells are tileWidth x tileHeight room units, empty at first. No gap shows between tiles, through any camera.
    int CreateTileMap(int sprite, int columns, int rows, float tileWidth, float tileHeight);
    bool FreeTileMap(int map);
    bool SetTile(int map, int column, int row, int frame); // -1 for an empty cell
    int GetTile(int map, int column, int row) const;       // -1 when empty or outside
    bool FindTileMap(int map, TileMapInfo& info) const;    // false when there is none
    int TileMapNumbers() const;                            // all tile maps have smaller numbers
    void TileMap(int map, float x, float y); // draws it, top left corner at x, y, in the current colour and alpha

    // ---- layers of maps: grids of tiles of several sprites, turned and animated; numbers from 0 ----
    int AddMapLayer(LayerGrid grid);                                // its sprites must exist
    bool SetMapCell(int layer, int column, int row, uint32_t cell); // false outside, or for a tile that does not exist
    bool HasMapCell(int layer, int column, int row) const;
    uint32_t GetMapCell(int layer, int column, int row) const;        // 0 when empty or outside
    void MapLayer(int layer, float x, float y, int64_t milliseconds); // as TileMap; of the animations' time
    // A frame as the flags of a cell turn it, with its corners there: top left, top right, bottom right, bottom left.
    void TurnedSprite(int sprite, int frame, uint32_t cell, const float (&corners)[4][2]);

    // ---- 3D, in the current colour and alpha ----
    // Corners: top left, top right, bottom right, bottom left of the picture. sprite -1: plain colour.
    void Quad(int sprite, int frame, const kvVector3 (&corners)[4]);
    // The frame on each of the six faces, which are darkened by direction so that edges can be seen: light falls from
    // the smaller z (the side of a flat camera's eye).
    void Box(int sprite, int frame, const kvVector3& low, const kvVector3& high);

    // ---- read-back: from a painter that draws nothing, the screen is black and surfaces are transparent ----
    Picture ReadScreen();
    bool ReadSurface(int surface, Picture& out);

    // ---- aside: between two frames, for who shows something besides the game ----
    // Draws into an opaque black picture of that size, one room unit a pixel, and answers it. Afterwards the painter is
    // as it was: drawing state, surfaces, matrices, view area and counts. Empty without a device; empty, and one line
    // in error, when it cannot be done.
    Picture DrawAside(int width, int height, const std::function<void()>& draw, std::string& error);
    // The device's own texture that shows the surface, for such a library; 0 without a device or a surface.
    unsigned SurfaceTexture(int surface) const;
    void MakeCurrent(); // its context, for a library that draws beside it. Nothing without a device
    void Pixels(const Picture& picture, float x, float y); // its alpha premultiplied; pictures on a screen are opaque

private:
    struct Parts;
    explicit Painter(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> m_parts;
};
} // namespace Runner
