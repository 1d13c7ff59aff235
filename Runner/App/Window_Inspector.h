#pragma once

#include "Runner/Game/Game.h"
#include "Runner/Inspect/Inspector_View.h"
#include "Runner/Inspect/Preview.h"
#include "Runner/Window/Window.h"

namespace Runner
{
// The camera inspector over a game in a window. While it is open, the mouse is its own, and so is the keyboard while
// something is typed into it; the game goes on all the same. A change shows at once, even while the game stands.
// Nothing watches the game while it is closed.
class WindowInspector : private FrameObserver
{
public:
    WindowInspector(Window& window, Game& game) : m_window(window), m_game(game), m_inspector(game) {} // kept
    ~WindowInspector() override;

    // The device that draws the game from now on. The one before is gone by then: a lost one is replaced. Without one,
    // changes show with the next frame.
    void LoseDevice();
    void SetDevice(KeepingDevice& device);
    WindowInspector(const WindowInspector&) = delete;
    WindowInspector& operator=(const WindowInspector&) = delete;

    void Toggle() { m_isWanted = !m_isWanted; }               // with the next Draw
    std::function<void(const CameraChange& change)> onChange; // after one has been made by hand; null for nobody
    // Changes by hand that a reload has left out, until they are made again.
    std::vector<CameraChange>& Aside() { return m_inspector.aside; }
    void Draw(const Port& game); // where the game's screen stands in the window. Nothing while it is closed

private:
    void Open();
    void Close();
    bool Keeps(const void* event);
    void Take(const CameraChange& change);
    void FrameBegins(const Game& game) override;

    Window& m_window;
    Game& m_game;
    Inspector m_inspector;
    Profile m_profile;
    KeepingDevice* m_device = nullptr;
    std::unique_ptr<Preview> m_preview; // while it is open
    Watchers m_watchers;
    FrameObserver* m_before = nullptr; // who watched the game already
    PanelInput m_input;
    std::unique_ptr<InspectorView> m_view; // null before it was opened first, and in a build without one
    int64_t m_lastDraw = 0;
    bool m_isWanted = false;
    bool m_isOpen = false;
};

// Opens the window's device for a game. A running game asks for one when its own was lost: what the inspector made with
// that one is let go. inspector: who watches the game; null for nobody yet.
std::unique_ptr<Device> OpenWatchedDevice(Window& window, WindowInspector* inspector, int width, int height,
                                          std::string& error);
} // namespace Runner
