// What a frame of one camera of the kit costs: following with a spring, look-ahead, limits, and a shake. By hand, in an
// optimised build. The game calls kit.step many times in a frame, with and without Lua's hook that counts instructions;
// the same loop without the call is subtracted.

#include "Runner/Api/Api.h"
#include "Runner/Game/Game.h"

#include <lua.hpp>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>

namespace
{
constexpr int STEPS_IN_A_FRAME = 100;
constexpr int FRAMES = 600;

double MicrosecondsOfAFrame(Runner::Game& game)
{
    double least = 1e9;
    for (int i = 0; i < FRAMES; ++i)
    {
        const std::clock_t start = std::clock();
        if (!game.Frame())
            return -1.0;
        const double taken = static_cast<double>(std::clock() - start);
        least = std::min(least, taken * 1e6 / CLOCKS_PER_SEC);
    }
    return least;
}

// Processor time, the least of many frames: whatever else the machine does only adds to it.
double Measure(bool callsKit, bool hasHook, std::string& why)
{
    Runner::GameOptions options;
    options.file = SOURCE_DIR "/Tests/Kit/support/cost_game.lua";
    options.kit = SOURCE_DIR "/kit";
    options.draw = false;
    options.settings["steps"] = int64_t{STEPS_IN_A_FRAME};
    options.settings["kit"] = callsKit;
    Runner::Game game(options, Runner::OpenApi);
    const bool isLoaded = game.Load();
    if (isLoaded && !hasHook)
        lua_sethook(game.scripts.Running(), nullptr, 0, 0);
    const double taken = isLoaded ? MicrosecondsOfAFrame(game) : -1.0;
    why = game.Failure();
    return taken / STEPS_IN_A_FRAME;
}
} // namespace

int main()
{
    std::string why;
    for (const bool hasHook : {false, true})
    {
        const double with = Measure(true, hasHook, why);
        const double without = why.empty() ? Measure(false, hasHook, why) : 0.0;
        if (!why.empty())
        {
            std::fprintf(stderr, "kit_cost: %s\n", why.c_str());
            return 1;
        }
        std::printf("%s the hook that counts instructions: %.2f us a frame\n", hasHook ? "with" : "without",
                    with - without);
    }
    return 0;
}
