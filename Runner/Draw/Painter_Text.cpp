#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include "Runner/Draw/Font.h"

#include <algorithm>

namespace Runner
{
namespace
{
// Decodes the character at `at` and advances `at` past it. Its frame of the font; that of '?' for a control character
// and for a UTF-8 sequence of several bytes.
int NextCharacter(std::string_view text, size_t& at)
{
    const auto first = static_cast<unsigned char>(text[at++]);
    if (first < 128)
        return first >= FONT_FIRST && first < FONT_FIRST + FONT_BLOCK ? first - FONT_FIRST : '?' - FONT_FIRST;
    while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80)
        at++;
    return '?' - FONT_FIRST;
}

// Calls see(column, line, frame) for each character, in order.
template <typename See> void LayOut(std::string_view text, const See& see)
{
    int column = 0, line = 0;
    for (size_t at = 0; at < text.size();)
    {
        if (text[at] == '\n')
        {
            at++;
            column = 0;
            line++;
            continue;
        }
        see(column++, line, NextCharacter(text, at));
    }
}
} // namespace

void Painter::Text(float x, float y, std::string_view text, float scale)
{
    const float width = FONT_CELL_WIDTH * scale, height = FONT_CELL_HEIGHT * scale;
    Parts& parts = *m_parts;
    LayOut(text,
           [&](int column, int line, int frame)
           {
               const float left = x + static_cast<float>(column) * width, top = y + static_cast<float>(line) * height;
               const float points[4][2] = {
                   {left, top}, {left + width, top}, {left + width, top + height}, {left, top + height}};
               if (frame != ' ' - FONT_FIRST)
                   parts.DrawPicture(parts.fontTexture, parts.font.Area(frame), points, parts.CurrentInk());
           });
}

float Painter::TextWidth(std::string_view text, float scale)
{
    int columns = 0;
    LayOut(text, [&columns](int column, int, int) { columns = std::max(columns, column + 1); });
    return static_cast<float>(columns * FONT_CELL_WIDTH) * scale;
}

float Painter::TextHeight(std::string_view text, float scale)
{
    const auto lines = text.empty() ? 0 : 1 + std::count(text.begin(), text.end(), '\n');
    return static_cast<float>(lines * FONT_CELL_HEIGHT) * scale;
}
} // namespace Runner
