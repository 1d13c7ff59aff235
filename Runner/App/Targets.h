#pragma once
// The files that a run is asked to write.

#include "Runner/App/Options.h"

namespace Runner
{
// Tries each of them before the first frame, so that no long run ends without its result: names that are refused,
// directories that cannot be made, one file for two purposes. Leaves nothing behind but directories that the pictures
// need. False, and why in one line. The trace is not tried: the game opens it before its main file runs.
bool TargetsAreGood(const RunOptions& options, std::string& why);
} // namespace Runner
