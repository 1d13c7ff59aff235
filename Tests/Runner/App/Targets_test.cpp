// What a run is asked to write is tried before its first frame.

#include "Runner/Base/File_Faults.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
using RunnerTest::ExpectOneLine;

// Each frame that is played tells so.
constexpr char TELLING_GAME[] = "screen_set_size(8, 8) print('main') room_add{ step = function() print('frame') end }";

class Targets : public RunnerTest::CommandLine
{
protected:
    // Nothing of the game has run, and one line has this in it.
    void ExpectRefused(std::vector<std::string> arguments, const std::string& part)
    {
        arguments.insert(arguments.end(), {"--frames", "3"});
        EXPECT_EQ(Play(TELLING_GAME, arguments), 1) << part;
        EXPECT_EQ(out, "") << part;
        ExpectOneLine(err);
        EXPECT_NE(err.find(part), std::string::npos) << err;
    }
};

TEST_F(Targets, APictureWhoseNameIsRefusedIsOneLineWithTheOption)
{
    for (const std::string option : {"--screenshot", "--contact-sheet"})
    {
        ExpectRefused({option, "../x.png"}, option + ": \"../x.png\": the name leads out of the save area through");
        ExpectRefused({option, "/x.png"}, option + ": \"/x.png\": the name is an absolute path");
        ExpectRefused({option, "x/"}, option + ": \"x/\": the name is that of a directory");
    }
}

TEST_F(Targets, APictureThatCannotBeMadeIsOneLineWithTheReason)
{
    std::filesystem::create_directories(directory.Path("out/taken.png"));
    directory.Write("out/file", "");
    for (const std::string option : {"--screenshot", "--contact-sheet"})
    {
        ExpectRefused({option, "taken.png"}, "out/taken.png: it is no ordinary file");
        ExpectRefused({option, "file/x.png"},
                      option + ": cannot make the directory " + directory.Path("out") + "/file: Not a directory");
    }
}

TEST_F(Targets, ASavedGameThatCannotBeMadeIsOneLineWithTheReason)
{
    ExpectRefused({"--no-draw", "--save-at", "2", directory.Path("none/it.sav")},
                  "none/it.sav: No such file or directory");
    ExpectRefused({"--no-draw", "--save-at", "2", "/dev/null"}, "/dev/null: it is no ordinary file");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Targets, ATraceThatCannotBeMadeIsOneLineWithTheReason)
{
    ExpectRefused({"--no-draw", "--trace", directory.Path("none/t.txt")}, "none/t.txt\": No such file or directory");
}

TEST_F(Targets, TheTryLeavesNothingBehind)
{
    Runner::FailFileOperation(Runner::FileOperation::Rename, 0);
    EXPECT_EQ(Play("error('x')", {"--no-draw", "--save-at", "2", directory.Path("it.sav")}), 1);
    Runner::FailFileOperation(Runner::FileOperation::Rename, -1);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("it.sav")));
    EXPECT_FALSE(std::filesystem::exists(directory.Path("it.sav.part")));
}

TEST_F(Targets, TheTryLeavesAnOlderFileAsItIs)
{
    directory.Write("it.sav", "older");
    EXPECT_EQ(Play("error('x')", {"--no-draw", "--save-at", "2", directory.Path("it.sav")}), 1);
    EXPECT_EQ(directory.Read("it.sav"), "older");
}

TEST_F(Targets, TheGameIsNotWrittenOver)
{
    const std::string main = directory.Path("main.lua");
    ExpectRefused({"--no-draw", "--trace", main}, "--trace: " + main + " is the game");
    ExpectRefused({"--no-draw", "--save-at", "2", main}, "--save-at: " + main + " is the game");
    EXPECT_EQ(directory.Read("main.lua"), TELLING_GAME);
}

TEST_F(Targets, TwoOfOneNameAreRefused)
{
    ExpectRefused({"--screenshot", "a.png", "--contact-sheet", "./a.png"},
                  "--contact-sheet and --screenshot name the same file");
    ExpectRefused({"--no-draw", "--trace", directory.Path("t"), "--save-at", "2", directory.Path("./t")},
                  "--trace and --save-at name the same file");
    directory.Write("old.sav", "saved");
    ExpectRefused({"--no-draw", "--trace", directory.Path("old.sav"), "--load", directory.Path("old.sav")},
                  "--trace and --load name the same file");
    EXPECT_EQ(directory.Read("old.sav"), "saved");
}
} // namespace
