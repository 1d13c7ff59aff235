#include "Runner/App/Value_Moments.h"

#include "Runner/Api/Api.h"
#include "Runner/App/Run_Start.h"
#include "Runner/Host/Console.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Runner/Save/Fit.h"
#include "Runner/Save/Replay.h"
#include "Runner/Save/Restore.h"

#include <algorithm>

namespace Runner
{
namespace
{
// Takes the values whose cameras are there now out of those that wait, in the order given.
std::vector<HandChange> TakeReady(std::vector<HandChange>& waiting)
{
    const auto ready = std::stable_partition(
        waiting.begin(), waiting.end(), [](const HandChange& value) { return PeekCamera(value.camera) == nullptr; });
    std::vector<HandChange> taken(ready, waiting.end());
    waiting.erase(ready, waiting.end());
    return taken;
}

bool Begin(Game& game, const SavedState* saved)
{
    if (!game.Load() || saved == nullptr)
        return game.Failure().empty();
    SavedState state = *saved;
    std::string ignored;
    return FitToGame(game, state, "", ignored) && RestoreGame(game, state);
}
} // namespace

// A value takes effect in the frame that it was added to, so the frames after it are those that the run will play.
bool AddValuesToRecording(const GameOptions& options, const SavedState* saved, std::vector<HandChange> values,
                          Recording& recording, std::string& why)
{
    const ConsoleSilence silence;
    Replay replay(recording, 0, ApplyByHand);
    GameOptions silent = options;
    silent.draw = false;
    silent.trace.clear();
    silent.journal = &replay;
    Game game(silent, OpenApi);
    bool isGood = Begin(game, saved);
    for (int frame = 0; isGood && frame < recording.Frames() && !game.HasEnded(); ++frame)
    {
        const std::vector<HandChange> ready = TakeReady(values);
        if (!ready.empty())
            recording.AddChanges(frame, ready);
        if (values.empty())
            return true;
        InputFrame seen;
        isGood = replay.Next(seen) && game.Frame(seen);
    }
    if (isGood && !values.empty())
        why = "--compare-values: the recording has no frame with a camera " + std::to_string(values.front().camera);
    return why.empty();
}
} // namespace Runner
