#include "Runner/App/Live_Run.h"

#include "Runner/App/Interrupt.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int64_t MILLISECOND = NANOSECONDS / 1000;
constexpr int64_t MILLISECONDS_BETWEEN_LOOKS = 50;     // at the files
constexpr int64_t MILLISECONDS_WITHOUT_PROGRESS = 300; // that nobody is shown
} // namespace

bool LiveRun::Fits(const RunOptions& options)
{
    return options.input.empty() && options.every == 0 && options.screenshot.empty() && options.contactSheet.empty() &&
           options.profile.empty() && options.saveAt.first == 0;
}

LiveRun::LiveRun(const RunOptions& options, Window& window, RunStart& start, FILE* err)
    : LivePlay(options, start, err), m_window(window), m_page(window, PROGRESS_PAGE)
{
}

std::unique_ptr<Device> LiveRun::OpenDevice(int width, int height, std::string& error)
{
    if (m_inspector != nullptr)
        m_inspector->LoseView();
    return m_window.OpenDevice(width, height, error);
}

// ---- files ----

// Those that the game has read, and those of the game before: one that fails early has read fewer.
void LiveRun::WatchFiles()
{
    std::vector<std::string> paths = m_watch.Paths();
    paths.push_back(m_options.game.file);
    for (const GameFile& file : m_timeline.Now().scripts.files.Read())
        paths.push_back(file.path);
    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    m_watch.Watch(std::move(paths));
}

bool LiveRun::HaveFilesChanged()
{
    const int64_t now = m_window.Now() / MILLISECOND;
    if (!m_options.watch || now - m_lookedAt < MILLISECONDS_BETWEEN_LOOKS)
        return false;
    m_lookedAt = now;
    return m_watch.HasChanged(now);
}

// ---- time ----

Timeline::Progress LiveRun::Progress(const std::string& what)
{
    const int64_t start = m_window.Now();
    return [this, what, start](int done, int all)
    {
        const bool isShown = m_window.Now() - start >= MILLISECONDS_WITHOUT_PROGRESS * MILLISECOND;
        return !isShown || ShowProgressPage(m_window, m_page, what, done, all);
    };
}

void LiveRun::GameLeaves() { m_inspector.reset(); }

void LiveRun::GameEnters()
{
    m_picture->SetGame(Now());
    m_inspector = std::make_unique<WindowInspector>(m_window, Now(), *CurrentInspector());
    m_inspector->isElsewhere = [this](float x, float y, bool isPressed)
    { return m_stage->TakesMouse(x, y, isPressed); };
    if (m_isInspecting)
        m_inspector->Toggle();
}

// A game that has failed before it showed anything leaves the picture of the one before.
void LiveRun::KeepPicture()
{
    const int failed = m_timeline.Now().Failure().empty() ? 0 : 1;
    if (m_timeline.Now().FrameNumber() > failed)
        m_last = m_timeline.Now().Screen();
}

void LiveRun::ReloadFiles(int frame)
{
    KeepPicture();
    Reload(frame);
    WatchFiles();
}

void LiveRun::Idle()
{
    if (HaveFilesChanged())
        ReloadFiles(Position());
}

// ---- the run ----

// False: the user has left, or wants the game to start from its beginning.
bool LiveRun::WaitForMend(const FailureReport& report)
{
    bool isMended = false;
    const bool goesOn = ShowErrorPage(m_window, report, m_last,
                                      [this, &isMended]
                                      {
                                          isMended = HaveFilesChanged();
                                          return isMended;
                                      });
    m_wantsAgain = goesOn && !isMended;
    return isMended;
}

// False: the game has failed.
bool LiveRun::PlayFrames()
{
    InputFrame seen;
    while (m_timeline.Now().Failure().empty() && !m_timeline.Now().HasEnded() && Position() < m_options.frames)
    {
        if (!m_stage->Next(seen))
            return true;
        if (m_timeline.Now().Failure().empty() && PlayFrame(seen))
            KeepSettings(false);
    }
    return m_timeline.Now().Failure().empty();
}

// False: the game has failed, or it is not the one that was recorded: why.
bool LiveRun::StartGame(std::string& why)
{
    const bool isGood = LivePlay::StartGame(why);
    WatchFiles();
    m_picture = std::make_unique<GamePicture>(m_timeline.Now());
    m_stage = std::make_unique<WindowStage>(m_window, *m_picture, m_options.keys);
    m_stage->time = this;
    m_stage->SetPaced(!m_options.unpaced);
    if (m_options.paceSeconds > 0)
        m_stage->KeepTimes();
    m_stage->overlay = [this](const Port& where) { m_inspector->Draw(where); };
    m_stage->toggleInspector = [this]
    {
        m_isInspecting = !m_isInspecting;
        m_inspector->Toggle();
    };
    m_isInspecting = m_options.inspect;
    return isGood;
}

Outcome LiveRun::Play(FailureReport& report, Picture& last)
{
    std::string why;
    bool isGood = StartGame(why);
    if (!why.empty())
        return {why, EXIT_GAME_ERROR};
    EnterGame();
    for (isGood = isGood && PlayFrames(); !isGood; isGood = isGood && PlayFrames())
    {
        report = DescribeFailure(m_timeline.Now());
        KeepPicture();
        const int frame = std::max(Position(), Frames());
        if (!m_options.watch || !WaitForMend(report))
            break;
        ReloadFiles(frame);
        isGood = m_timeline.Now().Failure().empty();
    }
    LeaveGame();
    last = m_last;
    m_stage->TellRate(m_err);
    return End();
}

std::string LiveRun::Rescue()
{
    std::string why;
    if (m_timeline.Now().Failure().empty())
        KeepSettings(true);
    m_timeline.Finish(why);
    m_timeline.Now().Finish();
    return why;
}

Outcome LiveRun::End()
{
    std::string why;
    if (m_timeline.Now().Failure().empty())
        KeepSettings(true);
    const std::string failure = m_timeline.Now().Failure();
    if (!m_timeline.Finish(why))
        std::fprintf(m_err, "runner: %s\n", why.c_str());
    m_timeline.Now().Finish();
    TellWarnings(m_timeline.Now(), m_err);
    if (failure.empty() && !m_start.TellParting(m_timeline.PartedAt(), why))
        return {why, EXIT_GAME_ERROR};
    if (failure.empty() && ScriptEngine::Interrupted())
        return {InterruptHandler::Word() + (" after " + std::to_string(Position())) + " frames",
                InterruptHandler::Status()};
    return {failure, failure.empty() ? EXIT_DONE : EXIT_GAME_ERROR};
}
} // namespace Runner
