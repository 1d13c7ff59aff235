// A small game in which each request for memory is refused in turn. The game may go on without what it did not get, or
// end with one line and status 1. A signal, a report of a sanitizer, a block left behind or a hang is a failure.

#include "Tests/Runner/Support/Game_Support.h"
#include "Tests/Runner/Support/Reports.h"

#include "Files/Object/Object_Base.h"
#include "Runner/App/Options.h"
#include "Runner/Host/Memory.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <sys/wait.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace
{
using RunnerTest::CapturedFile;
using RunnerTest::IsOneReport;
using RunnerTest::TestDirectory;
using RunnerTest::WithoutWarnings;

constexpr unsigned SECONDS_MOST = 60; // for one run of the game
constexpr int64_t NOTHING_REFUSED = -1;

struct RunResult
{
    int status; // of the process, as waitpid gives it
    std::string errors;
};

// Asks the leak checker, where there is one: what was taken with new is not the memory manager's. It writes its report
// itself.
bool SomethingLeaks()
{
#ifdef __SANITIZE_ADDRESS__
    return __lsan_do_recoverable_leak_check() != 0;
#else
    return false;
#endif
}

// Named so that it runs before others: a child of a process with the driver's threads cannot be searched for leaks.
class RefusalsDeathTest : public ::testing::Test
{
protected:
    // Plays the game in a process of its own, refusing the n-th request.
    RunResult Play(int64_t refused) const
    {
        const CapturedFile err;
        std::fflush(nullptr);
        const pid_t child = fork();
        if (child == 0)
            PlayAndExit(refused, err.Get());
        RunResult result = {-1, ""};
        waitpid(child, &result.status, 0);
        result.errors = WithoutWarnings(err.Text());
        return result;
    }

    // How many requests the undisturbed game makes.
    int64_t CountRequests() const
    {
        const size_t before = Runner::CurrentMemoryUse().allocations;
        const CapturedFile err;
        EXPECT_EQ(RunGame(NOTHING_REFUSED, err.Get()), Runner::EXIT_DONE) << err.Text();
        return static_cast<int64_t>(Runner::CurrentMemoryUse().allocations - before);
    }

private:
    int RunGame(int64_t refused, FILE* err) const
    {
        const char* arguments[] = {"runner",  m_game.c_str(), "--frames", "6",          "--no-draw",
                                   "--check", "--quiet",      "--out",    m_out.c_str()};
        Runner::FailAllocationAfter(refused);
        const int status =
            Runner::RunnerMain(static_cast<int>(std::size(arguments)), const_cast<char**>(arguments), err, err);
        Runner::FailAllocationAfter(NOTHING_REFUSED);
        return status;
    }

    // The module and the sanitizers write to the standard error stream themselves.
    [[noreturn]] void PlayAndExit(int64_t refused, FILE* err) const
    {
        dup2(fileno(err), STDERR_FILENO);
        alarm(SECONDS_MOST);
        int status = RunGame(refused, err);
        std::string why;
        if (!Runner::CheckMemory(why) || g_slotObjects.m_nCount != 0)
        {
            std::fprintf(err, "%s; %d objects are left\n", why.c_str(), g_slotObjects.m_nCount);
            status = EXIT_FAILURE;
        }
        std::fflush(err);
        std::_Exit(SomethingLeaks() ? EXIT_FAILURE : status);
    }

    TestDirectory m_directory;
    std::string m_game = TESTS_DIR "/Runner/Stress/small_game.lua";
    std::string m_out = m_directory.Path("out");
};

TEST_F(RefusalsDeathTest, OfNothingLetTheGamePlayToItsEnd)
{
    const RunResult result = Play(NOTHING_REFUSED);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(RefusalsDeathTest, OfAnyOneRequestAreTakenOrEndTheGameWithOneReport)
{
    const int64_t requests = CountRequests();
    ASSERT_GT(requests, 100);
    int ended = 0;
    for (int64_t n = 0; n < requests; ++n)
    {
        const RunResult result = Play(n);
        ASSERT_TRUE(WIFEXITED(result.status)) << "request " << n << ", signal " << WTERMSIG(result.status) << "\n"
                                              << result.errors;
        const bool clean = WEXITSTATUS(result.status) == 0
                               ? result.errors.empty()
                               : WEXITSTATUS(result.status) == 1 && IsOneReport(result.errors);
        EXPECT_TRUE(clean) << "request " << n << ", status " << WEXITSTATUS(result.status) << "\n" << result.errors;
        ended += WEXITSTATUS(result.status) != 0 ? 1 : 0;
    }
    EXPECT_GT(ended, 0);
    EXPECT_LT(ended, requests);
    std::printf("%d of %lld refused requests ended the game\n", ended, static_cast<long long>(requests));
}
} // namespace
