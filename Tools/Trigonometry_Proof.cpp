// The proof that the module's sine, cosine and arc cosine are the device's: hashes over all 2^32 floats.
//
//   trigonometry_proof ours FILE [THREADS]    compares the module's functions with the hashes in FILE
//   trigonometry_proof libm FILE [THREADS]    compares this machine's C library with them
//   trigonometry_proof extend FILE [THREADS]  appends what FILE lacks, from this machine's C library; interrupted, it
//                                             goes on where it stopped
//   trigonometry_proof values PART            each float of a block for which the module and this machine's C library
//                                             answer differently, with both answers
//   trigonometry_proof exact [THREADS]        checks sqrtf and floorf of this machine on all floats, by definition
//
// Exit status 1 where anything differs. FILE is Tests/Golden/trigonometry.txt. Its hashes are those of the device's
// own C library, taken under emulation:
//
//   cmake --build --preset armhf --target trigonometry_proof
//   qemu-arm -L /usr/arm-linux-gnueabihf build/armhf/Tools/trigonometry_proof extend Tests/Golden/trigonometry.txt
//
// Without CMake: the compiler on this file and Files/Graphics/Trigonometry.cpp, with -std=c++17 -O2 -I. -pthread; with
// -static too, the program carries its C library and runs on a bare device.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Trigonometry.h"
#include "Tests/Support/Exact_Functions.h"
#include "Tests/Support/Trigonometry_Hashes.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cinttypes>
#include <cstdlib>
#include <mutex>
#include <thread>

using namespace Trigonometry;

namespace
{
using Functions = std::array<Function, FUNCTIONS>;

// Named by type: each is the one for floats.
const Functions OURS = {[](float x) { return GR_Sin(x); }, [](float x) { return GR_Cos(x); },
                        [](float x) { return GR_Acos(x); }};
const Functions LIBM = {[](float x) { return sinf(x); }, [](float x) { return cosf(x); },
                        [](float x) { return acosf(x); }};

// Calls work(part) for each part below count, in as many threads.
template <typename Work> void InThreads(unsigned threads, uint32_t count, Work work)
{
    std::atomic<uint32_t> next{0};
    const auto take = [&next, count, &work]
    {
        for (uint32_t part; (part = next++) < count;)
            work(part);
    };
    std::vector<std::thread> others;
    for (unsigned i = 1; i < threads; ++i)
        others.emplace_back(take);
    take();
    for (std::thread& other : others)
        other.join();
}

class Stopwatch
{
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count(); }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

int Compare(const Functions& functions, const char* path, unsigned threads)
{
    const auto golden = ReadGolden(path);
    if (std::count(golden.begin(), golden.end(), std::nullopt) != 0)
    {
        std::fprintf(
            stderr, "%s: not every part has its hashes; \"trigonometry_proof extend\" on the device adds them\n", path);
        return 1;
    }
    uint32_t wrong = 0;
    for (unsigned i = 0; i < FUNCTIONS; ++i)
    {
        const Stopwatch watch;
        std::atomic<uint32_t> differing{0};
        InThreads(threads, PARTS,
                  [&](uint32_t part)
                  {
                      if (HashPart(part, functions[i]) == (*golden[part])[i])
                          return;
                      ++differing;
                      std::fprintf(stderr, "%s: part %03x differs\n", NAMES[i], part);
                  });
        std::printf("%s: %" PRIu64 " floats, %u of %u parts differ, %.0f s\n", NAMES[i], uint64_t{BLOCKS} * BLOCK_SIZE,
                    differing.load(), PARTS, watch.Seconds());
        wrong += differing;
    }
    return wrong == 0 ? 0 : 1;
}

int Extend(const char* path, unsigned threads)
{
    const auto known = ReadGolden(path);
    std::FILE* const file = std::fopen(path, "a");
    if (file == nullptr)
    {
        std::fprintf(stderr, "%s: cannot be written\n", path);
        return 1;
    }
    std::mutex oneWriter;
    InThreads(threads, PARTS,
              [&](uint32_t part)
              {
                  if (known[part])
                      return;
                  Row row;
                  for (unsigned i = 0; i < FUNCTIONS; ++i)
                      row[i] = HashPart(part, LIBM[i]);
                  const std::lock_guard<std::mutex> guard(oneWriter);
                  std::fprintf(file, "%03x %08x %08x %08x\n", part, row[SINE], row[COSINE], row[ARC_COSINE]);
                  std::fflush(file); // a line at a time: what is written stays when the run is stopped
              });
    return std::fclose(file) == 0 ? 0 : 1;
}

int Values(uint32_t block)
{
    int differences = 0;
    for (unsigned i = 0; i < FUNCTIONS; ++i)
        for (uint32_t bits = block * BLOCK_SIZE, n = 0; n < BLOCK_SIZE; ++n, ++bits)
        {
            const uint32_t ours = BitsOf(OURS[i](FromBits(bits))), library = BitsOf(LIBM[i](FromBits(bits)));
            if (ours == library)
                continue;
            std::printf("%s of %08x: ours %08x, libm %08x\n", NAMES[i], bits, ours, library);
            ++differences;
        }
    return differences == 0 ? 0 : 1;
}

int Exact(unsigned threads)
{
    const Stopwatch watch;
    std::atomic<uint64_t> wrongRoots{0}, wrongFloors{0};
    InThreads(threads, BLOCKS,
              [&](uint32_t block)
              {
                  for (uint32_t bits = block * BLOCK_SIZE, n = 0; n < BLOCK_SIZE; ++n, ++bits)
                  {
                      const float number = FromBits(bits);
                      wrongRoots += IsRoundedRoot(number, sqrtf(number)) ? 0 : 1;
                      wrongFloors += IsFloor(number, floorf(number)) ? 0 : 1;
                  }
              });
    std::printf("sqrtf: %" PRIu64 " floats, %" PRIu64 " wrong\nfloorf: %" PRIu64 " floats, %" PRIu64 " wrong\n%.0f s\n",
                uint64_t{BLOCKS} * BLOCK_SIZE, wrongRoots.load(), uint64_t{BLOCKS} * BLOCK_SIZE, wrongFloors.load(),
                watch.Seconds());
    return wrongRoots + wrongFloors == 0 ? 0 : 1;
}

unsigned ThreadsFrom(int argc, char** argv, int index)
{
    const int asked = argc > index ? std::atoi(argv[index]) : static_cast<int>(std::thread::hardware_concurrency());
    return static_cast<unsigned>(std::clamp(asked, 1, 256));
}

int Run(int argc, char** argv)
{
    const std::string verb = argc > 1 ? argv[1] : "";
    if (verb == "exact")
        return Exact(ThreadsFrom(argc, argv, 2));
    if (argc > 2 && verb == "ours")
        return Compare(OURS, argv[2], ThreadsFrom(argc, argv, 3));
    if (argc > 2 && verb == "libm")
        return Compare(LIBM, argv[2], ThreadsFrom(argc, argv, 3));
    if (argc > 2 && verb == "extend")
        return Extend(argv[2], ThreadsFrom(argc, argv, 3));
    if (argc > 2 && verb == "values")
        return Values(static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 16)) % BLOCKS);
    std::fprintf(stderr,
                 "usage: trigonometry_proof ours|libm|extend FILE [THREADS] | values BLOCK | exact [THREADS]\n");
    return 2;
}
} // namespace

int main(int argc, char** argv) { return Run(argc, argv); }
