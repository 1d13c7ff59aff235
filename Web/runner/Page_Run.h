#pragma once

#include "Runner/App/Live_Play.h"
#include "Runner/Inspect/View_Drag.h"
#include "Runner/Window/Input_Gatherer.h"
#include "Runner/Window/Letterbox.h"
#include "Runner/Window/Step_Clock.h"

namespace Runner
{
// A game in a page. Nothing here waits: the page calls Tick whenever the display can show something, and the time that
// has passed since then decides how many frames are played.
class PageRun : public LivePlay
{
public:
    PageRun(const RunOptions& options, RunStart& start, FILE* err) : LivePlay(options, start, err) {}

    // Loads the game. False: why, or the game has failed (Now().Failure()).
    bool Start(std::string& why);

    // ---- time ----
    void Play(bool isPlaying, int64_t now);
    void Slow(bool isSlow) { m_isSlow = isSlow; }
    bool IsPlaying() const { return m_isPlaying; }
    // Plays the frames that are due, and at least one of them; further ones only while the work takes less than budget
    // nanoseconds, so that a game that is too slow is still shown and the page lives. Answers how many.
    int Tick(int64_t now, int64_t budget);
    bool Step(); // one frame, now. False: there is none, since the game has failed, or ended, or a replay is at its end

    // A slice of the way to a frame, by way of a new game from the files of now where isReload. True: the way is at its
    // end; the next slices of a reload go on without isReload.
    bool Approach(int frame, bool isReload);

    bool IsAtEnd() const; // the game has ended, or a replay has played its last frame
    void Close();         // writes what is written at the end

    // ---- picture ----
    void Show(PixelSize canvas);
    void RenewDevice(); // after a loss: the game draws its next frame with another one
    PixelSize Screen() const;

    // ---- devices ----
    InputGatherer& Devices() { return m_devices; }
    void MovePointer(float x, float y); // pixels of the canvas
    void PressButton(int button, bool isDown);

    // ---- inspector ----
    void Inspect(bool isOn);
    bool IsInspecting() const { return m_isInspecting; }
    bool ChangeByHand(int camera, const std::string& field, float value);

    std::vector<uint8_t> RecordingFile() const; // of the frames that are known; empty before the first

private:
    std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error) override;
    void GameEnters() override;
    Timeline::Progress Progress(const std::string& what) override;
    bool CanPlay() const;
    void EndWell();

    InputGatherer m_devices;
    StepClock m_clock{FRAMES_A_SECOND, 0};
    Letterbox m_box;
    ViewDrag m_drag;
    ScreenPoint m_pointer;
    int m_slowed = 0; // steps since a frame was played in slow motion
    bool m_isPlaying = false;
    bool m_isSlow = false;
    bool m_isInspecting = false;
    bool m_isEndTold = false;
};
} // namespace Runner
