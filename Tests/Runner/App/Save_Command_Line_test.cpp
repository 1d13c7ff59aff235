// --save-at, --load and --screenshot.

#include "Tests/Runner/Save/Save_Support.h"

#include <fstream>

namespace
{
using RunnerTest::StartRunner;

class SaveOptions : public ::testing::Test
{
protected:
    int Run(const std::string& arguments) { return StartRunner(arguments, directory.Path("said")); }

    std::string Said() const { return directory.Read("said"); }

    RunnerTest::TestDirectory directory;
    const std::string game =
        directory.Write("main.lua", "local n = irandom(1000000) room_add{ step = function()\n"
                                    "print(frame_number() .. ' ' .. n .. ' ' .. irandom(1000000)) end }");
    const std::string save = directory.Path("it.sav");
};

TEST_F(SaveOptions, ALoadedGameGoesOnWithItsOwnSeed)
{
    ASSERT_EQ(Run(game + " --seed 7 --frames 5 --save-at 3 " + save), 0);
    const std::string whole = Said();
    ASSERT_EQ(Run(game + " --load " + save + " --frames 2"), 0);
    EXPECT_EQ(Said(), whole.substr(whole.find("\n3 ") + 1));
}

TEST_F(SaveOptions, FramesCountThoseBeforeTheLoad)
{
    ASSERT_EQ(Run(game + " --frames 2 --save-at 2 " + save), 0);
    ASSERT_EQ(Run(game + " --load " + save + " --frames 2 --save-at 4 " + save), 0);
    ASSERT_EQ(Run(game + " --load " + save + " --frames 1"), 0);
    EXPECT_EQ(Said().substr(0, 2), "4 ");
}

TEST_F(SaveOptions, AnotherSeedThatWasAskedForIsRefused)
{
    ASSERT_EQ(Run(game + " --frames 2 --save-at 2 " + save), 0);
    EXPECT_EQ(Run(game + " --load " + save + " --seed 8"), 1);
    EXPECT_EQ(Said(),
              "runner: cannot load " + save + ": it was made with --seed 1, this game was started with --seed 8\n");
}

TEST_F(SaveOptions, AFrameThatIsNeverReachedIsAnError)
{
    EXPECT_EQ(Run(game + " --frames 2 --save-at 3 " + save), 1);
    EXPECT_EQ(Said(), "runner: --save-at 3: the run ends after 2 frames\n");
}

TEST_F(SaveOptions, AFrameThatTheGameDoesNotReachIsAnError)
{
    const std::string ending = directory.Write("ending.lua", "room_add{ step = game_end }");
    EXPECT_EQ(Run(ending + " --save-at 3 " + save), 1);
    EXPECT_EQ(Said(), "runner: --save-at 3: the game has stopped after 1 frame\n");
}

TEST_F(SaveOptions, AFrameBeforeTheLoadedOnesIsAnError)
{
    ASSERT_EQ(Run(game + " --frames 4 --save-at 4 " + save), 0);
    for (const char* frame : {"2", "4"})
    {
        EXPECT_EQ(Run(game + " --load " + save + " --frames 2 --save-at " + frame + " " + save), 1);
        EXPECT_EQ(Said(),
                  "runner: --save-at " + std::string(frame) + ": the loaded game has played 4 frames already\n");
    }
}

TEST_F(SaveOptions, AFileThatCannotBeWrittenIsAnError)
{
    EXPECT_EQ(Run(game + " --quiet --frames 2 --save-at 1 " + directory.Path("none/it.sav")), 1);
    EXPECT_EQ(Said(), "runner: cannot make " + directory.Path("none/it.sav") + ": No such file or directory\n");
}

TEST_F(SaveOptions, AMissingFileIsAnError)
{
    EXPECT_EQ(Run(game + " --load " + save), 1);
    EXPECT_EQ(Said(), "runner: cannot open " + save + ": No such file or directory\n");
}

TEST_F(SaveOptions, ADamagedFileIsAnError)
{
    std::ofstream(save) << "something else";
    EXPECT_EQ(Run(game + " --load " + save), 1);
    EXPECT_EQ(Said(), "runner: cannot load " + save + ": it is no saved game\n");
}

TEST_F(SaveOptions, MistakesAreOneLineAndStatusTwo)
{
    for (const std::string wrong : {" --save-at 3", " --save-at 0 f", " --save-at many f", " --screenshot a.png"})
    {
        EXPECT_EQ(Run(game + wrong), 2) << wrong;
        EXPECT_EQ(Said().find('\n'), Said().size() - 1) << Said();
    }
}
} // namespace
