#pragma once

#include "Runner/Input/Panel_Input.h"
#include "Runner/Window/Window.h"

#include <string>

namespace Runner
{
enum class PanelEvent
{
    None, // nothing for a panel, or a key or button that was let go: who saw it pressed sees that, too
    Mouse,
    Keyboard,
};

// Takes an event of the window system (Window::observer) into the input of a panel over the window. The answer tells
// what could be kept from the game.
PanelEvent TakePanelEvent(const void* event, Window& window, PanelInput& input);

void CopyToClipboard(const std::string& text);
} // namespace Runner
