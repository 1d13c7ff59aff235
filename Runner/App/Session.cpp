#include "Runner/App/Session.h"

#include "Runner/App/Interrupt.h"
#include "Runner/App/Progress.h"
#include "Runner/Game/Failure_Report.h"
#include "Runner/Host/Console.h"
#include "Runner/Save/Capture.h"
#include "Runner/Save/Fit.h"
#include "Runner/Save/Restore.h"

namespace Runner
{
namespace
{
std::string Frames(int count) { return std::to_string(count) + (count == 1 ? " frame" : " frames"); }

// Two faults as one line; either may be empty.
std::string Joined(const std::string& first, const std::string& second)
{
    return first + (first.empty() || second.empty() ? "" : "; ") + second;
}
} // namespace

void ShowDetails(const Outcome& outcome, FILE* err)
{
    for (const std::string& line : outcome.details)
        std::fprintf(err, "    %s\n", line.c_str());
}

void TellWarnings(const Game& game, FILE* err)
{
    const size_t count = game.scripts.warnings.Count();
    if (count > 0)
        std::fprintf(err, "runner: %zu warning%s\n", count, count == 1 ? "" : "s");
}

void Session::Note(const std::string& fault) { m_faults = Joined(m_faults, fault); }

// ---- before the first frame ----

bool Session::Start()
{
    const bool hasSave = m_start.Saved() != nullptr;
    SavedState saved = hasSave ? *m_start.Saved() : SavedState();
    const std::string& path = m_options.load.empty() ? m_options.replay : m_options.load; // where the save was
    std::string why;
    if (!m_game.Load())
        return false;
    const bool isGood = (!hasSave || FitToGame(m_game, saved, path, why)) && ConsoleIsGood(why);
    Note(why);
    if (!isGood || (hasSave && !RestoreGame(m_game, saved)))
        return false;
    if (!m_start.FitsGame(m_game, why))
        Note(why);
    m_whole = m_game.FrameNumber();
    return m_faults.empty() && SaveIsAhead();
}

// A frame that can never come is known before a long run.
bool Session::SaveIsAhead()
{
    const int wanted = m_options.saveAt.first;
    const int first = m_game.FrameNumber();
    if (wanted == 0)
        return true;
    if (wanted <= first)
        Note("--save-at " + std::to_string(wanted) + ": the loaded game has played " + Frames(first) + " already");
    else if (wanted - first > m_options.frames)
        Note("--save-at " + std::to_string(wanted) + ": the run ends after " + Frames(first + m_options.frames));
    return m_faults.empty();
}

// ---- frames ----

bool Session::GoesOn(int frame) const
{
    return frame < m_options.frames && !m_game.HasEnded() && !ScriptEngine::Interrupted();
}

bool Session::PlayFrame(int frame, const InputFrame& seen)
{
    if (!m_game.Frame(seen))
        return false;
    ++m_whole;
    if (onFrame != nullptr)
        onFrame(frame);
    std::string why;
    const bool isSaveDue = m_options.saveAt.first == m_whole;
    m_isSaved = m_isSaved || isSaveDue;
    const bool isGood = m_settings.Keep(m_game, false, why) && m_album.Take(frame, why) &&
                        (!isSaveDue || SaveGame(m_game, m_options.saveAt.second, why)) && ConsoleIsGood(why);
    Note(why);
    return isGood;
}

bool Session::PlayFrames()
{
    Progress progress(m_err, m_options.frames, m_options.quiet || m_options.window);
    InputFrame seen;
    for (int frame = 0; GoesOn(frame) && m_input.Next(seen); ++frame)
    {
        progress.Show(frame);
        if (!PlayFrame(frame, seen))
            return false;
    }
    return true;
}

// ---- after the last frame ----

// isWhole: the run came to its end, or a signal ended it. After an error only the sheet is written.
void Session::WriteTheEnd(bool isWhole)
{
    std::string why;
    if (!m_album.WriteSheet(why))
        Note(why);
    why.clear();
    if (!m_watching.WriteProfile(why))
        Note(why);
    why.clear();
    if (isWhole && !m_settings.Keep(m_game, true, why))
        Note(why);
    why.clear();
    if (isWhole && !m_album.WriteLastFrame(why))
        Note(why);
    const std::string wanted = "--save-at " + std::to_string(m_options.saveAt.first);
    if (isWhole && m_options.saveAt.first > 0 && !m_isSaved)
        Note(ScriptEngine::Interrupted() ? wanted + " was not reached, nothing is saved"
                                         : wanted + ": the game has stopped after " + Frames(m_whole));
}

// failure: of the script that did not come back; empty when the frame was finished.
std::string Session::InterruptedText(const std::string& failure) const
{
    const std::string word = InterruptHandler::Word();
    if (failure.empty())
        return word + " after " + Frames(m_whole);
    return word + (m_isStarted ? " in frame " + std::to_string(m_whole) : " before the first frame") + ": " + failure;
}

Outcome Session::Play()
{
    m_isStarted = Start();
    const bool isPlayed = m_isStarted && PlayFrames();
    const std::string failure = m_game.Failure();
    const bool isStuck = !failure.empty() && ScriptEngine::GaveUp();
    const bool isInterrupted = ScriptEngine::Interrupted() && m_faults.empty() && (isStuck || failure.empty());
    WriteTheEnd(isPlayed || isInterrupted);
    std::string why;
    if (m_isStarted && !m_start.Finish(m_game, why))
        Note(why);
    if (!m_game.Finish() && failure.empty())
        Note(m_game.Failure());
    const std::string line = Joined(isInterrupted ? InterruptedText(failure) : failure, m_faults);
    const int status = line.empty() ? EXIT_DONE : EXIT_GAME_ERROR;
    Outcome outcome = {line, isInterrupted ? InterruptHandler::Status() : status, {}};
    if (!failure.empty() && !isInterrupted)
        outcome.details = DescribeFailure(m_game).Details();
    return outcome;
}
} // namespace Runner
