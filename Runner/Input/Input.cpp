#include "Platform/Strict_Float.h"

#include "Runner/Input/Input.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
constexpr int FIRST_TRIGGER = 4; // of the axes; those before it are sticks, two each
constexpr float AXIS_MOST = 32767.0f;

bool HasBit(uint32_t bits, int number) { return (bits >> static_cast<unsigned>(number) & 1u) != 0; }

float AxisPart(int16_t axis) { return std::max(-1.0f, static_cast<float>(axis) / AXIS_MOST); }

// Whether the part's bit is in the set that `member` names, on that pad or on any.
template <typename Member> bool IsIn(const InputFrame& frame, const Binding& part, int pad, Member member)
{
    const auto number = static_cast<size_t>(part.number);
    const auto hasButton = [&](const PadFrame& each)
    { return each.connected && HasBit(member(each.buttons), part.number); };
    switch (part.part)
    {
    case InputPart::KeyName: return member(frame.names)[number];
    case InputPart::KeyPosition: return member(frame.positions)[number];
    case InputPart::MouseButton: return HasBit(member(frame.mouse.buttons), part.number);
    case InputPart::PadButton:
        return pad == ANY_PAD ? std::any_of(frame.pads.begin(), frame.pads.end(), hasButton)
                              : hasButton(frame.pads[static_cast<size_t>(pad)]);
    case InputPart::PadAxis: break; // no switch
    }
    return false;
}

constexpr auto HELD = [](const auto& switches) { return switches.held; };
constexpr auto PRESSED = [](const auto& switches) { return switches.pressed; };
constexpr auto RELEASED = [](const auto& switches) { return switches.released; };

bool IsOnPad(const Binding& part) { return part.part == InputPart::PadButton || part.part == InputPart::PadAxis; }
} // namespace

void Input::BeginFrame(const InputFrame& frame)
{
    m_before = m_now;
    m_now = frame;
}

// ---- one part ----

bool Input::Down(const Binding& part, int pad) const { return ValueOf(m_now, part, pad) >= AXIS_PRESSES; }

bool Input::Pressed(const Binding& part, int pad) const { return IsIn(m_now, part, pad, PRESSED); }

bool Input::Released(const Binding& part, int pad) const { return IsIn(m_now, part, pad, RELEASED); }

float Input::AxisOf(const PadFrame& pad, int axis) const
{
    if (!pad.connected)
        return 0.0f;
    const float value = AxisPart(pad.axes[static_cast<size_t>(axis)]);
    const int other = axis ^ 1; // of the same stick
    const float across = axis < FIRST_TRIGGER ? AxisPart(pad.axes[static_cast<size_t>(other)]) : 0.0f;
    const float way = sqrtf(value * value + across * across);
    if (way <= m_deadZone)
        return 0.0f;
    const float counted = std::min(1.0f, (way - m_deadZone) / (1.0f - m_deadZone));
    return value / way * counted;
}

float Input::Axis(int pad, int axis) const { return AxisOf(m_now.pads[static_cast<size_t>(pad)], axis); }

float Input::ValueOf(const InputFrame& frame, const Binding& part, int pad) const
{
    if (part.part != InputPart::PadAxis)
        return IsIn(frame, part, pad, HELD) || IsIn(frame, part, pad, PRESSED) ? 1.0f : 0.0f;
    float most = 0.0f;
    for (int each = 0; each < PAD_COUNT; ++each)
        if (pad == ANY_PAD || pad == each)
            most = std::max(most, AxisOf(frame.pads[static_cast<size_t>(each)], part.number) * part.sign);
    return most;
}

// ---- actions ----

bool Input::IsDown(const InputFrame& frame, const Action& action, int pad) const
{
    return std::any_of(action.bindings.begin(), action.bindings.end(),
                       [&](const Binding& part)
                       { return (pad == ANY_PAD || IsOnPad(part)) && ValueOf(frame, part, pad) >= AXIS_PRESSES; });
}

bool Input::Pressed(const Action& action, int pad) const { return Down(action, pad) && !IsDown(m_before, action, pad); }

bool Input::Released(const Action& action, int pad) const
{
    return !Down(action, pad) && IsDown(m_before, action, pad);
}

float Input::Value(const Action& action, int pad) const
{
    float most = 0.0f;
    for (const Binding& part : action.bindings)
        if (pad == ANY_PAD || IsOnPad(part))
            most = std::max(most, ValueOf(m_now, part, pad));
    return most;
}
} // namespace Runner
