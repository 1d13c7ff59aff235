#include "Runner/App/Album.h"

#include "Runner/Draw/Screenshot.h"

namespace Runner
{
namespace
{
std::string FrameName(int frame)
{
    char name[32];
    std::snprintf(name, sizeof(name), "frame_%05d.png", frame);
    return name;
}
} // namespace

// Empty before there is a screen, and when it cannot be shown: why tells.
Picture Album::Screen(std::string& why) const
{
    return m_inspector != nullptr ? m_inspector->Show(why) : m_game.Screen();
}

bool Album::Take(int frame, std::string& why)
{
    if (!m_options.game.draw)
        return true;
    const bool single = m_options.every > 0 && frame % m_options.every == 0;
    const bool small = !m_options.contactSheet.empty() && m_sheet.Wants(frame);
    if (!single && !small)
        return true;
    const Picture screen = Screen(why);
    if (!why.empty())
        return false;
    if (small)
        m_sheet.Add(screen);
    return !single || WriteScreenshot(screen, FrameName(frame), "png", why);
}

bool Album::WriteSheet(std::string& why) const
{
    return m_sheet.IsEmpty() || WriteScreenshot(m_sheet.Sheet(), m_options.contactSheet, "", why);
}

bool Album::WriteLastFrame(std::string& why) const
{
    if (m_options.screenshot.empty())
        return true;
    const Picture screen = Screen(why);
    if (!why.empty())
        return false;
    return screen.rgba.empty() || WriteScreenshot(screen, m_options.screenshot, "", why);
}
} // namespace Runner
