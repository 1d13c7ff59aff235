#include "Runner/App/Comparison.h"

#include "Runner/Api/Api.h"
#include "Runner/Draw/Screenshot.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int COLUMNS = 6;

// Plays the recording, and answers its row of the strip. outcome: of the run; its line is kept when the run before had
// one.
Picture PlayRow(const RunOptions& asked, FILE* err, Outcome& outcome)
{
    RunOptions options = asked;
    RunStart start;
    std::string why;
    options.anyway = true; // one of them is not the game that was recorded
    if (!start.Open(options, why))
    {
        outcome = {why, EXIT_GAME_ERROR};
        return {};
    }
    ContactSheet row(options.frames, COLUMNS, 1);
    Game played(options.game, OpenApi);
    Session session(played, options, start, *start.Player(), err);
    session.onFrame = [&row, &played](int frame)
    {
        if (row.Wants(frame))
            row.Add(played.Screen());
    };
    const Outcome own = session.Play();
    if (outcome.line.empty())
        outcome = own;
    return row.Sheet();
}

Picture Stacked(const Picture& upper, const Picture& lower)
{
    Picture both = BlackPicture(std::max(upper.width, lower.width), upper.height + lower.height);
    for (int y = 0; y < both.height; ++y)
    {
        const bool isUpper = y < upper.height;
        const Picture& from = isUpper ? upper : lower;
        const auto row =
            from.rgba.begin() + static_cast<std::ptrdiff_t>(from.Offset(0, isUpper ? y : y - upper.height));
        std::copy_n(row, static_cast<size_t>(from.width) * 4,
                    both.rgba.begin() + static_cast<std::ptrdiff_t>(both.Offset(0, y)));
    }
    return both;
}
} // namespace

RunOptions OtherGame(const RunOptions& options)
{
    RunOptions other = options;
    other.game.file = options.compare.empty() ? options.game.file : options.compare;
    other.game.trace.clear();
    other.saveAt = {};
    return other;
}

Outcome Compare(const RunOptions& asked, FILE* err)
{
    RunOptions options = asked;
    Outcome outcome;
    const std::string name = options.contactSheet;
    options.contactSheet.clear();
    const RunOptions other = OtherGame(options);
    options.values.clear();
    const Picture upper = PlayRow(options, err, outcome);
    const Picture lower =
        outcome.status == EXIT_DONE || outcome.status == EXIT_GAME_ERROR ? PlayRow(other, err, outcome) : Picture();
    std::string why;
    const Picture strip = Stacked(upper, lower);
    if (!strip.rgba.empty() && !WriteScreenshot(strip, name, "", why) && outcome.line.empty())
        outcome = {why, EXIT_GAME_ERROR};
    return outcome;
}
} // namespace Runner
