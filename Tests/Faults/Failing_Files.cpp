// Defines the C library's functions anew: those of the program come first for every library of the process.

#include "Tests/Faults/Failing_Files.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>

namespace Faults
{
namespace
{
constexpr size_t KINDS = static_cast<size_t>(FileCall::COUNT);
std::array<std::atomic<int64_t>, KINDS> s_calls{};
FileCall s_call = FileCall::COUNT;
std::atomic<int64_t> s_left{-1};
int s_error = 0;
bool s_failed = false;
bool s_isLasting = false;

// ---- who calls ----

struct Range
{
    uintptr_t from, to;
};

constexpr size_t RANGES = 8;
std::array<Range, RANGES> s_ours{}; // code of the program and of the libraries that do its work on files
size_t s_ranges = 0;

bool WorksForUs(const char* library)
{
    return library[0] == '\0' || std::strstr(library, "libstdc++") != nullptr ||
           std::strstr(library, "libpng") != nullptr;
}

int NoteRanges(dl_phdr_info* info, size_t, void*)
{
    for (int i = 0; WorksForUs(info->dlpi_name) && i < info->dlpi_phnum && s_ranges < RANGES; ++i)
    {
        const auto& segment = info->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0)
            continue;
        const uintptr_t from = info->dlpi_addr + segment.p_vaddr;
        s_ours[s_ranges++] = {from, from + segment.p_memsz};
    }
    return 0;
}

bool IsOurs(const void* caller)
{
    const auto place = reinterpret_cast<uintptr_t>(caller);
    return std::any_of(s_ours.begin(), s_ours.begin() + s_ranges,
                       [place](const Range& range) { return place >= range.from && place < range.to; });
}

// ---- whether to fail ----

bool Counted(FileCall call, const void* caller)
{
    if (!IsOurs(caller))
        return false;
    ++s_calls[static_cast<size_t>(call)];
    if (call != s_call)
        return false;
    if (s_isLasting && s_failed)
        return true;
    if (s_left < 0 || s_left-- != 0)
        return false;
    s_failed = true;
    return true;
}

// For operations that cannot be done by halves.
bool Fails(FileCall call, const void* caller)
{
    if (!Counted(call, caller))
        return false;
    errno = s_error == SHORT ? EIO : s_error;
    return true;
}

// How much of size to do instead; -1: it fails.
int64_t Allowed(FileCall call, const void* caller, size_t size)
{
    if (!Counted(call, caller))
        return static_cast<int64_t>(size);
    errno = s_error == SHORT ? ENOSPC : s_error;
    return s_error == SHORT ? static_cast<int64_t>(size / 2) : -1;
}

template <typename Function> Function Real(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}
} // namespace

const char* NameOf(FileCall call)
{
    constexpr const char* NAMES[] = {"open",   "read",  "write",  "fwrite",         "fflush",         "fsync",
                                     "rename", "close", "remove", "make directory", "read directory", "stat"};
    static_assert(sizeof(NAMES) / sizeof(NAMES[0]) == KINDS);
    return NAMES[static_cast<size_t>(call)];
}

void FailFile(FileCall call, int64_t n, int error, bool isLasting)
{
    if (s_ranges == 0)
        dl_iterate_phdr(NoteRanges, nullptr);
    s_call = call;
    s_error = error;
    s_failed = false;
    s_isLasting = isLasting;
    s_left = n;
}

bool FileHasFailed() { return s_failed; }
int64_t CallsOf(FileCall call) { return s_calls[static_cast<size_t>(call)]; }
} // namespace Faults

// The function of the C library, and whether this call of it fails.
#define REAL(name) static const auto real = Faults::Real<decltype(&name)>(#name)
#define FAILS(kind) Faults::Fails(Faults::FileCall::kind, __builtin_return_address(0))
#define ALLOWED(kind, size) Faults::Allowed(Faults::FileCall::kind, __builtin_return_address(0), size)

extern "C"
{
    int open(const char* path, int flags, ...)
    {
        REAL(open);
        va_list rest;
        va_start(rest, flags);
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
        va_end(rest);
        return FAILS(Open) ? -1 : real(path, flags, mode);
    }

    FILE* fopen(const char* path, const char* mode)
    {
        REAL(fopen);
        return FAILS(Open) ? nullptr : real(path, mode);
    }

    FILE* fopen64(const char* path, const char* mode)
    {
        REAL(fopen64);
        return FAILS(Open) ? nullptr : real(path, mode);
    }

    ssize_t read(int file, void* data, size_t size)
    {
        REAL(read);
        const int64_t allowed = ALLOWED(Read, size);
        return allowed < 0 ? -1 : real(file, data, static_cast<size_t>(allowed));
    }

    size_t fread(void* data, size_t size, size_t count, FILE* file)
    {
        REAL(fread);
        const int64_t allowed = ALLOWED(Read, count);
        return allowed <= 0 ? 0 : real(data, size, static_cast<size_t>(allowed), file);
    }

    ssize_t write(int file, const void* data, size_t size)
    {
        REAL(write);
        const int64_t allowed = ALLOWED(Write, size);
        return allowed < 0 ? -1 : real(file, data, static_cast<size_t>(allowed));
    }

    size_t fwrite(const void* data, size_t size, size_t count, FILE* file)
    {
        REAL(fwrite);
        const int64_t allowed = ALLOWED(BufferedWrite, count);
        return allowed <= 0 ? 0 : real(data, size, static_cast<size_t>(allowed), file);
    }

    int fflush(FILE* file)
    {
        REAL(fflush);
        return FAILS(Flush) ? EOF : real(file);
    }

    int fsync(int file)
    {
        REAL(fsync);
        return FAILS(Sync) ? -1 : real(file);
    }

    int rename(const char* from, const char* to) noexcept
    {
        REAL(rename);
        return FAILS(Rename) ? -1 : real(from, to);
    }

    int close(int file)
    {
        REAL(close);
        const bool fails = FAILS(Close);
        const int error = errno;
        const int closed = real(file);
        errno = fails ? error : errno;
        return fails ? -1 : closed;
    }

    int fclose(FILE* file)
    {
        REAL(fclose);
        const bool fails = FAILS(Close);
        const int error = errno;
        const int closed = real(file);
        errno = fails ? error : errno;
        return fails ? EOF : closed;
    }

    int unlink(const char* path) noexcept
    {
        REAL(unlink);
        return FAILS(Remove) ? -1 : real(path);
    }

    int remove(const char* path) noexcept
    {
        REAL(remove);
        return FAILS(Remove) ? -1 : real(path);
    }

    int mkdir(const char* path, mode_t mode) noexcept
    {
        REAL(mkdir);
        return FAILS(MakeDirectory) ? -1 : real(path, mode);
    }

    DIR* opendir(const char* path)
    {
        REAL(opendir);
        return FAILS(ReadDirectory) ? nullptr : real(path);
    }

    DIR* fdopendir(int file)
    {
        REAL(fdopendir);
        return FAILS(ReadDirectory) ? nullptr : real(file);
    }

    dirent* readdir(DIR* directory)
    {
        REAL(readdir);
        return FAILS(ReadDirectory) ? nullptr : real(directory);
    }

    int stat(const char* path, struct stat* status) noexcept
    {
        REAL(stat);
        return FAILS(Status) ? -1 : real(path, status);
    }

    int fstat(int file, struct stat* status) noexcept
    {
        REAL(fstat);
        return FAILS(Status) ? -1 : real(file, status);
    }

    int lstat(const char* path, struct stat* status) noexcept
    {
        REAL(lstat);
        return FAILS(Status) ? -1 : real(path, status);
    }

    int access(const char* path, int mode) noexcept
    {
        REAL(access);
        return FAILS(Status) ? -1 : real(path, mode);
    }
}
