#pragma once
// Runs of the whole Runner in a process of their own, in which something fails.

#include "Tests/Faults/Failing_Files.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace Faults
{
constexpr int STATUS_OF_LEAKS = 99; // of a child that left memory, objects or files behind

struct RunResult
{
    int signal = 0; // that ended the process; 0 for none
    int status = 0;
    std::string out, err; // err without warnings of the game, which tell of mistakes and not of faults
    int64_t requests = 0; // for memory
    std::array<int64_t, static_cast<size_t>(FileCall::COUNT)> calls{}; // operations on files
    bool hasFailed = false;                                            // whether the fault came
};

// Why the result of a run with a fault is wrong; empty when it is right: the run went on and said no more than the
// undisturbed one, or it ended with a status and one report.
std::string WrongWith(const RunResult& result, const RunResult& undisturbed);

// How many faults of all that are possible a test tries, evenly spread: all of them when the variable FAULTS is "all".
std::vector<int64_t> Sample(int64_t possible, int64_t tried);

// What became of the faults that a test has tried.
class Tally
{
public:
    // After each fault. It is wrong when it has made an expectation of the test fail.
    void Count(bool hasEnded);
    void Print(const char* what) const;

private:
    static int FailedExpectations();

    int m_failedBefore = FailedExpectations();
    int m_tried = 0, m_ended = 0, m_wrong = 0;
};

class FaultTest : public ::testing::Test
{
protected:
    FaultTest();

    // Runs the Runner in a child process, after `arm` has set the fault there. Its files are relative to the test's
    // directory, which holds a copy of the game.
    RunResult Run(const std::vector<std::string>& arguments, const std::function<void()>& arm) const;

    // An undisturbed run in this process, so that what is made once in a process is there before a child counts what is
    // left. Its status. Drawing belongs into a child.
    static int RunHere(const std::vector<std::string>& arguments);

    // Makes the files that the scenarios read.
    static void Keep();

    RunnerTest::TestDirectory directory;
};

// The small game with everything that it can read and write.
extern const std::vector<std::string> PLAYING, REPLAYING, LOADING, COMPARING_SAVES, COMPARING_GAMES;
} // namespace Faults
