#pragma once

#include "Runner/App/File_Watch.h"
#include "Runner/App/Pages.h"
#include "Runner/App/Run_Start.h"
#include "Runner/App/Session.h"
#include "Runner/App/Settings_Keeper.h"
#include "Runner/App/Window_Inspector.h"
#include "Runner/App/Window_Stage.h"
#include "Runner/Save/Timeline.h"

namespace Runner
{
// A game that somebody plays in a window, or a recording of it, with its time: it can be gone back in, and with --watch
// it starts anew when its files change, up to the same frame.
class LiveRun : public StageTime
{
public:
    // Whether the options ask for nothing that only a Session does.
    static bool Fits(const RunOptions& options);

    // All are kept, not copied. options: what start has settled.
    LiveRun(const RunOptions& options, Window& window, RunStart& start, FILE* err);

    // report, last: filled when the outcome has a line; last is what the game showed before it failed.
    Outcome Play(FailureReport& report, Picture& last);
    std::string Rescue(); // where no further frame can be played: keeps settings and recording. Why not, in one line
    bool WantsAgain() const { return m_wantsAgain; } // the user has seen the error, and starts the game again

    int Position() const override { return m_timeline.Position(); }
    int Frames() const override { return m_timeline.Frames(); }
    void GoTo(int frame) override;
    void Idle() override;

private:
    bool StartGame(std::string& why);
    bool PlayFrames();
    bool PlayFrame(const InputFrame& seen);
    Outcome End();
    void KeepSettings(bool isLast);
    bool WaitForMend(const FailureReport& report);
    void KeepPicture();
    void WatchFiles();
    bool HaveFilesChanged();
    void Reload(int frame);
    GameOptions OptionsOfGames();
    void LeaveGame();
    void SetChangesAside();
    void EnterGame();
    Timeline::Progress Progress(const std::string& what);

    const RunOptions& m_options;
    Window& m_window;
    RunStart& m_start;
    FILE* m_err;
    Timeline m_timeline;
    SettingsKeeper m_settings;
    FileWatch m_watch;
    Panel m_page;
    std::unique_ptr<GamePicture> m_picture;
    std::unique_ptr<WindowStage> m_stage;
    std::unique_ptr<WindowInspector> m_inspector; // of the running game
    bool m_isInspecting = false;
    std::vector<CameraChange> m_aside; // changes by hand that a reload has left out
    Picture m_last;                    // that the game showed before it failed, or before it was started anew
    int64_t m_lookedAt = 0;            // milliseconds: at the files
    bool m_wantsAgain = false;
};
} // namespace Runner
