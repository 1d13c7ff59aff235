#pragma once
// What an angle is beyond whole quarter turns, exactly enough for angles of any size.

#include "Runner/Base/Double_Double.h"

namespace Runner
{
struct ReducedAngle
{
    DoubleDouble remainder; // in radians, -pi/4 .. pi/4
    bool isOdd;             // the number of quarter turns that were taken off
};

// Of a finite angle in radians.
ReducedAngle ReduceAngleExactly(float radians);
} // namespace Runner
