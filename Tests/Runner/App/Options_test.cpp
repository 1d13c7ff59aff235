// The options of the runner: what is taken, and the one line for each mistake.

#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
using RunnerTest::ExpectOneLine;

class Options : public RunnerTest::CommandLine
{
protected:
    // Reads the options alone.
    Runner::ParseResult Parse(std::vector<std::string> arguments)
    {
        options = {};
        return Captured(std::move(arguments), [this](int argc, char** argv, FILE*, FILE* errFile)
                        { return Runner::ParseOptions(argc, argv, options, errFile); });
    }

    Runner::RunOptions options;
};

TEST_F(Options, HelpNamesEveryOption)
{
    EXPECT_EQ(Run({"--help"}), 0);
    for (const char* option :
         {"GAME",     "--frames",        "--size",          "--out",     "--every",   "--trace",  "--seed",
          "--quiet",  "--screenshot",    "--contact-sheet", "--save-at", "--load",    "--record", "--replay",
          "--anyway", "--compare",       "--watch",         "--input",   "--no-draw", "--check",  "--gc-stress",
          "--strict", "--compare-saves", "--version",       "--help"})
        EXPECT_NE(out.find(option), std::string::npos) << option;
    EXPECT_EQ(err, "");
}

TEST_F(Options, VersionIsOneLine)
{
    EXPECT_EQ(Run({"--version"}), 0);
    EXPECT_EQ(out, "runner " CAMERA_VERSION "\n");
    EXPECT_EQ(err, "");
}

TEST_F(Options, HaveSensibleValuesUnlessGiven)
{
    ASSERT_EQ(Parse({"game.lua"}), Runner::ParseResult::Play);
    EXPECT_EQ(options.game.file, "game.lua");
    EXPECT_EQ(options.frames, 60);
    EXPECT_EQ(options.every, 0);
    EXPECT_EQ(options.out, "out");
    EXPECT_EQ(options.game.seed, 1u);
    EXPECT_FALSE(options.isSeedGiven);
    EXPECT_TRUE(options.game.draw);
    EXPECT_FALSE(options.quiet);
}

TEST_F(Options, TakeTheirValuesFromTheNextArgumentOrAfterAnEqualsSign)
{
    ASSERT_EQ(Parse({"--frames", "7", "g", "--size=64x32", "--save-at", "3", "s.sav", "--seed=18446744073709551615"}),
              Runner::ParseResult::Play);
    EXPECT_EQ(options.frames, 7);
    EXPECT_EQ(std::pair(options.game.width, options.game.height), std::pair(64, 32));
    EXPECT_EQ(options.saveAt, std::pair(3, std::string("s.sav")));
    EXPECT_EQ(options.game.seed, UINT64_MAX);
    EXPECT_TRUE(options.isSeedGiven);
}

TEST_F(Options, NumbersAreDecimalEvenWithZerosInFront)
{
    ASSERT_EQ(Parse({"g", "--frames", "010", "--seed", "0011"}), Runner::ParseResult::Play);
    EXPECT_EQ(options.frames, 10);
    EXPECT_EQ(options.game.seed, 11u);
}

TEST_F(Options, OnlyAWindowCanBeUnpacedOrShowAComparison)
{
    EXPECT_EQ(Parse({"g", "--unpaced"}), Runner::ParseResult::Wrong);
    ASSERT_EQ(Parse({"g", "--unpaced", "--window"}), Runner::ParseResult::Play);
    EXPECT_TRUE(options.unpaced);
    ASSERT_EQ(Parse({"g", "--window", "--replay", "r", "--compare", "h"}), Runner::ParseResult::Play);
    EXPECT_EQ(options.contactSheet, "") << "nothing is written";
    ASSERT_EQ(Parse({"g", "--replay", "r", "--compare", "h"}), Runner::ParseResult::Play);
    EXPECT_EQ(options.contactSheet, "comparison.png");
    EXPECT_EQ(Parse({"g", "--window", "--replay", "r", "--compare", "h", "--every", "2"}), Runner::ParseResult::Wrong);
}

TEST_F(Options, AComparisonWithoutAWindowMakesThePicturesThatAreAskedFor)
{
    ASSERT_EQ(Parse({"g", "--replay", "r", "--compare", "h", "--every", "2", "--contact-sheet", "mine.png"}),
              Runner::ParseResult::Play);
    EXPECT_EQ(options.contactSheet, "mine.png");
    EXPECT_EQ(options.every, 2);
}

TEST_F(Options, AMenuIsAWindow)
{
    ASSERT_EQ(Parse({"--menu", "games", "--fullscreen"}), Runner::ParseResult::Play);
    EXPECT_TRUE(options.window && options.fullscreen);
    EXPECT_EQ(options.screenshot, "");
    EXPECT_EQ(Parse({"-h"}), Runner::ParseResult::Help);
}

TEST_F(Options, APaceIsToldOfSecondsInAWindowWithTheClock)
{
    ASSERT_EQ(Parse({"g", "--window", "--pace", "10"}), Runner::ParseResult::Play);
    EXPECT_EQ(options.frames, 600);
    EXPECT_TRUE(options.isFramesGiven) << "a longer recording ends with it, too";
    EXPECT_EQ(Parse({"g", "--pace", "10"}), Runner::ParseResult::Wrong) << "without a window";
    EXPECT_EQ(Parse({"g", "--window", "--pace", "10", "--unpaced"}), Runner::ParseResult::Wrong);
    EXPECT_EQ(Parse({"g", "--window", "--pace", "10", "--frames", "5"}), Runner::ParseResult::Wrong);
    EXPECT_EQ(Parse({"g", "--window", "--pace", "0"}), Runner::ParseResult::Wrong);
}

TEST_F(Options, AfterTwoDashesOnlyTheGameFollows)
{
    ASSERT_EQ(Parse({"--quiet", "--", "--odd name.lua"}), Runner::ParseResult::Play);
    EXPECT_EQ(options.game.file, "--odd name.lua");
    EXPECT_TRUE(options.quiet);
    EXPECT_EQ(Parse({"g", "--"}), Runner::ParseResult::Play);
    EXPECT_EQ(Parse({"g", "--", "h"}), Runner::ParseResult::Wrong);
    EXPECT_EQ(Parse({"--"}), Runner::ParseResult::Wrong);
}

TEST_F(Options, AVeryLongValueIsShownCut)
{
    const std::string name(70000, 'n');
    const std::vector<std::string> cases[] = {
        {"g", "h" + name}, {"g", "--" + name}, {"g", "--frames", name}, {"g", "--size", name}, {"g", "--seed", name}};
    for (const std::vector<std::string>& arguments : cases)
    {
        EXPECT_EQ(Run(arguments), 2);
        ExpectOneLine(err);
        EXPECT_LT(err.size(), 400u) << err.substr(0, 400);
    }
}

TEST_F(Options, AVeryLongFileNameIsShownCutWithTheReason)
{
    const std::string name(70000, 'n');
    const std::string game = directory.Write("main.lua", "room_add{}");
    const std::vector<std::string> cases[] = {{name, "--no-draw"},
                                              {game, "--no-draw", "--trace", name},
                                              {game, "--no-draw", "--load", name},
                                              {game, "--no-draw", "--frames", "1", "--save-at", "1", name},
                                              {game, "--out", name}};
    for (const std::vector<std::string>& arguments : cases)
    {
        EXPECT_EQ(Run(arguments), 1);
        ExpectOneLine(err);
        EXPECT_LT(err.size(), 400u) << err.substr(0, 400);
        EXPECT_NE(err.find("File name too long"), std::string::npos) << err.substr(0, 400);
    }
}

struct Usage
{
    const char* name;
    std::vector<std::string> arguments;
    const char* part; // of the line
};

void PrintTo(const Usage& usage, std::ostream* stream) { *stream << usage.name; }

class WrongUsage : public Options, public ::testing::WithParamInterface<Usage>
{
};

TEST_P(WrongUsage, IsOneLineAndStatusTwo)
{
    EXPECT_EQ(Run(GetParam().arguments), 2);
    ExpectOneLine(err);
    EXPECT_NE(err.find(GetParam().part), std::string::npos) << err;
    EXPECT_EQ(out, "");
}

constexpr char COUNT_LIMITS[] = "is no whole number from 1 to 100000000";
constexpr char SEED_LIMITS[] = "is no whole number from 0 to 18446744073709551615";

INSTANTIATE_TEST_SUITE_P(
    All, WrongUsage,
    ::testing::Values(Usage{"NoGame", {}, "GAME is required"}, Usage{"GameEmpty", {""}, "GAME: the name is empty"},
                      Usage{"TwoGames", {"g", "h"}, "\"h\""}, Usage{"UnknownOption", {"g", "--nope"}, "--nope"},
                      Usage{"UnknownLetter", {"g", "-x"}, "-x"},
                      Usage{"GivenTwice", {"g", "--seed", "1", "--seed=2"}, "--seed"},
                      Usage{"FramesZero", {"g", "--frames", "0"}, COUNT_LIMITS},
                      Usage{"FramesNegative", {"g", "--frames", "-5"}, COUNT_LIMITS},
                      Usage{"FramesText", {"g", "--frames", "many"}, COUNT_LIMITS},
                      Usage{"FramesHuge", {"g", "--frames", "100000001"}, COUNT_LIMITS},
                      Usage{"FramesTail", {"g", "--frames", "7f"}, COUNT_LIMITS},
                      Usage{"FramesMissing", {"g", "--frames"}, "--frames COUNT"},
                      Usage{"FramesSwallow", {"g", "--frames", "--quiet"}, "--frames COUNT"},
                      Usage{"EveryZero", {"g", "--every", "0"}, COUNT_LIMITS},
                      Usage{"SizeZero", {"g", "--size", "0x0"}, "each side must be 1 to 8192"},
                      Usage{"SizeHuge", {"g", "--size", "100000x1"}, "each side must be 1 to 8192"},
                      Usage{"SizeNegative", {"g", "--size", "-4x4"}, "--size"},
                      Usage{"SizeText", {"g", "--size", "big"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeHalf", {"g", "--size", "640x"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeTail", {"g", "--size", "640x480p"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeEmpty", {"g", "--size", ""}, "--size"},
                      Usage{"SeedText", {"g", "--seed", "x"}, SEED_LIMITS},
                      Usage{"SeedNegative", {"g", "--seed", "-1"}, SEED_LIMITS},
                      Usage{"SeedHuge", {"g", "--seed", "18446744073709551616"}, SEED_LIMITS},
                      Usage{"OutEmpty", {"g", "--out", ""}, "--out: the name is empty"},
                      Usage{"OutEmptyAfterEquals", {"g", "--out="}, "--out: the name is empty"},
                      Usage{"TraceEmpty", {"g", "--trace", ""}, "--trace: the name is empty"},
                      Usage{"LoadEmpty", {"g", "--load", ""}, "--load: the name is empty"},
                      Usage{"ScreenshotEmpty", {"g", "--screenshot", ""}, "--screenshot: the name is empty"},
                      Usage{"ContactSheetEmpty", {"g", "--contact-sheet", ""}, "--contact-sheet: the name is empty"},
                      Usage{"SaveAtEmpty", {"g", "--save-at", "1", ""}, "--save-at: the name is empty"},
                      Usage{"SaveAtHalf", {"g", "--save-at", "3"}, "--save-at FRAME FILE"},
                      Usage{"SaveAtZero", {"g", "--save-at", "0", "f"}, COUNT_LIMITS},
                      Usage{"FlagWithValue", {"g", "--quiet=yes"}, "--quiet"},
                      Usage{"NoDrawScreenshot", {"g", "--no-draw", "--screenshot", "a.png"}, "--screenshot"},
                      Usage{"NoDrawEvery", {"g", "--every", "2", "--no-draw"}, "--every"},
                      Usage{"NoDrawContactSheet", {"g", "--no-draw", "--contact-sheet", "a.png"}, "--contact-sheet"},
                      Usage{"SizeWithoutX", {"g", "--size", "640"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeOtherLetter", {"g", "--size", "640p480"}, "give WIDTHxHEIGHT"},
                      Usage{"SizeFlat", {"g", "--size", "640x0"}, "each side must be 1 to 8192"},
                      Usage{"SizeHigh", {"g", "--size", "1x8193"}, "each side must be 1 to 8192"},
                      Usage{"HelpWithValue", {"--help=all"}, "--help: there is no such option"},
                      Usage{"CompareSavesEmpty", {"--compare-saves", "", "b"}, "--compare-saves: the name is empty"},
                      Usage{"MenuAndGame", {"g", "--menu", "d"}, "--menu takes the place of GAME"},
                      Usage{"MenuReplay", {"--menu", "d", "--replay", "r"}, "name the game"},
                      Usage{"MenuInput", {"--menu", "d", "--input", "i"}, "name the game"},
                      Usage{"ReplaySeed", {"g", "--replay", "r", "--seed", "2"}, "--seed and --replay"},
                      Usage{"WatchReplay", {"g", "--window", "--watch", "--replay", "r"}, "--watch is for a game"},
                      Usage{"Fullscreen", {"g", "--fullscreen"}, "--scale and --fullscreen need --window"},
                      Usage{"Scale", {"g", "--scale", "2"}, "--scale and --fullscreen need --window"},
                      Usage{"WindowNoDraw", {"g", "--window", "--no-draw"}, "--window shows pictures"},
                      Usage{"InspectNoDraw", {"g", "--inspect", "--no-draw"}, "--inspect draws over pictures"},
                      Usage{"ControlCharacters", {"g", "--\n\x1b[31m"}, "--??[31m"}),
    [](const auto& test) { return std::string(test.param.name); });
} // namespace
