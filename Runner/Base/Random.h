#pragma once

#include <cstdint>

namespace Runner
{
// Seeded random numbers: the same seed gives the same numbers on every machine.
class Random
{
public:
    // All that there is: a generator with the same state goes on with the same numbers.
    struct State
    {
        uint64_t position;
        uint64_t increment; // odd; made odd when it is not
    };

    explicit Random(uint64_t seed = 0) { Seed(seed); }

    void Seed(uint64_t seed);
    uint32_t Next32();
    double Next01();                       // [0, 1), 53 bits
    int32_t Range(int32_t lo, int32_t hi); // [lo, hi], each equally likely; takes them in either order
    State GetState() const { return m_state; }
    void SetState(State state);

private:
    State m_state;
};
} // namespace Runner
