// One side of a comparison in a window: a recording that is followed in another process.

#include "Runner/App/Compared_Game.h"

#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
using Runner::ComparedGame;

class ComparedGames : public RunnerTest::CommandLine
{
protected:
    ComparedGames()
    {
        Version("game.lua", "0");
        EXPECT_EQ(Run({directory.Path("game.lua"), "--no-draw", "--frames", "70", "--record", directory.Path("it.rec"),
                       "--out", directory.Path("out")}),
                  0)
            << err;
        options.replay = directory.Path("it.rec");
        options.game.draw = false; // another process could not use what the driver has made in this one
    }

    // A room of 500 x 50 whose view moves by one unit a frame; `change` runs in each step.
    void Version(const std::string& name, const std::string& change)
    {
        options.game.file = directory.Write(
            name, "screen_set_size(40, 30) room_add{ width = 500, height = 50, views = { [0] = { w = 40, h = 30 } }, "
                  "step = function() local frame = frame_number() local extra = " +
                      change + " camera_set_view_pos(view_get_camera(0), frame + extra, 0) end }");
    }

    static void GoTo(ComparedGame& game, int frame)
    {
        game.Ask(frame);
        while (game.IsAsked())
            game.Take(100);
    }

    Runner::RunOptions options;
};

TEST_F(ComparedGames, GoesToAnyFrameOfTheRecording)
{
    ComparedGame game(options, true);
    for (const int frame : {0, 1, 40, 20, 70})
    {
        GoTo(game, frame);
        EXPECT_EQ(game.Position(), frame);
        EXPECT_EQ(game.Frames(), 70);
        EXPECT_EQ(game.Failure(), "");
        EXPECT_EQ(std::pair(game.Shown().width, game.Shown().height), std::pair(40, 30));
    }
    GoTo(game, 1000);
    EXPECT_EQ(game.Position(), 70);
}

TEST_F(ComparedGames, TheirSumsTellFromWhichFrameOnTheyDiffer)
{
    ComparedGame game(options, true);
    Version("other.lua", "frame < 50 and 0 or 1");
    ComparedGame other(options, true);
    for (const int frame : {10, 50, 51, 30, 60})
    {
        GoTo(game, frame);
        GoTo(other, frame);
        EXPECT_EQ(game.Sum() == other.Sum(), frame <= 50) << frame;
    }
}

TEST_F(ComparedGames, AGameThatFailsStaysThereAndSaysWhy)
{
    Version("other.lua", "frame < 50 and 0 or nil");
    ComparedGame other(options, true);
    GoTo(other, 60);
    EXPECT_EQ(other.Position(), 51);
    EXPECT_NE(other.Failure().find("other.lua:1:"), std::string::npos) << other.Failure();
    GoTo(other, 30);
    EXPECT_EQ(other.Position(), 30);
    EXPECT_EQ(other.Failure(), "");
}

TEST_F(ComparedGames, AMistakeThatIsThereFromTheStartIsTold)
{
    options.game.file = directory.Write("other.lua", "room_add{");
    ComparedGame other(options, true);
    GoTo(other, 5);
    EXPECT_EQ(other.Position(), 0);
    EXPECT_NE(other.Failure().find("other.lua:1:"), std::string::npos) << other.Failure();
}

TEST_F(ComparedGames, CanBeLeftWhileItIsOnItsWay)
{
    ComparedGame game(options, true);
    game.Ask(70);
}
} // namespace
