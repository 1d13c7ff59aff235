#pragma once

#include "Runner/Lua/Script_Trouble.h"

#include <string>
#include <vector>

namespace Runner
{
class Game;

// What is known of a game's failure: the line of the script first, as pcall would give it, then where it happened.
struct FailureReport
{
    std::string line;
    std::string event; // "player: step", "room cave: draw", "camera 1: update", "the game's file"; empty when no
                       // script was running
    std::string value; // the error itself, when it is no text
    std::string room;  // empty for none
    int frame = 0;     // frame_number() when it happened
    std::vector<StackLevel> stack; // the functions that were running, the innermost first

    // What stands below the line: event, room and frame, then the stack with each function's local variables, indented.
    // Empty when no script was running.
    std::vector<std::string> Details() const;
};

FailureReport DescribeFailure(const Game& game);
} // namespace Runner
