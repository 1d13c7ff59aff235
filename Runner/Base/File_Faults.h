#pragma once
// File operations that fail on purpose, so that tests see what a full disk or a crash leaves behind.

#include <cstdint>

namespace Runner
{
enum class FileOperation
{
    Open,
    Write,
    ShortWrite, // half of the data arrives
    Sync,
    Rename,
    Close, // closes, and says that it failed
};

// Test aid: the n-th operation of that kind from now (0: the next) fails, and that one alone. Negative: none.
void FailFileOperation(FileOperation kind, int64_t n);

// Asked before each file operation: whether this one is to fail, with errno set as a full disk does.
bool Faulty(FileOperation kind);
} // namespace Runner
