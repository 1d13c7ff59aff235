#pragma once
// Why a camera moved, or did not: its step in words and numbers.

#include "Runner/Inspect/Frame_Notes.h"

#include <string>
#include <vector>

namespace Runner
{
// The names of an axis and its two borders.
struct AxisWords
{
    const char* axis;
    const char* lower; // at the smaller coordinate
    const char* upper;
};
constexpr AxisWords ACROSS = {"x", "left", "right"};
constexpr AxisWords DOWN = {"y", "top", "bottom"};

// One line for an axis that followed: "x: target 812.4, floored 812; right border wants 572; room allows 540; speed
// allows 536; moves by 6".
std::string FollowText(const AxisNote& axis, const AxisWords& words);

// The lines for a camera, of its last step of a frame. note: null when it had none.
std::vector<std::string> ReasonLines(const StepNote* note, const CCamera& camera);
} // namespace Runner
