// The runner as a program: what it prints, its exit status, its one line for each mistake of a game.

#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
using RunnerTest::CapturedFile;
using RunnerTest::CommandLine;
using RunnerTest::ExpectOneLine;

constexpr char STILL_GAME[] = "screen_set_size(32, 16) room_add{}";

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

TEST_F(CommandLine, QuietKeepsTheLinesOfFailures)
{
    EXPECT_EQ(Play("room_add{ step = function() log('chat') game_save('../s') game_load('none.sav') end }",
                   {"--frames", "1", "--no-draw", "--quiet"}),
              0);
    EXPECT_EQ(out, "save area: \"../s\" refused: the name leads out of the save area through \"..\"\n"
                   "game_load() - cannot open " +
                       directory.Path("out") + "/none.sav: No such file or directory\n");
}

TEST_F(CommandLine, ALogThatCannotBeWrittenEndsTheRun)
{
    FILE* const full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    for (const std::string game : {"print('main') room_add{}", "room_add{ step = function() print('step') end }"})
    {
        CapturedFile errFile;
        std::string file = directory.Write("main.lua", game);
        char* argv[] = {const_cast<char*>("runner"), file.data(), const_cast<char*>("--no-draw"), nullptr};
        EXPECT_EQ(Runner::RunnerMain(3, argv, full, errFile.Get()), 1);
        EXPECT_EQ(errFile.Text(), "runner: cannot print: No space left on device\n");
    }
    std::fclose(full);
}

TEST_F(CommandLine, HelpThatCannotBeWrittenIsAnError)
{
    for (const char* option : {"--help", "--version"})
    {
        FILE* const full = std::fopen("/dev/full", "w");
        ASSERT_NE(full, nullptr);
        CapturedFile errFile;
        char* argv[] = {const_cast<char*>("runner"), const_cast<char*>(option), nullptr};
        EXPECT_EQ(Runner::RunnerMain(2, argv, full, errFile.Get()), 1);
        EXPECT_EQ(errFile.Text(), "runner: cannot print: No space left on device\n");
        std::fclose(full);
    }
}

TEST_F(CommandLine, AGameMayStartWithAByteOrderMarkAndANoteToTheShell)
{
    for (const std::string start : {"\xEF\xBB\xBF", "#!/usr/bin/env runner\n", "\xEF\xBB\xBF#!/usr/bin/env runner\n"})
    {
        EXPECT_EQ(Play(start + "print('heard') room_add{}", {"--frames", "1", "--no-draw"}), 0) << err;
        EXPECT_EQ(out, "heard\n");
        const std::string line = start.find('\n') == std::string::npos ? "1" : "2";
        EXPECT_EQ(Play(start + "error('x')", {"--no-draw"}), 1);
        EXPECT_EQ(err, "runner: main.lua:" + line + ": x\n    the game's file\n    frame 0\n    main.lua:" + line +
                           ": in the file\n");
    }
    EXPECT_EQ(Play("#! only this", {"--no-draw"}), 1);
    EXPECT_EQ(err, "runner: the game has no room: add one with room_add\n");
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

// ---- mistakes ----

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

// What was running stands below, indented; nothing when no script was.
TEST_P(GameErrors, AreALineWithWhatWasRunningBelowItAndStatusOne)
{
    EXPECT_EQ(Play(GetParam().game, {"--frames", "2", "--no-draw"}), 1);
    std::istringstream lines(err);
    std::string line;
    ASSERT_TRUE(std::getline(lines, line)) << err;
    EXPECT_EQ(line, std::string("runner: ") + GetParam().line);
    while (std::getline(lines, line))
        EXPECT_EQ(line.substr(0, 4), "    ") << err;
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
    EXPECT_EQ(err,
              "runner: main.lua:2: sprite_add() - cannot read the picture \"" + directory.Path("none.png") +
                  "\": No such file or directory\n    the game's file\n    frame 0\n    main.lua:2: in the file\n");
}

// The first line is what pcall gives.
TEST_F(CommandLine, AnErrorOfAScriptPrintsItsLineThenWhereItHappened)
{
    EXPECT_EQ(Play("local function f(n)\nlocal t = { n }\nreturn t.x.y end\nprint(select(2, pcall(f, 1)))\n"
                   "local o = object_add{ name = 'player', step = function(self) self.n = f(5) end }\n"
                   "room_add{ name = 'cave', instances = { {o, 0, 0} } }",
                   {"--no-draw"}),
              1);
    EXPECT_EQ(err, "runner: " + out +
                       "    player: step\n    room cave, frame 0\n    main.lua:3: in f\n        n = 5\n"
                       "        t = {5}\n    main.lua:5: in a function of line 5\n"
                       "        self = instance 100000 (player)\n");
    EXPECT_EQ(out, "main.lua:3: attempt to index a nil value (field 'x')\n");
}

TEST_F(CommandLine, WarningsAreCountedAtTheEnd)
{
    const std::string game = "room_add{ views = { [0] = {} }, step = function() vars.n = vars.missing\n"
                             "camera_set_view_target(view_get_camera(0), 100007) end }";
    EXPECT_EQ(Play(game, {"--no-draw", "--quiet", "--frames", "3"}), 0);
    EXPECT_EQ(err, "runner: 1 warning\n");
    EXPECT_EQ(out, "warning: camera 1 follows instance 100007, which never existed, so it stays where it is\n");
    EXPECT_EQ(Play(game, {"--no-draw", "--quiet", "--frames", "3", "--strict"}), 0);
    EXPECT_EQ(err, "runner: 2 warnings\n");
    EXPECT_EQ(out.find("warning: main.lua:1: reads missing of vars, which no script has set\n"), 0u) << out;
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

} // namespace
