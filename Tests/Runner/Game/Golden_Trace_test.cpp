// The example games show, through every view and in every frame, what they showed when their golden traces were kept:
// the same camera rectangles, areas and matrices, bit for bit, on every target and at every level of optimisation.
#include "Runner/App/Options.h"
#include "Runner/Base/Hash.h"
#include "Tests/Runner/Save/Save_Support.h"
#include "Tests/Runner/Support/Documents.h"
#include "Tests/Runner/Support/Game_Support.h"
#include "Tests/Runner/Support/Golden_Runs.h"

#include <array>

namespace
{
using RunnerTest::CapturedFile;
using RunnerTest::TestDirectory;

constexpr char FRAMES[] = "600";
constexpr size_t LINES_KEPT = 100; // the golden file's; the rest counts through its hash

std::string FirstLines(const std::string& text, size_t count)
{
    size_t end = 0;
    while (count-- > 0 && end != std::string::npos && end < text.size())
        end = text.find('\n', end) + 1;
    return text.substr(0, end);
}

class GoldenTrace : public testing::TestWithParam<const char*>
{
protected:
    // Plays the game without drawing, with further options.
    void Play(std::vector<std::string> more)
    {
        more.insert(more.begin(), {"runner", RunnerTest::GameFile(GetParam()), "--no-draw", "--quiet", "--out",
                                   directory.Path("out")});
        std::vector<char*> argv;
        for (std::string& argument : more)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        CapturedFile out, err;
        const int status = Runner::RunnerMain(static_cast<int>(more.size()), argv.data(), out.Get(), err.Get());
        EXPECT_EQ(status, 0) << err.Text();
    }

    // The text equals the golden file; or becomes it, when that is asked for.
    static void Compare(const std::string& text, const std::string& name)
    {
        const std::string golden = RunnerTest::GoldenFile(GetParam() + name);
        if (std::getenv("GOLDEN_UPDATE") != nullptr)
            std::ofstream(golden, std::ios::binary) << text;
        EXPECT_EQ(text, RunnerTest::ReadText(golden)) << "of " << GetParam();
    }

    static std::string Fingerprint(const std::string& bytes)
    {
        char line[64];
        std::snprintf(line, sizeof(line), "%zu bytes, hash %016llx\n", bytes.size(),
                      static_cast<unsigned long long>(Runner::HashBytes(bytes.data(), bytes.size())));
        return line;
    }

    TestDirectory directory;
};

// The golden file: the first lines of the trace, then one line with the number of bytes and the hash of all of it.
TEST_P(GoldenTrace, IsTheSameBitForBit)
{
    Play({"--frames", FRAMES, "--trace", directory.Path("trace.txt")});
    const std::string trace = directory.Read("trace.txt");
    Compare(FirstLines(trace, LINES_KEPT) + Fingerprint(trace), "_trace.txt");
}

// The same file on every target: so a game that was saved on one goes on on another. In a process of its own: the
// camera table of one that has played other games is larger.
TEST_P(GoldenTrace, ASaveHoldsTheSameBytes)
{
    ASSERT_EQ(RunnerTest::StartRunner(RunnerTest::GameFile(GetParam()) + " --quiet --frames 101 --out " +
                                      directory.Path("out") + " --save-at 100 " + directory.Path("game.sav")),
              0);
    Compare(Fingerprint(directory.Read("game.sav")), "_save.txt");
}

INSTANTIATE_TEST_SUITE_P(Of, GoldenTrace, testing::ValuesIn(RunnerTest::EXAMPLE_GAMES),
                         [](const auto& each) { return std::string(each.param); });
} // namespace
