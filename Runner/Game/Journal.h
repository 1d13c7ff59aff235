#pragma once
// What a game learns of the world outside while it plays, other than its input: whether a file could be written, what a
// saved game held. A recording keeps these answers, and a replay gives them again without asking outside.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Runner
{
// The numbers stand in recordings: a new question goes to the end.
enum class Question : uint8_t
{
    Screenshot = 1,
    Save,
    Load,
    Saves, // which saved games there are
};
constexpr Question LAST_QUESTION = Question::Saves;

struct Answer
{
    bool done = false;
    std::string why;              // of a failure, one line; may be empty
    std::vector<uint8_t> content; // of the file that was read
};

class Game;

class Journal
{
public:
    virtual ~Journal() = default;

    // ask does what the game wants, outside of it. It may be called once or not at all.
    virtual Answer Ask(Question question, const std::function<Answer()>& ask) = 0;

    // Around each frame of the game, whether it fails or not: its input is known, its work is done.
    virtual void BeginFrame(const Game&) {}
    virtual void EndFrame(const Game&) {}
};
} // namespace Runner
