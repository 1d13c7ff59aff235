#pragma once

#include <cstdint>

namespace Runner
{
constexpr int64_t NANOSECONDS = 1000000000;

// The times at which steps are due, at a fixed rate that no display decides. Times are nanoseconds of a clock that only
// runs forwards.
class StepClock
{
public:
    // Steps that were missed are made up while they are few. Beyond that they are dropped: after a pause, or on a
    // machine that is too slow, making them all up would take longer than the time it makes up for.
    static constexpr int MISSED_LIMIT = 5;

    StepClock(int stepsPerSecond, int64_t now) : m_period(NANOSECONDS / stepsPerSecond), m_due(now) {}

    int64_t UntilDue(int64_t now) const { return m_due > now ? m_due - now : 0; }
    bool IsDue(int64_t now) const { return m_due <= now; }

    // A step is played: the next one is due a period after it.
    void Take(int64_t now)
    {
        m_due += m_period;
        if (now - m_due > MISSED_LIMIT * m_period)
            m_due = now;
    }

    void Restart(int64_t now) { m_due = now; } // after a pause: nothing was missed

private:
    const int64_t m_period;
    int64_t m_due;
};
} // namespace Runner
