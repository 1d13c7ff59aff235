#pragma once

#include <cerrno>

namespace Runner
{
// Makes a call of the system, and makes it again as long as a signal interrupts it: it answers less than 0 then, and
// errno is EINTR.
template <typename Call> auto Uninterrupted(const Call& call)
{
    auto answer = call();
    while (answer < 0 && errno == EINTR)
        answer = call();
    return answer;
}
} // namespace Runner
