// Going back in a play: the game there is the one that was, wherever the way starts.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Lua/Settings_Table.h"
#include "Runner/Save/Capture.h"
#include "Runner/Save/Timeline.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using namespace Runner;

// Goes on from a save exactly: all it knows is in vars and instances.
constexpr const char* HONEST = R"(
    local ball = object_add{ step = function(self) self.x = self.x + random() end }
    vars.steps = 0
    room_add{ width = 2000, height = 200, instances = { {ball, 5, 5} },
              views = { [0] = { w = 50, h = 50, hborder = 20, vborder = 20, target = ball } },
              step = function() vars.steps = vars.steps + 1 end })";

// Counts in a local variable, which no save keeps: the ball is elsewhere after a load.
constexpr const char* FORGETFUL = R"(
    local steps = 0
    local ball = object_add{ step = function(self) steps = steps + 1 self.x = steps end }
    room_add{ width = 20000, height = 200, instances = { {ball, 5, 5} },
              views = { [0] = { w = 50, h = 50, hborder = 20, vborder = 20, target = ball } } })";

class TimelineTest : public RunnerTest::GameTest
{
protected:
    // Starts a play of the text. The pointer tells the frames apart.
    void Begin(const std::string& text, int frames)
    {
        options.check = false;
        options.file = directory.Write("main.lua", text);
        timeline =
            std::make_unique<Timeline>(options, OpenApi, directory.Path("it.rec"), std::vector<uint8_t>(), Widen);
        std::string why;
        ASSERT_TRUE(timeline->Start(why)) << why;
        PlayFrames(frames);
    }

    void PlayFrames(int frames)
    {
        for (int i = 0; i < frames; ++i)
        {
            InputFrame seen;
            seen.mouse.x = static_cast<float>(timeline->Position());
            timeline->Play(seen);
            if (timeline->Position() % 50 == 0)
                states.push_back(State());
        }
    }

    // What somebody does by hand in these tests.
    static void Widen(const HandChange& change) { g_CM.GetCamera(change.camera)->SetViewWidth(change.value); }

    float Width() { return g_CM.GetCamera(Camera())->GetViewWidth(); }
    int Camera() { return timeline->Now().rooms.Running()->views[0].cameraID; }

    std::vector<uint8_t> State()
    {
        std::vector<uint8_t> file;
        std::string missing, why;
        EXPECT_TRUE(CaptureGame(timeline->Now(), file, missing, why)) << why;
        return file;
    }

    void ExpectState(int frame)
    {
        EXPECT_EQ(timeline->Position(), frame);
        EXPECT_EQ(timeline->Now().FrameNumber(), frame);
        EXPECT_TRUE(State() == states[static_cast<size_t>(frame / 50 - 1)]) << frame;
        EXPECT_EQ(timeline->Now().input.Frame().mouse.x, static_cast<float>(frame - 1));
    }

    Timeline::Arrival GoTo(int frame)
    {
        played = 0;
        return timeline->GoTo(frame,
                              [this](int, int all)
                              {
                                  played = all;
                                  return true;
                              });
    }

    std::unique_ptr<Timeline> timeline;
    std::vector<std::vector<uint8_t>> states; // after each fiftieth frame
    int played = 0;                           // frames of the last way
};

TEST_F(TimelineTest, EveryFrameIsAsItWas)
{
    Begin(HONEST, 1000);
    timeline->FinishChecks();
    EXPECT_TRUE(timeline->StatesAreExact());
    for (const int frame : {1000, 50, 350, 400, 950, 600, 300, 900})
    {
        EXPECT_EQ(GoTo(frame), Timeline::Arrival::There);
        ExpectState(frame);
        EXPECT_FALSE(timeline->HasParted());
    }
}

TEST_F(TimelineTest, TheWayStartsAtAKeptState)
{
    Begin(HONEST, 1000);
    timeline->FinishChecks();
    GoTo(800);
    EXPECT_EQ(played, 200) << "from frame 600";
    GoTo(601);
    EXPECT_EQ(played, 301) << "three frames are painted, so from frame 300";
    GoTo(700);
    EXPECT_EQ(played, 99) << "the running game leads there";
}

TEST_F(TimelineTest, AGameWhoseSavesForgetSomethingStartsFromTheBeginning)
{
    Begin(FORGETFUL, 1000);
    timeline->FinishChecks();
    EXPECT_FALSE(timeline->StatesAreExact());
    EXPECT_EQ(timeline->KeptBytes(), 0u);
    EXPECT_EQ(GoTo(850), Timeline::Arrival::There);
    EXPECT_EQ(played, 850);
    ExpectState(850);
}

// What a saved game leaves out, a kept state holds beside it, in the table that scripts have at hand.
TEST_F(TimelineTest, SettingsAreAsTheyWere)
{
    Begin(R"(
        local mine = settings
        mine.first = true
        vars.n = 0
        room_add{ width = 2000, height = 200, views = { [0] = { w = 50, h = 50 } }, step = function()
            vars.n = vars.n + 1
            mine.first = nil
            mine.count = (mine.count or 0) + 1
            camera_set_view_pos(view_get_camera(0), mine.count, 0)
        end })",
          700);
    timeline->FinishChecks();
    EXPECT_TRUE(timeline->StatesAreExact());
    EXPECT_EQ(GoTo(350), Timeline::Arrival::There);
    EXPECT_EQ(played, 50) << "from frame 300";
    ExpectState(350);
    EXPECT_FALSE(timeline->HasParted());
    Settings settings;
    ASSERT_TRUE(TakeSettings(timeline->Now().scripts, settings));
    EXPECT_EQ(SettingsText(settings), "settings 1\n\"count\" = 350\n");
}

TEST_F(TimelineTest, PlayingOnForgetsWhatCameLater)
{
    Begin(HONEST, 400);
    GoTo(100);
    PlayFrames(50);
    EXPECT_EQ(timeline->Frames(), 150);
    EXPECT_EQ(GoTo(100), Timeline::Arrival::There);
    ExpectState(100);
    EXPECT_EQ(GoTo(400), Timeline::Arrival::There);
    EXPECT_EQ(timeline->Position(), 150);
    std::string why, left;
    ASSERT_TRUE(timeline->Finish(why)) << why;
    Recording read;
    ASSERT_TRUE(ReadRecording(directory.Path("it.rec"), read, left, why)) << why;
    EXPECT_EQ(read.Frames(), 150);
    EXPECT_EQ(left, "");
}

TEST_F(TimelineTest, AChangeByHandIsMadeAgainAtItsFrame)
{
    Begin(HONEST, 100);
    const HandChange change = {Camera(), "width", 70.0f};
    Widen(change);
    timeline->Keep(change);
    PlayFrames(50);
    EXPECT_EQ(Width(), 70.0f);
    EXPECT_EQ(GoTo(100), Timeline::Arrival::There);
    EXPECT_EQ(Width(), 50.0f);
    ExpectState(100);
    EXPECT_EQ(GoTo(150), Timeline::Arrival::There);
    EXPECT_EQ(Width(), 70.0f);
    ExpectState(150);
    EXPECT_FALSE(timeline->HasParted());
    EXPECT_EQ(timeline->Reload(150, nullptr), Timeline::Arrival::There);
    EXPECT_EQ(Width(), 50.0f) << "a reload leaves it out";
}

TEST_F(TimelineTest, AChangeThatNoFrameHasHadIsForgottenOnTheWayBack)
{
    Begin(HONEST, 100);
    const HandChange change = {Camera(), "width", 70.0f};
    Widen(change);
    timeline->Keep(change);
    EXPECT_EQ(GoTo(100), Timeline::Arrival::There);
    EXPECT_EQ(Width(), 50.0f);
    PlayFrames(1);
    EXPECT_TRUE(timeline->Recorded().Frame(100).changes.empty());
}

TEST_F(TimelineTest, AWayThatIsCancelledEndsOnIt)
{
    Begin(HONEST, 250);
    const auto arrival = timeline->GoTo(240, [](int done, int) { return done < 120; });
    EXPECT_EQ(arrival, Timeline::Arrival::Cancelled);
    EXPECT_EQ(timeline->Position(), 120 + Timeline::PAINTED_FRAMES);
    EXPECT_EQ(GoTo(200), Timeline::Arrival::There);
    ExpectState(200);
}

TEST_F(TimelineTest, TheWayIsSilentAndWritesNothing)
{
    Begin("room_add{ step = function() log('step ' .. frame_number()) "
          "if frame_number() == 3 then log(tostring(game_save('it.sav'))) end end }",
          5);
    const std::string log = Log();
    EXPECT_NE(log.find("true\n"), std::string::npos) << log;
    std::filesystem::remove(directory.Path("save/it.sav"));
    EXPECT_EQ(GoTo(1), Timeline::Arrival::There);
    EXPECT_EQ(GoTo(5), Timeline::Arrival::There);
    EXPECT_FALSE(timeline->HasParted());
    EXPECT_EQ(Log(), log);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("save/it.sav")));
    PlayFrames(1);
    EXPECT_EQ(Log(), log + "step 5\n");
}

TEST_F(TimelineTest, AFrameThatFailedFailsAgainAndThoseBeforeItDoNot)
{
    Begin("room_add{ step = function() if frame_number() == 60 then error('here') end end }", 61);
    const std::string failure = timeline->Now().Failure();
    EXPECT_NE(failure, "");
    EXPECT_EQ(GoTo(60), Timeline::Arrival::There);
    EXPECT_EQ(timeline->Now().Failure(), "");
    EXPECT_EQ(GoTo(61), Timeline::Arrival::Failed);
    EXPECT_EQ(timeline->Now().Failure(), failure);
}

// The last value of each property, in the order in which they were set last; those that no frame has had come last.
TEST_F(TimelineTest, TellsWhatWasChangedByHandOnceForEachProperty)
{
    Begin(HONEST, 10);
    const auto keep = [this](const char* field, float value) { timeline->Keep({Camera(), field, value}); };
    keep("width", 70.0f);
    PlayFrames(1);
    keep("width", 80.0f);
    keep("x", 1.0f);
    PlayFrames(1);
    keep("x", 2.0f);
    const std::vector<HandChange> all = timeline->Changes();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].field, "width");
    EXPECT_EQ(all[0].value, 80.0f);
    EXPECT_EQ(all[1].field, "x");
    EXPECT_EQ(all[1].value, 2.0f);
}

TEST_F(TimelineTest, TheFrameInWhichAGameEndsIsReachedAndNoneBehindIt)
{
    Begin("room_add{ step = function() if frame_number() == 299 then game_end() end end }", 300);
    EXPECT_TRUE(timeline->Now().HasEnded());
    EXPECT_EQ(timeline->KeptBytes(), 0u) << "nothing goes on from there";
    EXPECT_EQ(GoTo(300), Timeline::Arrival::There);
    EXPECT_EQ(GoTo(299), Timeline::Arrival::There);
    EXPECT_FALSE(timeline->Now().HasEnded());
    EXPECT_EQ(GoTo(300), Timeline::Arrival::There);
    EXPECT_TRUE(timeline->Now().HasEnded());
    EXPECT_EQ(timeline->Position(), 300);
}

// A game that counts what it loses only in frame 700: the check of frames 300 to 600 sees nothing, the way does.
TEST_F(TimelineTest, AStateThatTurnsOutNotToGoOnIsUsedNoMore)
{
    Begin(R"(
        local lost = 0
        local ball = object_add{ step = function(self) lost = lost + 1
            if frame_number() > 700 then self.x = lost end end }
        room_add{ width = 20000, height = 200, instances = { {ball, 5, 5} }, views = { [0] = { w = 50, h = 50,
                  hborder = 20, vborder = 20, target = ball } } })",
          650);
    timeline->FinishChecks();
    EXPECT_TRUE(timeline->StatesAreExact());
    PlayFrames(200);
    EXPECT_EQ(GoTo(0), Timeline::Arrival::There);
    EXPECT_EQ(GoTo(800), Timeline::Arrival::There);
    EXPECT_FALSE(timeline->StatesAreExact());
    EXPECT_FALSE(timeline->HasParted());
    ExpectState(800);
}

// ---- following a recording ----

class FollowedRecording : public TimelineTest
{
protected:
    // Plays HONEST for so many frames, and follows the recording of it with that text.
    void Follow(const std::string& text, int frames)
    {
        Begin(HONEST, frames);
        std::string why, left;
        ASSERT_TRUE(timeline->Finish(why)) << why;
        Recording recording;
        ASSERT_TRUE(ReadRecording(directory.Path("it.rec"), recording, left, why)) << why;
        timeline.reset();
        directory.Write("main.lua", text);
        timeline = std::make_unique<Timeline>(options, OpenApi, "", std::vector<uint8_t>(), Widen);
        timeline->Follow(std::move(recording));
        ASSERT_TRUE(timeline->Start(why)) << why;
    }

    void PlayRecorded(int frames)
    {
        for (int i = 0; i < frames; ++i)
            ASSERT_TRUE(timeline->PlayRecorded());
    }
};

TEST_F(FollowedRecording, AllItsFramesCanBeGoneToBeforeTheyArePlayed)
{
    Follow(HONEST, 230);
    EXPECT_EQ(timeline->Position(), 0);
    EXPECT_EQ(timeline->Frames(), 230);
    PlayRecorded(50);
    ExpectState(50);
    EXPECT_EQ(GoTo(200), Timeline::Arrival::There);
    ExpectState(200);
    EXPECT_EQ(GoTo(100), Timeline::Arrival::There);
    ExpectState(100);
    PlayRecorded(130);
    EXPECT_EQ(timeline->Frames(), 230) << "playing on forgets nothing";
    EXPECT_EQ(timeline->PartedAt(), 0);
}

TEST_F(FollowedRecording, AnotherGameIsSeenToPart)
{
    std::string changed = HONEST;
    changed.replace(changed.find("self.x + random()"), 17, "self.x - random()");
    Follow(changed, 130);
    PlayRecorded(59);
    EXPECT_EQ(timeline->PartedAt(), 0) << "a second is compared when it is whole";
    PlayRecorded(1);
    EXPECT_EQ(timeline->PartedAt(), 1);
}

TEST_F(FollowedRecording, AChangeByHandBelongsToItFromThenOn)
{
    Follow(HONEST, 130);
    PlayRecorded(50);
    const HandChange change = {Camera(), "width", 70.0f};
    Widen(change);
    timeline->Keep(change);
    PlayRecorded(50);
    EXPECT_EQ(GoTo(50), Timeline::Arrival::There);
    EXPECT_EQ(Width(), 50.0f);
    ExpectState(50);
    EXPECT_EQ(GoTo(75), Timeline::Arrival::There);
    EXPECT_EQ(Width(), 70.0f);
    PlayRecorded(55);
    EXPECT_FALSE(timeline->HasParted());
    EXPECT_EQ(timeline->PartedAt(), 0) << "it is meant to go elsewhere";
}

// ---- reloading ----

TEST_F(TimelineTest, AReloadPlaysTheSameInputInTheChangedGame)
{
    Begin(HONEST, 700);
    std::string changed = HONEST;
    changed.replace(changed.find("vars.steps + 1"), 14, "vars.steps + 2");
    directory.Write("main.lua", changed);
    EXPECT_EQ(timeline->Reload(650, nullptr), Timeline::Arrival::There);
    EXPECT_EQ(timeline->Position(), 650);
    EXPECT_EQ(timeline->Frames(), 700);
    EXPECT_EQ(timeline->Now().input.Frame().mouse.x, 649.0f);
    EXPECT_FALSE(State() == states[12]);
    const std::vector<uint8_t> state = State();
    EXPECT_EQ(GoTo(100), Timeline::Arrival::There);
    EXPECT_EQ(GoTo(700), Timeline::Arrival::There);
    EXPECT_EQ(GoTo(650), Timeline::Arrival::There);
    EXPECT_TRUE(State() == state);
    EXPECT_FALSE(timeline->HasParted());
}

TEST_F(TimelineTest, AReloadBeforeTheFirstFrameStartsAnew)
{
    Begin(HONEST, 0);
    directory.Write("main.lua", "room_add{");
    EXPECT_EQ(timeline->Reload(0, nullptr), Timeline::Arrival::Failed);
    directory.Write("main.lua", HONEST);
    EXPECT_EQ(timeline->Reload(0, nullptr), Timeline::Arrival::There);
    PlayFrames(50);
    EXPECT_EQ(timeline->Now().FrameNumber(), 50);
}

TEST_F(TimelineTest, AMistakeInTheGameGoesAwayWithItsMend)
{
    Begin(HONEST, 100);
    directory.Write("main.lua", "room_add{");
    EXPECT_EQ(timeline->Reload(100, nullptr), Timeline::Arrival::Failed);
    EXPECT_NE(timeline->Now().Failure(), "");
    directory.Write("main.lua", HONEST);
    EXPECT_EQ(timeline->Reload(100, nullptr), Timeline::Arrival::There);
    ExpectState(100);
}
} // namespace
