#pragma once
// What the benchmark files share.
//
// A row is named "subject/who": the subjects are the lines of the report, "ours" stands beside its peers. Everybody
// gets the same inputs, stores all results, and is checked against ours before anything is measured.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

struct BenchView;

namespace Bench
{
// Enters a row. Under --iterations it runs exactly that often, for those who count instructions.
void Row(const std::string& subject, const std::string& who, std::function<void(benchmark::State&)> work);

// Ends the program with the text unless the condition holds.
void Require(bool condition, const std::string& what);

// The matrices agree to a part of the largest entry of each row.
void RequireNear(const float (&actual)[16], const float (&expected)[16], float tolerance, const std::string& what);

// Rectangle and angle of camera 0 .. BENCH_VIEWS - 1.
BenchView ViewOf(int slot);

// Numbers that look random and are the same in every run.
class Numbers
{
public:
    explicit Numbers(uint32_t seed) : m_state(seed) {}
    uint32_t Next(); // all 32 bits
    uint32_t Below(uint32_t end) { return static_cast<uint32_t>(uint64_t{Next()} * end >> 32); }
    float Between(float low, float high);

private:
    uint64_t m_state;
};

// A subject's file checks all who take part, then enters their rows.
struct Subject
{
    void (*check)();
    void (*addRows)();
};
extern const Subject MATRICES, REGISTRY, STATE, IMAGES, RUNNER;

// A program's main. Takes Google Benchmark's options, and --iterations=N: no checks, and every row runs exactly N
// times.
int Run(int argc, char** argv, std::initializer_list<Subject> subjects);
} // namespace Bench
