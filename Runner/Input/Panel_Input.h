#pragma once
// What a panel over the game gets of mouse and keyboard, in pixels of what it is drawn into.

#include <array>
#include <string>

namespace Runner
{
enum class PanelKey
{
    Tab,
    Left,
    Right,
    Up,
    Down,
    Home,
    End,
    Delete,
    Backspace,
    Enter,
    Escape,
    SelectAll, // the letters of the usual shortcuts, with Control
    Copy,
    Paste,
    Cut,
};
constexpr int PANEL_KEYS = 15;

struct PanelInput
{
    float mouseX = -1e6f, mouseY = -1e6f; // far away before the mouse was seen
    std::array<bool, 3> buttons = {};     // left, right, middle
    std::array<bool, 3> clicked = {};     // pressed since the last look, and perhaps let go already
    float wheel = 0.0f;                   // turned since the last look
    std::array<bool, PANEL_KEYS> keys = {};
    std::array<bool, PANEL_KEYS> typed = {}; // as clicked
    bool control = false, shift = false;
    std::string text;             // typed since the last look, UTF-8
    float seconds = 1.0f / 60.0f; // since the last look

    // Forgets what counts since the last look.
    void Look()
    {
        clicked = {};
        typed = {};
        wheel = 0.0f;
        text.clear();
    }
};
} // namespace Runner
