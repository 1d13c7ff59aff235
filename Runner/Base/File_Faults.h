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
    Close, // the file is closed, but the operation reports a failure
    MakeDirectory,
};

// Test aid: only the n-th operation of that kind from now (0: the next) fails. Negative: none does.
void FailFileOperation(FileOperation kind, int64_t n);

// True when the operation that the caller is about to do is to fail; errno is then that of a full disk.
bool Faulty(FileOperation kind);
} // namespace Runner
