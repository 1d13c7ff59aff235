#include "Runner/Base/Random.h"

#include <utility>

namespace Runner
{
namespace
{
constexpr uint64_t MULTIPLIER = UINT64_C(6364136223846793005);
constexpr uint64_t INCREMENT = UINT64_C(1442695040888963407);
} // namespace

void Random::Seed(uint64_t seed)
{
    m_state = {0, INCREMENT};
    Next32();
    m_state.position += seed;
    Next32();
}

void Random::SetState(State state) { m_state = {state.position, state.increment | 1u}; }

// A 64-bit linear congruential generator (PCG-XSH-RR): the result is the upper bits of its state, rotated right by the
// top five bits.
uint32_t Random::Next32()
{
    const uint64_t old = m_state.position;
    m_state.position = old * MULTIPLIER + m_state.increment;
    const uint32_t mixed = static_cast<uint32_t>((((old >> 18) ^ old) >> 27) & 0xFFFFFFFFu);
    const uint32_t rotation = static_cast<uint32_t>(old >> 59);
    return (mixed >> rotation) | (mixed << ((32u - rotation) & 31u));
}

double Random::Next01()
{
    const uint32_t upper = Next32() >> 5; // 27 bits
    const uint32_t lower = Next32() >> 6; // 26 bits
    return (upper * 67108864.0 + lower) / 9007199254740992.0;
}

int32_t Random::Range(int32_t lo, int32_t hi)
{
    if (lo > hi)
        std::swap(lo, hi);
    const uint64_t span = static_cast<uint64_t>(static_cast<int64_t>(hi) - lo) + 1; // 1 .. 2^32
    // Reject numbers from the last whole multiple of the span on: they would make the lowest results more likely.
    const uint64_t limit = (UINT64_C(1) << 32) / span * span;
    uint64_t number;
    do
        number = Next32();
    while (number >= limit);
    return static_cast<int32_t>(lo + static_cast<int64_t>(number % span));
}
} // namespace Runner
