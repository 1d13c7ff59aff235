#include "Platform/Memory_Manager.h"
#include "Runner/Host/Memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace
{
using namespace Runner;

unsigned char* Alloc(size_t size, int line = 1)
{
    return static_cast<unsigned char*>(MemoryManager::Alloc(size, "test tag", line, true));
}

std::string Report(size_t* count = nullptr)
{
    char* text = nullptr;
    size_t size = 0;
    FILE* out = open_memstream(&text, &size);
    const size_t blocks = ReportLiveBlocks(out);
    std::fclose(out);
    if (count != nullptr)
        *count = blocks;
    std::string report(text, size);
    std::free(text);
    return report;
}

bool Whole()
{
    std::string why;
    const bool whole = CheckMemory(why);
    EXPECT_TRUE(whole) << why;
    return whole;
}

TEST(HostMemory, BlocksAreAlignedAndZeroFilled)
{
    for (size_t size = 0; size < 70; ++size)
    {
        unsigned char* block = Alloc(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 8, 0u) << size;
        EXPECT_EQ(std::count(block, block + size, 0), static_cast<ptrdiff_t>(size));
        MemoryManager::Free(block);
    }
}

TEST(HostMemory, CountsBlocksBytesPeakAndRequests)
{
    const MemoryUse before = CurrentMemoryUse();
    void* a = Alloc(100);
    void* b = Alloc(50);
    MemoryManager::Free(a);
    const MemoryUse after = CurrentMemoryUse();
    EXPECT_EQ(after.blocks, before.blocks + 1);
    EXPECT_EQ(after.bytes, before.bytes + 50);
    EXPECT_GE(after.peakBytes, before.bytes + 150);
    EXPECT_EQ(after.allocations, before.allocations + 2);
    MemoryManager::Free(b);
    EXPECT_EQ(CurrentMemoryUse().bytes, before.bytes);
}

TEST(HostMemory, ReAllocKeepsTheBytesAndClearsTheNewOnes)
{
    const size_t bytesBefore = CurrentMemoryUse().bytes;
    void* below = Alloc(8); // neighbours in the list, which a moved block must find again
    unsigned char* block = Alloc(10);
    void* above = Alloc(8);
    std::memset(block, 7, 10);
    block = static_cast<unsigned char*>(MemoryManager::ReAlloc(block, 5000, "test tag", 2, false));
    EXPECT_EQ(std::count(block, block + 10, 7), 10);
    EXPECT_EQ(std::count(block + 10, block + 5000, 0), 4990);
    EXPECT_TRUE(Whole());
    block = static_cast<unsigned char*>(MemoryManager::ReAlloc(block, 3, "test tag", 2, false));
    EXPECT_EQ(std::count(block, block + 3, 7), 3);
    EXPECT_TRUE(Whole());
    EXPECT_EQ(CurrentMemoryUse().bytes, bytesBefore + 8 + 3 + 8);
    MemoryManager::Free(below);
    MemoryManager::Free(block);
    MemoryManager::Free(above);
    EXPECT_TRUE(Whole());
}

TEST(HostMemory, ReAllocOfNothingIsANewBlock)
{
    void* block = MemoryManager::ReAlloc(nullptr, 4, "test tag", 1, false);
    ASSERT_NE(block, nullptr);
    MemoryManager::Free(block);
    MemoryManager::Free(nullptr);
    KvFree(nullptr);
}

TEST(HostMemory, SizesThatNoBlockCanHaveAreRefused)
{
    EXPECT_EQ(Alloc(SIZE_MAX), nullptr);
    EXPECT_EQ(Alloc(SIZE_MAX - 8), nullptr);
    EXPECT_EQ(KvRealloc(nullptr, -1), nullptr);
    void* block = Alloc(4);
    EXPECT_EQ(MemoryManager::ReAlloc(block, SIZE_MAX / 2, "test tag", 1, false), nullptr);
    EXPECT_EQ(KvRealloc(block, -5), nullptr);
    EXPECT_TRUE(Whole());
    MemoryManager::Free(block);
}

TEST(HostMemory, TheInjectedRequestFailsAndThatOneAlone)
{
    FailAllocationAfter(2);
    void* a = Alloc(1);
    void* b = KvRealloc(nullptr, 1);
    EXPECT_EQ(MemoryManager::ReAlloc(a, 100, "test tag", 1, false), nullptr);
    a = MemoryManager::ReAlloc(a, 100, "test tag", 1, false);
    EXPECT_NE(a, nullptr);
    EXPECT_NE(b, nullptr);
    MemoryManager::Free(a);
    KvFree(b);

    FailAllocationAfter(0);
    EXPECT_EQ(KvRealloc(nullptr, 1), nullptr);
    FailAllocationAfter(0);
    FailAllocationAfter(-1);
    void* c = Alloc(1);
    EXPECT_NE(c, nullptr);
    MemoryManager::Free(c);
}

TEST(HostMemory, TheReportNamesEachLiveBlock)
{
    size_t before = 0;
    Report(&before);
    void* a = Alloc(11, 101);
    void* b = Alloc(22, 102);
    void* c = MemoryManager::Alloc(33, nullptr, 103, true);
    size_t count = 0;
    const std::string report = Report(&count);
    EXPECT_EQ(count, before + 3);
    EXPECT_THAT(report,
                testing::HasSubstr("block alive: test tag(101), 11 bytes\nblock alive: test tag(102), 22 bytes\n"
                                   "block alive: untagged(103), 33 bytes\n"));
    for (void* block : {b, a, c})
        MemoryManager::Free(block);
    EXPECT_EQ(Report(&count).find("test tag(10"), std::string::npos);
    EXPECT_EQ(count, before);
}

TEST(HostMemory, TheCheckFindsBytesWrittenPastTheEndAndInFront)
{
    unsigned char* block = Alloc(13, 77);
    std::string why;
    for (int offset : {13, 16, -1, -4})
    {
        const unsigned char saved = block[offset];
        block[offset] = static_cast<unsigned char>(~saved);
        EXPECT_FALSE(CheckMemory(why)) << offset;
        EXPECT_THAT(why, offset > 0 ? testing::StartsWith("a block of test tag(77) has bytes written past its end")
                                    : testing::StartsWith("the header of block "));
        block[offset] = saved;
        EXPECT_TRUE(Whole());
    }
    MemoryManager::Free(block);
}

TEST(HostMemoryDeathTest, FreeingADamagedBlockEndsTheProgramWithALine)
{
    unsigned char* block = Alloc(4);
    const unsigned char saved = block[4];
    block[4] = static_cast<unsigned char>(~saved);
    EXPECT_DEATH(MemoryManager::Free(block), "memory manager: block .* has bytes written past its end");
    block[4] = saved;
    MemoryManager::Free(block);
}

TEST(HostMemory, GrowingATableKeepsItsEntries)
{
    int* table = KvGrowTable<int>(nullptr, 2);
    table[0] = 1;
    table[1] = 2;
    table = KvGrowTable(table, 100);
    EXPECT_EQ(table[0] + table[1], 3);
    EXPECT_THAT(Report(), testing::HasSubstr("Platform/Memory_Manager.h("));
    MemoryManager::Free(table);
}

// A camera manager allocates before main already.
struct BeforeMain
{
    void* block = Alloc(9, 909);
    ~BeforeMain() { MemoryManager::Free(block); }
} s_beforeMain;

TEST(HostMemory, WorksBeforeMain) { EXPECT_THAT(Report(), testing::HasSubstr("test tag(909), 9 bytes")); }
} // namespace
