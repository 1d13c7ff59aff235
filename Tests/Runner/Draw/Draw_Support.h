#pragma once
// A small screen to draw on, cameras to look through, and pictures whose corners cannot be mistaken.

#include "Files/Graphics/Camera.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Host/Graphics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace DrawTest
{
struct Pixel
{
    int red, green, blue, alpha;

    bool operator==(const Pixel& o) const
    {
        return red == o.red && green == o.green && blue == o.blue && alpha == o.alpha;
    }
    bool operator!=(const Pixel& o) const { return !(*this == o); }
};

inline std::ostream& operator<<(std::ostream& out, const Pixel& p)
{
    return out << "rgba(" << p.red << ", " << p.green << ", " << p.blue << ", " << p.alpha << ")";
}

constexpr Pixel NOTHING = {0, 0, 0, 0}, BLACK = {0, 0, 0, 255}, WHITE = {255, 255, 255, 255};
constexpr Pixel RED = {255, 0, 0, 255}, GREEN = {0, 255, 0, 255}, BLUE = {0, 0, 255, 255}, YELLOW = {255, 255, 0, 255};

inline unsigned Colour(const Pixel& p)
{
    return static_cast<unsigned>(p.red) | static_cast<unsigned>(p.green) << 8 | static_cast<unsigned>(p.blue) << 16;
}

inline Pixel At(const Runner::Picture& picture, int x, int y)
{
    const uint8_t* p = picture.rgba.data() + picture.Offset(x, y);
    return {p[0], p[1], p[2], p[3]};
}

inline void Set(Runner::Picture& picture, int x, int y, const Pixel& p)
{
    const int channels[] = {p.red, p.green, p.blue, p.alpha};
    std::transform(channels, channels + 4, picture.rgba.data() + picture.Offset(x, y),
                   [](int channel) { return static_cast<uint8_t>(channel); });
}

inline Runner::Picture Filled(int width, int height, const Pixel& p)
{
    Runner::Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width * height) * 4)};
    for (int y = 0; y < height; y++)
    {
        for (int x = 0; x < width; x++)
            Set(picture, x, y, p);
    }
    return picture;
}

// Four quarters: red top left, green top right, blue bottom left, yellow bottom right.
inline Runner::Picture FourCorners(int side)
{
    Runner::Picture picture = Filled(side, side, RED);
    for (int y = 0; y < side; y++)
    {
        for (int x = 0; x < side; x++)
            Set(picture, x, y, y < side / 2 ? (x < side / 2 ? RED : GREEN) : (x < side / 2 ? BLUE : YELLOW));
    }
    return picture;
}

// The pixels just inside of a rectangle's corners: top left, top right, bottom left, bottom right.
struct Corners
{
    Pixel topLeft, topRight, bottomLeft, bottomRight;

    bool operator==(const Corners& o) const
    {
        return topLeft == o.topLeft && topRight == o.topRight && bottomLeft == o.bottomLeft &&
               bottomRight == o.bottomRight;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Corners& c)
{
    return out << c.topLeft << " " << c.topRight << " / " << c.bottomLeft << " " << c.bottomRight;
}

constexpr Corners UPRIGHT = {RED, GREEN, BLUE, YELLOW};
constexpr Corners QUARTER_TURN_LEFT = {GREEN, YELLOW, RED, BLUE}; // counter-clockwise

inline Corners CornersOf(const Runner::Picture& picture, int left, int top, int right, int bottom)
{
    return {At(picture, left, top), At(picture, right - 1, top), At(picture, left, bottom - 1),
            At(picture, right - 1, bottom - 1)};
}

inline Corners CornersOf(const Runner::Picture& picture)
{
    return CornersOf(picture, 0, 0, picture.width, picture.height);
}

// How many pixels of the rectangle have the colour.
inline int CountPixels(const Runner::Picture& picture, const Pixel& wanted, int left, int top, int right, int bottom)
{
    int count = 0;
    for (int y = top; y < bottom; y++)
    {
        for (int x = left; x < right; x++)
            count += At(picture, x, y) == wanted ? 1 : 0;
    }
    return count;
}

inline int CountPixels(const Runner::Picture& picture, const Pixel& wanted)
{
    return CountPixels(picture, wanted, 0, 0, picture.width, picture.height);
}

inline void LookAt(float x, float y, float width, float height, float angle = 0.0f)
{
    CCamera camera;
    camera.SetViewX(x);
    camera.SetViewY(y);
    camera.SetViewWidth(width);
    camera.SetViewHeight(height);
    camera.SetViewAngle(angle);
    camera.SetViewDirty();
    camera.ApplyMatrices();
}

// Through the perspective that the camera itself builds: the plane z = 0 shows exactly the rectangle, the eye is its
// width before that plane.
inline void LookInto(float x, float y, float width, float height)
{
    kvMatrix perspective = {};
    perspective._34 = 1.0f;
    CCamera camera;
    camera.SetProjMat(perspective);
    camera.SetViewX(x);
    camera.SetViewY(y);
    camera.SetViewWidth(width);
    camera.SetViewHeight(height);
    camera.SetViewDirty();
    camera.ApplyMatrices();
}

// A painter of 64 x 64 pixels that shows room 0, 0, 64, 64. A problem that a test did not take fails it.
class Screen : public ::testing::Test
{
protected:
    static constexpr int SIDE = 64;

    void SetUp() override
    {
        Runner::ResetGraphics();
        std::string error;
        m_painter = Runner::Painter::Open(SIDE, SIDE, true, error);
        ASSERT_NE(m_painter, nullptr) << error;
        m_painter->BeginFrame();
    }

    void TearDown() override
    {
        if (m_painter == nullptr)
            return;
        m_painter->EndFrame();
        EXPECT_EQ(m_painter->TakeError(), "");
        m_painter.reset();
        Runner::ResetGraphics();
    }

    Runner::Painter& Paint() { return *m_painter; }
    Runner::Picture Shown() { return m_painter->ReadScreen(); }

    void Fill(const Pixel& colour, float left, float top, float right, float bottom)
    {
        m_painter->SetColour(Colour(colour));
        m_painter->Rectangle(left, top, right, bottom);
    }

    int FourCornerSprite(int side, float origin = 0.0f)
    {
        return m_painter->AddSheet(FourCorners(side), side, side, origin, origin);
    }

private:
    std::unique_ptr<Runner::Painter> m_painter;
};
} // namespace DrawTest
