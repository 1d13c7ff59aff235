#pragma once

#include "Runner/Game/Game.h"
#include "Runner/Inspect/Inspector.h"
#include "Runner/Inspect/Preview.h"
#include "Runner/Inspect/Profile.h"

#include <functional>
#include <memory>

namespace Runner
{
// The camera inspector of a game that is played live, whoever shows it. Nothing watches the game while it is closed.
class LiveInspector : private FrameObserver
{
public:
    explicit LiveInspector(Game& game) : m_game(game), m_inspector(game) {} // kept
    ~LiveInspector() override;
    LiveInspector(const LiveInspector&) = delete;
    LiveInspector& operator=(const LiveInspector&) = delete;

    void Open(); // nothing when it is open, as Close when it is not
    void Close();
    bool IsOpen() const { return m_isOpen; }

    // The device that draws the game from now on. The one before is gone by then: a lost one is replaced. Without one,
    // changes show with the next frame.
    void LoseDevice();
    void SetDevice(KeepingDevice& device);

    // Changes a camera by hand. It shows at once while it is open, even while the game stands. False: there is no such
    // camera or property.
    bool Take(const CameraChange& change);
    std::function<void(const CameraChange& change)> onChange; // after one has been made; null for nobody

    Inspector& Content() { return m_inspector; }
    const Profile& Times() const { return m_profile; } // of the frames since it was opened

private:
    void FrameBegins(const Game& game) override;

    Game& m_game;
    Inspector m_inspector;
    Profile m_profile;
    KeepingDevice* m_device = nullptr;
    std::unique_ptr<Preview> m_preview; // while it is open
    Watchers m_watchers;
    FrameObserver* m_before = nullptr; // who watched the game already
    bool m_isOpen = false;
};

// What a game that is played live draws with: a device of the opener, whose frames can be drawn once more. inspector:
// who watches the game; null for nobody yet. A running game asks for one when its own was lost: what was made with that
// one is let go by then.
std::unique_ptr<Device> OpenWatchedDevice(const DeviceOpener& open, LiveInspector* inspector, int width, int height,
                                          std::string& error);
} // namespace Runner
