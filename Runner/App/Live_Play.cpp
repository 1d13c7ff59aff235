#include "Runner/App/Live_Play.h"

#include "Runner/Api/Api.h"

#include <algorithm>

namespace Runner
{
LivePlay::LivePlay(const RunOptions& options, RunStart& start, FILE* err)
    : m_options(options), m_start(start), m_err(err),
      m_timeline(OptionsOfGames(), OpenApi, options.record, start.SaveContent(), ApplyByHand),
      m_settings(options.settings, options.game.settings)
{
    m_timeline.watcher = &m_arrival;
    if (start.Replayed() != nullptr)
        m_timeline.Follow(*start.Replayed());
}

// The timeline keeps what enters the game, so the recording's file is its affair.
GameOptions LivePlay::OptionsOfGames()
{
    GameOptions options = m_options.game;
    options.journal = nullptr;
    const auto open = [this](int width, int height, std::string& error) { return OpenDevice(width, height, error); };
    options.openDevice = [this, open](int width, int height, std::string& error)
    { return OpenWatchedDevice(open, m_inspector.get(), width, height, error); };
    return options;
}

bool LivePlay::StartGame(std::string& why)
{
    std::string ignored; // the game has it, too
    return m_timeline.Start(ignored) && m_start.FitsGame(Now(), why);
}

// The inspector watches one game, and must be gone before it.
void LivePlay::LeaveGame()
{
    if (m_inspector == nullptr)
        return;
    m_aside = m_inspector->Content().aside;
    m_selected = m_inspector->Content().Selected();
    m_arrival = FrameNotes();
    GameLeaves();
    m_inspector.reset();
}

void LivePlay::EnterGame()
{
    m_inspector = std::make_unique<LiveInspector>(Now());
    m_inspector->Content().aside = m_aside;
    m_inspector->Content().Select(m_selected);
    m_inspector->Content().Notes() = m_arrival;
    m_inspector->onChange = [this](const CameraChange& change) {
        m_timeline.Keep({change.camera, change.field, change.value});
    };
    Painter* const painter = Now().CurrentPainter();
    if (painter != nullptr && painter->Draws())
        m_inspector->SetDevice(*static_cast<KeepingDevice*>(painter->CurrentDevice())); // OptionsOfGames has made it
    GameEnters();
}

// A later change of the same property takes the place of an earlier one.
void LivePlay::SetChangesAside()
{
    for (const HandChange& change : m_timeline.Changes())
    {
        const auto isSame = [&change](const CameraChange& other)
        { return other.camera == change.camera && other.field == change.field; };
        m_aside.erase(std::remove_if(m_aside.begin(), m_aside.end(), isSame), m_aside.end());
        m_aside.push_back({0, change.camera, change.field, change.value});
    }
}

Timeline::Arrival LivePlay::Go(int frame)
{
    LeaveGame();
    const Timeline::Arrival arrival =
        m_timeline.GoTo(frame, Progress("Going to frame " + std::to_string(std::clamp(frame, 0, Frames()))));
    EnterGame();
    return arrival;
}

Timeline::Arrival LivePlay::Reload(int frame)
{
    LeaveGame();
    SetChangesAside();
    const Timeline::Arrival arrival =
        m_timeline.Reload(frame, Progress("Starting anew, up to frame " + std::to_string(frame)));
    EnterGame();
    return arrival;
}

bool LivePlay::PlayFrame(const InputFrame& seen)
{
    if (m_start.Replayed() == nullptr)
        return m_timeline.Play(seen);
    return Position() >= Frames() || m_timeline.PlayRecorded();
}

// A file that cannot be written is told, and the game goes on.
void LivePlay::KeepSettings(bool isLast)
{
    std::string why;
    if (!m_settings.Keep(Now(), isLast, why) && !why.empty())
        std::fprintf(m_err, "runner: %s\n", why.c_str());
}
} // namespace Runner
