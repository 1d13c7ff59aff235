#pragma once

#include "Runner/Draw/Painter.h"
#include "Runner/Window/Window.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Runner
{
// A page of the Runner's own in the window: text and pictures beside a game, drawn without touching its state.
class Panel
{
public:
    Panel(Window& window, PixelSize size) : m_window(window), m_size(size) {} // window: kept, not copied

    Painter* Open(); // to load pictures with; null when the window cannot draw

    void Draw(const std::function<void(Painter& painter)>& paint);
    void ShowAlone();                // fills the window, letterboxed
    void ShowOver(const Port& game); // in the middle of the game, at most as large as it

    void ShowAt(const Port& where); // stretched over that part of the window

    PixelSize Size() const { return m_size; }

private:
    Window& m_window;
    const PixelSize m_size;
    std::unique_ptr<Painter> m_painter;
};

// Breaks a line at spaces, or anywhere, so that no part has more characters.
std::vector<std::string> Wrapped(const std::string& line, size_t characters);
} // namespace Runner
