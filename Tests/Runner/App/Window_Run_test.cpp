// Games in a window, by acts that stand for a user's. Real keys on a real display are the tests of Tests/Window.

#include "Runner/App/Comparison_Window.h"
#include "Runner/App/Window_Run.h"
#include "Runner/App/Window_Stage.h"

#include "Tests/Runner/App/Command_Line_Fixture.h"
#include "Tests/Runner/Support/Scripted_Window.h"

namespace
{
using namespace Runner;
using RunnerTest::ScriptedWindow;
using Act = ScriptedWindow::Act;
using Acts = std::vector<Act>;

constexpr char COUNTING[] = "screen_set_size(200, 100) room_add{ views = { [0] = {} }, "
                            "step = function() log(frame_number()) end }";
constexpr char FAILING[] = "room_add{ step = function() log(frame_number()) if frame_number() == 2 then nothing() end "
                           "end }";

Act Order(Command command)
{
    return [command](ScriptedWindow& window) { window.Order(command); };
}

Acts operator+(Acts first, const Acts& then)
{
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

// So many looks at which nothing happens. A game that goes on plays a frame after each.
Acts Looks(size_t count)
{
    return Acts(count, [](ScriptedWindow&) {});
}

class WindowRuns : public RunnerTest::CommandLine
{
protected:
    WindowRuns()
    {
        options.window = true;
        options.frames = 1000;
        options.out = directory.Path("out");
        SetSaveArea(options.out);
        SetConsoleOutput(m_log.Get());
        Text(COUNTING);
    }
    ~WindowRuns() override { SetConsoleOutput(nullptr); }

    void Text(const std::string& text) { options.game.file = directory.Write("main.lua", text); }

    // Its line and its status are in `outcome`, what the program told in `err`.
    void PlayInWindow(const Acts& acts)
    {
        const RunnerTest::CapturedFile file;
        outcome = Runner::PlayInWindow(options, file.Get(), Opening(acts));
        err = file.Text();
    }

    WindowOpener Opening(const Acts& acts)
    {
        return [this, acts](const WindowOptions& asked, std::string&)
        {
            seen.title = asked.title;
            return std::make_unique<ScriptedWindow>(acts, seen);
        };
    }

    void ExpectGood() const
    {
        EXPECT_EQ(outcome.line, "");
        EXPECT_EQ(outcome.status, EXIT_DONE);
        EXPECT_EQ(err, "");
    }

    std::string Log() const { return m_log.Text(); }

    RunOptions options;
    Outcome outcome;
    RunnerTest::WindowLog seen;

private:
    RunnerTest::CapturedFile m_log;
};

TEST_F(WindowRuns, AGamePlaysAFrameForEachStepOfTheClockUntilTheWindowIsClosed)
{
    PlayInWindow(Looks(5));
    ExpectGood();
    EXPECT_EQ(Log(), "0\n1\n2\n3\n4\n");
    EXPECT_EQ(seen.title, "main.lua");
    EXPECT_GE(seen.shown, 1); // not each: the clock is always a little ahead
}

TEST_F(WindowRuns, AGameStandsWhileItIsPausedOrHasNoFocus)
{
    const Act leave = [](ScriptedWindow& window) { window.Focus(false); };
    const Act come = [](ScriptedWindow& window) { window.Focus(true); };
    PlayInWindow(Looks(2) + Acts{Order(Command::Pause)} + Looks(6) + Acts{Order(Command::Help)} + Looks(7) +
                 Acts{Order(Command::Pause), leave} + Looks(7) + Acts{come});
    ExpectGood();
    EXPECT_EQ(Log().substr(0, 4), "0\n1\n");
    EXPECT_LE(Log().size(), 8u) << Log(); // a frame or two after the pause
}

TEST_F(WindowRuns, AStepPlaysOneFrameAndGoingBackPlaysItAgain)
{
    PlayInWindow(Looks(4) + Acts{Order(Command::Back)} + Looks(2) + Acts{Order(Command::Step)} + Looks(4));
    ExpectGood();
    EXPECT_EQ(Log(), "0\n1\n2\n3\n3\n");
}

TEST_F(WindowRuns, ARewindGoesToTheBeginningOfAShortGame)
{
    PlayInWindow(Looks(4) + Acts{Order(Command::Rewind)} + Looks(2) + Acts{Order(Command::Step)} + Looks(4));
    ExpectGood();
    EXPECT_EQ(Log(), "0\n1\n2\n3\n0\n");
}

TEST_F(WindowRuns, SlowMotionPlaysAFourthOfTheFrames)
{
    PlayInWindow(Acts{Order(Command::Slow)} + Looks(16));
    ExpectGood();
    EXPECT_EQ(Log(), "0\n1\n2\n3\n");
}

// The window has four pixels of its own for one of the screen's; the mouse is told in those of the screen. The bar
// takes its lowest six hundredths.
TEST_F(WindowRuns, DraggingAlongTheBarGoesToTheFrameUnderTheMouse)
{
    const Act press = [](ScriptedWindow& window) { window.Mouse(50.0f, 98.0f, true); };
    const Act drag = [](ScriptedWindow& window) { window.Mouse(100.0f, 98.0f, true); };
    const Act release = [](ScriptedWindow& window) { window.Mouse(100.0f, 98.0f, false); };
    PlayInWindow(Looks(8) + Acts{Order(Command::Pause)} + Looks(2) + Acts{press, press, drag, drag, release, release} +
                 Acts{Order(Command::Step), Order(Command::Help)} + Looks(4));
    ExpectGood();
    EXPECT_EQ(Log().substr(0, 16), "0\n1\n2\n3\n4\n5\n6\n7\n");
    EXPECT_EQ(Log().substr(16), "4\n");
}

TEST_F(WindowRuns, AMinimisedWindowPlaysOnUnseen)
{
    PlayInWindow(Acts{[](ScriptedWindow& window) { window.Minimise(true); }} + Looks(5));
    ExpectGood();
    EXPECT_EQ(Log(), "0\n1\n2\n3\n4\n5\n");
    EXPECT_LE(seen.shown, 1);
}

TEST_F(WindowRuns, FullscreenAndTheInspectorAreSwitched)
{
    PlayInWindow(Looks(2) + Acts{Order(Command::Fullscreen), Order(Command::Inspect)} + Looks(3) +
                 Acts{Order(Command::Inspect)} + Looks(2));
    ExpectGood();
    EXPECT_EQ(seen.toggles, 1);
}

TEST_F(WindowRuns, TheRateAndThePaceAreToldAtTheEnd)
{
    options.unpaced = true;
    options.paceSeconds = 1;
    PlayInWindow(Looks(30));
    EXPECT_EQ(outcome.line, "");
    EXPECT_NE(err.find("frames shown, "), std::string::npos) << err;
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 2) << err;
}

// ---- games that fail ----

TEST_F(WindowRuns, AFailedGameShowsItsErrorAndIsStartedAgainByAKey)
{
    Text(FAILING);
    options.record = directory.Path("run.rec");
    const Act press = [](ScriptedWindow& window) { window.Press("r"); };
    PlayInWindow(Looks(6) + Acts{Order(Command::Fullscreen), press} + Looks(8));
    EXPECT_EQ(outcome.status, EXIT_GAME_ERROR);
    EXPECT_EQ(outcome.line, ""); // told already
    EXPECT_EQ(Log(), "0\n1\n2\n0\n1\n2\n");
    EXPECT_EQ(seen.toggles, 1);
    EXPECT_NE(err.find("main.lua:1: "), std::string::npos) << err;
    EXPECT_NE(err.find("the game that starts again is recorded in " + directory.Path("run.2.rec")), std::string::npos)
        << err;
    EXPECT_TRUE(std::filesystem::exists(directory.Path("run.rec")));
    EXPECT_TRUE(std::filesystem::exists(directory.Path("run.2.rec")));
}

TEST_F(WindowRuns, AFailedGameThatIsWatchedGoesOnWhenItsFileIsMended)
{
    Text(FAILING);
    options.watch = true;
    const Act mend = [this](ScriptedWindow&) { Text(COUNTING); };
    PlayInWindow(Looks(8) + Acts{mend} + Looks(40));
    EXPECT_EQ(outcome.line, "");
    EXPECT_EQ(outcome.status, EXIT_DONE);
    EXPECT_EQ(Log().substr(0, 6), "0\n1\n2\n");
    EXPECT_NE(Log().find("\n3\n4\n5\n"), std::string::npos) << Log(); // on from where it had failed
}

TEST_F(WindowRuns, AGameThatCannotBeReadIsTold)
{
    options.game.file = directory.Path("none.lua");
    PlayInWindow(Looks(4));
    EXPECT_EQ(outcome.status, EXIT_GAME_ERROR);
    EXPECT_NE(err.find("none.lua"), std::string::npos) << err;
    options.load = directory.Path("none.sav");
    PlayInWindow(Looks(4));
    EXPECT_EQ(outcome.status, EXIT_GAME_ERROR);
    EXPECT_NE(err.find("none.sav"), std::string::npos) << err;
}

TEST_F(WindowRuns, WithoutAWindowThereIsOneLine)
{
    outcome = Runner::PlayInWindow(options, stderr,
                                   [](const WindowOptions&, std::string& why)
                                   {
                                       why = "no display";
                                       return nullptr;
                                   });
    EXPECT_EQ(outcome.line, "no display");
    EXPECT_EQ(outcome.status, EXIT_GAME_ERROR);
}

// ---- what only a session does ----

TEST_F(WindowRuns, AProfileAndSavesAreWrittenInAWindowToo)
{
    options.profile = directory.Path("profile.txt");
    options.saveAt = {3, directory.Path("at.sav")};
    options.paceSeconds = 1;
    PlayInWindow(Looks(5));
    EXPECT_EQ(outcome.line, "") << err;
    EXPECT_NE(Log().find("4\n"), std::string::npos) << Log();
    EXPECT_TRUE(std::filesystem::exists(options.profile));
    EXPECT_TRUE(std::filesystem::exists(options.saveAt.second));
}

#ifndef RUNNER_HAS_PANEL // which would draw through a device of its own
TEST_F(WindowRuns, WithoutThePanelTheWayToTheInspectorIsTold)
{
    options.inspect = true;
    PlayInWindow(Looks(5));
    EXPECT_EQ(outcome.line, "") << err;
    EXPECT_NE(Log().find("without the inspector's panel"), std::string::npos) << Log();
}
#endif

// ---- the menu ----

TEST_F(WindowRuns, AGameIsChosenFromTheMenuByKeysAndByTheMouse)
{
    for (const char* name : {"one", "two", "three"})
    {
        std::filesystem::create_directories(directory.Path(std::string("games/") + name));
        directory.Write(std::string("games/") + name + "/" + name + ".lua",
                        std::string("log('") + name + "') room_add{ step = function() game_end() end }");
    }
    options.menu = directory.Path("games");
    const auto press = [](const char* key)
    {
        return Acts{[key](ScriptedWindow& window) { window.Press(key); },
                    [key](ScriptedWindow& window) { window.Press(key, false); }};
    };
    const Act click = [](ScriptedWindow& window) { window.Mouse(30.0f, 60.0f, true); }; // on the first
    PlayInWindow(Looks(1) + press("right") + press("enter") + Looks(4) + Acts{click} + Looks(8));
    EXPECT_EQ(outcome.line, "");
    EXPECT_EQ(seen.title, "Games");
    EXPECT_EQ(Log().substr(0, 6), "three\n"); // by name: one, three, two
    EXPECT_NE(Log().find("one\n"), std::string::npos) << Log();
    EXPECT_EQ(Log().find("two\n"), std::string::npos) << Log();
}

TEST_F(WindowRuns, AMenuWithoutGamesIsTold)
{
    options.menu = directory.Path("");
    PlayInWindow(Looks(4));
    EXPECT_NE(outcome.line.find("--menu: there is no game in"), std::string::npos);
}

// ---- two games side by side ----

TEST_F(WindowRuns, TwoVersionsOfAGameArePlayedSideBySide)
{
    const std::string view =
        "screen_set_size(40, 30) room_add{ width = 500, height = 50, views = { [0] = { w = 40, h = 30 } }, "
        "step = function() if frame_number() == 4 then FAULT end camera_set_view_pos(view_get_camera(0), "
        "frame_number(), 0) end }";
    const auto version = [&](const std::string& name, const std::string& fault)
    {
        std::string text = view;
        return directory.Write(name, text.replace(text.find("FAULT"), 5, fault));
    };
    options.game.file = version("main.lua", "");
    ASSERT_EQ(Run({options.game.file, "--no-draw", "--frames", "6", "--record", directory.Path("it.rec"), "--out",
                   directory.Path("out")}),
              0)
        << err;
    options.replay = directory.Path("it.rec");
    options.game.draw = false; // another process could not use what the driver has made in this one
    std::filesystem::create_directory(directory.Path("other"));
    options.compare = version("other/main.lua", "nothing()");
    options.values = {{0, "border_x", 5.0f}};
    const auto compare = [this](const Acts& acts)
    {
        const RunnerTest::CapturedFile file;
        outcome = CompareInWindow(options, file.Get(), Opening(acts));
    };
    const Acts played = Looks(10) + Acts{Order(Command::Back)} + Looks(3);
    compare(played);
    EXPECT_EQ(outcome.status, EXIT_GAME_ERROR);
    EXPECT_NE(outcome.line.find("'nothing'"), std::string::npos) << outcome.line;
    EXPECT_EQ(seen.title, "Comparison");
    EXPECT_GE(seen.shown, 3);
    compare(played + Acts{Order(Command::Rewind)} + Looks(4)); // back to before it fails
    EXPECT_EQ(outcome.status, EXIT_DONE) << outcome.line;
}

// ---- the display ----

TEST(WindowDeathTest, ADisplayThatGoesAwayEndsTheProcessWithOneLineAndAStatus)
{
    EXPECT_EXIT(EndWithoutDisplay(stderr, ""), testing::ExitedWithCode(EXIT_GAME_ERROR),
                "^runner: the display has gone away\n$");
    EXPECT_EXIT(EndWithoutDisplay(stderr, "cannot write run.rec"), testing::ExitedWithCode(EXIT_GAME_ERROR),
                "^runner: the display has gone away; cannot write run.rec\n$");
}
} // namespace
