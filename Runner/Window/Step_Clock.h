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
    int64_t Period() const { return m_period; }

private:
    const int64_t m_period;
    int64_t m_due;
};

// Which frames are shown while steps are late. A display that shows fewer frames than there are steps does not slow the
// game: late frames are left out, a few in a row. Where the game itself takes longer than a period, leaving frames out
// gains nothing, so that each is shown for a while.
class LateFrames
{
public:
    static constexpr int UNSHOWN_LIMIT = 4;      // in a row
    static constexpr int ALL_SHOWN_FRAMES = 600; // before it is tried again

    explicit LateFrames(int64_t period) : m_period(period) {}

    // For each frame that was played, in order.
    bool Shows(bool isLate, int64_t now)
    {
        if (isLate && m_allShown == 0)
            return ShowsLate(now);
        m_allShown -= m_allShown > 0 ? 1 : 0;
        m_unshown = 0;
        return true;
    }

private:
    bool ShowsLate(int64_t now)
    {
        if (m_unshown == 0)
            m_unshownFrom = now;
        if (m_unshown++ < UNSHOWN_LIMIT)
            return false;
        m_unshown = 0;
        m_allShown = now - m_unshownFrom < UNSHOWN_LIMIT * m_period ? 0 : ALL_SHOWN_FRAMES;
        return true;
    }

    const int64_t m_period;
    int64_t m_unshownFrom = 0; // when the first frame was left out
    int m_unshown = 0;         // frames left out since one was shown
    int m_allShown = 0;        // frames that are still shown whether late or not
};
} // namespace Runner
