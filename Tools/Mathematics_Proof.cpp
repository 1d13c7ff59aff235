// Compares the results of the Runner's inexact functions with the nearest float, for all 2^32 inputs, and offers a
// comparison of those with two arguments across machines.
//
//   mathematics_proof floats [THREADS] [FUNCTION]  compares each function, or one, with the exact results
//   mathematics_proof golden                       prints the hash of the exact results over every 65521st float
//   mathematics_proof pairs [MILLIONS]             prints a hash for each million pairs: the same lines on every
//   machine
//
// Exit status 1 where anything differs. Exact results come from MPFR. As that takes hours for all floats, "floats" asks
// the C library's double first: its results are within 2^-51, so where all that lies within 2^-43 rounds to one float,
// that is the nearest. Elsewhere its long double answers the same way, within 2^-62 and 2^-58. The rest, and every
// 4093rd float anyway, are MPFR's. All this needs a long double of 64 bits.
#include "Platform/Strict_Float.h"

#include "Tests/Support/Mathematics_Sample.h"

#include <algorithm>
#include <atomic>
#include <cfloat>
#include <chrono>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#ifdef CAMERA_HAS_MPFR
#include <mpfr.h>
#endif

using namespace MathematicsSample;

namespace
{
constexpr uint32_t BLOCK_SIZE = 1u << 20, BLOCKS = 1u << 12;

// Calls work(block) for each block below count, in as many threads.
template <typename Work> void InThreads(unsigned threads, uint32_t count, Work work)
{
    std::atomic<uint32_t> next{0};
    const auto take = [&]
    {
        for (uint32_t block; (block = next++) < count;)
            work(block);
    };
    std::vector<std::thread> others;
    for (unsigned i = 1; i < threads; ++i)
        others.emplace_back(take);
    take();
    for (std::thread& other : others)
        other.join();
}

#if defined(CAMERA_HAS_MPFR) && LDBL_MANT_DIG == 64
using Exact = int (*)(mpfr_t, const mpfr_t, mpfr_rnd_t);

struct References
{
    Exact exact;
    double (*quick)(double);
    long double (*longer)(long double);
};

// In the order of FUNCTIONS.
constexpr References REFERENCES[] = {
    {mpfr_tan, tan, tanl},    {mpfr_asin, asin, asinl}, {mpfr_atan, atan, atanl},
    {mpfr_exp, exp, expl},    {mpfr_log, log, logl},    {mpfr_log10, log10, log10l},
    {mpfr_sinh, sinh, sinhl}, {mpfr_cosh, cosh, coshl}, {mpfr_tanh, tanh, tanhl},
};
static_assert(std::size(REFERENCES) == std::size(FUNCTIONS), "one for each function");

// Correctly rounded, also where the result is denormal or beyond the largest float.
float ExactResult(const References& reference, float x)
{
    thread_local struct Numbers
    {
        mpfr_t in, out;
        Numbers()
        {
            mpfr_set_emin(-148);
            mpfr_set_emax(128);
            mpfr_init2(in, 24);
            mpfr_init2(out, 24);
        }
    } numbers;
    mpfr_set_flt(numbers.in, x, MPFR_RNDN);
    const int inexact = reference.exact(numbers.out, numbers.in, MPFR_RNDN);
    mpfr_subnormalize(numbers.out, inexact, MPFR_RNDN);
    return mpfr_get_flt(numbers.out, MPFR_RNDN);
}

// The float that a result is rounded to, if all that lies within a part of it is.
template <typename Number> std::optional<float> Rounded(Number result, Number part)
{
    const auto least = static_cast<float>(result - result * part);
    const auto most = static_cast<float>(result + result * part);
    if (least == most || !std::isfinite(result))
        return static_cast<float>(result);
    return std::nullopt;
}

float NearestResult(const References& reference, float x, uint64_t& asked)
{
    if (BitsOf(x) % 4093 != 0)
    {
        if (const auto nearest = Rounded(reference.quick(static_cast<double>(x)), 0x1p-43))
            return *nearest;
        if (const auto nearest = Rounded(reference.longer(static_cast<long double>(x)), 0x1p-58L))
            return *nearest;
    }
    ++asked;
    return ExactResult(reference, x);
}

bool CompareAll(size_t which, unsigned threads)
{
    const auto start = std::chrono::steady_clock::now();
    std::atomic<uint64_t> wrong{0}, asked{0};
    InThreads(threads, BLOCKS,
              [&](uint32_t block)
              {
                  uint64_t wrongHere = 0, askedHere = 0;
                  for (uint32_t i = 0; i < BLOCK_SIZE; ++i)
                  {
                      const float x = FromBits(block * BLOCK_SIZE + i);
                      const float ours = FUNCTIONS[which].function(x);
                      const float nearest = NearestResult(REFERENCES[which], x, askedHere);
                      if (BitsOf(ours) == BitsOf(nearest))
                          continue;
                      if (++wrongHere == 1)
                          std::fprintf(stderr, "%s(%a) is %a, not %a\n", FUNCTIONS[which].name, static_cast<double>(x),
                                       static_cast<double>(ours), static_cast<double>(nearest));
                  }
                  wrong += wrongHere;
                  asked += askedHere;
              });
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%s: %" PRIu64 " floats, %" PRIu64 " differ, %" PRIu64 " asked of MPFR, %.0f s\n",
                FUNCTIONS[which].name, uint64_t{BLOCKS} * BLOCK_SIZE, wrong.load(), asked.load(), seconds);
    std::fflush(stdout);
    return wrong == 0;
}

int Floats(unsigned threads, const std::string& only)
{
    bool equal = true, compared = false;
    for (size_t i = 0; i < std::size(FUNCTIONS); ++i)
    {
        if (!only.empty() && only != FUNCTIONS[i].name)
            continue;
        equal &= CompareAll(i, threads);
        compared = true;
    }
    if (!compared)
        std::fprintf(stderr, "mathematics_proof: no function '%s'; 'golden' prints the names of all\n", only.c_str());
    return equal && compared ? 0 : 1;
}

int Golden()
{
    for (size_t i = 0; i < std::size(FUNCTIONS); ++i)
    {
        const uint64_t hash = HashOfSample([i](float x) { return ExactResult(REFERENCES[i], x); });
        std::printf("%s 0x%016" PRIX64 "\n", FUNCTIONS[i].name, hash);
    }
    return 0;
}
#else
int Floats(unsigned, const std::string&)
{
    std::fprintf(stderr, "mathematics_proof: the exact results need MPFR (libmpfr-dev) and an x86 processor\n");
    return 2;
}
int Golden() { return Floats(0, ""); }
#endif

int Pairs(uint32_t millions)
{
    for (uint32_t block = 0; block < millions; ++block)
    {
        const PairHashes hashes = HashesOfPairs(block, 1000000);
        std::printf("%u %016" PRIx64 " %016" PRIx64 " %016" PRIx64 "\n", block, hashes.angle, hashes.logarithm,
                    hashes.power);
        std::fflush(stdout);
    }
    return 0;
}

unsigned NumberAt(int argc, char** argv, int index, unsigned otherwise)
{
    const int asked = argc > index ? std::atoi(argv[index]) : static_cast<int>(otherwise);
    return static_cast<unsigned>(std::clamp(asked, 1, 100000));
}
} // namespace

int main(int argc, char** argv)
{
    const std::string verb = argc > 1 ? argv[1] : "";
    if (verb == "floats")
        return Floats(NumberAt(argc, argv, 2, std::thread::hardware_concurrency()), argc > 3 ? argv[3] : "");
    if (verb == "golden")
        return Golden();
    if (verb == "pairs")
        return Pairs(NumberAt(argc, argv, 2, 100));
    std::fprintf(stderr, "usage: mathematics_proof floats [THREADS] [FUNCTION] | golden | pairs [MILLIONS]\n");
    return 2;
}
