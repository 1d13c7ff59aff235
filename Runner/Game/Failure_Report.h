#pragma once

#include <string>
#include <vector>

namespace Runner
{
class Game;

// What is known of a game's failure: the line of the script first, then event, object and frame where there are any,
// then the functions that were running, the innermost first.
struct FailureReport
{
    std::string line;
    std::string event; // "the step event of object \"player\"", "the draw script of room \"cave\""
    int frame = 0;     // frame_number() when it happened
    std::vector<std::string> stack;
};

FailureReport DescribeFailure(const Game& game);
} // namespace Runner
