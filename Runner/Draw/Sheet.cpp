#include "Runner/Draw/Sheet.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int AREAS_KEPT = 4096; // a sheet may have millions of frames of a pixel each

// Columns that make the atlas as near to a square as whole cells allow: a single row of frames could exceed the longest
// side that the device takes.
int ChooseColumns(int frames, int cellWidth, int cellHeight)
{
    int columns = 1;
    while (columns < frames && static_cast<int64_t>(columns) * cellWidth <
                                   static_cast<int64_t>((frames + columns - 1) / columns) * cellHeight)
        columns++;
    return columns;
}
} // namespace

Sheet::Sheet(const Picture& picture, int frameWidth, int frameHeight)
    : m_frameWidth(frameWidth), m_frameHeight(frameHeight)
{
    const int sourceColumns = picture.width / frameWidth;
    m_frames = sourceColumns * (picture.height / frameHeight);
    m_columns = ChooseColumns(m_frames, frameWidth + 2, frameHeight + 2);
    m_packed =
        TransparentPicture(m_columns * (frameWidth + 2), (m_frames + m_columns - 1) / m_columns * (frameHeight + 2));
    for (int frame = 0; frame < m_frames; frame++)
        CopyFrame(picture, frame % sourceColumns * frameWidth, frame / sourceColumns * frameHeight, frame);
    m_areas.reserve(static_cast<size_t>(std::min(m_frames, AREAS_KEPT)));
    for (int frame = 0; frame < std::min(m_frames, AREAS_KEPT); frame++)
        m_areas.push_back(MeasureArea(frame));
}

void Sheet::CopyFrame(const Picture& source, int sourceX, int sourceY, int frame)
{
    for (int y = 0; y < m_frameHeight + 2; y++)
    {
        const int fromY = sourceY + std::clamp(y - 1, 0, m_frameHeight - 1);
        for (int x = 0; x < m_frameWidth + 2; x++)
        {
            const int fromX = sourceX + std::clamp(x - 1, 0, m_frameWidth - 1);
            const uint8_t* from = source.rgba.data() + source.Offset(fromX, fromY);
            uint8_t* to = m_packed.rgba.data() + m_packed.Offset(CellX(frame) + x, CellY(frame) + y);
            for (int channel = 0; channel < 3; channel++)
                to[channel] = MultiplyByAlpha(from[channel], from[3]);
            to[3] = from[3];
        }
    }
}

TextureArea Sheet::MeasureArea(int frame) const
{
    const auto width = static_cast<float>(m_packed.width), height = static_cast<float>(m_packed.height);
    const int x = CellX(frame) + 1, y = CellY(frame) + 1;
    return {static_cast<float>(x) / width, static_cast<float>(y) / height, static_cast<float>(x + m_frameWidth) / width,
            static_cast<float>(y + m_frameHeight) / height};
}

void Sheet::DropPixels() { std::vector<uint8_t>().swap(m_packed.rgba); }

namespace
{
// Copies a part of one row, as far as the source reaches.
void CopyRow(const Picture& from, int fromX, int fromY, int width, Picture& to, int toX, int toY)
{
    const int fitting = fromY < from.height ? std::min(width, from.width - fromX) : 0;
    if (fitting > 0)
        std::copy_n(from.rgba.data() + from.Offset(fromX, fromY), static_cast<size_t>(fitting) * 4,
                    to.rgba.data() + to.Offset(toX, toY));
}
} // namespace

Picture CropPicture(const Picture& picture, int left, int top, int width, int height)
{
    Picture part = TransparentPicture(width, height);
    for (int y = 0; y < height; y++)
        CopyRow(picture, left, top + y, width, part, 0, y);
    return part;
}

Picture JoinFrames(const Picture& picture, const FrameLayout& layout)
{
    Picture joined = TransparentPicture(layout.columns * layout.width,
                                        (layout.count + layout.columns - 1) / layout.columns * layout.height);
    for (int y = 0; y < joined.height; y++)
    {
        const int fromY = layout.margin + y + y / layout.height * layout.spacing;
        for (int column = 0; column < layout.columns; column++)
            CopyRow(picture, layout.margin + column * (layout.width + layout.spacing), fromY, layout.width, joined,
                    column * layout.width, y);
    }
    return joined;
}

void ClearColour(Picture& picture, uint8_t red, uint8_t green, uint8_t blue)
{
    for (size_t i = 0; i + 4 <= picture.rgba.size(); i += 4)
        if (picture.rgba[i] == red && picture.rgba[i + 1] == green && picture.rgba[i + 2] == blue)
            picture.rgba[i + 3] = 0;
}

void DivideByAlpha(Picture& picture)
{
    for (size_t i = 0; i + 4 <= picture.rgba.size(); i += 4)
    {
        const unsigned alpha = picture.rgba[i + 3];
        for (size_t channel = i; channel < i + 3; channel++)
        {
            const unsigned value = picture.rgba[channel];
            picture.rgba[channel] =
                alpha == 0 ? uint8_t{0} : static_cast<uint8_t>(std::min((value * 255 + alpha / 2) / alpha, 255u));
        }
    }
}
} // namespace Runner
