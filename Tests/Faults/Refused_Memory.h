#pragma once
// Requests for memory that are refused on purpose, whoever makes them: operator new, and malloc, calloc and realloc as
// the module, the Runner and Lua call them. Libraries that are linked dynamically keep their own malloc.

#include <cstdint>

namespace Faults
{
enum class Refusal
{
    Once,     // only that request
    FromThen, // that request and all that follow, as when the machine has no memory left
};

// Test aid: refuses the n-th request from now (0: the next). Negative: none.
void RefuseMemory(int64_t n, Refusal refusal = Refusal::Once);

bool MemoryWasRefused();  // since the last RefuseMemory
int64_t MemoryRequests(); // since the program's start, refused ones included
int64_t LiveNewBlocks();  // of operator new
} // namespace Faults
