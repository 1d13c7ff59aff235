#pragma once
// One game: its scripts, its world, its cameras, its picture. One at a time in a process; games may follow each other.
//
//   Game game(options, OpenApi);
//   bool good = game.Load();
//   while (good && !game.HasEnded())
//       good = game.Frame();
//   if (!good)
//       show(game.Failure());
//
// The module's one camera manager is empty before Load and again after the game's destruction.

#include "Files/Graphics/Camera_Handle.h"
#include "Runner/Base/Installed_Kit.h"
#include "Runner/Base/Random.h"
#include "Runner/Base/Settings.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Frame_Observer.h"
#include "Runner/Game/Game_Identity.h"
#include "Runner/Game/Game_Names.h"
#include "Runner/Game/Journal.h"
#include "Runner/Game/Room_Map.h"
#include "Runner/Game/Trace.h"
#include "Runner/Input/Input.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/World/Running_Room.h"
#include "Runner/World/World.h"

#include <memory>
#include <string>
#include <vector>

class CCamera;

namespace Runner
{
constexpr int NO_VIEW = -1; // the default camera draws without one
constexpr int FRAMES_A_SECOND = 60;
constexpr int SCREEN_WIDTH_UNLESS_SET = 1280;
constexpr int SCREEN_HEIGHT_UNLESS_SET = 720;

struct GameOptions
{
    std::string file; // of the game
    std::string kit;  // folder of the camera kit for a game without its own; empty: InstalledKit
    int width = 0;    // of the picture, pixels; 0: the game's screen
    int height = 0;
    uint64_t seed = 1;
    bool draw = true;      // false: everything runs, nothing is drawn
    bool check = false;    // walk all structures after each frame
    bool strict = false;   // warn of variables that are read and were never set
    bool gcStress = false; // collect wherever a collection may happen
    std::string trace;     // file; empty for none
    ScriptLimits limits;
    Settings settings;          // what the table `settings` holds at the start
    DeviceOpener openDevice;    // what it draws with; null: the device without a window
    Journal* journal = nullptr; // of what the game learns of files, not owned; null: nothing is kept
};

class Game;

// Work that waits for the moment between this frame and the next, such as a save that a script has asked for.
class AfterFrame
{
public:
    virtual ~AfterFrame() = default;
    virtual void Perform(Game& game) = 0;
};

// Makes what scripts can call. It runs inside the script engine's protection.
using ScriptOpener = void (*)(lua_State* L, Game& game);

class Game
{
public:
    Game(const GameOptions& options, ScriptOpener openScripts);
    ~Game();
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    static Game* Current(); // null while there is none

    // ---- playing; false: the game has failed, see Failure ----
    bool Load();   // runs the main file and starts the first room. Once, before all else
    bool Finish(); // closes what was written
    // Plays one frame (Frame.cpp), in which the devices do what `seen` says; nobody touches anything unless it is
    // given.
    bool Frame(const InputFrame& seen = InputFrame());

    bool HasEnded() const { return m_hasEnded; }
    const std::string& Failure() const { return scripts.Failure(); }
    int FrameNumber() const { return m_frame; }                 // frames played so far
    Picture Screen();                                           // what the last frame drew
    const GameIdentity& Identity() const { return m_identity; } // since Load
    uint64_t FrameSum() const { return m_frameSum; }            // equal frames have equal ones: see SumFrame

    Port PortOf(const View& view) const; // where the view stands on the picture, pixels; in a surface: all of it

    // ---- what scripts ask for ----
    Instance* CreateInstance(ObjectType& type, float x, float y); // null: its create event failed
    bool DestroyInstance(Instance& instance);                     // false: its destroy event failed
    void GotoRoom(int room) { m_nextRoom = room; }                // at the end of the step; must exist, or NO_ROOM
    int NextRoom() const { return m_nextRoom; }                   // NO_ROOM when none was asked for
    void End() { m_hasEnded = true; }                             // after this frame
    void AdoptDefaultCamera(int id); // the Runner's own one, after a saved game has brought it back; -1 for none
    int OwnDefaultCamera() const;    // its number, -1 when a script destroyed it
    void SetFrameNumber(int frame) { m_frame = frame; } // of a saved game that goes on

    // What is outside of the game and its input is asked through here, so that a replay gets the same answer.
    Answer Ask(Question question, const std::function<Answer()>& ask) const
    {
        return options.journal != nullptr ? options.journal->Ask(question, ask) : ask();
    }

    // ---- maps of rooms ----
    int AddMap(std::unique_ptr<RoomMap> map); // the number, for RoomSpec
    RoomMap* FindMap(int map) const;          // null when there is none
    RoomMap* RunningMap() const;              // the running room's; null when it has none

    // ---- the screen ----
    bool SetScreenSize(int width, int height); // false once something was made for the old size
    int ScreenWidth() const { return m_screenWidth; }
    int ScreenHeight() const { return m_screenHeight; }

    // ---- drawing ----
    Painter* OpenPainter(); // makes it when there is none yet; null, and failed, when there is no way to draw
    Painter* CurrentPainter() const { return m_painter.get(); } // null before it was needed
    bool IsDrawing() const { return m_isDrawing; }
    bool PushTarget(int surface);
    bool PopTarget(); // false when the script has pushed none

    // Ends the running room, without starting another.
    void EndRoom();
    void DestroyAllCameras(); // the default camera and the high point are forgotten, too
    bool StartRoom(int room); // makes its instances and runs its create script. No room may be running

    const GameOptions options;
    Random random;
    ScriptEngine scripts;
    World world;
    Rooms rooms;
    GameNames names;
    Input input;                            // of the running frame; no part of a saved game
    std::unique_ptr<AfterFrame> afterFrame; // null: nothing waits
    FrameObserver* observer = nullptr;      // who watches; not owned, null for nobody

private:
    // Where a camera's number stands: a view's field or the default camera's. It cannot be copied, since a callback may
    // change the number between two looks at it.
    class CameraNumber
    {
    public:
        explicit CameraNumber(const int32_t& where) : m_where(where) {}
        CameraNumber(const CameraNumber&) = delete;
        CameraNumber& operator=(const CameraNumber&) = delete;

        int Now() const { return m_where; }

    private:
        const int32_t& m_where;
    };

    bool MayCreateInstance(); // false, and failed: no identifier is left
    Instance* CreatePlaced(const RoomPlacement& placement);
    bool CheckEverything();
    void CollectHostError(int camera);

    // Load
    void OpenScripts();
    void MakeGlobalInstance();
    void MakeDefaultCamera();
    void FitDefaultCamera(const RunningRoom& room);
    void Identify();

    // Frame.cpp
    void PlayFrame();
    void SumFrame();
    void Step();
    bool CallRoom(int script, const char* event);
    void ChangeRoom();
    void Draw();
    void DrawViews(RunningRoom& room);
    void DrawView(RunningRoom& room, int number);
    bool HasTarget(View& view, int number) const;
    void DrawDefaultView(const RunningRoom& room);
    void DrawThrough(const CameraNumber& number, int view);
    void Perform(void (CCamera::*step)(), const CameraNumber& number, const char* name);
    void Update(const CameraNumber& number);
    void DrawRoom(const CameraNumber& number, int view);
    void DrawInstances();
    void DrawMap(float depth, size_t& next);
    void TellOfView(int camera, int view) const;
    void DrawInstance(Instance& instance);
    void DrawGui(const RunningRoom& room);
    void BeginTarget(const Port& port, unsigned background);
    void EndTarget();
    void ResetDrawingState();
    Port FittingPort(float width, float height) const;

    const ScriptOpener m_openScripts;
    std::unique_ptr<Painter> m_painter;
    Trace m_trace;
    GameIdentity m_identity;
    std::vector<std::unique_ptr<RoomMap>> m_maps;
    std::vector<Instance*> m_seen; // of the view being drawn
    int m_screenWidth = SCREEN_WIDTH_UNLESS_SET;
    int m_screenHeight = SCREEN_HEIGHT_UNLESS_SET;
    int m_frame = 0;
    uint64_t m_frameSum = 0;
    int m_nextRoom = NO_ROOM;
    CCameraHandle m_ownDefaultCamera; // its number may have gone to another camera
    int m_pushedTargets = 0;          // by scripts
    bool m_isDrawing = false;
    bool m_hasEnded = false;
};
} // namespace Runner
