#pragma once

#include "Runner/App/File_Watch.h"
#include "Runner/App/Live_Play.h"
#include "Runner/App/Pages.h"
#include "Runner/App/Session.h"
#include "Runner/App/Window_Inspector.h"
#include "Runner/App/Window_Stage.h"

namespace Runner
{
// A live play in a window: with --watch it starts anew when its files change, up to the same frame.
class LiveRun : public LivePlay
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

    void Idle() override;

private:
    bool StartGame(std::string& why);
    bool PlayFrames();
    Outcome End();
    bool WaitForMend(const FailureReport& report);
    void KeepPicture();
    void WatchFiles();
    bool HaveFilesChanged();
    void ReloadFiles(int frame);
    std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error) override;
    void GameEnters() override;
    void GameLeaves() override;
    Timeline::Progress Progress(const std::string& what) override;

    Window& m_window;
    FileWatch m_watch;
    Panel m_page;
    std::unique_ptr<GamePicture> m_picture;
    std::unique_ptr<WindowStage> m_stage;
    std::unique_ptr<WindowInspector> m_inspector; // of the running game
    bool m_isInspecting = false;
    Picture m_last;         // that the game showed before it failed, or before it was started anew
    int64_t m_lookedAt = 0; // milliseconds: at the files
    bool m_wantsAgain = false;
};
} // namespace Runner
