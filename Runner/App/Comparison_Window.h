#pragma once

#include "Runner/App/Session.h"
#include "Runner/Window/Window.h"

namespace Runner
{
// Plays the recording of the options in a window, side by side with their game and with the one that it is compared to.
// Time works as in a replay: pause, one step, slow motion, going back, for both. It stands at the end until it is
// closed.
Outcome CompareInWindow(const RunOptions& options, FILE* err, const WindowOpener& open = Window::Open);
} // namespace Runner
