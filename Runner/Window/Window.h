#pragma once

#include "Runner/Window/Input_Gatherer.h"
#include "Runner/Window/Letterbox.h"
#include "Runner/Window/Runner_Keys.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace Runner
{
class Device;

struct WindowOptions
{
    std::string title;
    int scale = 0; // pixels of the display for one of the game; 0: as many as fit well
    bool fullscreen = false;
    RunnerKeys keys;
    bool waitsForDisplay = true; // Swap does
};

// A window on the user's display, and the devices that report to it. One at a time.
class Window
{
public:
    // Hidden until Show. Null, and why in one line, when there is no display or no window in this build.
    static std::unique_ptr<Window> Open(const WindowOptions& options, std::string& why);
    virtual ~Window() = default;

    // A device that draws pictures of that size and can show them in this window.
    virtual std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error) = 0;

    // Makes the window fit a screen of that size, and visible. Later calls only change the screen that the mouse is
    // reported in.
    virtual void Show(PixelSize screen) = 0;
    virtual void Swap() = 0;                 // shows what was drawn; may wait for the display
    virtual void Poll(int milliseconds) = 0; // waits at most so long for something to happen, and takes note of it
    virtual void ToggleFullscreen() = 0;
    virtual PixelSize Pixels() const = 0;                 // of what can be drawn into
    virtual float PixelsPerPoint() const { return 1.0f; } // more than 1 on a fine display, where letters are larger
    virtual bool IsVisible() const = 0;                   // false while it is minimised
    virtual int64_t Now() const = 0;                      // nanoseconds

    Letterbox Box() const { return {m_screen, Pixels()}; } // where the screen stands

    bool IsClosed() const { return m_isClosed; } // the user has asked for its end
    bool HasFocus() const { return m_hasFocus; }
    bool TakeCommand(Command& command); // the keys of the Runner, in the order in which they came
    InputFrame TakeInput() { return m_input.Take(); }

    // ---- for what draws over the game with a library of its own ----
    // Sees each event of the window system first; true keeps it from the game. Null for nobody.
    std::function<bool(const void* event)> observer;
    virtual void* Native() = 0; // the library's window

    // Called when the display goes away while the window is open. It writes what must not be lost and ends the process:
    // the window system's library cannot go on. Null: the library ends the process itself.
    std::function<void()> onLost;

protected:
    PixelSize m_screen = {1, 1};
    bool m_isClosed = false;
    bool m_hasFocus = true;
    std::deque<Command> m_commands;
    InputGatherer m_input;
};

// What opens a window, as Window::Open does.
using WindowOpener = std::function<std::unique_ptr<Window>(const WindowOptions& options, std::string& why)>;
} // namespace Runner
