#include "Runner/Host/Memory.h"

#include "Platform/Memory_Manager.h"

#include <cstdlib>
#include <cstring>

namespace
{
constexpr uint32_t GUARD = 0x5AFEB10Cu;
constexpr uint32_t GUARD_FREED = 0xDEADB10Cu;

// The header in front of every block. Its guard word comes last, next to the block's bytes; a second guard word follows
// them.
struct alignas(8) Header
{
    Header* previous; // older
    Header* next;     // younger
    const char* tag;
    size_t size; // as asked for
    int line;
    uint32_t guard;
};
static_assert(sizeof(Header) % 8 == 0, "blocks are 8-byte aligned");
static_assert(offsetof(Header, guard) + sizeof(uint32_t) == sizeof(Header), "nothing between the guard and the block");

constexpr size_t OVERHEAD = sizeof(Header) + sizeof(GUARD);
constexpr size_t SIZE_MOST = SIZE_MAX / 2 - OVERHEAD; // a block's size must fit into a pointer difference

// Initialised at compile time and never destroyed: there are allocations before main and after it.
Header* s_oldest = nullptr;
Header* s_youngest = nullptr;
Runner::MemoryUse s_use = {0, 0, 0, 0, 0};
int64_t s_failAfter = -1;

unsigned char* BytesOf(Header* header) { return reinterpret_cast<unsigned char*>(header) + sizeof(Header); }
const unsigned char* BytesOf(const Header* header)
{
    return reinterpret_cast<const unsigned char*>(header) + sizeof(Header);
}

bool EndGuardIntact(const Header* header)
{
    uint32_t guard;
    std::memcpy(&guard, BytesOf(header) + header->size, sizeof(guard));
    return guard == GUARD;
}

// Says what is wrong with the block; null when nothing is.
const char* DamageOf(const Header* header)
{
    if (header->guard == GUARD_FREED)
        return "was freed before";
    if (header->guard != GUARD)
        return "has bytes written in front of it, or is no block";
    return EndGuardIntact(header) ? nullptr : "has bytes written past its end";
}

// Aborts on a damaged block: going on would only hide where the damage was done.
Header* CheckedHeaderOf(void* block)
{
    void* const front = static_cast<unsigned char*>(block) - sizeof(Header);
    Header* header = static_cast<Header*>(front);
    if (const char* damage = DamageOf(header))
    {
        std::fprintf(stderr, "memory manager: block %p, to be freed or resized, %s\n", block, damage);
        std::abort();
    }
    return header;
}

void* Refuse()
{
    ++s_use.refusals;
    return nullptr;
}

bool IsRefused(size_t size)
{
    const bool injected = s_failAfter == 0;
    if (s_failAfter >= 0)
        --s_failAfter;
    return injected || size > SIZE_MOST;
}

void CountIn(const Header* header)
{
    ++s_use.blocks;
    s_use.bytes += header->size;
    if (s_use.bytes > s_use.peakBytes)
        s_use.peakBytes = s_use.bytes;
}

void CountOut(const Header* header)
{
    --s_use.blocks;
    s_use.bytes -= header->size;
}

// Makes the neighbours in the list point at the header's current address.
void Relink(Header* header)
{
    (header->previous != nullptr ? header->previous->next : s_oldest) = header;
    (header->next != nullptr ? header->next->previous : s_youngest) = header;
}

void Unlink(Header* header)
{
    (header->previous != nullptr ? header->previous->next : s_oldest) = header->next;
    (header->next != nullptr ? header->next->previous : s_youngest) = header->previous;
}

// Fills in the header and the guard words of a block that is in the list already.
void* Finish(Header* header, size_t size, const char* tag, int line)
{
    header->tag = tag;
    header->line = line;
    header->size = size;
    header->guard = GUARD;
    std::memcpy(BytesOf(header) + size, &GUARD, sizeof(GUARD));
    CountIn(header);
    ++s_use.allocations;
    return BytesOf(header);
}
} // namespace

// Always zero-filled, so that a caller that reads bytes it never wrote gets the same result every time.
void* MemoryManager::Alloc(size_t size, const char* file, int line, bool)
{
    Header* const header = IsRefused(size) ? nullptr : static_cast<Header*>(std::calloc(1, size + OVERHEAD));
    if (header == nullptr)
        return Refuse();
    header->previous = s_youngest;
    header->next = nullptr;
    Relink(header);
    return Finish(header, size, file, line);
}

void* MemoryManager::ReAlloc(void* block, size_t size, const char* file, int line, bool clear)
{
    if (block == nullptr)
        return Alloc(size, file, line, clear);
    Header* header = CheckedHeaderOf(block);
    const size_t oldSize = header->size;
    Header* const moved = IsRefused(size) ? nullptr : static_cast<Header*>(std::realloc(header, size + OVERHEAD));
    if (moved == nullptr)
        return Refuse();
    CountOut(moved);
    Relink(moved);
    if (size > oldSize)
        std::memset(BytesOf(moved) + oldSize, 0, size - oldSize);
    return Finish(moved, size, file, line);
}

void MemoryManager::Free(void* block)
{
    if (block == nullptr)
        return;
    Header* header = CheckedHeaderOf(block);
    Unlink(header);
    CountOut(header);
    *const_cast<volatile uint32_t*>(&header->guard) = GUARD_FREED; // volatile: a plain store before free is dropped
    std::free(header);
}

void KvFree(const void* block) { MemoryManager::Free(const_cast<void*>(block)); }

void* KvRealloc(void* block, int size)
{
    if (size < 0)
        return nullptr;
    return MemoryManager::ReAlloc(block, static_cast<size_t>(size), "value storage", 0, false);
}

namespace Runner
{
MemoryUse CurrentMemoryUse() { return s_use; }

void FailAllocationAfter(int64_t n) { s_failAfter = n; }

size_t ReportLiveBlocks(FILE* out)
{
    size_t count = 0;
    for (const Header* header = s_oldest; header != nullptr; header = header->next, ++count)
        std::fprintf(out, "block alive: %s(%d), %zu bytes\n", header->tag != nullptr ? header->tag : "untagged",
                     header->line, header->size);
    return count;
}

bool CheckMemory(std::string& why)
{
    size_t blocks = 0;
    size_t bytes = 0;
    const Header* previous = nullptr;
    for (const Header* header = s_oldest; header != nullptr; previous = header, header = header->next)
    {
        if (header->guard != GUARD || header->previous != previous)
        {
            // Nothing of a damaged header is to be trusted, its tag included.
            why = "the header of block " + std::to_string(blocks) + ", counted from the oldest, is damaged";
            return false;
        }
        if (!EndGuardIntact(header))
        {
            why = std::string("a block of ") + (header->tag != nullptr ? header->tag : "untagged") + "(" +
                  std::to_string(header->line) + ") " + DamageOf(header);
            return false;
        }
        ++blocks;
        bytes += header->size;
    }
    if (blocks == s_use.blocks && bytes == s_use.bytes && previous == s_youngest)
        return true;
    why = "the counts do not agree with the blocks that stand in the list";
    return false;
}
} // namespace Runner
