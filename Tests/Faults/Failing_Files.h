#pragma once
// Operations on files that fail on purpose, whichever way the program calls them: the system's own, those of the C
// library, and those that the C++ library and libpng make for it. Others (a graphics driver's) are left alone.

#include <cstdint>

namespace Faults
{
enum class FileCall
{
    Open, // and fopen
    Read, // and fread
    Write,
    BufferedWrite, // fwrite
    Flush,         // fflush
    Sync,
    Rename,
    Close, // and fclose: the file is closed, but the operation reports a failure
    Remove,
    MakeDirectory,
    ReadDirectory, // opendir, readdir
    Status,        // stat and its kin, access
    COUNT,
};
const char* NameOf(FileCall call);

constexpr int SHORT = -1; // instead of an error: half of what was asked for is done

// Test aid: the n-th operation of that kind from now (0: the next) fails with that error (errno's numbers), and all
// later ones with it if the fault is lasting. Negative n: none does.
void FailFile(FileCall call, int64_t n, int error, bool isLasting = false);

bool FileHasFailed();           // since the last FailFile
int64_t CallsOf(FileCall call); // since the program's start
} // namespace Faults
