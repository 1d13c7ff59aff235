// Plays a game for many frames and judges its memory: what is resident at the end must lie within 2 % of what was after
// the first thousandth of the frames, or after the first 5,000, in which the scripts' collector finds its pace.
//
//   endurance GAME FRAMES [--draw] [--size WIDTHxHEIGHT] [--every N] [--out DIRECTORY]
//
// Status 1: the memory has grown or the game failed. With --every the size is told after each N frames. Of small
// pictures a driver in software draws many more: what is kept of a frame does not depend on its size.

#include "Runner/Api/Api.h"
#include "Runner/Base/Process_Memory.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace
{
constexpr double GROWTH_MOST = 0.02;
constexpr int FRAMES_OF_A_START = 5000;

// Bytes that are resident; 0 where the system does not tell.
int64_t Resident()
{
    long all = 0, resident = 0;
    FILE* const file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr)
        return 0;
    const bool isRead = std::fscanf(file, "%ld %ld", &all, &resident) == 2;
    std::fclose(file);
    return isRead ? int64_t{resident} * sysconf(_SC_PAGESIZE) : 0;
}

double MiB(int64_t bytes) { return static_cast<double>(bytes) / (1 << 20); }

// False: the game has failed, or it has ended early.
bool PlayOn(Runner::Game& game, int last, int every)
{
    while (game.FrameNumber() < last && !game.HasEnded())
    {
        if (!game.Frame())
            return false;
        if (every > 0 && game.FrameNumber() % every == 0)
        {
            std::printf("%d frames: %.2f MiB\n", game.FrameNumber(), MiB(Resident()));
            std::fflush(stdout);
        }
    }
    return game.FrameNumber() == last;
}

int Judge(Runner::Game& game, const char* name, int frames, int every)
{
    using Clock = std::chrono::steady_clock;
    const int early = std::min(std::max(frames / 1000, FRAMES_OF_A_START), (frames + 1) / 2);
    const Clock::time_point start = Clock::now();
    Resident(); // the pages that it needs itself are counted from now on
    const bool isGood = game.Load() && PlayOn(game, early, every);
    const int64_t before = Resident();
    if (!isGood || !PlayOn(game, frames, every))
    {
        std::printf("%s: after %d frames: %s\n", name, game.FrameNumber(), game.Failure().c_str());
        return EXIT_FAILURE;
    }
    const int64_t after = Resident();
    const double growth = static_cast<double>(after - before) / static_cast<double>(before);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    std::printf("%s: %d frames in %.0f s: %.2f MiB after %d frames, %.2f MiB at the end, %+.2f %%\n", name, frames,
                seconds, MiB(before), early, MiB(after), 100 * growth);
    return before > 0 && growth <= GROWTH_MOST ? EXIT_SUCCESS : EXIT_FAILURE;
}
} // namespace

int main(int argc, char** argv)
{
    const int frames = argc > 2 ? std::atoi(argv[2]) : 0;
    bool isWrong = frames < 1;
    Runner::GameOptions options;
    options.file = argc > 1 ? argv[1] : "";
    options.draw = false;
    options.kit = SOURCE_DIR "/kit";
    int every = 0;
    for (int i = 3; i < argc; ++i)
        if (std::strcmp(argv[i], "--draw") == 0)
            options.draw = true;
        else if (std::strcmp(argv[i], "--every") == 0 && i + 1 < argc)
            every = std::atoi(argv[++i]);
        else if (std::strcmp(argv[i], "--size") == 0 && i + 1 < argc)
            isWrong |= std::sscanf(argv[++i], "%dx%d", &options.width, &options.height) != 2;
        else if (std::strcmp(argv[i], "--out") == 0 && i + 1 < argc)
            Runner::SetSaveArea(argv[++i]);
    if (isWrong)
    {
        std::fputs("endurance GAME FRAMES [--draw] [--size WIDTHxHEIGHT] [--every N] [--out DIRECTORY]\n", stderr);
        return EXIT_FAILURE;
    }
    Runner::SetConsoleQuiet(true);
    Runner::TakeFirstMemory();
    Runner::Game game(options, Runner::OpenApi);
    return Judge(game, argv[1], frames, every);
}
