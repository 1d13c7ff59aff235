#pragma once
// The runner's view of its own allocator (Platform/Memory_Manager.h): who holds what, and whether it is still whole.
//
// Every block, including those of KvRealloc, is in one list with its tag, line and size, and has a guard word before
// and after its bytes. Everything here works before main and after it. Game thread only.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <string>

namespace Runner
{
struct MemoryUse
{
    size_t blocks;      // alive now
    size_t bytes;       // alive now, as asked for, without headers and guards
    size_t peakBytes;   // the highest value of bytes so far
    size_t allocations; // requests granted so far, including growth
    size_t refusals;    // requests refused so far
};

MemoryUse CurrentMemoryUse();

// Notices that a request was refused since the watch was made. The module goes on without what it was refused, such as
// a camera; who cannot go on without it asks here.
class RefusalWatch
{
public:
    void ThrowIfRefused() const // std::bad_alloc
    {
        if (CurrentMemoryUse().refusals != m_before)
            throw std::bad_alloc();
    }

private:
    const size_t m_before = CurrentMemoryUse().refusals;
};

// Writes a line per block alive, oldest first: tag, line, size. Answers their number.
size_t ReportLiveBlocks(FILE* out);

// Test aid: refuses only the n-th request from now (0: the next). Negative: none.
void FailAllocationAfter(int64_t n);

// Checks every block. False, and why, when a guard was overwritten or the counts do not agree with the list.
bool CheckMemory(std::string& why);
} // namespace Runner
