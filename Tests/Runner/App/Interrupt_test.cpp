// A run that a signal ends: its line, its status, and what it still writes.

#include "Tests/Runner/App/Command_Line_Fixture.h"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
// Says "step" at the start of each frame; in frame 2 the rest of the step follows.
std::string GameWithThirdStep(const std::string& rest)
{
    return "screen_set_size(8, 8) room_add{ step = function() print('step')\nif frame_number() == 2 then\n" + rest +
           "\nend end }";
}

constexpr char ENDLESS[] = "while true do end"; // in line 3 of that game

// Long enough for a signal to arrive, and it comes back.
constexpr char SLOW[] = "print('slow') for i = 1, 3000000 do end";

class Interrupts : public RunnerTest::CommandLine
{
protected:
    // Starts the program, waits for so many lines, sends the signal. The exit status, -1 when it ended otherwise.
    int PlayAndSignal(const std::string& game, int lines, int signal, std::vector<std::string> more)
    {
        more.insert(more.begin(), {"runner", directory.Write("main.lua", game), "--out", directory.Path("out"),
                                   "--frames", "100000000"});
        int ends[2] = {};
        EXPECT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0)
            Become(more, ends);
        close(ends[1]);
        ReadLines(ends[0], lines);
        if (child <= 0)
        {
            ADD_FAILURE() << "no process could be started"; // kill(-1) would reach every process of the user
            close(ends[0]);
            return -1;
        }
        kill(child, signal);
        ReadRest(ends[0]);
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        err = directory.Read("err");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    size_t LinesPrinted() const { return static_cast<size_t>(std::count(out.begin(), out.end(), '\n')); }

private:
    [[noreturn]] void Become(std::vector<std::string>& arguments, const int* ends) const
    {
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        if (std::freopen(directory.Path("err").c_str(), "w", stderr) != nullptr)
            execv(RUNNER_PROGRAM, argv.data());
        _exit(99);
    }

    void ReadLines(int file, int count)
    {
        out.clear();
        for (char c = 0; count > 0 && read(file, &c, 1) == 1; out += c)
            count -= c == '\n' ? 1 : 0;
    }

    void ReadRest(int file)
    {
        for (char c = 0; read(file, &c, 1) == 1;)
            out += c;
    }
};

TEST_F(Interrupts, EndTheRunAfterTheFrameWithOneLine)
{
    constexpr char game[] = "room_add{ step = function() print('step') end }";
    EXPECT_EQ(PlayAndSignal(game, 5, SIGINT, {"--no-draw"}), 130);
    EXPECT_EQ(err, "runner: interrupted after " + std::to_string(LinesPrinted()) + " frames\n");
    EXPECT_EQ(PlayAndSignal(game, 5, SIGTERM, {"--no-draw"}), 143);
    EXPECT_EQ(err, "runner: terminated after " + std::to_string(LinesPrinted()) + " frames\n");
}

TEST_F(Interrupts, LetAFrameFinishThatComesBack)
{
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(SLOW), 4, SIGINT, {"--no-draw"}), 130);
    EXPECT_EQ(err, "runner: interrupted after 3 frames\n");
}

TEST_F(Interrupts, EndAScriptThatDoesNotComeBackWithItsLine)
{
    const std::string game = GameWithThirdStep(ENDLESS);
    const std::string where = " in frame 2: main.lua:3: the script did not come back\n";
    EXPECT_EQ(PlayAndSignal(game, 3, SIGINT, {"--no-draw"}), 130);
    EXPECT_EQ(err, "runner: interrupted" + where);
    EXPECT_EQ(PlayAndSignal(game, 3, SIGTERM, {"--no-draw"}), 143);
    EXPECT_EQ(err, "runner: terminated" + where);
}

TEST_F(Interrupts, EndAMainFileThatDoesNotComeBack)
{
    EXPECT_EQ(PlayAndSignal("print('step')\nwhile true do end", 1, SIGINT, {"--no-draw"}), 130);
    EXPECT_EQ(err, "runner: interrupted before the first frame: main.lua:2: the script did not come back\n");
}

TEST_F(Interrupts, EndAScriptThatCatchesEveryError)
{
    const std::string catching = "while true do pcall(function() while true do end end) end";
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(catching), 3, SIGINT, {"--no-draw"}), 130);
    EXPECT_EQ(err, "runner: interrupted in frame 2: main.lua:3: the script did not come back\n");
    const std::string resuming =
        "while true do coroutine.resume(coroutine.create(function() while true do end end)) end";
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(resuming), 3, SIGINT, {"--no-draw"}), 130);
    EXPECT_EQ(err, "runner: interrupted in frame 2: main.lua:3: the script did not come back\n");
}

TEST_F(Interrupts, AnErrorAfterTheSignalIsAnError)
{
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(SLOW + std::string(" error('wrong')")), 4, SIGINT, {"--no-draw"}), 1);
    EXPECT_EQ(err.find("runner: main.lua:3: wrong\n    room room0: step\n    room room0, frame 2\n    main.lua:3: in "),
              0u)
        << err;
}

TEST_F(Interrupts, ASaveThatWasNotReachedIsNamed)
{
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(SLOW), 4, SIGINT, {"--no-draw", "--save-at", "9", directory.Path("s")}),
              130);
    EXPECT_EQ(err, "runner: interrupted after 3 frames; --save-at 9 was not reached, nothing is saved\n");
    EXPECT_FALSE(std::filesystem::exists(directory.Path("s")));
}

TEST_F(Interrupts, ASaveOfTheFrameThatFinishesIsWritten)
{
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(SLOW), 4, SIGINT, {"--no-draw", "--save-at", "3", directory.Path("s")}),
              130);
    EXPECT_EQ(err, "runner: interrupted after 3 frames\n");
    EXPECT_TRUE(std::filesystem::exists(directory.Path("s")));
}

TEST_F(Interrupts, TheTraceIsWhole)
{
    EXPECT_EQ(PlayAndSignal("print('main') room_add{ views = { [0] = {} } }", 1, SIGTERM,
                            {"--no-draw", "--trace", directory.Path("t")}),
              143);
    const std::string trace = directory.Read("t");
    const size_t lines = static_cast<size_t>(std::count(trace.begin(), trace.end(), '\n'));
    EXPECT_EQ(err, "runner: terminated after " + std::to_string(lines) + " frames\n");
}

// Suite of its own: these take pictures.
class InterruptPictures : public Interrupts
{
};

TEST_F(InterruptPictures, TheContactSheetAndTheLastFrameAreWritten)
{
    EXPECT_EQ(PlayAndSignal(GameWithThirdStep(ENDLESS), 3, SIGINT,
                            {"--every", "1", "--contact-sheet", "sheet.png", "--screenshot", "end.png"}),
              130);
    EXPECT_EQ(Pictures(), "end.png frame_00000.png frame_00001.png sheet.png ");
    EXPECT_EQ(directory.Read("out/end.png"), directory.Read("out/frame_00001.png"));
    EXPECT_EQ(PlayAndSignal("screen_set_size(8, 8) print('main') room_add{}", 1, SIGTERM, {"--size", "9x9"}), 143);
    EXPECT_EQ(Pictures(), "end.png frame_00000.png frame_00001.png last_frame.png sheet.png ");
}

TEST_F(InterruptPictures, WithoutAFrameThereIsNone)
{
    EXPECT_EQ(PlayAndSignal("print('main') while true do end", 1, SIGINT, {"--contact-sheet", "sheet.png"}), 130);
    EXPECT_EQ(Pictures(), "");
    RunnerTest::ExpectOneLine(err);
}
} // namespace
