// Random script steps: every built-in with every kind of value, callbacks that do anything, rooms that come and go.
//
// STRESS_STEPS in the environment sets how many steps are taken; unless set, as many as take some seconds with the
// sanitizers on. The same number of steps gives the same hash on every machine.

#include "Tests/Runner/Support/Documents.h"
#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Runner/Base/Hash.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Memory.h"

#include <cstdlib>
#include <map>

namespace
{
using RunnerTest::CapturedFile;
using RunnerTest::TestDirectory;

constexpr long STEPS_UNLESS_SET = 100000;
constexpr long STEPS_A_GAME = 20000;
constexpr uint64_t SEED = 20240607;

struct Calls // of a built-in, or of the callbacks
{
    long answered = 0;
    long refused = 0;
};

struct Outcome
{
    long steps = 0;
    long games = 0;
    long failedGames = 0;
    Runner::Hash hash;
    std::map<std::string, Calls> calls;
};

long StepsAskedFor()
{
    const char* text = std::getenv("STRESS_STEPS");
    const long steps = text == nullptr ? 0 : std::atol(text);
    return steps > 0 ? steps : STEPS_UNLESS_SET;
}

std::string ReadStressScript(const std::string& name)
{
    return RunnerTest::ReadText(std::string(TESTS_DIR "/Runner/Stress/") + name);
}

// The scripts' table of built-ins, as the module registered them.
std::string ListOfBuiltins()
{
    if (Runner::FindBuiltin("camera_create") == nullptr)
        g_CM.SetupLumFunctions();
    std::string list = "BUILTINS = {";
    for (const Runner::Builtin& builtin : Runner::Builtins())
        list += "{'" + builtin.name + "'," + std::to_string(builtin.argc) + "},";
    return list + "}\n";
}

class StressSteps : public ::testing::Test
{
protected:
    StressSteps()
    {
        m_directory.Write("random_steps.lua", ReadStressScript("random_steps.lua"));
        m_directory.Write("random_values.lua", ReadStressScript("random_values.lua"));
    }
    ~StressSteps() override { Runner::SetConsoleOutput(nullptr); }

    Outcome TakeSteps(long steps, bool gcStress)
    {
        Outcome outcome;
        for (uint64_t seed = SEED; outcome.steps < steps && !HasFailure(); ++seed)
            PlayGame(seed, std::min(STEPS_A_GAME, steps - outcome.steps), gcStress, outcome);
        return outcome;
    }

private:
    void PlayGame(uint64_t seed, long steps, bool gcStress, Outcome& outcome)
    {
        const size_t blocksBefore = Runner::CurrentMemoryUse().blocks;
        const CapturedFile log;
        Runner::SetConsoleOutput(log.Get());
        Runner::GameOptions options;
        options.file = m_directory.Write("main.lua", ListOfBuiltins() + "STEPS = " + std::to_string(steps) +
                                                         "\ninclude 'random_steps.lua'\n");
        options.seed = seed;
        options.draw = false;
        options.check = true;
        options.gcStress = gcStress;
        const std::string failure = PlayToTheEnd(options);
        Runner::SetConsoleOutput(nullptr);
        TakeLog(log.Text(), outcome);
        TakeFailure(failure, outcome);
        EXPECT_EQ(Runner::CurrentMemoryUse().blocks, blocksBefore) << "memory is left behind, seed " << seed;
        EXPECT_EQ(Runner::Collector::GetStats().live, 0) << "objects are left behind, seed " << seed;
    }

    // Cameras are cloned between the frames: scripts cannot do that.
    static std::string PlayToTheEnd(const Runner::GameOptions& options)
    {
        Runner::Game game(options, Runner::OpenApi);
        Runner::Random random(options.seed);
        bool good = game.Load();
        while (good && !game.HasEnded())
        {
            good = game.Frame();
            CCamera* clone = random.Range(0, 7) == 0 ? g_CM.CloneCamera(random.Range(0, 63)) : nullptr;
            if (clone != nullptr && random.Range(0, 3) == 0)
                clone->SetPersistent(true);
            Runner::TakeError(); // a clone of a camera whose callback is none reports that again
        }
        return game.Failure();
    }

    // The Runner's warnings. The hash is of what the scripts print.
    static bool IsOfRunner(const std::string& line)
    {
        return line.rfind("warning: ", 0) == 0 || line.rfind("further ", 0) == 0;
    }

    // Lines "steps hash" of the frames, then "built-in, answered, refused" of a game that has ended by itself. Between
    // them, what the Runner says of views whose surface was freed.
    static void TakeLog(const std::string& text, Outcome& outcome)
    {
        long steps = 0;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
        {
            if (IsOfRunner(line))
                continue;
            outcome.hash.Bytes((line + "\n").data(), line.size() + 1);
            std::istringstream words(line);
            std::string name;
            Calls calls;
            EXPECT_NE(line.rfind("VIOLATION", 0), 0u) << line;
            if (words >> name >> calls.answered >> calls.refused)
            {
                outcome.calls[name].answered += calls.answered;
                outcome.calls[name].refused += calls.refused;
            }
            else if (line.rfind("view ", 0) != 0)
                steps = std::atol(line.c_str());
        }
        outcome.steps += steps;
    }

    // The only errors that end a game: the script left a callback that is none with a camera, or one that fails.
    static void TakeFailure(const std::string& failure, Outcome& outcome)
    {
        outcome.hash.Bytes(failure.data(), failure.size());
        ++outcome.games;
        outcome.failedGames += failure.empty() ? 0 : 1;
        const bool meant = failure.empty() || failure.rfind("a callback of camera ", 0) == 0 ||
                           failure.find("meant to end the game") != std::string::npos;
        EXPECT_TRUE(meant) << failure;
    }

    TestDirectory m_directory;
};

TEST_F(StressSteps, LeaveNothingBehindAndGiveTheSameResultsTwice)
{
    const long steps = StepsAskedFor();
    const Outcome once = TakeSteps(steps, false);
    std::printf("seed %llu, %ld steps in %ld games, %ld of them ended by an error of a callback, hash %016llx\n",
                static_cast<unsigned long long>(SEED), once.steps, once.games, once.failedGames,
                static_cast<unsigned long long>(once.hash.Value()));
    EXPECT_GE(once.steps, steps);
    EXPECT_EQ(once.calls.size(), 47u + 1u); // and the callbacks
    for (const auto& [name, calls] : once.calls)
        EXPECT_GT(calls.answered, 0) << name;
    EXPECT_EQ(TakeSteps(steps, false).hash.Value(), once.hash.Value());
}

// Kept from x86-64; the 32-bit build gives the same.
TEST_F(StressSteps, GiveTheKeptResultOnEveryTarget)
{
    constexpr long STEPS = 30000;
    constexpr uint64_t KEPT = 0x364258947D50C30Du;
    EXPECT_EQ(TakeSteps(STEPS, false).hash.Value(), KEPT);
}

TEST_F(StressSteps, GiveTheSameResultsWhenEverythingIsCollectedAllTheTime)
{
    const long steps = StepsAskedFor() / 10;
    EXPECT_EQ(TakeSteps(steps, true).hash.Value(), TakeSteps(steps, false).hash.Value());
}
} // namespace
