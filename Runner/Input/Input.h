#pragma once

#include "Runner/Input/Actions.h"
#include "Runner/Input/Input_Frame.h"

namespace Runner
{
constexpr int ANY_PAD = -1;

// The input of the running frame, as scripts ask for it. A part is down when it is held or was pressed in the frame, so
// a tap that is shorter than a frame is down in one frame.
class Input
{
public:
    // How far a stick or trigger must be moved before it counts, of its whole way.
    static constexpr float DEAD_ZONE_UNLESS_SET = 0.2f;
    // The value from which on an axis presses an action.
    static constexpr float AXIS_PRESSES = 0.5f;

    void BeginFrame(const InputFrame& frame);
    const InputFrame& Frame() const { return m_now; }

    // ---- one part; of a pad: 0 to PAD_COUNT - 1, or ANY_PAD ----
    bool Down(const Binding& part, int pad = ANY_PAD) const;
    bool Pressed(const Binding& part, int pad = ANY_PAD) const;
    bool Released(const Binding& part, int pad = ANY_PAD) const;

    // -1 to 1, 0 within the dead zone, and growing from 0 at its edge. The dead zone of a stick is round: both axes
    // count together. 0 for a pad that is not connected.
    float Axis(int pad, int axis) const;
    void SetDeadZone(float part) { m_deadZone = part; } // 0 to 0.95
    float DeadZone() const { return m_deadZone; }

    // ---- actions. With a pad only the bindings on that pad count, without one all bindings and all pads ----
    bool Down(const Action& action, int pad = ANY_PAD) const { return IsDown(m_now, action, pad); }
    bool Pressed(const Action& action, int pad = ANY_PAD) const;  // down, and it was not in the frame before
    bool Released(const Action& action, int pad = ANY_PAD) const; // not down, and it was in the frame before
    float Value(const Action& action, int pad = ANY_PAD) const;   // 0 to 1: an axis counts by its way

    Actions actions;

private:
    float ValueOf(const InputFrame& frame, const Binding& part, int pad) const;
    bool IsDown(const InputFrame& frame, const Action& action, int pad) const;
    float AxisOf(const PadFrame& pad, int axis) const;

    InputFrame m_now;
    InputFrame m_before;
    float m_deadZone = DEAD_ZONE_UNLESS_SET;
};
} // namespace Runner
