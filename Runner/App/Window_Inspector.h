#pragma once

#include "Runner/App/Live_Inspector.h"
#include "Runner/Inspect/Inspector_View.h"
#include "Runner/Window/Window.h"

namespace Runner
{
// The camera inspector over a game in a window. While it is open, the mouse is its own, and so is the keyboard while
// something is typed into it; the game goes on all the same.
class WindowInspector
{
public:
    // All are kept. inspector: of the game; it must live as long.
    WindowInspector(Window& window, Game& game, LiveInspector& inspector)
        : m_window(window), m_game(game), m_inspector(inspector)
    {
    }
    ~WindowInspector();
    WindowInspector(const WindowInspector&) = delete;
    WindowInspector& operator=(const WindowInspector&) = delete;

    void LoseView() { m_view.reset(); } // the game's device is gone, and with it what the view made there

    // Whether the mouse at that place, in pixels of the window, is another one's all the same. Null for never.
    std::function<bool(float x, float y, bool isPressed)> isElsewhere;

    void Toggle() { m_isWanted = !m_isWanted; } // with the next Draw
    void Draw(const Port& game); // where the game's screen stands in the window. Nothing while it is closed

private:
    void Open();
    void Close();
    bool Keeps(const void* event);

    Window& m_window;
    Game& m_game;
    LiveInspector& m_inspector;
    PanelInput m_input;
    std::unique_ptr<InspectorView> m_view; // null before it was opened first, and in a build without one
    int64_t m_lastDraw = 0;
    bool m_isWanted = false;
};
} // namespace Runner
