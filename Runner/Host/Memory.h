#pragma once
// The runner's view of its own allocator (Platform/Memory_Manager.h): who holds what, and whether it is still whole.
//
// Every block, those of KvRealloc included, stands in one list with its tag, line and size and has guard words on both
// sides. All of it works before main and after it. Game thread only.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace Runner
{
struct MemoryUse
{
    size_t blocks;      // alive now
    size_t bytes;       // alive now, as asked for: without headers and guards
    size_t peakBytes;   // the most that was ever alive at once
    size_t allocations; // requests granted so far, growth included
};

MemoryUse CurrentMemoryUse();

// Writes a line per block alive, oldest first: tag, line, size. Answers their number.
size_t ReportLiveBlocks(FILE* out);

// Test aid: refuses the n-th request from now (0: the next), and that one alone. Negative: none.
void FailAllocationAfter(int64_t n);

// Walks every block. False, and why, when a guard was overwritten or the counts do not agree with the list.
bool CheckMemory(std::string& why);
} // namespace Runner
