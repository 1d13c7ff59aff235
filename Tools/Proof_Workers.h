#pragma once
// The work of a proof, shared out to processes: a host's state is global, so threads cannot share it.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <vector>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ProofWorkers
{
// True when the process has ended by itself, with status 0.
inline bool HasSucceeded(pid_t process)
{
    int status = 1;
    return process > 0 && waitpid(process, &status, 0) == process && status == 0;
}

// Calls work(tally, number) in `count` processes at once, with numbers from 0. Returns their tallies in this order; an
// empty list when there is no memory or process for them, or when one has ended early.
template <typename Tally, typename Work> std::vector<Tally> Run(unsigned count, const Work& work)
{
    static_assert(std::is_trivially_copyable_v<Tally>, "a tally is shared memory");
    const size_t size = count * sizeof(Tally);
    void* const shared = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        return {};
    Tally* const tallies = static_cast<Tally*>(shared);
    std::vector<pid_t> processes;
    for (unsigned i = 0; i < count; ++i)
    {
        processes.push_back(fork());
        if (processes.back() != 0)
            continue;
        work(*new (&tallies[i]) Tally, i);
        std::fflush(stdout);
        _exit(0);
    }
    bool haveSucceeded = true;
    for (const pid_t process : processes)
        haveSucceeded &= HasSucceeded(process);
    const std::vector<Tally> result(tallies, tallies + (haveSucceeded ? count : 0));
    munmap(shared, size);
    return result;
}

inline unsigned Processors()
{
    const long count = sysconf(_SC_NPROCESSORS_ONLN);
    return count > 0 ? static_cast<unsigned>(count) : 1;
}

// The part of a worker: parts differ by one at most.
inline uint64_t Share(uint64_t whole, unsigned count, unsigned number)
{
    return whole / count + (number < whole % count ? 1 : 0);
}

// Each worker has numbers of its own.
inline uint32_t Seed(uint32_t seed, unsigned number) { return seed + 1000003u * number; }

// Proves in as many processes as there are processors, tells what tell(tallies) tells, which answers how much is wrong,
// and returns the program's exit status. work: as of Run, with the number of processes as a third argument.
template <typename Tally, typename Work, typename Tell>
int Prove(const char* program, const Work& work, const Tell& tell)
{
    const auto start = std::chrono::steady_clock::now();
    const unsigned count = Processors();
    const std::vector<Tally> tallies =
        Run<Tally>(count, [&work, count](Tally& tally, unsigned number) { work(tally, number, count); });
    if (tallies.empty())
    {
        std::fprintf(stderr, "%s: a process could not be started, or has ended early\n", program);
        return 1;
    }
    const uint64_t wrong = tell(tallies);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("%.0f s in %u processes\n", took.count(), count);
    return wrong == 0 ? 0 : 1;
}

inline uint64_t NumberFrom(int argc, char** argv, int index, uint64_t unlessGiven)
{
    return argc > index ? std::strtoull(argv[index], nullptr, 10) : unlessGiven;
}
} // namespace ProofWorkers
