#include "Runner/App/Window_Stage.h"

#include "Runner/App/Options.h"
#include "Runner/Draw/Device.h"
#include "Runner/Input/Input_Names.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

namespace Runner
{
namespace
{
constexpr PixelSize PANEL_SIZE = {360, 154};
constexpr PixelSize BAR_SIZE = {640, 20};
constexpr float BAR_PART = 0.06f; // of the game's height that takes the mouse for the bar
constexpr int SLOW_STEPS = 4;     // for one frame in slow motion
constexpr int REWIND_FRAMES = 5 * STEPS_PER_SECOND;
constexpr float LINE = 14.0f;
constexpr int STANDING_MILLISECONDS = 30; // between two looks at a window that stands still
constexpr int64_t MILLISECOND = NANOSECONDS / 1000;
} // namespace

PixelSize GamePicture::Size() const { return {m_game->ScreenWidth(), m_game->ScreenHeight()}; }

bool GamePicture::Show(const Showing& showing)
{
    Painter* const painter = m_game->CurrentPainter();
    if (painter != nullptr)
        painter->Show(showing);
    return painter != nullptr;
}

WindowStage::WindowStage(Window& window, StagePicture& picture, const RunnerKeys& keys, InputSource* player)
    : m_window(window), m_picture(picture), m_player(player), m_keys(keys), m_panel(window, PANEL_SIZE),
      m_bar(window, BAR_SIZE), m_clock(STEPS_PER_SECOND, window.Now()), m_late(m_clock.Period())
{
}

bool WindowStage::IsOver() const { return m_window.IsClosed() || ScriptEngine::Interrupted(); }

// ---- showing ----

void WindowStage::ShowPanel(const Port& game)
{
    if (!m_isHelping && (!IsStanding() || m_isPanelHidden))
        return;
    m_panel.Draw(
        [this](Painter& painter)
        {
            float y = 8.0f;
            painter.SetColour(0x80E0FF);
            painter.Text(12.0f, y, IsStanding() ? "Paused" : "Keys of the Runner");
            painter.SetColour(0xFFFFFF);
            for (int i = 0; i < COMMAND_COUNT; ++i)
                painter.Text(12.0f, y += LINE,
                             KeyName(m_keys.KeyOf(static_cast<Command>(i))) + "  " + COMMANDS[i].meaning);
        });
    m_panel.ShowOver(game);
}

// While a game with a time stands, its known frames as a bar along the lower edge.
void WindowStage::ShowBar(const Port& game)
{
    if (time == nullptr || !m_isPaused)
        return;
    const int frames = std::max(1, time->Frames());
    const float part = static_cast<float>(time->Position()) / static_cast<float>(frames);
    m_bar.Draw(
        [this, part](Painter& painter)
        {
            const auto width = static_cast<float>(BAR_SIZE.width), height = static_cast<float>(BAR_SIZE.height);
            painter.SetColour(0x806040);
            painter.Rectangle(0.0f, 0.0f, width * part, height);
            painter.SetColour(0x80E0FF);
            painter.Rectangle(width * part - 2.0f, 0.0f, width * part + 2.0f, height);
            painter.SetColour(0xFFFFFF);
            painter.Text(8.0f, 4.0f,
                         "frame " + std::to_string(time->Position()) + " of " + std::to_string(time->Frames()));
        });
    const int height = std::max(1, game.width * BAR_SIZE.height / BAR_SIZE.width);
    m_bar.ShowAt({game.x, game.y + game.height - height, game.width, height});
}

void WindowStage::ShowFrame()
{
    m_window.Show(m_picture.Size());
    if (!m_window.IsVisible())
        return;
    const Letterbox box = m_window.Box();
    const PixelSize window = m_window.Pixels();
    if (!m_picture.Show({box.Where(), window.width, window.height, !box.IsWhole(), true}))
        return;
    if (overlay != nullptr)
        overlay(box.Where());
    ShowBar(box.Where());
    ShowPanel(box.Where());
    m_window.Swap();
    m_shownLast = m_window.Now();
    m_shownFirst = m_shown++ == 0 ? m_shownLast : m_shownFirst;
    if (m_keepsTimes && m_timedFrom != 0 && !IsStanding())
        m_times.push_back(m_shownLast - m_timedFrom);
    m_timedFrom = m_shownLast;
}

void WindowStage::TellRate(FILE* out) const
{
    const auto seconds = static_cast<double>(m_shownLast - m_shownFirst) / static_cast<double>(NANOSECONDS);
    if (!m_isPaced && seconds > 0.0)
        std::fprintf(out, "runner: %d frames shown, %.2f a second\n", m_shown, (m_shown - 1) / seconds);
    if (m_keepsTimes)
        std::fprintf(out, "runner: %s\n", TextOf(PaceOf(m_times)).c_str());
}

// ---- time ----

void WindowStage::TakeCommands()
{
    Command command = Command::Help;
    while (m_window.TakeCommand(command))
        if (!Do(command))
            return;
}

// False: the time has gone back, and what else was asked for is forgotten with it.
bool WindowStage::Do(Command command)
{
    const bool goesBack = command == Command::Back || command == Command::Rewind;
    m_isPaused = m_isPaused || command == Command::Step || (goesBack && time != nullptr);
    m_isPanelHidden = command != Command::Pause && command != Command::Help;
    switch (command)
    {
    case Command::Help: m_isHelping = !m_isHelping; break;
    case Command::Pause: m_isPaused = !m_isPaused; break;
    case Command::Fullscreen: m_window.ToggleFullscreen(); break;
    case Command::Inspect:
        if (toggleInspector != nullptr)
            toggleInspector();
        break;
    case Command::Slow: m_isSlow = !m_isSlow; break;
    case Command::Step: ++m_steps; break;
    case Command::Back:
    case Command::Rewind: break;
    }
    if (goesBack && time != nullptr)
        time->GoTo(time->Position() - (command == Command::Back ? 1 : REWIND_FRAMES));
    return !goesBack;
}

// y: on the game's screen.
bool WindowStage::IsOnBar(float y) const
{
    const auto height = static_cast<float>(m_picture.Size().height);
    return y >= height * (1.0f - BAR_PART) && y <= height;
}

bool WindowStage::TakesMouse(float x, float y, bool isPressed)
{
    m_isPanelHidden = m_isPanelHidden || (isPressed && IsStanding());
    return time != nullptr && m_isPaused && (m_isScrubbing || IsOnBar(m_window.Box().ToScreen(x, y).y));
}

// Dragging along the bar goes to the frame under the mouse.
void WindowStage::Scrub(const InputFrame& devices)
{
    const auto width = static_cast<float>(m_picture.Size().width);
    const MouseFrame& mouse = devices.mouse;
    if ((mouse.buttons.pressed & 1) != 0)
        m_isScrubbing = IsOnBar(mouse.y);
    if (time == nullptr || !m_isPaused || !m_isScrubbing)
        return;
    const float part = std::clamp(mouse.x / width, 0.0f, 1.0f);
    const int frame = static_cast<int>(std::lround(part * static_cast<float>(time->Frames())));
    m_isScrubbing = (mouse.buttons.held & 1) != 0;
    if (frame != time->Position())
        time->GoTo(frame);
}

// Waits for an event in whole milliseconds, and sleeps through what is left of the last one.
void WindowStage::Wait()
{
    const int64_t left = m_isPaced ? m_clock.UntilDue(m_window.Now()) : 0;
    if (left > 0 && left < MILLISECOND)
        std::this_thread::sleep_for(std::chrono::nanoseconds(left));
    m_window.Poll(static_cast<int>(left / MILLISECOND));
    TakeCommands();
}

// What was pressed while the game stood is not the game's. True: one frame is wanted all the same.
bool WindowStage::StandStill()
{
    ShowFrame();
    m_timedFrom = 0;
    m_window.Poll(STANDING_MILLISECONDS);
    const InputFrame devices = m_window.TakeInput();
    m_isPanelHidden = m_isPanelHidden || devices.mouse.buttons.pressed != 0;
    Scrub(devices);
    m_clock.Restart(m_window.Now());
    return std::exchange(m_steps, 0) > 0;
}

bool WindowStage::Next(InputFrame& frame)
{
    m_window.Show(m_picture.Size());
    if (m_late.Shows(m_isPaced && IsDue(), m_window.Now()))
        ShowFrame();
    for (;;)
    {
        Wait();
        if (time != nullptr)
            time->Idle();
        if (IsOver())
            return false;
        bool isWanted = false;
        if (IsStanding())
            isWanted = StandStill();
        else if (IsDue())
        {
            m_clock.Take(m_window.Now());
            m_isPanelHidden = false;
            isWanted = !m_isSlow || ++m_slowed % SLOW_STEPS == 0;
        }
        if (!isWanted || IsOver())
            continue;
        frame = m_window.TakeInput();
        return m_player == nullptr || m_player->Next(frame);
    }
}

void EndWithoutDisplay(FILE* err, const std::string& why)
{
    std::fprintf(err, "runner: the display has gone away%s%s\n", why.empty() ? "" : "; ", why.c_str());
    std::fflush(nullptr);
    std::_Exit(EXIT_GAME_ERROR);
}
} // namespace Runner
