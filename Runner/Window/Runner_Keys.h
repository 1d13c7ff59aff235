#pragma once
// The keys that the Runner keeps for itself: they do not reach the game.

#include <array>
#include <string>

namespace Runner
{
enum class Command
{
    Help,
    Pause,
    Fullscreen,
    Inspect,
    Slow,
    Step,
    Back,
    Rewind,
};
constexpr int COMMAND_COUNT = 8;

struct CommandHead
{
    const char* name; // in --keys
    const char* key;  // unless --keys says otherwise
    const char* meaning;
};

inline constexpr CommandHead COMMANDS[COMMAND_COUNT] = {
    {"help", "f12", "shows and hides these keys"},
    {"pause", "f10", "pauses and goes on"},
    {"fullscreen", "f11", "fills the display and goes back"},
    {"inspect", "f1", "shows and hides the camera inspector"},
    {"slow", "f9", "slow motion, a quarter of the speed"},
    {"step", "f8", "pauses and plays one frame"},
    {"back", "f7", "pauses and goes one frame back"},
    {"rewind", "f6", "pauses and goes five seconds back"},
};

class RunnerKeys
{
public:
    RunnerKeys();

    // "help=f8,pause=p" moves keys; "pause=" takes one away. Answers what is wrong with the text; empty when nothing
    // is.
    std::string Move(const std::string& text);

    bool Find(int key, Command& command) const; // key: by its name (Input_Names.h). False for a key of the game
    int KeyOf(Command command) const { return m_keys[static_cast<size_t>(command)]; } // NO_NAME for none

private:
    std::array<int, COMMAND_COUNT> m_keys;
};
} // namespace Runner
