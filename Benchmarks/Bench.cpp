#include "Benchmarks/Bench.h"

#include "Benchmarks/Peers.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
int64_t s_iterations = 0; // 0: as many as the time asks for

// Takes our own option out of the arguments.
int TakeIterations(int argc, char** argv)
{
    constexpr char OPTION[] = "--iterations=";
    constexpr size_t LENGTH = sizeof OPTION - 1;
    int kept = 1;
    for (int i = 1; i < argc; ++i)
    {
        if (std::strncmp(argv[i], OPTION, LENGTH) == 0)
            s_iterations = std::strtoll(argv[i] + LENGTH, nullptr, 10);
        else
            argv[kept++] = argv[i];
    }
    return kept;
}
} // namespace

void Bench::Row(const std::string& subject, const std::string& who, std::function<void(benchmark::State&)> work)
{
    const std::string name = subject + "/" + who;
    benchmark::internal::Benchmark* const row = benchmark::RegisterBenchmark(name.c_str(), std::move(work));
    if (s_iterations > 0)
        row->Iterations(s_iterations);
}

void Bench::Require(bool condition, const std::string& what)
{
    if (condition)
        return;
    std::fprintf(stderr, "error: %s: not the same work, so nothing is measured\n", what.c_str());
    std::exit(1);
}

void Bench::RequireNear(const float (&actual)[16], const float (&expected)[16], float tolerance,
                        const std::string& what)
{
    for (int row = 0; row < 4; ++row)
    {
        float largest = 0.0f;
        for (int i = 4 * row; i < 4 * row + 4; ++i)
            largest = std::fmax(largest, std::fabs(expected[i]));
        for (int i = 4 * row; i < 4 * row + 4; ++i)
            Require(std::fabs(actual[i] - expected[i]) <= tolerance * largest,
                    what + ", entry " + std::to_string(i) + ": " + std::to_string(actual[i]) + " instead of " +
                        std::to_string(expected[i]));
    }
}

BenchView Bench::ViewOf(int slot)
{
    const float n = static_cast<float>(slot);
    return {100.0f * n, 35.5f * n, 640.0f + 8.0f * n, 360.0f + 4.5f * n, n < 8 ? 0.0f : 11.25f * n};
}

uint32_t Bench::Numbers::Next()
{
    m_state = m_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<uint32_t>(m_state >> 32);
}

float Bench::Numbers::Between(float low, float high)
{
    return low + (high - low) * (static_cast<float>(Next() >> 8) / 16777216.0f);
}

int Bench::Run(int argc, char** argv, std::initializer_list<Subject> subjects)
{
    argc = TakeIterations(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    for (const Subject& subject : subjects)
    {
        if (s_iterations == 0)
            subject.check();
        subject.addRows();
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
