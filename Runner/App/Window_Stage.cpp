#include "Runner/App/Window_Stage.h"

#include "Runner/Draw/Device.h"
#include "Runner/Input/Input_Names.h"

#include <chrono>
#include <thread>

namespace Runner
{
namespace
{
constexpr PixelSize PANEL_SIZE = {360, 98};
constexpr float LINE = 14.0f;
constexpr int UNSHOWN_LIMIT = 5;          // frames played one after the other without showing one
constexpr int STANDING_MILLISECONDS = 30; // between two looks at a window that stands still
constexpr int64_t MILLISECOND = NANOSECONDS / 1000;
} // namespace

WindowStage::WindowStage(Window& window, Game& game, const RunnerKeys& keys, InputSource* player)
    : m_window(window), m_game(game), m_player(player), m_keys(keys), m_panel(window, PANEL_SIZE),
      m_clock(STEPS_PER_SECOND, window.Now())
{
}

bool WindowStage::IsOver() const { return m_window.IsClosed() || ScriptEngine::Interrupted(); }

// ---- showing ----

void WindowStage::ShowPanel(const Port& game)
{
    if (!m_isHelping && !IsStanding())
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

void WindowStage::ShowFrame()
{
    m_unshown = 0;
    Painter* const painter = m_game.CurrentPainter();
    if (painter == nullptr || !m_window.IsVisible())
        return;
    const Letterbox box = m_window.Box();
    const PixelSize window = m_window.Pixels();
    painter->Show({box.Where(), window.width, window.height, !box.IsWhole(), true});
    if (overlay != nullptr)
        overlay(box.Where());
    ShowPanel(box.Where());
    m_window.Swap();
}

// ---- time ----

void WindowStage::TakeCommands()
{
    Command command = Command::Help;
    while (m_window.TakeCommand(command))
        switch (command)
        {
        case Command::Help: m_isHelping = !m_isHelping; break;
        case Command::Pause: m_isPaused = !m_isPaused; break;
        case Command::Fullscreen: m_window.ToggleFullscreen(); break;
        case Command::Inspect:
            if (toggleInspector != nullptr)
                toggleInspector();
            break;
        }
}

// Waits for an event in whole milliseconds, and sleeps through what is left of the last one.
void WindowStage::Wait()
{
    const int64_t left = m_clock.UntilDue(m_window.Now());
    if (left > 0 && left < MILLISECOND)
        std::this_thread::sleep_for(std::chrono::nanoseconds(left));
    m_window.Poll(static_cast<int>(left / MILLISECOND));
    TakeCommands();
}

// What was pressed while the game stood is not the game's.
bool WindowStage::Next(InputFrame& frame)
{
    m_window.Show({m_game.ScreenWidth(), m_game.ScreenHeight()});
    if (!m_clock.IsDue(m_window.Now()) || ++m_unshown >= UNSHOWN_LIMIT)
        ShowFrame();
    for (;;)
    {
        Wait();
        if (IsOver())
            return false;
        if (IsStanding())
        {
            ShowFrame();
            m_window.Poll(STANDING_MILLISECONDS);
            m_window.TakeInput();
            m_clock.Restart(m_window.Now());
        }
        else if (m_clock.IsDue(m_window.Now()))
        {
            m_clock.Take(m_window.Now());
            frame = m_window.TakeInput();
            return m_player == nullptr || m_player->Next(frame);
        }
    }
}
} // namespace Runner
