// Replaces operator new, and stands before malloc, calloc and realloc: the linker is told to --wrap them.

#include "Tests/Faults/Refused_Memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

extern "C"
{
    void* __real_malloc(size_t size);
    void* __real_calloc(size_t count, size_t size);
    void* __real_realloc(void* block, size_t size);
    void* __wrap_malloc(size_t size);
    void* __wrap_calloc(size_t count, size_t size);
    void* __wrap_realloc(void* block, size_t size);
}

namespace
{
// Atomic, because a driver's threads take memory, too.
std::atomic<int64_t> s_left{-1}; // requests until one is refused
std::atomic<int64_t> s_requests{0};
std::atomic<int64_t> s_live{0};
std::atomic<bool> s_refused{false};
bool s_goesOn = false;

bool Refuses()
{
    ++s_requests;
    if (s_goesOn && s_refused)
        return true;
    if (s_left < 0 || s_left-- != 0)
        return false;
    s_refused = true;
    return true;
}

void* NewBlock(size_t size)
{
    void* const block = Refuses() ? nullptr : __real_malloc(size == 0 ? 1 : size);
    s_live += block != nullptr ? 1 : 0;
    return block;
}

void FreeBlock(void* block)
{
    s_live -= block != nullptr ? 1 : 0;
    std::free(block);
}
} // namespace

extern "C"
{
    void* __wrap_malloc(size_t size) { return Refuses() ? nullptr : __real_malloc(size); }
    void* __wrap_calloc(size_t count, size_t size) { return Refuses() ? nullptr : __real_calloc(count, size); }
    void* __wrap_realloc(void* block, size_t size) { return Refuses() ? nullptr : __real_realloc(block, size); }
}

void* operator new(size_t size)
{
    if (void* const block = NewBlock(size))
        return block;
    if (const std::new_handler handler = std::get_new_handler())
        handler(); // the Runner's notes the refusal and throws
    throw std::bad_alloc();
}
void* operator new(size_t size, const std::nothrow_t&) noexcept { return NewBlock(size); }
void* operator new[](size_t size) { return operator new(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return NewBlock(size); }
void operator delete(void* block) noexcept { FreeBlock(block); }
void operator delete(void* block, size_t) noexcept { FreeBlock(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { FreeBlock(block); }
void operator delete[](void* block) noexcept { FreeBlock(block); }
void operator delete[](void* block, size_t) noexcept { FreeBlock(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { FreeBlock(block); }

namespace Faults
{
void RefuseMemory(int64_t n, Refusal refusal)
{
    s_refused = false;
    s_goesOn = refusal == Refusal::FromThen;
    s_left = n;
}

bool MemoryWasRefused() { return s_refused; }
int64_t MemoryRequests() { return s_requests; }
int64_t LiveNewBlocks() { return s_live; }
} // namespace Faults
