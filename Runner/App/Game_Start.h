#pragma once

#include "Runner/App/Options.h"
#include "Runner/Save/Saved_State.h"

namespace Runner
{
// What a run starts from: files that are read before its game is made.
struct GameStart
{
    GameOptions options;
    SavedState saved;
    bool isLoading = false;

    const SavedState* Saved() const { return isLoading ? &saved : nullptr; } // null for a new game
};

// False, and why in one line, when a file cannot be read.
bool PrepareStart(const RunOptions& options, GameStart& start, std::string& why);
} // namespace Runner
