#include "Runner/App/Run_Start.h"

#include "Runner/App/Settings_Keeper.h"
#include "Runner/App/Value_Moments.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Input/Input_Script.h"
#include "Runner/Inspect/Camera_Fields.h"
#include "Runner/Save/Save_File.h"

#include <algorithm>

namespace Runner
{
void ApplyByHand(const HandChange& change) { Apply(CameraChange{0, change.camera, change.field, change.value}); }

namespace
{
// A window must not freeze, and a stranger's recording lifts no limit: there the smaller one counts.
int64_t LimitOfReplay(const RunOptions& options, int64_t recorded)
{
    const int64_t own = options.game.limits.instructions;
    if ((!options.window && !options.confined) || own == 0)
        return recorded;
    return recorded == 0 ? own : std::min(own, recorded);
}
} // namespace

bool RunStart::Open(RunOptions& options, std::string& why)
{
    if (!OpenReplay(options, why) || !OpenInput(options.input, why) || !OpenSave(options, why) ||
        !OpenSettings(options, why))
        return false;
    if (m_replay != nullptr && !options.values.empty() &&
        !AddValuesToRecording(options.game, m_saved.get(), options.values, m_recording, why))
        return false;
    if (!options.record.empty())
        m_recorder = std::make_unique<Recorder>(options.record, m_saveContent);
    if (m_recorder != nullptr)
        options.game.journal = m_recorder.get();
    return true;
}

bool RunStart::OpenReplay(RunOptions& options, std::string& why)
{
    std::string left;
    m_replayed = options.replay;
    m_goesOnAnyway = options.anyway;
    if (m_replayed.empty())
        return true;
    if (!ReadRecording(m_replayed, m_recording, left, why))
        return false;
    const int frames = m_recording.Frames();
    if (!left.empty())
        m_notice = "replay " + PrintableName(m_replayed) + ": " + left + "; its first " + std::to_string(frames) +
                   " frames are played";
    options.frames = std::max(1, options.isFramesGiven ? std::min(options.frames, frames) : frames);
    options.game.seed = m_recording.head.identity.seed;
    options.game.limits.instructions = LimitOfReplay(options, m_recording.head.instructions);
    if (options.game.width == 0)
    {
        options.game.width = m_recording.head.width;
        options.game.height = m_recording.head.height;
    }
    m_replay = std::make_unique<Replay>(m_recording, 0, ApplyByHand);
    m_player = m_replay.get();
    options.game.journal = m_replay.get();
    return true;
}

bool RunStart::OpenInput(const std::string& path, std::string& why)
{
    if (path.empty())
        return true;
    std::vector<uint8_t> bytes;
    auto script = std::make_unique<InputScript>();
    if (!ReadWholeFile(path, bytes, why) || !script->Read({bytes.begin(), bytes.end()}, path, why))
        return false;
    m_text = std::move(script);
    m_player = m_text.get();
    return true;
}

// The numbers that the main file draws must be those of then, so the seed comes from the saved game.
bool RunStart::OpenSave(RunOptions& options, std::string& why)
{
    const std::string path = m_replay != nullptr ? m_replayed : options.load;
    if (m_replay != nullptr)
        m_saveContent = m_recording.head.save;
    else if (!path.empty() && !ReadWholeFile(path, m_saveContent, why))
        return false;
    if (m_replay != nullptr ? m_saveContent.empty() : path.empty())
        return true;
    m_saved = std::make_unique<SavedState>();
    if (!ReadSavedGame(path, m_saveContent, *m_saved, why))
        return false;
    if (!options.isSeedGiven && m_replay == nullptr)
        options.game.seed = m_saved->game.identity.seed;
    return true;
}

// A replay has the settings of the recorded run, and keeps none.
bool RunStart::OpenSettings(RunOptions& options, std::string& why)
{
    if (m_replay == nullptr)
        return ReadSettings(options.settings, options.game.settings, why);
    options.settings.clear();
    if (ParseSettings(m_recording.head.settings, options.game.settings, why))
        return true;
    why = CannotReplay(m_replayed, "its settings are damaged: " + why);
    return false;
}

bool RunStart::FitsGame(const Game& game, std::string& why)
{
    const std::string difference = m_replay == nullptr ? "" : DifferenceOf(game, m_recording.head);
    if (difference.empty())
        return true;
    if (!m_goesOnAnyway)
        why = CannotReplay(m_replayed, difference + "; --anyway goes on");
    else
        m_notice += (m_notice.empty() ? "replay " + PrintableName(m_replayed) : "") + ": " + difference;
    return why.empty();
}

void RunStart::KeepByHand(const HandChange& change)
{
    if (m_recorder != nullptr)
        m_recorder->Keep(change);
}

void RunStart::ShowNotice(FILE* err) const
{
    if (!m_notice.empty())
        std::fprintf(err, "runner: %s\n", m_notice.c_str());
}

bool RunStart::Finish(const Game& game, std::string& why)
{
    if (m_recorder != nullptr)
        m_recorder->Finish(game, why);
    return why.empty() ? TellParting(m_replay == nullptr ? 0 : m_replay->PartedAt(), why) : false;
}

bool RunStart::TellParting(int partedAt, std::string& why)
{
    if (partedAt == 0)
        return true;
    const std::string parted = "the replay goes another way than the recorded run from frame " +
                               std::to_string(partedAt - 1) + " or soon after";
    (m_goesOnAnyway ? m_notice : why) = parted;
    return why.empty();
}
} // namespace Runner
