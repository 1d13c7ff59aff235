#pragma once

#include "Runner/App/Panel.h"
#include "Runner/App/Stage_Time.h"
#include "Runner/Game/Game.h"
#include "Runner/Input/Input_Source.h"
#include "Runner/Window/Frame_Pace.h"
#include "Runner/Window/Step_Clock.h"

#include <cstdio>
#include <string>

namespace Runner
{
constexpr int STEPS_PER_SECOND = FRAMES_A_SECOND;

// Ends the process with one line and a status, after what must be kept has been written: what Window::onLost is for.
// why: what could not be kept, in one line; empty when all was.
[[noreturn]] void EndWithoutDisplay(FILE* err, const std::string& why);

// What a window shows.
class StagePicture
{
public:
    virtual ~StagePicture() = default;
    virtual PixelSize Size() const = 0;
    virtual bool Show(const Showing& showing) = 0; // false: there is nothing to show
};

// The picture of a game.
class GamePicture : public StagePicture
{
public:
    explicit GamePicture(Game& game) : m_game(&game) {} // kept
    void SetGame(Game& game) { m_game = &game; }        // in place of the one before, which is gone
    PixelSize Size() const override;
    bool Show(const Showing& showing) override;

private:
    Game* m_game;
};

// A game in a window: shows each frame, waits until the next one is due, and gives it what the user did. While it is
// paused, or the window has lost the focus, it waits. The game's frames do not depend on the window: each is drawn
// once, shown or not.
class WindowStage : public InputSource
{
public:
    // window, picture, player: kept, not copied. player: gives the input in place of the devices; null for the user.
    WindowStage(Window& window, StagePicture& picture, const RunnerKeys& keys, InputSource* player = nullptr);

    bool Next(InputFrame& frame) override;

    // Without a pace frames follow each other as fast as they can be shown, and each is.
    void SetPaced(bool isPaced) { m_isPaced = isPaced; }
    void Pause() { m_isPaused = true; }
    void KeepTimes() { m_keepsTimes = true; } // of the frames that are shown from now on, for TellRate
    // One line: frames a second since the first was shown, where there is no pace; how evenly frames were shown, where
    // their times were kept.
    void TellRate(FILE* out) const;

    StageTime* time = nullptr; // not owned; null: nobody can go back

    // Whether the mouse at that place, in pixels of the window, is for the bar of a game that stands. A press anywhere
    // takes the list of keys away, which shows while it stands.
    bool TakesMouse(float x, float y, bool isPressed);

    // Drawn over each frame that is shown, between the game's picture and the window's swap. Null for nothing.
    std::function<void(const Port& game)> overlay;
    std::function<void()> toggleInspector; // when its key is pressed; null for nothing

private:
    void ShowFrame();
    void ShowPanel(const Port& game);
    void ShowBar(const Port& game);
    bool Do(Command command);
    bool IsOnBar(float y) const;
    void Scrub(const InputFrame& devices);
    bool StandStill();
    void TakeCommands();
    void Wait();
    bool IsStanding() const { return m_isPaused || !m_window.HasFocus(); }
    bool IsOver() const;
    bool IsDue() const { return !m_isPaced || m_clock.IsDue(m_window.Now()); }

    Window& m_window;
    StagePicture& m_picture;
    InputSource* m_player;
    const RunnerKeys m_keys;
    Panel m_panel;
    Panel m_bar;
    StepClock m_clock;
    LateFrames m_late;
    bool m_isPaced = true;
    int m_shown = 0;                           // frames
    int64_t m_shownFirst = 0, m_shownLast = 0; // when
    bool m_keepsTimes = false;
    std::vector<int64_t> m_times; // from one shown frame to the next, nanoseconds; not while it stands
    int64_t m_timedFrom = 0;      // when the frame before was shown; 0: the next one begins
    bool m_isPaused = false;
    bool m_isSlow = false;
    bool m_isScrubbing = false; // the mouse has been pressed on the bar and not let go
    int m_steps = 0;            // frames to play although it is paused
    int m_slowed = 0;           // steps since a frame was played in slow motion
    bool m_isHelping = false;
    bool m_isPanelHidden = false; // the one that shows while it stands: somebody looks at the picture behind it
};
} // namespace Runner
