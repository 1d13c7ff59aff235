#include "Runner/Base/Process_Memory.h"

#include <cstdlib>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace Runner
{
#if defined(__GLIBC__)
void KeepFreedMemory()
{
    constexpr int freeAtMost = 64 << 20, mappedFrom = 16 << 20; // bytes
    mallopt(M_TRIM_THRESHOLD, freeAtMost);
    mallopt(M_MMAP_THRESHOLD, mappedFrom);
}

void TakeFirstMemory()
{
    constexpr size_t bytes = 2 << 20, page = 4096;
    KeepFreedMemory();
    volatile char* const taken = static_cast<char*>(std::malloc(bytes)); // volatile: it is written to, though freed
    for (size_t i = 0; taken != nullptr && i < bytes; i += page)
        taken[i] = 1;
    std::free(const_cast<char*>(taken));
}
#else
void KeepFreedMemory() {}
void TakeFirstMemory() {}
#endif
} // namespace Runner
