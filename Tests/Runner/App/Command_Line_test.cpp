// The runner as a program: its options, its exit status, its one line for each mistake.

#include "Runner/App/Options.h"
#include "Runner/Base/File_Faults.h"

#include "Tests/Runner/Support/Game_Support.h"

#include <algorithm>
#include <csignal>
#include <sys/wait.h>

namespace
{
using RunnerTest::CapturedFile;
using RunnerTest::TestDirectory;

constexpr char STILL_GAME[] = "screen_set_size(32, 16) room_add{}";

class CommandLine : public ::testing::Test
{
protected:
    // Runs the program's main function. Status, and what it printed.
    int Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "runner");
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        CapturedFile outFile, errFile;
        const int status =
            Runner::RunnerMain(static_cast<int>(arguments.size()), argv.data(), outFile.Get(), errFile.Get());
        out = outFile.Text();
        err = errFile.Text();
        return status;
    }

    // Plays the text with further options, pictures into the directory "out".
    int Play(const std::string& text, std::vector<std::string> more = {})
    {
        more.insert(more.begin(), {directory.Write("main.lua", text), "--out", directory.Path("out")});
        return Run(more);
    }

    std::string Pictures() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path("out")))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        std::string all;
        for (const std::string& name : names)
            all += name + " ";
        return all;
    }

    TestDirectory directory;
    std::string out, err;
};

TEST_F(CommandLine, WritesEveryFrameUnlessToldOtherwise)
{
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "3"}), 0);
    EXPECT_EQ(Pictures(), "frame_00000.png frame_00001.png frame_00002.png ");
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "");
}

TEST_F(CommandLine, WritesEveryKthFrame)
{
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "7", "--every", "3"}), 0);
    EXPECT_EQ(Pictures(), "frame_00000.png frame_00003.png frame_00006.png ");
}

TEST_F(CommandLine, PicturesHaveTheGamesSizeOrTheOneAskedFor)
{
    const auto sizeOf = [this](const std::string& picture)
    {
        const std::string bytes = directory.Read("out/" + picture);
        const auto at = [&bytes](size_t i) { return static_cast<int>(static_cast<unsigned char>(bytes[i])); };
        return std::pair(at(18) << 8 | at(19), at(22) << 8 | at(23)); // big-endian words after the first chunk's name
    };
    ASSERT_EQ(Play(STILL_GAME, {"--frames", "1"}), 0);
    EXPECT_EQ(sizeOf("frame_00000.png"), std::pair(32, 16));
    ASSERT_EQ(Play(STILL_GAME, {"--frames", "1", "--size", "300x200"}), 0);
    EXPECT_EQ(sizeOf("frame_00000.png"), std::pair(300, 200));
}

TEST_F(CommandLine, NoDrawLeavesNoPictures)
{
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "3", "--no-draw"}), 0);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("out")));
}

TEST_F(CommandLine, TheLogGoesToTheOutputUnlessQuiet)
{
    const std::string game = "print('hello') log('there') room_add{}";
    EXPECT_EQ(Play(game, {"--frames", "1", "--no-draw"}), 0);
    EXPECT_EQ(out, "hello\nthere\n");
    EXPECT_EQ(Play(game, {"--frames", "1", "--no-draw", "--quiet"}), 0);
    EXPECT_EQ(out, "");
}

TEST_F(CommandLine, TheSeedDecidesTheRandomNumbers)
{
    const std::string game = "print(irandom(1000000)) room_add{}";
    Play(game, {"--frames", "1", "--no-draw", "--seed", "5"});
    const std::string five = out;
    Play(game, {"--frames", "1", "--no-draw", "--seed", "5"});
    EXPECT_EQ(out, five);
    Play(game, {"--frames", "1", "--no-draw", "--seed", "6"});
    EXPECT_NE(out, five);
}

TEST_F(CommandLine, CheckAndStressFindNothingWrong)
{
    EXPECT_EQ(Play("room_add{ views = { [0] = {} }, create = function()\n"
                   "camera_set_begin_script(view_get_camera(0), function() local m = camera_get_view_mat(0) end) end }",
                   {"--frames", "5", "--no-draw", "--check", "--gc-stress"}),
              0);
    EXPECT_EQ(err, "");
}

TEST_F(CommandLine, AScreenshotLandsInTheSaveArea)
{
    EXPECT_EQ(Play("screen_set_size(8, 8) room_add{ draw_gui = function() assert(screenshot('a/shot.png')) end }",
                   {"--frames", "1", "--every", "9"}),
              0);
    EXPECT_EQ(directory.Read("out/a/shot.png").substr(1, 3), "PNG");
}

TEST_F(CommandLine, TheLastFrameAsAPngOrABmp)
{
    EXPECT_EQ(Play("screen_set_size(8, 4) room_add{}", {"--frames", "3", "--every", "9", "--screenshot", "end.bmp"}),
              0);
    EXPECT_EQ(Pictures(), "end.bmp frame_00000.png ");
    EXPECT_EQ(directory.Read("out/end.bmp").size(), 54u + 3 * 8 * 4);
    EXPECT_EQ(Play("screen_set_size(8, 4) room_add{}", {"--frames", "1", "--every", "9", "--screenshot", "end"}), 0);
    EXPECT_EQ(directory.Read("out/end").substr(1, 3), "PNG");
}

TEST_F(CommandLine, AScreenshotCannotLeaveTheSaveArea)
{
    EXPECT_EQ(Play("room_add{ step = function() assert(not screenshot('../shot.png')) end }",
                   {"--frames", "1", "--quiet", "--size", "8x8"}),
              0);
    EXPECT_FALSE(std::filesystem::exists(directory.Path("shot.png")));
}

TEST_F(CommandLine, HelpNamesEveryOption)
{
    EXPECT_EQ(Run({"--help"}), 0);
    for (const char* option : {"GAME", "--frames", "--size", "--out", "--every", "--trace", "--seed", "--quiet",
                               "--screenshot", "--save-at", "--load", "--no-draw", "--check", "--gc-stress"})
        EXPECT_NE(out.find(option), std::string::npos) << option;
}

// ---- mistakes ----

// One line, and nothing of a stack or a second message.
void ExpectOneLine(const std::string& text)
{
    EXPECT_EQ(text.find("runner: "), 0u) << text;
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
}

struct Usage
{
    const char* name;
    std::vector<std::string> arguments;
    const char* part; // of the line
};

void PrintTo(const Usage& usage, std::ostream* stream) { *stream << usage.name; }

class WrongUsage : public CommandLine, public ::testing::WithParamInterface<Usage>
{
};

TEST_P(WrongUsage, IsOneLineAndStatusTwo)
{
    EXPECT_EQ(Run(GetParam().arguments), 2);
    ExpectOneLine(err);
    EXPECT_NE(err.find(GetParam().part), std::string::npos) << err;
    EXPECT_EQ(out, "");
}

INSTANTIATE_TEST_SUITE_P(
    All, WrongUsage,
    ::testing::Values(Usage{"NoGame", {}, "GAME is required"}, Usage{"FramesZero", {"g", "--frames", "0"}, "--frames"},
                      Usage{"FramesNegative", {"g", "--frames", "-5"}, "--frames"},
                      Usage{"FramesText", {"g", "--frames", "many"}, "--frames"},
                      Usage{"EveryZero", {"g", "--every", "0"}, "--every"},
                      Usage{"SizeZero", {"g", "--size", "0x0"}, "each side must be 1 to 8192"},
                      Usage{"SizeHuge", {"g", "--size", "100000x1"}, "each side must be 1 to 8192"},
                      Usage{"SizeNegative", {"g", "--size", "-4x4"}, "--size"},
                      Usage{"SizeText", {"g", "--size", "big"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeHalf", {"g", "--size", "640x"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeTail", {"g", "--size", "640x480p"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeEmpty", {"g", "--size", ""}, "--size"},
                      Usage{"SeedText", {"g", "--seed", "x"}, "--seed"},
                      Usage{"UnknownOption", {"g", "--nope"}, "--nope"}, Usage{"TwoGames", {"g", "h"}, "h"}),
    [](const auto& test) { return std::string(test.param.name); });

struct GameError
{
    const char* name;
    const char* game;
    const char* line; // after "runner: "
};

void PrintTo(const GameError& error, std::ostream* stream) { *stream << error.name; }

class GameErrors : public CommandLine, public ::testing::WithParamInterface<GameError>
{
};

TEST_P(GameErrors, AreOneLineAndStatusOne)
{
    EXPECT_EQ(Play(GetParam().game, {"--frames", "2", "--no-draw"}), 1);
    ExpectOneLine(err);
    EXPECT_EQ(err, std::string("runner: ") + GetParam().line + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, GameErrors,
    ::testing::Values(GameError{"Syntax", "x =\n", "main.lua:2: unexpected symbol near <eof>"},
                      GameError{"UnknownBuiltin", "room_add{}\ncamera_explode(1)",
                                "main.lua:2: attempt to call a nil value (global 'camera_explode')"},
                      GameError{"WrongCount", "camera_create(1)",
                                "main.lua:1: camera_create() - doesn't take any arguments (none wanted; got 1)"},
                      GameError{"View9", "room_add{ create = function() view_get_camera(9) end }",
                                "main.lua:1: view_get_camera() - there is no view 9; views are 0 to 7"},
                      GameError{"NoSuchRoom", "room_add{ step = function() room_goto(7) end }",
                                "main.lua:1: room_goto() - there is no room 7"},
                      GameError{"NoRoom", "", "the game has no room: add one with room_add"},
                      GameError{"ErrorTable", "error({})", "main.lua:1: an error without a message (a table value)"},
                      GameError{"ErrorOfTwoLines", "error('one\\ntwo')", "main.lua:1: one two"},
                      GameError{"Bytecode", "\x1bLua", "attempt to load a binary chunk (mode is 't')"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(CommandLine, AMissingFileIsAnError)
{
    EXPECT_EQ(Run({directory.Path("none.lua"), "--no-draw"}), 1);
    ExpectOneLine(err);
    EXPECT_NE(err.find("none.lua: No such file or directory"), std::string::npos) << err;
}

TEST_F(CommandLine, AMissingPictureIsAnErrorOfTheLineThatWantsIt)
{
    EXPECT_EQ(Play("\nsprite_add('none.png')", {"--no-draw"}), 1);
    ExpectOneLine(err);
    EXPECT_EQ(err, "runner: main.lua:2: sprite_add() - cannot read the picture \"" + directory.Path("none.png") +
                       "\": No such file or directory\n");
}

TEST_F(CommandLine, ADirectoryIsNoGame)
{
    EXPECT_EQ(Run({directory.Path(""), "--no-draw"}), 1);
    ExpectOneLine(err);
}

TEST_F(CommandLine, AnOutputFolderThatCannotBeMadeIsAnError)
{
    directory.Write("file", "");
    EXPECT_EQ(Run({directory.Write("main.lua", STILL_GAME), "--out", directory.Path("file/out")}), 1);
    ExpectOneLine(err);
    EXPECT_NE(err.find("file/out"), std::string::npos) << err;
}

TEST_F(CommandLine, AnErrorAfterSomeFramesLeavesTheirPictures)
{
    EXPECT_EQ(Play("screen_set_size(8, 8) room_add{ step = function() if frame_number() == 2 then error('x') end end }",
                   {"--frames", "5"}),
              1);
    EXPECT_EQ(Pictures(), "frame_00000.png frame_00001.png ");
}

TEST_F(CommandLine, APictureThatCannotBeWrittenIsAnErrorAndLeavesNothing)
{
    Runner::FailFileOperation(Runner::FileOperation::Write, 0);
    EXPECT_EQ(Play(STILL_GAME, {"--frames", "1"}), 1);
    Runner::FailFileOperation(Runner::FileOperation::Write, -1);
    ExpectOneLine(err);
    EXPECT_EQ(Pictures(), "");
}

// ---- the program itself ----

TEST_F(CommandLine, AnInterruptEndsTheRunCleanlyEvenInAnEndlessLoop)
{
    const std::string game =
        directory.Write("main.lua", "screen_set_size(8, 8) room_add{ step = function() print('step')\n"
                                    "if frame_number() == 2 then while true do end end end }");
    const std::string outDirectory = directory.Path("out");
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0)
    {
        dup2(ends[1], STDOUT_FILENO);
        execl(RUNNER_PROGRAM, "runner", game.c_str(), "--out", outDirectory.c_str(), "--frames", "1000", nullptr);
        _exit(99);
    }
    close(ends[1]);
    std::string printed;
    for (char c = 0; printed.size() < 3 * 5 && read(ends[0], &c, 1) == 1;)
        printed += c;
    kill(child, SIGINT);
    int status = 0;
    waitpid(child, &status, 0);
    close(ends[0]);
    EXPECT_EQ(printed, "step\nstep\nstep\n");
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(Pictures(), "frame_00000.png frame_00001.png ");
}
} // namespace
