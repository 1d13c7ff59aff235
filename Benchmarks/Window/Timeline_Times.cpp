// What going back in a game's time takes, drawn without a window: starting it anew up to a frame, as after a change of
// its files, and going to any frame of five minutes. By hand or by ./bench, in an optimised build.
//
// usage: timeline_times GAME.lua

#include "Runner/Api/Api.h"
#include "Runner/Base/Random.h"
#include "Runner/Save/Timeline.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace
{
using Runner::Timeline;

constexpr int A_MINUTE = 60 * Runner::FRAMES_A_SECOND, FIVE_MINUTES = 5 * A_MINUTE;
constexpr int WAYS = 40; // to frames that are drawn by lot

template <typename Work> double SecondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Nobody touches anything, and nothing is painted on the way. False: the game has failed.
bool PlayOn(Timeline& timeline, int frames)
{
    bool isGood = true;
    for (int i = 0; isGood && i < frames; ++i)
    {
        timeline.Now().CurrentPainter()->SetShown(false);
        isGood = timeline.Play(Runner::InputFrame());
    }
    timeline.Now().CurrentPainter()->SetShown(true);
    return isGood;
}

bool MeasureReload(const Runner::GameOptions& options, std::string& why)
{
    Timeline timeline(options, Runner::OpenApi, "", {});
    Timeline::Arrival arrival = Timeline::Arrival::Failed;
    double seconds = 0.0;
    if (timeline.Start(why) && PlayOn(timeline, A_MINUTE))
        seconds = SecondsOf([&] { arrival = timeline.Reload(A_MINUTE, nullptr); });
    why = timeline.Now().Failure();
    std::printf("starting anew up to frame %d: %.2f s (%.0f frames a second)\n", A_MINUTE, seconds, A_MINUTE / seconds);
    return arrival == Timeline::Arrival::There;
}

bool MeasureWays(const Runner::GameOptions& options, std::string& why)
{
    Timeline timeline(options, Runner::OpenApi, "", {});
    if (!timeline.Start(why) || !PlayOn(timeline, FIVE_MINUTES))
        return false;
    timeline.FinishChecks();
    Runner::Random random;
    std::vector<double> seconds;
    bool isThere = true;
    for (int i = 0; isThere && i < WAYS; ++i)
    {
        const int frame = random.Range(0, FIVE_MINUTES);
        seconds.push_back(SecondsOf([&] { isThere = timeline.GoTo(frame, nullptr) == Timeline::Arrival::There; }));
    }
    why = timeline.Now().Failure();
    std::sort(seconds.begin(), seconds.end());
    std::printf("going to a frame of %d: %.2f s in the middle of %zu, the longest %.2f s\n", FIVE_MINUTES,
                seconds[seconds.size() / 2], seconds.size(), seconds.back());
    std::printf("kept states: %.1f MB, %s\n", static_cast<double>(timeline.KeptBytes()) / (1 << 20),
                timeline.StatesAreExact() ? "exact" : "not exact, so that every way starts at the first frame");
    return isThere;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fputs("usage: timeline_times GAME.lua\n", stderr);
        return 2;
    }
    Runner::GameOptions options;
    options.file = argv[1];
    options.limits.instructions = 400000000; // as in a window
    std::string why;
    if (MeasureReload(options, why) && MeasureWays(options, why))
        return 0;
    std::fprintf(stderr, "timeline_times: %s\n", why.empty() ? "a way did not lead there" : why.c_str());
    return 1;
}
