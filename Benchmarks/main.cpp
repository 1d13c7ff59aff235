// The benchmarks' program. Takes Google Benchmark's options, and
//   --iterations=N   no checks, and every row runs exactly N times
//   --save-area=DIR  where the image rows write their files

#include "Benchmarks/Bench.h"
#include "Benchmarks/Peers.h"
#include "Runner/Host_Files.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
int64_t s_iterations = 0; // 0: as many as the time asks for

// The value of an option of ours, null for any other argument.
const char* ValueOf(const char* argument, const char* option)
{
    const size_t length = std::strlen(option);
    return std::strncmp(argument, option, length) == 0 ? argument + length : nullptr;
}

// Takes our own options out of the arguments.
int TakeOptions(int argc, char** argv)
{
    int kept = 1;
    for (int i = 1; i < argc; ++i)
    {
        if (const char* count = ValueOf(argv[i], "--iterations="))
            s_iterations = std::strtoll(count, nullptr, 10);
        else if (const char* area = ValueOf(argv[i], "--save-area="))
            Runner::SetSaveArea(area);
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

int main(int argc, char** argv)
{
    argc = TakeOptions(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    for (const Bench::Subject* subject :
         {&Bench::MATRICES, &Bench::STEPS, &Bench::REGISTRY, &Bench::STATE, &Bench::IMAGES, &Bench::RUNNER})
    {
        if (s_iterations == 0)
            subject->check();
        subject->addRows();
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
