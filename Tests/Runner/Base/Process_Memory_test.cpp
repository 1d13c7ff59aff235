#include "Runner/Base/Process_Memory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

// AddressSanitizer has an allocator of its own, which keeps freed memory from use; an emulator starts no second
// process.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(UNDER_AN_EMULATOR)
namespace
{
long ResidentPages()
{
    long all = 0, resident = 0;
    FILE* const file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr || std::fscanf(file, "%ld %ld", &all, &resident) != 2)
        resident = -1;
    if (file != nullptr)
        std::fclose(file);
    return resident;
}

// By how many pages the process grows when it takes blocks of 1.5 MiB in all, and writes to them.
long PagesTaken()
{
    constexpr size_t blocks = 1024, blockBytes = 1536;
    ResidentPages(); // the pages that it needs itself
    const long before = ResidentPages();
    for (size_t i = 0; i < blocks; ++i)
    {
        auto* const block = static_cast<volatile char*>(std::malloc(blockBytes));
        if (block == nullptr || before <= 0)
            return -1;
        for (size_t at = 0; at < blockBytes; ++at)
            block[at] = 1;
    }
    return ResidentPages() - before;
}

// Ends the process: with 0 when that number lies within the limits.
[[noreturn]] void JudgePagesTaken(long least, long most)
{
    const long pages = PagesTaken();
    std::fprintf(stderr, "%ld pages\n", pages);
    std::_Exit(least <= pages && pages <= most ? 0 : 1);
}

// Each in a fresh process: what tests before this one have freed would serve the game as well.
class ProcessMemoryDeathTest : public testing::Test
{
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(ProcessMemoryDeathTest, WhatAGameTakesWhileItPlaysIsResidentFromTheStart)
{
    EXPECT_EXIT((Runner::TakeFirstMemory(), JudgePagesTaken(0, 16)), testing::ExitedWithCode(0), "pages");
}

TEST_F(ProcessMemoryDeathTest, WithoutTheFirstMemoryTheProcessGrows)
{
    EXPECT_EXIT(JudgePagesTaken(300, 400), testing::ExitedWithCode(0), "pages"); // 384 pages of 4 KiB are 1.5 MiB
}
} // namespace
#endif
