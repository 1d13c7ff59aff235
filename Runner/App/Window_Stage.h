#pragma once

#include "Runner/App/Panel.h"
#include "Runner/Game/Game.h"
#include "Runner/Input/Input_Source.h"
#include "Runner/Window/Step_Clock.h"

namespace Runner
{
constexpr int STEPS_PER_SECOND = 60;

// A game in a window: shows each frame, waits until the next one is due, and gives it what the user did. While it is
// paused, or the window has lost the focus, it waits. The game's frames do not depend on the window: each is drawn
// once, shown or not.
class WindowStage : public InputSource
{
public:
    // window, game, player: kept, not copied. player: gives the input in place of the devices; null for the user.
    WindowStage(Window& window, Game& game, const RunnerKeys& keys, InputSource* player = nullptr);

    bool Next(InputFrame& frame) override;

    // Drawn over each frame that is shown, between the game's picture and the window's swap. Null for nothing.
    std::function<void(const Port& game)> overlay;
    std::function<void()> toggleInspector; // when its key is pressed; null for nothing

private:
    void ShowFrame();
    void ShowPanel(const Port& game);
    void TakeCommands();
    void Wait();
    bool IsStanding() const { return m_isPaused || !m_window.HasFocus(); }
    bool IsOver() const;

    Window& m_window;
    Game& m_game;
    InputSource* m_player;
    const RunnerKeys m_keys;
    Panel m_panel;
    StepClock m_clock;
    int m_unshown = 0; // frames since one was shown
    bool m_isPaused = false;
    bool m_isHelping = false;
};
} // namespace Runner
