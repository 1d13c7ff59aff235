#include "Runner/Base/Uninterrupted.h"

#include <gtest/gtest.h>

namespace
{
// Calls what answers these, one after the other; a negative number is an error. What comes out, and how often it
// called.
std::pair<int, int> Answers(const std::vector<int>& errors, int last)
{
    size_t calls = 0;
    const int answer = Runner::Uninterrupted(
        [&]
        {
            const bool isError = calls < errors.size();
            errno = isError ? errors[calls] : 0;
            ++calls;
            return isError ? -1 : last;
        });
    return {answer, static_cast<int>(calls)};
}

TEST(UninterruptedCall, IsMadeAgainUntilNoSignalInterruptsIt)
{
    EXPECT_EQ(Answers({}, 7), std::pair(7, 1));
    EXPECT_EQ(Answers({}, 0), std::pair(0, 1));
    EXPECT_EQ(Answers({EINTR, EINTR}, 7), std::pair(7, 3));
}

TEST(UninterruptedCall, IsNotMadeAgainAfterAnotherError)
{
    EXPECT_EQ(Answers({EIO, EINTR}, 7), std::pair(-1, 1));
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(Answers({EINTR, ENOSPC}, 7), std::pair(-1, 2));
    EXPECT_EQ(errno, ENOSPC);
}
} // namespace
