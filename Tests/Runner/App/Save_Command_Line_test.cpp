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

// The second game differs in a number, a text of vars, and an instance's place.
TEST_F(SaveOptions, ComparedSavesTellWhatDiffers)
{
    const auto text = [](const std::string& n)
    {
        return "local o = object_add{} room_add{ instances = { {o, " + n + ", 2} }, create = function()\n" +
               "instance_get(100000).n = " + n + " vars.t = { 'a', { " + n + " } } end }";
    };
    const std::string other = directory.Path("other.sav"), again = directory.Path("again.sav");
    const std::string two = directory.Write("two.lua", text("1"));
    ASSERT_EQ(Run(two + " --frames 2 --save-at 2 " + save), 0);
    ASSERT_EQ(Run(two + " --frames 2 --save-at 2 " + again), 0);
    directory.Write("two.lua", text("7"));
    ASSERT_EQ(Run(two + " --frames 2 --save-at 2 " + other), 0);
    EXPECT_EQ(RunnerTest::StartProgram("--compare-saves " + save + " " + again, directory.Path("said")), 0);
    EXPECT_EQ(Said(), "the saves are the same\n");
    EXPECT_EQ(RunnerTest::StartProgram("--compare-saves " + save + " " + other, directory.Path("said")), 1);
    const std::string said = Said();
    EXPECT_EQ(said.substr(said.find('\n') + 1), "instance 100000 x: 1 / 7\ninstance 100000.n: 1 / 7\n"
                                                "vars.t[2][1]: 1 / 7\n");
    EXPECT_EQ(said.find("fingerprint: "), 0u);
    EXPECT_EQ(RunnerTest::StartProgram("--compare-saves " + save + " " + two, directory.Path("said")), 1);
    EXPECT_EQ(Said(), "runner: cannot load " + two + ": it is no saved game\n");
    EXPECT_EQ(Run("--compare-saves " + save + " " + other), 2); // with --no-draw
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
