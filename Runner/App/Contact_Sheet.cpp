#include "Runner/App/Contact_Sheet.h"

#include <algorithm>
#include <cstring>

namespace Runner
{
namespace
{
constexpr int GAP = 8; // pixels around and between the frames
constexpr int THUMB_WIDTH = 400;

struct Size
{
    int width, height;
};

Size ThumbSize(const Picture& picture)
{
    const int width = std::min(THUMB_WIDTH, picture.width);
    return {width, std::max(1, picture.height * width / picture.width)};
}

Picture EmptySheet(Size thumb, int columns, int rows)
{
    return BlackPicture(columns * (thumb.width + GAP) + GAP, rows * (thumb.height + GAP) + GAP);
}

// Writes the mean of the pixels in the rectangle, which one pixel of the sheet stands for.
void Shrink(const Picture& from, int left, int top, int right, int bottom, uint8_t* out)
{
    unsigned sums[4] = {};
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            for (size_t channel = 0; channel < 4; ++channel)
                sums[channel] += from.rgba[from.Offset(x, y) + channel];
    const unsigned pixels = static_cast<unsigned>((right - left) * (bottom - top));
    for (size_t channel = 0; channel < 4; ++channel)
        out[channel] = static_cast<uint8_t>((sums[channel] + pixels / 2) / pixels);
}

void PutThumb(const Picture& from, Picture& sheet, int left, int top, Size thumb)
{
    const auto edge = [](int place, int count, int size) { return static_cast<int>(int64_t{place} * size / count); };
    for (int y = 0; y < thumb.height; ++y)
        for (int x = 0; x < thumb.width; ++x)
            Shrink(from, edge(x, thumb.width, from.width), edge(y, thumb.height, from.height),
                   edge(x + 1, thumb.width, from.width), edge(y + 1, thumb.height, from.height),
                   &sheet.rgba[sheet.Offset(left + x, top + y)]);
}
} // namespace

// The run is divided into equal parts; the first frame of each is wanted.
bool ContactSheet::Wants(int frame) const
{
    const auto part = [this](int64_t number) { return number * m_columns * m_rows / m_frames; };
    return frame == 0 || part(frame) != part(frame - 1);
}

void ContactSheet::Add(const Picture& picture)
{
    const Size thumb = ThumbSize(picture);
    if (m_count == 0)
        m_sheet = EmptySheet(thumb, m_columns, m_rows);
    if (m_count == m_columns * m_rows)
        return;
    PutThumb(picture, m_sheet, GAP + m_count % m_columns * (thumb.width + GAP),
             GAP + m_count / m_columns * (thumb.height + GAP), thumb);
    ++m_count;
}
} // namespace Runner
