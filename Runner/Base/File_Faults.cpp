#include "Runner/Base/File_Faults.h"

#include <cerrno>
#include <cstddef>

namespace Runner
{
namespace
{
constexpr size_t KINDS = 7;
int64_t s_failAfter[KINDS] = {-1, -1, -1, -1, -1, -1, -1};
} // namespace

bool Faulty(FileOperation kind)
{
    int64_t& left = s_failAfter[static_cast<size_t>(kind)];
    if (left < 0)
        return false;
    const bool fails = left-- == 0;
    if (fails)
        errno = ENOSPC;
    return fails;
}

void FailFileOperation(FileOperation kind, int64_t n) { s_failAfter[static_cast<size_t>(kind)] = n; }
} // namespace Runner
