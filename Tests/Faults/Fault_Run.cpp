#include "Tests/Faults/Fault_Run.h"

#include "Files/Object/Object_Base.h"
#include "Runner/App/Options.h"
#include "Runner/Host/Memory.h"
#include "Tests/Faults/Refused_Memory.h"
#include "Tests/Runner/Support/Reports.h"

#include <csignal>
#include <cstdlib>

#include <sys/mman.h>
#include <sys/wait.h>

namespace Faults
{
using RunnerTest::IsOneReport;
using RunnerTest::WithoutWarnings;

namespace
{
constexpr unsigned SECONDS_MOST = 60; // for one run

// What a run must leave as it was.
struct Holdings
{
    int64_t news = LiveNewBlocks();
    size_t blocks = Runner::CurrentMemoryUse().blocks;
    int objects = g_slotObjects.m_nCount;
    long files = 0;

    Holdings()
    {
        const std::filesystem::directory_iterator opened("/proc/self/fd");
        files = static_cast<long>(std::distance(begin(opened), end(opened)));
    }
};

std::string LeftBehind(const Holdings& before, const Holdings& after)
{
    std::string left;
    const auto compare = [&left](const char* what, int64_t was, int64_t is)
    {
        if (is > was)
            left += std::string(what) + " left behind: " + std::to_string(is - was) + "\n";
    };
    compare("blocks of new", before.news, after.news);
    compare("blocks of the memory manager", static_cast<int64_t>(before.blocks), static_cast<int64_t>(after.blocks));
    compare("objects", before.objects, after.objects);
    compare("open files", before.files, after.files);
    std::string why;
    return left + (Runner::CheckMemory(why) ? "" : why + "\n");
}

int Main(std::vector<std::string> arguments, const std::function<void()>& arm, FILE* out, FILE* err)
{
    std::vector<char*> argv;
    arguments.insert(arguments.begin(), "runner");
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    arm();
    return Runner::RunnerMain(static_cast<int>(arguments.size()), argv.data(), out, err);
}

void Disarm()
{
    RefuseMemory(-1);
    FailFile(FileCall::COUNT, -1, 0);
}

// What a child counts, in memory that it shares with its parent.
struct Counts
{
    int64_t requests;
    std::array<int64_t, static_cast<size_t>(FileCall::COUNT)> calls;
    bool hasFailed;
};

Counts& SharedCounts()
{
    static void* const memory =
        mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return *static_cast<Counts*>(memory);
}

Counts CountsNow()
{
    Counts now = {MemoryRequests(), {}, MemoryWasRefused() || FileHasFailed()};
    for (size_t call = 0; call < now.calls.size(); ++call)
        now.calls[call] = CallsOf(static_cast<FileCall>(call));
    return now;
}

[[noreturn]] void RunAndExit(const std::vector<std::string>& arguments, const std::function<void()>& arm, FILE* out,
                             FILE* err)
{
    dup2(fileno(err), STDERR_FILENO); // the module and the sanitizers write there themselves
    alarm(SECONDS_MOST);
    const bool draws = std::find(arguments.begin(), arguments.end(), "--no-draw") == arguments.end();
    Disarm(); // from here on operations are counted
    const Holdings before;
    const Counts start = CountsNow();
    const int status = Main(arguments, arm, out, err);
    Counts& counts = SharedCounts() = CountsNow();
    counts.requests -= start.requests;
    for (size_t call = 0; call < start.calls.size(); ++call)
        counts.calls[call] -= start.calls[call];
    Disarm();
    std::string left;
    if (!draws) // a driver keeps what it likes
        left = LeftBehind(before, Holdings());
    std::fputs(left.c_str(), err);
    std::fflush(out);
    std::fflush(err);
    std::_Exit(left.empty() ? status : STATUS_OF_LEAKS);
}
} // namespace

const std::vector<std::string> PLAYING = {"main.lua",   "--frames",     "9",         "--no-draw", "--check",
                                          "--quiet",    "--save-at",    "8",         "end.sav",   "--record",
                                          "run.rec",    "--trace",      "trace.txt", "--profile", "profile.txt",
                                          "--settings", "settings.txt", "--out",     "out"};
const std::vector<std::string> REPLAYING = {"main.lua", "--replay", "kept.rec", "--no-draw",
                                            "--check",  "--quiet",  "--out",    "out"};
const std::vector<std::string> LOADING = {"main.lua",  "--load",  "kept.sav", "--frames", "3",
                                          "--no-draw", "--check", "--quiet",  "--out",    "out"};
const std::vector<std::string> COMPARING_SAVES = {"--compare-saves", "kept.sav", "other.sav"};
const std::vector<std::string> COMPARING_GAMES = {"main.lua",  "--replay", "kept.rec", "--compare", "main.lua",
                                                  "--no-draw", "--quiet",  "--out",    "out"};

std::string WrongWith(const RunResult& result, const RunResult& undisturbed)
{
    const std::string how =
        result.signal != 0 ? "signal " + std::to_string(result.signal) : "status " + std::to_string(result.status);
    const bool wentOn = result.signal == 0 && result.status == undisturbed.status && result.err == undisturbed.err;
    const bool ended = result.signal == 0 &&
                       (result.status == Runner::EXIT_GAME_ERROR || result.status == Runner::EXIT_WRONG_USAGE) &&
                       IsOneReport(result.err);
    const bool isTold = result.signal == 0 && result.err.empty() && result.out != undisturbed.out; // on the console
    return wentOn || ended || isTold ? "" : how + ", told: " + (result.err.empty() ? "nothing" : result.err);
}

std::vector<int64_t> Sample(int64_t possible, int64_t tried)
{
    const char* const wish = std::getenv("FAULTS");
    if (wish != nullptr && wish[0] == '@') // one alone, to look into it
        return {std::atoll(wish + 1)};
    if (wish != nullptr)
        tried = std::string(wish) == "all" ? possible : std::atoll(wish);
    tried = std::clamp<int64_t>(tried, 1, std::max<int64_t>(possible, 1));
    std::vector<int64_t> sample;
    if (possible == 0)
        return sample;
    for (int64_t i = 0; i < tried; ++i)
        sample.push_back((2 * i + 1) * possible / (2 * tried));
    return sample;
}

int Tally::FailedExpectations()
{
    return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

void Tally::Count(bool hasEnded)
{
    const int failed = FailedExpectations();
    ++m_tried;
    m_wrong += failed > m_failedBefore ? 1 : 0;
    m_ended += hasEnded ? 1 : 0;
    m_failedBefore = failed;
}

void Tally::Print(const char* what) const
{
    if (m_tried > 0)
        std::printf("%-15s %6d tried, %6d ended the run, %d wrong\n", what, m_tried, m_ended, m_wrong);
}

FaultTest::FaultTest()
{
    std::filesystem::copy(TESTS_DIR "/Faults/game", directory.Path(""));
    std::filesystem::current_path(directory.Path(""));
}

RunResult FaultTest::Run(const std::vector<std::string>& arguments, const std::function<void()>& arm) const
{
    const RunnerTest::CapturedFile out, err;
    SharedCounts() = Counts();
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        RunAndExit(arguments, arm, out.Get(), err.Get());
    int status = 0;
    waitpid(child, &status, 0);
    RunResult result;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    result.out = out.Text();
    result.err = WithoutWarnings(err.Text());
    result.requests = SharedCounts().requests;
    result.calls = SharedCounts().calls;
    result.hasFailed = SharedCounts().hasFailed;
    return result;
}

int FaultTest::RunHere(const std::vector<std::string>& arguments)
{
    const RunnerTest::CapturedFile out, err;
    return Main(
        arguments, [] {}, out.Get(), err.Get());
}

void FaultTest::Keep()
{
    const std::vector<std::string> play = {"main.lua", "--frames", "9", "--no-draw", "--quiet", "--out", "out"};
    const auto with = [&play](const std::vector<std::string>& more)
    {
        std::vector<std::string> all = play;
        all.insert(all.end(), more.begin(), more.end());
        return all;
    };
    ASSERT_EQ(RunHere(with({"--save-at", "3", "kept.sav", "--record", "kept.rec", "--settings", "settings.txt"})), 0);
    ASSERT_EQ(RunHere(with({"--save-at", "9", "other.sav"})), 0);
}
} // namespace Faults
