#pragma once
// Draws a game: shapes, text, sprites, tile maps, surfaces and simple 3D, through OpenGL ES without a display, or not
// at all (then sprites keep their sizes and surfaces their numbers, and everything answers as if it had been drawn).
//
// Places     room units of the current matrices (Runner/Host/Graphics.h). Flat drawing lies in the plane z = Depth().
//            A shape covers the points between its edges: a rectangle 0, 0, 1, 1 is one pixel of an unscaled view.
// Order      what is drawn later covers what was drawn earlier, except while the depth test is on.
// Colours    runner colours (Files/Graphics/Colour.h); alpha 0 (nothing) to 1 (covers).
// Angles     degrees, positive counter-clockwise on the screen of an unrotated view.
// Pictures   first row on top: files, surfaces, what is read back.
// Errors     an operation that cannot be done does nothing, answers false or -1 where it answers, and leaves one line
//            for TakeError. Places that are not finite draw nothing, silently. Nothing throws.
//
// One painter draws at a time on one thread; painters may follow each other within a process.

#include "Platform/Matrix.h"
#include "Runner/Draw/Picture.h"

#include <memory>
#include <string>
#include <string_view>

namespace Runner
{
// What a frame cost so far.
struct FrameCounts
{
    int batches = 0;  // draws handed to the device
    int vertices = 0; // in these draws
};

struct SpriteInfo
{
    int width = 0, height = 0; // of one frame, pixels
    int frames = 0;
    float originX = 0.0f, originY = 0.0f; // the point of a frame that is put at x, y
};

// How a sprite or surface is put down.
struct Placement
{
    float x = 0.0f, y = 0.0f;
    float scaleX = 1.0f, scaleY = 1.0f; // negative mirrors
    float angle = 0.0f;                 // about the origin; a surface's origin is its top left corner
    unsigned colour = 0xFFFFFF;         // multiplies the picture's colours
    float alpha = 1.0f;
};

struct TileMapInfo
{
    int sprite = -1;
    int columns = 0, rows = 0;
    float tileWidth = 0.0f, tileHeight = 0.0f; // room units
};

constexpr int64_t SURFACE_PIXELS_LIMIT = 1 << 26; // of all surfaces together
constexpr int SURFACE_NUMBERS_LIMIT = 1 << 16;    // surfaces have smaller numbers

class Painter
{
public:
    // ---- life ----
    // The screen's size in pixels, 1 to PICTURE_SIDE_LIMIT. draw false: a painter that draws nothing.
    // Null and one line in error when there is no way to draw.
    static std::unique_ptr<Painter> Open(int width, int height, bool draw, std::string& error);
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    bool Draws() const;         // false for a painter that draws nothing
    std::string Driver() const; // who draws: pictures are the same, bit for bit, only between equal drivers
    int ScreenWidth() const;
    int ScreenHeight() const;
    std::string TakeError(); // the first problem since the last take; empty when there was none

    // ---- frame ----
    void BeginFrame(); // the screen as target, all of it as port, drawing state as at the start, counts to zero
    void EndFrame();   // everything asked for is drawn; surfaces still bound are unbound
    FrameCounts Counts() const;

    // ---- drawing state; at first white, 1, 0, 1, off ----
    void SetColour(unsigned colour);
    void SetAlpha(float alpha); // clamped to 0..1
    void SetDepth(float z);     // a flat camera sees -16000 to 16000
    void SetLineWidth(float width);
    void SetDepthTest(bool on); // on: the nearer surface covers, and fully transparent pixels cover nothing
    unsigned Colour() const;
    float Alpha() const;
    float Depth() const;
    float LineWidth() const;
    bool DepthTest() const;

    // ---- where to draw ----
    // Nothing is drawn outside of the port: a rectangle of the target in pixels, from its top left corner. It may
    // reach beyond the target; without width or height nothing shows.
    void SetPort(int x, int y, int width, int height);
    void Clear(unsigned colour, float alpha = 1.0f); // the port; its depths too. The screen stays opaque

    // Draws into a surface from now on: all of it as port, one room unit a pixel (SetFlatView), g_RenderTargetActive is
    // its number. Pop brings back port, matrices, view area and target of before. Up to 16 deep.
    bool PushTarget(int surface);
    bool PopTarget();

    // ---- shapes, in the current colour and alpha ----
    void Rectangle(float left, float top, float right, float bottom, bool outline = false);
    void Line(float x1, float y1, float x2, float y2); // LineWidth wide, square ends at the two points
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
    // A PNG file with frames in rows of frameWidth x frameHeight, from the top left. What is left over is not used.
    int LoadSheet(const std::string& file, int frameWidth, int frameHeight, float originX = 0.0f, float originY = 0.0f);
    int AddSheet(const Picture& picture, int frameWidth, int frameHeight, float originX = 0.0f, float originY = 0.0f);
    bool FreeSprite(int sprite);                          // refused while a tile map shows it
    const SpriteInfo* FindSprite(int sprite) const;       // null when there is none; valid until sprites change
    void Sprite(int sprite, int frame, float x, float y); // in the current alpha. Frame numbers wrap round
    void Sprite(int sprite, int frame, const Placement& placement); // current alpha and colour do not matter
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

    // ---- tile maps: a grid of frames of one sheet, kept by the device; numbers from 0 ----
    // Tiles are tileWidth x tileHeight room units. No gap shows between tiles, from any camera. All empty at first.
    int CreateTileMap(int sprite, int columns, int rows, float tileWidth, float tileHeight);
    bool FreeTileMap(int map);
    bool SetTile(int map, int column, int row, int frame); // -1 for an empty place
    int GetTile(int map, int column, int row) const;       // -1 when empty or outside
    bool FindTileMap(int map, TileMapInfo& info) const;    // false when there is none
    int TileMapNumbers() const;                            // all tile maps have smaller numbers
    void TileMap(int map, float x, float y);               // its top left corner; current colour and alpha

    // ---- 3D, in the current colour and alpha ----
    // Corners: top left, top right, bottom right, bottom left of the picture. sprite -1: plain colour.
    void Quad(int sprite, int frame, const kvVector3 (&corners)[4]);
    // The frame on each of the six faces, which are darkened by direction so that edges can be seen: light falls from
    // the smaller z (the side of a flat camera's eye).
    void Box(int sprite, int frame, const kvVector3& low, const kvVector3& high);

    // ---- pictures of what was drawn; black, respectively transparent, from a painter that draws nothing ----
    Picture ReadScreen();
    bool ReadSurface(int surface, Picture& out);

private:
    struct Parts;
    explicit Painter(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> m_parts;
};
} // namespace Runner
