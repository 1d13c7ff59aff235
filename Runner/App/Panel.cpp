#include "Runner/App/Panel.h"

#include "Runner/Draw/Device.h"
#include "Runner/Host/Graphics.h"

#include <algorithm>

namespace Runner
{
Painter* Panel::Open()
{
    const GraphicsKeeper keeper;
    std::string ignored; // a game that cannot be drawn either has said so
    if (m_painter == nullptr)
        m_painter = Painter::Open(m_size.width, m_size.height, true, ignored,
                                  [this](int width, int height, std::string& error)
                                  { return m_window.OpenDevice(width, height, error); });
    return m_painter.get();
}

void Panel::Draw(const std::function<void(Painter& painter)>& paint)
{
    const GraphicsKeeper keeper;
    if (Open() == nullptr)
        return;
    m_painter->BeginFrame();
    m_painter->Clear(0x30221C);
    paint(*m_painter);
    m_painter->EndFrame();
}

void Panel::ShowAlone()
{
    m_window.Show(m_size);
    const Letterbox box = m_window.Box();
    const PixelSize window = m_window.Pixels();
    if (m_painter != nullptr)
        m_painter->Show({box.Where(), window.width, window.height, !box.IsWhole(), true});
    m_window.Swap();
}

void Panel::ShowOver(const Port& game)
{
    const int times = std::max(1, std::min(game.width / 2 / m_size.width, game.height / 2 / m_size.height));
    const PixelSize wanted = {std::min(m_size.width * times, game.width), std::min(m_size.height * times, game.height)};
    Letterbox box(m_size, wanted);
    Port where = box.Where();
    where.x = game.x + (game.width - where.width) / 2;
    where.y = game.y + (game.height - where.height) / 2;
    ShowAt(where);
}

void Panel::ShowAt(const Port& where)
{
    const PixelSize window = m_window.Pixels();
    const bool isWhole = where.width % m_size.width == 0 && where.height % m_size.height == 0;
    if (m_painter != nullptr)
        m_painter->Show({where, window.width, window.height, !isWhole, false});
}

std::vector<std::string> Wrapped(const std::string& line, size_t characters)
{
    std::vector<std::string> parts;
    std::string rest = line;
    while (rest.size() > characters)
    {
        const size_t space = rest.rfind(' ', characters);
        const bool hasSpace = space != std::string::npos && space > 0;
        parts.push_back(rest.substr(0, hasSpace ? space : characters));
        rest.erase(0, hasSpace ? space + 1 : characters);
    }
    parts.push_back(rest);
    return parts;
}
} // namespace Runner
