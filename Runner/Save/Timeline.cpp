#include "Runner/Save/Timeline.h"

#include "Runner/Host/Console.h"
#include "Runner/Lua/Settings_Table.h"
#include "Runner/Save/Capture.h"
#include "Runner/Save/Fit.h"
#include "Runner/Save/Restore.h"
#include "Runner/Save/Save_File.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int FRAMES_BETWEEN_REPORTS = 60;
} // namespace

// ---- the game ----

Timeline::Timeline(GameOptions options, ScriptOpener openScripts, const std::string& record, std::vector<uint8_t> save,
                   ChangeApplier apply)
    : m_options(std::move(options)), m_openScripts(openScripts), m_apply(std::move(apply)), m_recorder(record, save)
{
    m_first.save = std::move(save);
}

Timeline::~Timeline() { StopCheck(); }

bool Timeline::MakeGame(const KeptState& from, Journal& journal, bool draw)
{
    GameOptions options = m_options;
    options.draw = options.draw && draw;
    options.journal = &m_switch;
    if (!m_isFirst && m_recorder.Recorded().Frames() > 0) // the trace tells what was played first
        options.trace.clear();
    m_isFirst = false;
    m_switch.to = &journal;
    m_game.reset();
    m_game = std::make_unique<Game>(options, m_openScripts);
    m_position = from.frame;
    m_hasParted = false;
    if (!m_game->Load() || !Restore(from.save))
        return false;
    if (from.frame == 0) // its settings stand in the options
        return true;
    m_game->input.BeginFrame(Recorded().Frame(from.frame - 1).input); // what the next frame finds as the one before
    return ReplaceSettings(m_game->scripts, from.settings);
}

// False: the game has failed. An empty save is a new game's.
bool Timeline::Restore(const std::vector<uint8_t>& save)
{
    if (save.empty())
        return true;
    SavedState state;
    std::string why;
    if (DecodeState(save, state, why) && FitToGame(*m_game, state, "the saved game", why) &&
        RestoreGame(*m_game, state))
        return true;
    if (!m_game->scripts.Failed())
        m_game->scripts.Fail(why);
    return false;
}

void Timeline::Follow(Recording recording)
{
    m_recorder.Take(std::move(recording));
    m_isFollowing = true;
}

bool Timeline::Start(std::string& why)
{
    Replay replay(Recorded(), 0, m_apply); // answers what the game asks before its first frame
    Journal& journal = m_isFollowing ? static_cast<Journal&>(replay) : m_recorder;
    if (!MakeGame(m_first, journal, true))
        why = m_game->Failure();
    m_switch.to = &m_recorder;
    m_askedElseAt = replay.AskedElseAt();
    return why.empty();
}

bool Timeline::Play(const InputFrame& seen)
{
    if (m_position < Frames())
    {
        DropStates(m_position);
        m_sums.resize(static_cast<size_t>(m_position));
        m_recorder.Cut(m_position, m_sums);
    }
    const bool isGood = m_game->Frame(seen);
    ++m_position;
    TakeFrame(isGood);
    TakeCheck(false);
    BeginCheck();
    return isGood;
}

bool Timeline::PlayRecorded()
{
    if (m_recorder.HasChanges())
    {
        DropStates(m_position);
        m_sums.resize(std::min(m_sums.size(), static_cast<size_t>(m_position)));
        m_recorder.AddChanges(m_position, m_recorder.TakeChanges());
        m_isChanged = true;
    }
    Replay replay(Recorded(), m_position, m_apply); // making a change twice makes no difference
    m_switch.to = &replay;
    const bool isGood = PlayAgain(replay);
    m_switch.to = &m_recorder;
    TakeCheck(false);
    BeginCheck();
    return isGood;
}

int Timeline::PartedAt() const
{
    if (m_isChanged)
        return 0;
    Hash blockSum;
    for (size_t frame = 0; frame < m_sums.size(); ++frame)
    {
        AddFrameSum(blockSum, m_sums[frame]);
        const size_t block = frame / BLOCK_FRAMES;
        const bool isBlockDone = (frame + 1) % BLOCK_FRAMES == 0 || frame + 1 == static_cast<size_t>(Frames());
        if (!isBlockDone || block >= Recorded().Blocks().size())
            continue;
        const uint64_t recorded = Recorded().BlockSum(block);
        if (recorded != UNKNOWN_SUM && recorded != blockSum.Value())
            return static_cast<int>(block) * BLOCK_FRAMES + 1;
        blockSum = Hash();
    }
    return m_askedElseAt;
}

std::vector<HandChange> Timeline::Changes() const
{
    std::vector<HandChange> all;
    const auto add = [&all](const std::vector<HandChange>& changes)
    {
        for (const HandChange& change : changes)
        {
            const auto isSame = [&change](const HandChange& other)
            { return other.camera == change.camera && other.field == change.field; };
            all.erase(std::remove_if(all.begin(), all.end(), isSame), all.end());
            all.push_back(change);
        }
    };
    for (int frame = 0; frame < Frames(); ++frame)
        add(Recorded().Frame(frame).changes);
    add(m_recorder.Changes());
    return all;
}

// Notes how a frame went that this game, as its files are now, has played for the first time.
void Timeline::TakeFrame(bool isGood)
{
    m_sums.push_back(m_game->FrameSum());
    if (isGood && m_position % m_keepEvery == 0)
        KeepState();
}

// ---- going to a frame ----

// The state from which a frame is reached soonest. The last frames of the way are painted, so it lies before them.
const Timeline::KeptState& Timeline::StartOf(int frame) const
{
    const KeptState* start = &m_first;
    for (size_t i = 0; i < m_checked && m_isExact; ++i)
        if (m_kept[i].frame <= frame - PAINTED_FRAMES)
            start = &m_kept[i];
    return *start;
}

// Whether the running game gets there as soon as one that is made anew.
bool Timeline::LeadsOn(int frame) const
{
    const bool isAlive = m_game->Failure().empty() && (!m_game->HasEnded() || m_position == frame);
    return isAlive && !m_hasParted && m_position <= frame && StartOf(frame).frame - m_position < KEEP_EVERY;
}

Timeline::Arrival Timeline::GoTo(int frame, const Progress& progress)
{
    const ConsoleSilence silence;
    const int wanted = std::clamp(frame, 0, Frames());
    TakeCheck(false);
    m_hasParted = m_hasParted || m_recorder.HasChanges(); // a change that no frame has had belongs to no state
    m_recorder.Forget();
    if (LeadsOn(wanted))
    {
        Replay replay(Recorded(), m_position, m_apply);
        return PlayOn(wanted, replay, progress);
    }
    const KeptState& start = StartOf(wanted);
    const bool isKept = &start != &m_first;
    const Arrival arrival = GoFrom(start, wanted, progress);
    if (!isKept || !m_hasParted)
        return arrival;
    m_isExact = false; // the check was too short to see it
    DropStates(0);
    return GoFrom(m_first, wanted, progress);
}

Timeline::Arrival Timeline::GoFrom(const KeptState& from, int frame, const Progress& progress)
{
    const bool isKept = &from != &m_first;
    Replay replay(Recorded(), from.frame, m_isReloading ? nullptr : m_apply);
    const bool isMade = MakeGame(from, replay, true);
    m_hasParted = m_hasParted || (isKept && !isMade);
    const Arrival arrival = isMade ? PlayOn(frame, replay, progress) : Arrival::Failed;
    m_switch.to = &m_recorder;
    return arrival;
}

bool Timeline::PlayAgain(Replay& replay)
{
    InputFrame seen;
    replay.Next(seen);
    const bool isGood = m_game->Frame(seen);
    const auto number = static_cast<size_t>(m_position++);
    if (number < m_sums.size())
        m_hasParted = m_hasParted || m_game->FrameSum() != m_sums[number];
    else
        TakeFrame(isGood);
    m_askedElseAt = m_askedElseAt == 0 ? replay.AskedElseAt() : m_askedElseAt;
    return isGood;
}

// A way that is cancelled ends with some painted frames, too.
Timeline::Arrival Timeline::PlayOn(int frame, Replay& replay, const Progress& progress)
{
    const int first = m_position;
    int last = frame;
    bool isGood = true;
    m_switch.to = &replay;
    for (; isGood && m_position < last && !m_game->HasEnded(); isGood = PlayAgain(replay))
    {
        const int done = m_position - first;
        m_game->CurrentPainter()->SetShown(last - m_position <= PAINTED_FRAMES);
        if (last == frame && done % FRAMES_BETWEEN_REPORTS == 0 && progress && !progress(done, frame - first))
            last = std::min(frame, m_position + PAINTED_FRAMES);
        m_game->observer = m_position + 1 == last ? watcher : nullptr;
    }
    m_game->observer = nullptr;
    m_game->CurrentPainter()->SetShown(true);
    m_switch.to = &m_recorder;
    if (!isGood)
        return Arrival::Failed;
    return last == frame ? Arrival::There : Arrival::Cancelled;
}

Timeline::Arrival Timeline::Reload(int frame, const Progress& progress)
{
    const ConsoleSilence silence;
    DropStates(0);
    m_isExact = true;
    m_keepEvery = KEEP_EVERY;
    m_sums.clear();
    if (Frames() == 0)
    {
        m_recorder.Forget();
        m_hasParted = false;
        return MakeGame(m_first, m_recorder, true) ? Arrival::There : Arrival::Failed;
    }
    m_recorder.Forget();
    m_isReloading = true;
    const Arrival arrival = GoFrom(m_first, std::clamp(frame, 0, Frames()), progress);
    m_isReloading = false;
    m_recorder.Adopt(*m_game, m_sums);
    return arrival;
}
} // namespace Runner
