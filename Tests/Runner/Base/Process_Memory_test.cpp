#include "Runner/Base/Process_Memory.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

// AddressSanitizer has an allocator of its own, which keeps freed memory from use.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
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

TEST(ProcessMemory, WhatAGameTakesWhileItPlaysIsResidentFromTheStart)
{
    constexpr size_t blocks = 1024, blockBytes = 1536; // 1.5 of the 2 MiB
    std::vector<char*> taken(blocks);
    Runner::TakeFirstMemory();
    const long before = ResidentPages();
    ASSERT_GT(before, 0);
    for (char*& block : taken)
    {
        block = static_cast<char*>(std::malloc(blockBytes));
        ASSERT_NE(block, nullptr);
        for (size_t i = 0; i < blockBytes; i++)
            static_cast<volatile char*>(block)[i] = 1;
    }
    EXPECT_LE(ResidentPages() - before, 16) << before; // 384 without
    for (char* block : taken)
        std::free(block);
}
} // namespace
#endif
