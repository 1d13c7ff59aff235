#pragma once
// What the page is told, as JSON. Its shapes are those of runner.d.ts.

#include "Runner/Game/Failure_Report.h"
#include "Runner/Inspect/Inspector.h"

#include <string>

namespace Runner
{
std::string FailureJson(const Game& game);
std::string PanelJson(const PanelContent& content, int frame);

// The styles of the overlay's kinds, in their order: [{name, colour, width}].
std::string StylesJson();

// For each view of the last frame: its port, its lines as numbers (kind, from x, y, to x, y) in pixels of the screen,
// its words. Lines that do not show in the port are left out.
std::string OverlaysJson(const FrameNotes& notes);
} // namespace Runner
