// The example games show, through every view and in every frame, what they showed when their golden traces were kept:
// the same camera rectangles, areas and matrices, bit for bit, on every target and at every level of optimisation.
#include "Runner/Hash.h"
#include "Runner/Options.h"
#include "Tests/Runner/Game_Support.h"
#include "Tests/Runner/Golden_Runs.h"

#include <array>

namespace
{
using RunnerTest::CapturedFile;
using RunnerTest::TestDirectory;

constexpr char FRAMES[] = "600";
constexpr size_t LINES_KEPT = 100; // the golden file's; the rest counts through its hash

std::string ReadText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

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
    // The trace of the whole run, played without drawing.
    std::string Trace()
    {
        std::vector<std::string> arguments = {"runner",    RunnerTest::GameFile(GetParam()),
                                              "--frames",  FRAMES,
                                              "--no-draw", "--quiet",
                                              "--trace",   directory.Path("trace.txt"),
                                              "--out",     directory.Path("out")};
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        CapturedFile out, err;
        const int status = Runner::RunnerMain(static_cast<int>(arguments.size()), argv.data(), out.Get(), err.Get());
        EXPECT_EQ(status, 0) << err.Text();
        return directory.Read("trace.txt");
    }

    TestDirectory directory;
};

// The golden file: the first lines of the trace, then one line with the number of lines and the hash of all of them.
TEST_P(GoldenTrace, IsTheSameBitForBit)
{
    const std::string trace = Trace();
    char last[64];
    std::snprintf(last, sizeof(last), "%zu bytes, hash %016llx\n", trace.size(),
                  static_cast<unsigned long long>(Runner::HashBytes(trace.data(), trace.size())));
    const std::string kept = FirstLines(trace, LINES_KEPT) + last;
    const std::string golden = RunnerTest::GoldenFile(std::string(GetParam()) + "_trace.txt");
    if (std::getenv("GOLDEN_UPDATE") != nullptr)
        std::ofstream(golden, std::ios::binary) << kept;
    EXPECT_EQ(kept, ReadText(golden)) << "of " << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Of, GoldenTrace, testing::ValuesIn(RunnerTest::EXAMPLE_GAMES),
                         [](const auto& each) { return std::string(each.param); });
} // namespace
