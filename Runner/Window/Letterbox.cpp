#include "Runner/Window/Letterbox.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace Runner
{
namespace
{
constexpr float STEPS_PER_UNIT = 8.0f;
constexpr float FARTHEST = 100000.0f; // from the screen's corner: keeps eighths exact

int Fitted(int side, int part, int whole) { return std::max(1, static_cast<int>(int64_t{side} * part / whole)); }

float ToUnits(float pixel, int start, int length, int units)
{
    const float place = (pixel - static_cast<float>(start)) * static_cast<float>(units) / static_cast<float>(length);
    return std::clamp(std::floor(place * STEPS_PER_UNIT) / STEPS_PER_UNIT, -FARTHEST, FARTHEST);
}
} // namespace

Letterbox::Letterbox(PixelSize screen, PixelSize window) : m_screen(screen)
{
    const bool isWindowWider = int64_t{window.width} * screen.height > int64_t{window.height} * screen.width;
    m_port.width = isWindowWider ? Fitted(window.height, screen.width, screen.height) : window.width;
    m_port.height = isWindowWider ? window.height : Fitted(window.width, screen.height, screen.width);
    m_port.x = (window.width - m_port.width) / 2;
    m_port.y = (window.height - m_port.height) / 2;
}

bool Letterbox::IsWhole() const { return m_port.width % m_screen.width == 0 && m_port.height % m_screen.height == 0; }

ScreenPoint Letterbox::ToScreen(float x, float y) const
{
    return {ToUnits(x, m_port.x, m_port.width, m_screen.width), ToUnits(y, m_port.y, m_port.height, m_screen.height)};
}
} // namespace Runner
