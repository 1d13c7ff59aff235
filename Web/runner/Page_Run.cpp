#include "Web/runner/Page_Run.h"

#include "Web/runner/Canvas_Device.h"

#include <algorithm>
#include <chrono>

namespace Runner
{
namespace
{
constexpr int SLOW_STEPS = 4;                           // for one frame in slow motion
constexpr int64_t EARLY = NANOSECONDS / 500;            // a display's turn comes a little early or late
constexpr int64_t SLICE = NANOSECONDS / 20;             // of a way to another frame
constexpr int MOST_IN_A_TICK = StepClock::MISSED_LIMIT; // frames

int64_t SteadyNow()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
} // namespace

bool PageRun::Start(std::string& why)
{
    const bool isGood = StartGame(why);
    m_start.ShowNotice(m_err);
    if (why.empty())
        EnterGame();
    return isGood;
}

std::unique_ptr<Device> PageRun::OpenDevice(int width, int height, std::string& error)
{
    return OpenCanvasDevice(width, height, error);
}

void PageRun::GameEnters()
{
    m_drag = ViewDrag();
    if (m_isInspecting)
        CurrentInspector()->Open();
}

// ---- time ----

void PageRun::Play(bool isPlaying, int64_t now)
{
    m_isPlaying = isPlaying;
    m_clock.Restart(now);
}

bool PageRun::IsAtEnd() const
{
    const bool isReplayed = m_start.Replayed() != nullptr && Position() >= Frames();
    return isReplayed || Now().HasEnded();
}

bool PageRun::CanPlay() const { return Now().Failure().empty() && !IsAtEnd(); }

bool PageRun::Step()
{
    if (!CanPlay())
        return false;
    InputFrame seen = m_devices.Take();
    InputSource* const player = m_start.Replayed() == nullptr ? m_start.Player() : nullptr;
    if (player != nullptr && !player->Next(seen))
        return false;
    if (PlayFrame(seen))
        KeepSettings(false);
    if (IsAtEnd())
        EndWell();
    return true;
}

int PageRun::Tick(int64_t now, int64_t budget)
{
    const int64_t began = SteadyNow();
    int played = 0;
    while (m_isPlaying && played < MOST_IN_A_TICK && m_clock.IsDue(now + EARLY))
    {
        m_clock.Take(now);
        if (m_isSlow && ++m_slowed % SLOW_STEPS != 0)
            continue;
        m_isPlaying = Step() && CanPlay();
        ++played;
        if (SteadyNow() - began >= budget)
            break;
    }
    return played;
}

Timeline::Progress PageRun::Progress(const std::string& /*what*/)
{
    const int64_t began = SteadyNow();
    return [began](int /*done*/, int /*all*/) { return SteadyNow() - began < SLICE; };
}

bool PageRun::Approach(int frame, bool isReload)
{
    m_isPlaying = false;
    const Timeline::Arrival arrival = isReload ? Reload(frame) : Go(frame);
    m_devices.ReleaseAll();
    m_devices.Take(); // what was pressed meanwhile is not the game's
    m_isEndTold = false;
    return arrival != Timeline::Arrival::Cancelled || Now().HasEnded();
}

// A replay that went another way than the recorded run says so, once.
void PageRun::EndWell()
{
    std::string why;
    if (!m_isEndTold && m_start.Replayed() != nullptr && !m_start.TellParting(m_timeline.PartedAt(), why))
        std::fprintf(m_err, "runner: %s\n", why.c_str());
    m_isEndTold = true;
}

void PageRun::Close()
{
    if (Now().Failure().empty())
        KeepSettings(true);
    LeaveGame();
    Now().Finish();
}

// ---- picture ----

PixelSize PageRun::Screen() const
{
    const Game& game = Now();
    return {game.ScreenWidth(), game.ScreenHeight()};
}

void PageRun::Show(PixelSize canvas)
{
    m_box = Letterbox(Screen(), canvas);
    Painter* const painter = Now().CurrentPainter();
    if (painter != nullptr)
        painter->Show({m_box.Where(), canvas.width, canvas.height, !m_box.IsWhole(), true});
}

void PageRun::RenewDevice()
{
    Painter* const painter = Now().CurrentPainter();
    if (painter != nullptr)
        painter->RenewDevice();
}

// ---- devices ----

void PageRun::MovePointer(float x, float y)
{
    m_pointer = m_box.ToScreen(x, y);
    if (!m_isInspecting)
        return m_devices.MoveMouse(m_pointer.x, m_pointer.y);
    for (const CameraChange& change : m_drag.To({m_pointer.x, m_pointer.y}, Position()))
        CurrentInspector()->Take(change);
}

// While the inspector is open the left button drags in its views; what was held before is let go all the same.
void PageRun::PressButton(int button, bool isDown)
{
    if (!m_isInspecting || !isDown)
        m_devices.MouseButton(button, isDown);
    if (!m_isInspecting || button != 0)
        return;
    Inspector& inspector = CurrentInspector()->Content();
    m_drag = isDown ? ViewDrag::Begin(inspector.Notes(), {m_pointer.x, m_pointer.y}) : ViewDrag();
    if (m_drag.What() != Grip::None)
        inspector.Select(m_drag.Camera());
}

// ---- inspector ----

void PageRun::Inspect(bool isOn)
{
    m_isInspecting = isOn;
    m_drag = ViewDrag();
    if (isOn)
        CurrentInspector()->Open();
    else
        CurrentInspector()->Close();
}

bool PageRun::ChangeByHand(int camera, const std::string& field, float value)
{
    return CurrentInspector()->Take({Position(), camera, field, value});
}

// ---- recording ----

std::vector<uint8_t> PageRun::RecordingFile() const
{
    Recording recording = m_timeline.Recorded();
    recording.CloseBlock();
    if (recording.Frames() == 0)
        return {};
    std::vector<uint8_t> file = EncodeRecordingHead(recording.head);
    const auto add = [&file](const std::vector<uint8_t>& bytes)
    { file.insert(file.end(), bytes.begin(), bytes.end()); };
    for (const std::vector<uint8_t>& block : recording.Blocks())
        add(EncodeRecordingBlock(block));
    add(EncodeRecordingEnd(recording.Frames()));
    return file;
}
} // namespace Runner
