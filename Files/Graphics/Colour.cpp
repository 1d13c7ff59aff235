#include "Platform/Strict_Float.h"

#include "Files/Graphics/Colour.h"

#include <climits>
#include <cmath>

namespace
{

constexpr unsigned COLOUR_MASK = 0x00FFFFFF;

float Channel(unsigned colour, unsigned shift) { return static_cast<float>((colour >> shift) & 0xFF); }

// The nearest signed 32-bit integer, ties to even, saturated; NaN gives 0: the conversion of the 32-bit ARM processor.
unsigned RoundToWord(float value)
{
    constexpr float LIMIT = 2147483648.0f;
    if (value >= LIMIT)
        return static_cast<unsigned>(INT_MAX);
    if (value < -LIMIT)
        return static_cast<unsigned>(INT_MIN);
    return value == value ? static_cast<unsigned>(lrintf(value)) : 0u;
}

// Both products and the sum are rounded to float each: a fused multiply-add would give other colours.
unsigned MergeChannel(unsigned col1, unsigned col2, unsigned shift, float t, float u)
{
    const float to = Channel(col2, shift) * t;
    const float from = Channel(col1, shift) * u;
    const float sum = to + from;
    return (RoundToWord(sum) & 0xFFu) << shift;
}

} // namespace

unsigned ConvertAlpha(float _alpha)
{
    if (_alpha > 1.0f)
        return 255;
    if (!(_alpha >= 0.0f)) // NaN, too: its conversion would be undefined
        return 0;
    return static_cast<unsigned>(_alpha * 255.0f);
}

unsigned GR_RGBA_To_D3DColor(int _red, int _green, int _blue, unsigned _alpha)
{
    const auto low = [](int channel) { return static_cast<unsigned>(channel) & 0xFFu; };
    return (_alpha << 24) | (low(_red) << 16) | (low(_green) << 8) | low(_blue);
}

unsigned GR_Color_To_D3DColor(unsigned _col, unsigned _alpha) { return (_col & COLOUR_MASK) | (_alpha << 24); }

unsigned GR_D3DColor_Change_Alpha(unsigned _col, unsigned _alpha) { return GR_Color_To_D3DColor(_col, _alpha); }

unsigned GR_D3DColor_To_Color(unsigned _col) { return _col; }

unsigned GR_Color_Merge(unsigned _col1, unsigned _col2, float _lerp)
{
    const float t = _lerp;
    const float u = 1.0f - t;
    return MergeChannel(_col1, _col2, 0, t, u) | MergeChannel(_col1, _col2, 8, t, u) |
           MergeChannel(_col1, _col2, 16, t, u);
}
