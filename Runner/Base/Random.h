#pragma once

#include <cstdint>

namespace Runner
{
// Seeded random numbers: the same seed gives the same numbers on every machine.
class Random
{
public:
    // The whole state: two generators with the same state give the same numbers from then on.
    struct State
    {
        uint64_t position;
        uint64_t increment; // odd; SetState makes it odd
    };

    explicit Random(uint64_t seed = 0) { Seed(seed); }

    void Seed(uint64_t seed);
    uint32_t Next32();
    double Next01();                       // [0, 1), 53 bits
    int32_t Range(int32_t lo, int32_t hi); // [lo, hi], each equally likely; swaps limits in the wrong order
    State GetState() const { return m_state; }
    void SetState(State state);

private:
    State m_state;
};
} // namespace Runner
