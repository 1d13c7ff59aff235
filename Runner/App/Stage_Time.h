#pragma once

namespace Runner
{
// The time of a game in which one can go back.
class StageTime
{
public:
    virtual ~StageTime() = default;
    virtual int Position() const = 0; // frames played
    virtual int Frames() const = 0;   // that are known
    virtual void GoTo(int frame) = 0; // out of range: as far as it goes. It may give the stage another game
    virtual void Idle() {}            // now and then, between two frames
};
} // namespace Runner
