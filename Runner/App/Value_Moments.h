#pragma once

#include "Runner/Game/Game.h"
#include "Runner/Save/Recording.h"
#include "Runner/Save/Saved_State.h"

namespace Runner
{
// Adds each value to the recording as a change by hand, to the first frame before which its camera is there. Where one
// is missing before the first frame, the recording is played for it, silently and without drawing, until all have
// appeared. options: of the game. saved: the saved game that it goes on from; null for none. False, and why in one
// line, when a camera never appears. A game that fails on the way is no fault here: its own run tells.
bool AddValuesToRecording(const GameOptions& options, const SavedState* saved, std::vector<HandChange> values,
                          Recording& recording, std::string& why);
} // namespace Runner
