#pragma once

#include "Runner/Draw/Picture.h"

#include <cstddef>
#include <vector>

namespace Runner
{
// A rectangle in texture coordinates, 0..1.
struct TextureArea
{
    float left, top, right, bottom;
};

// A texture atlas of frames of equal size. Each frame has a border of one pixel that repeats its edge: rounding, at
// some rotations and zooms, samples just past the edge, which must show that frame and not its neighbour. Colours are
// premultiplied by alpha.
class Sheet
{
public:
    Sheet() = default;

    // Cuts the frames out of a picture, row by row from the top left. At least one must fit.
    Sheet(const Picture& picture, int frameWidth, int frameHeight);

    int Frames() const { return m_frames; }
    int FrameWidth() const { return m_frameWidth; }
    int FrameHeight() const { return m_frameHeight; }
    const Picture& Packed() const { return m_packed; }
    // The part of the texture that a frame takes, without its border. frame: 0 to Frames() - 1
    TextureArea Area(int frame) const
    {
        const auto index = static_cast<size_t>(frame);
        return index < m_areas.size() ? m_areas[index] : MeasureArea(frame);
    }
    void DropPixels(); // after the upload; Area still works

private:
    void CopyFrame(const Picture& source, int sourceX, int sourceY, int frame);
    int CellX(int frame) const { return frame % m_columns * (m_frameWidth + 2); }
    int CellY(int frame) const { return frame / m_columns * (m_frameHeight + 2); }
    TextureArea MeasureArea(int frame) const;

    int m_frames = 0;
    int m_frameWidth = 0, m_frameHeight = 0;
    int m_columns = 1; // of the packed picture
    Picture m_packed;
    std::vector<TextureArea> m_areas; // of the first frames, so that a drawn sprite divides nothing
};

// How frames lie in a picture: a margin around all of them, spacing between them.
struct FrameLayout
{
    int width = 0, height = 0;   // of a frame, 1 or more
    int margin = 0, spacing = 0; // 0 or more
    int columns = 0, count = 0;  // frames in a row, and in all; 1 or more
};

// The frames without margin and spacing, `columns` to a row. What lies outside of the picture is transparent.
Picture JoinFrames(const Picture& picture, const FrameLayout& layout);

// A part of a picture; left and top are 0 or more. What lies outside of the picture is transparent.
Picture CropPicture(const Picture& picture, int left, int top, int width, int height);

// Makes the pixels of that colour transparent: an editor's way to a transparent colour.
void ClearColour(Picture& picture, uint8_t red, uint8_t green, uint8_t blue);

// A colour channel times alpha, both 0 to 255, to the nearest.
inline uint8_t MultiplyByAlpha(unsigned channel, unsigned alpha)
{
    return static_cast<uint8_t>((channel * alpha + 127) / 255);
}

// Undoes the premultiplication, in a picture that was read back. A pixel of alpha 0 becomes black.
void DivideByAlpha(Picture& picture);
} // namespace Runner
