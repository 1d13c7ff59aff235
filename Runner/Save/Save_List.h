#pragma once
// The saved games in the save area, as a game lists them for its players.

#include "Runner/Game/Journal.h"
#include "Runner/Save/Saved_State.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

struct ListedSave
{
    std::string name; // of the file, relative to the save area
    std::string why;  // it cannot be read, in a few words; empty when it can
    int32_t version = 0;
    std::string room; // empty in a file of version 1
    int32_t frame = 0;
    SavedThumbnail thumbnail;
};

constexpr size_t LISTED_SAVES_LIMIT = 1000; // further ones are not listed

// The saves of this game, by name: files in the save area and its directories, links not followed. Asked through the
// journal.
std::vector<ListedSave> AskSaves(const Game& game);
} // namespace Runner
