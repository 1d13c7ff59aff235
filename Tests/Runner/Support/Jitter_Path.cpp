#include "Tests/Runner/Support/Jitter_Path.h"

#include "Runner/Base/Random.h"

#include <algorithm>
#include <cmath>

namespace RunnerTest
{
namespace
{
constexpr double EDGE = 40.0;    // the target keeps so far from the room's edges
constexpr double HEADROOM = 300; // and starts its jumps so far from the top
constexpr double GRAVITY = 0.5;
constexpr int SHORTEST_PHASE = 12;

class PathWriter
{
public:
    PathWriter(uint64_t seed, int roomSize, int frames)
        : m_random(seed), m_size(roomSize), m_frames(static_cast<size_t>(frames))
    {
        PathFrame start;
        start.x = static_cast<float>(Between(EDGE, m_size - EDGE));
        start.y = static_cast<float>(Between(HEADROOM, m_size - EDGE));
        m_path.push_back(start);
    }

    std::vector<PathFrame> Write()
    {
        while (!IsDone())
            WritePhase();
        return m_path;
    }

private:
    bool IsDone() const { return m_path.size() >= m_frames; }
    double Between(double low, double high) { return low + (high - low) * m_random.Next01(); }
    int PhaseLength()
    {
        return m_random.Range(0, 2) == 0 ? m_random.Range(200, 320) : m_random.Range(SHORTEST_PHASE, 60);
    }

    double RandomSpeed()
    {
        const double speed = m_random.Range(0, 3) == 0 ? Between(0.05, 1.0) : Between(1.0, 10.0);
        return m_random.Range(0, 1) == 0 ? speed : -speed;
    }

    // At an edge it turns: it never leaves the room.
    static double Turned(double place, double speed, double low, double high)
    {
        const bool leaves = place + speed < low || place + speed > high;
        return leaves ? -speed : speed;
    }

    void Move(double speedX, double speedY)
    {
        const PathFrame& last = m_path.back();
        PathFrame next;
        next.speedX = Turned(static_cast<double>(last.x), speedX, EDGE, m_size - EDGE);
        next.speedY = Turned(static_cast<double>(last.y), speedY, EDGE, m_size - EDGE);
        if (next.speedX != speedX || next.speedY != speedY)
            m_turned = m_path.size();
        next.x = static_cast<float>(static_cast<double>(last.x) + next.speedX);
        next.y = static_cast<float>(static_cast<double>(last.y) + next.speedY);
        next.constantX = next.speedX == last.speedX ? last.constantX + 1 : 0;
        next.constantY = next.speedY == last.speedY ? last.constantY + 1 : 0;
        m_path.push_back(next);
    }

    // A phase does not begin with a turn at an edge: it heads away from one that is near.
    double Away(float place, double speed) const
    {
        const double end = static_cast<double>(place) + speed * SHORTEST_PHASE;
        return end < EDGE || end > m_size - EDGE ? -speed : speed;
    }

    void Run(double speedX, double speedY, int frames)
    {
        speedX = Away(m_path.back().x, speedX);
        speedY = Away(m_path.back().y, speedY);
        for (int i = 0; i < frames && !IsDone(); ++i)
        {
            Move(speedX, speedY);
            speedX = m_path.back().speedX; // an edge may have turned it
            speedY = m_path.back().speedY;
        }
    }

    // Up and down again to the same ground, or to a platform on the way down.
    void Jump(double speedX)
    {
        speedX = Away(m_path.back().x, speedX);
        const int rise = m_random.Range(12, 28);
        const int frames = m_random.Range(0, 1) == 0 ? 2 * rise + 1 : rise + 1 + m_random.Range(rise / 2, rise);
        for (int i = 0; i < frames && !IsDone() && !HasJustTurned(); ++i)
            Move(speedX, (i - rise) * GRAVITY);
    }

    bool IsFarFromEdges() const
    {
        const double x = static_cast<double>(m_path.back().x);
        return x > 10.0 * EDGE && x < m_size - 10.0 * EDGE;
    }

    void Accelerate(double to)
    {
        const double from = m_path.back().speedX;
        const int frames = m_random.Range(12, 40);
        for (int i = 1; i <= frames && !IsDone() && !HasJustTurned(); ++i)
            Move(from + (to - from) * i / frames, 0.0);
        Run(m_path.back().speedX, 0.0, SHORTEST_PHASE); // it may have turned in the last frame
    }

    // At an edge. It then goes on for a while: a target that trembles is not what is measured.
    bool HasJustTurned() const { return m_path.size() - m_turned < SHORTEST_PHASE; }

    void WritePhase()
    {
        const double speed = m_path.back().speedX;
        if (HasJustTurned())
            return Run(speed, 0.0, SHORTEST_PHASE);
        const bool mayJump = static_cast<double>(m_path.back().y) > HEADROOM;
        switch (m_random.Range(0, 6))
        {
        case 0: return Run(0.0, 0.0, PhaseLength());
        case 1: return Run(-speed, 0.0, PhaseLength());
        case 2: return Run(RandomSpeed(), RandomSpeed(), PhaseLength()); // flies
        case 3: return IsFarFromEdges() ? Accelerate(RandomSpeed()) : Run(speed, 0.0, PhaseLength());
        case 4: return mayJump ? Jump(speed) : Run(speed, 0.0, PhaseLength());
        default: return Run(RandomSpeed(), 0.0, PhaseLength());
        }
    }

    Runner::Random m_random;
    double m_size;
    size_t m_frames;
    size_t m_turned = 0; // the frame of the last turn at an edge
    std::vector<PathFrame> m_path;
};
} // namespace

std::vector<PathFrame> RandomPath(uint64_t seed, int roomSize, int frames)
{
    return PathWriter(seed, roomSize, frames).Write();
}
} // namespace RunnerTest
