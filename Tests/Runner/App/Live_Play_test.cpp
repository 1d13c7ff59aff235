// A game that is played live, with its inspector: what the inspector knows after a way back.

#include "Runner/App/Live_Play.h"

#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
using namespace Runner;

// A play that nobody sees.
class UnseenPlay : public LivePlay
{
public:
    using LivePlay::LivePlay;

    bool Begin(std::string& why)
    {
        const bool isGood = StartGame(why);
        EnterGame();
        return isGood;
    }
    void End() { LeaveGame(); }

private:
    std::unique_ptr<Device> OpenDevice(int, int, std::string&) override { return nullptr; }
    Timeline::Progress Progress(const std::string&) override { return nullptr; }
};

class LivePlays : public RunnerTest::CommandLine
{
protected:
    // The target moves by three units a frame from 100 on; view 1 follows it.
    void SetUp() override
    {
        options.game.draw = false;
        options.game.file = directory.Write(
            "main.lua", "local runner = object_add{ step = function(self) self.x = self.x + 3 end } "
                        "room_add{ width = 900, height = 300, instances = { {runner, 100, 50} }, "
                        "views = { [0] = { w = 90, h = 60 }, [1] = { w = 90, h = 60, target = runner } } }");
        std::string why;
        ASSERT_TRUE(start.Open(options, why)) << why;
        play = std::make_unique<UnseenPlay>(options, start, stderr);
        ASSERT_TRUE(play->Begin(why)) << why;
        for (int frame = 0; frame < 10; ++frame)
            ASSERT_TRUE(play->PlayFrame(InputFrame()));
    }
    void TearDown() override { play->End(); }

    int CameraOf(int view) const { return play->Now().rooms.Running()->views[static_cast<size_t>(view)].cameraID; }

    RunOptions options;
    RunStart start;
    std::unique_ptr<UnseenPlay> play;
};

TEST_F(LivePlays, AWayBackKeepsTheCameraThatWasChosen)
{
    play->CurrentInspector()->Content().Select(CameraOf(1));
    play->Go(5);
    play->CurrentInspector()->Open();
    EXPECT_EQ(play->CurrentInspector()->Content().Content().selected, CameraOf(1));
}

// After five frames the target is at 115.
TEST_F(LivePlays, AWayBackKnowsTheStepOfTheFrameItLeadsTo)
{
    play->Go(5);
    play->CurrentInspector()->Open();
    const FrameNotes& notes = play->CurrentInspector()->Content().Notes();
    const StepNote* step = notes.StepOf(CameraOf(1));
    ASSERT_NE(step, nullptr);
    EXPECT_EQ(step->kind, UpdateKind::Followed);
    EXPECT_EQ(step->x.stages.target, 115.0f);
    EXPECT_EQ(notes.Frame(), 4);
    ASSERT_EQ(notes.Views().size(), 2u);
    EXPECT_EQ(notes.Views()[0].instances.size(), 1u);
}

// What was noted on the way says nothing of a later frame.
TEST_F(LivePlays, AnInspectorThatIsOpenedLaterThanAWayBackLooksAtItsOwnFrame)
{
    play->Go(5);
    ASSERT_TRUE(play->PlayFrame(InputFrame()));
    play->CurrentInspector()->Open();
    const FrameNotes& notes = play->CurrentInspector()->Content().Notes();
    const StepNote* step = notes.StepOf(CameraOf(1));
    ASSERT_NE(step, nullptr);
    EXPECT_EQ(step->kind, UpdateKind::Unseen);
    EXPECT_EQ(notes.Frame(), 5);
}
} // namespace
