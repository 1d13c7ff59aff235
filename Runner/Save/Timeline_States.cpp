// The states that a timeline keeps, and the check whether this game goes on from them exactly.

#include "Runner/Base/Uninterrupted.h"
#include "Runner/Host/Console.h"
#include "Runner/Lua/Settings_Table.h"
#include "Runner/Save/Capture.h"
#include "Runner/Save/Timeline.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <new>

#include <sys/wait.h>
#include <unistd.h>

namespace Runner
{
namespace
{
constexpr int NICENESS = 5; // the play comes first

enum Verdict : int
{
    STATES_GO_ON,
    STATES_DO_NOT,
};
} // namespace

size_t Timeline::KeptBytes() const
{
    size_t bytes = 0;
    for (const KeptState& kept : m_kept)
        bytes += kept.save.size();
    return bytes;
}

void Timeline::KeepState()
{
    KeptState kept;
    std::string missing, why;
    if (!m_isExact || m_hasParted || m_game->HasEnded() || (!m_kept.empty() && m_kept.back().frame >= m_position))
        return;
    kept.frame = m_position;
    if (!CaptureGame(*m_game, kept.save, missing, why) || !TakeSettings(m_game->scripts, kept.settings))
        return;
    m_kept.push_back(std::move(kept));
    while (KeptBytes() > KEPT_BYTES_LIMIT && m_kept.size() > 1)
        ThinOut();
}

// Keeps every other state, the second one first: those of a doubled distance.
void Timeline::ThinOut()
{
    TakeCheck(true);
    std::vector<KeptState> thinned;
    size_t checked = 0;
    for (size_t i = 1; i < m_kept.size(); i += 2)
    {
        checked += i < m_checked ? 1 : 0;
        thinned.push_back(std::move(m_kept[i]));
    }
    m_kept = std::move(thinned);
    m_checked = checked;
    m_keepEvery *= 2;
}

void Timeline::DropStates(int frame)
{
    StopCheck();
    while (!m_kept.empty() && m_kept.back().frame > frame)
        m_kept.pop_back();
    m_checked = m_kept.empty() ? 0 : std::min(m_checked, m_kept.size());
}

// ---- the check, in a process of its own ----

// What is buffered is written first: the process must not write it once more.
void Timeline::BeginCheck()
{
    if (m_checker != 0 || !m_isExact || m_checked + 1 >= m_kept.size())
        return;
    std::fflush(nullptr);
    m_checking = m_kept.size() - 1;
    const pid_t process = fork();
    if (process == 0)
    {
        [[maybe_unused]] const int ignored = nice(NICENESS);
        _exit(CheckStates() ? STATES_GO_ON : STATES_DO_NOT);
    }
    m_checker = std::max<pid_t>(process, 0); // without a process nothing is checked, and no state is used
    if (process < 0 && errno == ENOSYS)      // a system that has no processes, such as a page: none will ever be used
    {
        m_isExact = false;
        std::vector<KeptState>().swap(m_kept);
    }
}

void Timeline::TakeCheck(bool wait)
{
    if (m_checker == 0)
        return;
    int status = 0;
    const pid_t ended = Uninterrupted([&] { return waitpid(m_checker, &status, wait ? 0 : WNOHANG); });
    if (ended == 0)
        return;
    m_checker = 0;
    const bool isGood = ended > 0 && WIFEXITED(status) && WEXITSTATUS(status) == STATES_GO_ON;
    if (isGood)
        m_checked = m_checking;
    else
        m_isExact = false;
    if (!isGood)
        std::vector<KeptState>().swap(m_kept);
    m_checked = isGood ? m_checked : 0;
}

void Timeline::StopCheck()
{
    if (m_checker == 0)
        return;
    kill(m_checker, SIGKILL);
    Uninterrupted([this] { return waitpid(m_checker, nullptr, 0); });
    m_checker = 0;
}

void Timeline::FinishChecks()
{
    TakeCheck(true);
    BeginCheck();
    TakeCheck(true);
}

// In the other process: the running game and its pictures belong to the first one.
bool Timeline::CheckStates()
{
    try
    {
        const ConsoleSilence silence;
        m_game->CurrentPainter()->AbandonDevice();
        for (size_t i = m_checked; i < m_checking; ++i)
            if (!GoesOnTo(m_kept[i], m_kept[i + 1]))
                return false;
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

bool Timeline::GoesOnTo(const KeptState& from, const KeptState& to)
{
    Replay replay(Recorded(), from.frame, m_apply);
    if (!MakeGame(from, replay, false))
        return false;
    for (int frame = from.frame; frame < to.frame; ++frame)
    {
        InputFrame seen;
        replay.Next(seen);
        if (!m_game->Frame(seen) || m_game->FrameSum() != m_sums[static_cast<size_t>(frame)])
            return false;
    }
    std::vector<uint8_t> save;
    Settings settings;
    std::string missing, why;
    return CaptureGame(*m_game, save, missing, why) && save == to.save && TakeSettings(m_game->scripts, settings) &&
           settings == to.settings;
}
} // namespace Runner
