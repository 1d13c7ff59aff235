#pragma once

#include "Runner/App/Live_Inspector.h"
#include "Runner/App/Run_Start.h"
#include "Runner/App/Settings_Keeper.h"
#include "Runner/App/Stage_Time.h"
#include "Runner/Save/Timeline.h"

namespace Runner
{
// A game that somebody plays, or a recording of it, with its time, its settings and its inspector, whoever shows it. It
// can be gone back in, and started anew from files that have changed.
class LivePlay : public StageTime
{
public:
    // All are kept, not copied. options: what start has settled.
    LivePlay(const RunOptions& options, RunStart& start, FILE* err);
    LivePlay(const LivePlay&) = delete;
    LivePlay& operator=(const LivePlay&) = delete;

    // Since StartGame; another object after a way back.
    Game& Now() { return m_timeline.Now(); }
    const Game& Now() const { return m_timeline.Now(); }
    LiveInspector* CurrentInspector() { return m_inspector.get(); } // of the running game; null before EnterGame

    int Position() const override { return m_timeline.Position(); }
    int Frames() const override { return m_timeline.Frames(); }
    void GoTo(int frame) override { Go(frame); }
    Timeline::Arrival Go(int frame);

    // A replay that stands at its end, which somebody has gone to, has no next frame. False: the game has failed.
    bool PlayFrame(const InputFrame& seen);

    // The same frame of the game as its files are now. Changes by hand are left out, and set aside in the inspector.
    Timeline::Arrival Reload(int frame);

protected:
    // False: the game has failed, or it is not the one that was recorded: why.
    bool StartGame(std::string& why);
    void EnterGame(); // shows the running game; after StartGame, once
    void LeaveGame(); // before it is gone, or at the end
    void KeepSettings(bool isLast);

    // What a game draws with. A running one asks again when its device was lost.
    virtual std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error) = 0;
    virtual void GameEnters() {} // the running game is another object: the inspector watches it
    virtual void GameLeaves() {} // it is about to be gone, and the inspector with it
    virtual Timeline::Progress Progress(const std::string& what) = 0; // of a way that takes time

    const RunOptions& m_options;
    RunStart& m_start;
    FILE* m_err;
    Timeline m_timeline;

private:
    GameOptions OptionsOfGames();
    void SetChangesAside();

    SettingsKeeper m_settings;
    std::unique_ptr<LiveInspector> m_inspector;
    std::vector<CameraChange> m_aside; // changes by hand that a reload has left out
    int m_selected = -1;               // camera of the inspector
    FrameNotes m_arrival;              // of the last frame of a way
};
} // namespace Runner
