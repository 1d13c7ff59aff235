// The table of how steadily the kit's cameras follow, over thousands of random paths. By hand, in an optimised build:
//
//   jitter_proof [PATHS [FIRST_SEED [BATCH]]]     10,000 paths from seed 1 unless given; BATCH: smooth, snapped (to
//   whole
//                                                 pixels) or plain (no kit), all three unless given
//
// Status 1 when a style breaks what it promises. The last rows are what most tutorials show, to compare with.

#include "Tests/Runner/Support/Jitter.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{
using namespace RunnerTest;

void PrintRow(JitterBatch batch, const JitterStyle& style, const JitterFigures& figures)
{
    const char* kind = batch == JitterBatch::Snapped ? ", snapped" : "";
    std::printf("| %s%s | ", style.name, kind);
    if (style.keepsInPlace)
        std::printf("%.5f | ", figures.kept);
    else
        std::printf("- | ");
    std::printf("%.5f | %lld | %.3f | ", figures.step, static_cast<long long>(figures.alternations),
                figures.acceleration);
    if (style.acceleration > 0.0 && batch == JitterBatch::Smooth)
        std::printf("%.0f | ", style.acceleration);
    else
        std::printf("- | ");
    std::printf("%lld | %lld |\n", static_cast<long long>(figures.keptFrames),
                static_cast<long long>(figures.steadyFrames));
}

struct NamedBatch
{
    const char* name;
    JitterBatch batch;
};
constexpr NamedBatch BATCHES[] = {
    {"smooth", JitterBatch::Smooth}, {"snapped", JitterBatch::Snapped}, {"plain", JitterBatch::Plain}};

bool PrintBatch(const JitterRun& run)
{
    std::string why;
    const std::vector<JitterFigures> figures = MeasureJitter(run, why);
    if (!why.empty())
        std::fprintf(stderr, "jitter_proof: %s\n", why.c_str());
    bool holds = why.empty();
    for (size_t i = 0; i < figures.size(); ++i)
    {
        const JitterStyle& style = StylesOf(run.batch)[i];
        PrintRow(run.batch, style, figures[i]);
        const std::string broken = JitterBroken(run.batch, style, figures[i]);
        if (broken.empty() || run.batch == JitterBatch::Plain)
            continue;
        std::fprintf(stderr, "jitter_proof: %s\n", broken.c_str());
        holds = false;
    }
    return holds;
}
} // namespace

int main(int argc, char** argv)
{
    JitterRun run;
    run.paths = argc > 1 ? std::atoi(argv[1]) : 10000;
    run.firstSeed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const std::string only = argc > 3 ? argv[3] : "";
    std::printf(
        "| Style | kept in place moves by, px | steady step changes by, px | to and fro | change of speed a frame "
        "| stated | frames kept | frames steady |\n|---|---|---|---|---|---|---|---|\n");
    bool holds = true, isPlayed = false;
    for (const NamedBatch& each : BATCHES)
    {
        if (!only.empty() && only != each.name)
            continue;
        run.batch = each.batch;
        isPlayed = true;
        holds = PrintBatch(run) && holds;
    }
    if (!isPlayed)
        std::fprintf(stderr, "jitter_proof: there is no batch \"%s\": smooth, snapped or plain\n", only.c_str());
    return holds && isPlayed ? EXIT_SUCCESS : EXIT_FAILURE;
}
