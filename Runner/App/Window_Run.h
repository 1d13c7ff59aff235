#pragma once

#include "Runner/App/Session.h"
#include "Runner/Window/Window.h"

namespace Runner
{
// Plays the game of the options in a window, or the games of their menu, until the user closes it. A failed game shows
// its error, and can be started again.
Outcome PlayInWindow(const RunOptions& options, FILE* err, const WindowOpener& open = Window::Open);
} // namespace Runner
