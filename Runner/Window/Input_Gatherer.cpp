#include "Runner/Window/Input_Gatherer.h"

#include "Runner/Input/Input_Names.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr int64_t NO_PAD = -1;

void SetBit(Switches<uint32_t>& switches, int number, bool isDown)
{
    const uint32_t bit = 1u << static_cast<unsigned>(number);
    if (((switches.held & bit) != 0) == isDown)
        return;
    switches.held ^= bit;
    (isDown ? switches.pressed : switches.released) |= bit;
}

void SetKey(KeySwitches& keys, int key, bool isDown)
{
    const auto number = static_cast<size_t>(key);
    if (keys.held[number] == isDown)
        return;
    keys.held[number] = isDown;
    (isDown ? keys.pressed : keys.released)[number] = true;
}

template <typename Set> void Release(Switches<Set>& switches)
{
    switches.released |= switches.held;
    switches.held = {};
}

template <typename Set> void Settle(Switches<Set>& switches)
{
    switches.pressed = {};
    switches.released = {};
}

// The length of the character of UTF-8 at the text's start; 0 for bytes that are none.
size_t CharacterLength(std::string_view text)
{
    const auto byte = [text](size_t i) { return static_cast<unsigned char>(text[i]); };
    const size_t length = byte(0) < 0x80       ? 1
                          : byte(0) >> 5 == 6  ? 2
                          : byte(0) >> 4 == 14 ? 3
                          : byte(0) >> 3 == 30 ? 4
                                               : 0;
    if (length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i)
        if (byte(i) >> 6 != 2)
            return 0;
    return length;
}

bool IsTyped(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= ' ' && byte != 0x7F) || c == '\n' || c == '\t';
}
} // namespace

InputGatherer::InputGatherer()
{
    m_names.fill(NO_NAME);
    m_identifiers.fill(NO_PAD);
}

// ---- keys ----

// A layout may change while a key is held, so its release goes to the name under which it was pressed.
void InputGatherer::Key(int position, int name, bool isDown)
{
    if (position < 0 || position >= KEY_COUNT || name >= KEY_COUNT)
        return;
    const auto place = static_cast<size_t>(position);
    if (m_frame.positions.held[place] == isDown)
        return;
    SetKey(m_frame.positions, position, isDown);
    const int shown = isDown ? name : m_names[place];
    m_names[place] = isDown ? name : NO_NAME;
    const bool isHeldElsewhere = !isDown && std::find(m_names.begin(), m_names.end(), shown) != m_names.end();
    if (shown >= 0 && !isHeldElsewhere)
        SetKey(m_frame.names, shown, isDown);
}

void InputGatherer::Type(std::string_view text)
{
    while (!text.empty())
    {
        const size_t length = CharacterLength(text);
        if (m_frame.text.size() + length > TEXT_BYTES_LIMIT)
            return;
        if (length > 0 && IsTyped(text[0]))
            m_frame.text += text.substr(0, length);
        text.remove_prefix(std::max<size_t>(length, 1));
    }
}

// ---- mouse ----

void InputGatherer::MoveMouse(float x, float y)
{
    m_frame.mouse.x = x;
    m_frame.mouse.y = y;
}

void InputGatherer::MouseButton(int button, bool isDown)
{
    if (button >= 0 && button < MOUSE_BUTTON_COUNT)
        SetBit(m_frame.mouse.buttons, button, isDown);
}

void InputGatherer::TurnWheel(int x, int y)
{
    const auto add = [](int32_t sum, int more) { return std::clamp(sum + std::clamp(more, -1000, 1000), -1000, 1000); };
    m_frame.mouse.wheelX = add(m_frame.mouse.wheelX, x);
    m_frame.mouse.wheelY = add(m_frame.mouse.wheelY, y);
}

// ---- pads ----

PadFrame* InputGatherer::FindPad(int identifier)
{
    const auto found = std::find(m_identifiers.begin(), m_identifiers.end(), identifier);
    return found == m_identifiers.end() ? nullptr : &m_frame.pads[static_cast<size_t>(found - m_identifiers.begin())];
}

void InputGatherer::AddPad(int identifier)
{
    const auto free = std::find(m_identifiers.begin(), m_identifiers.end(), NO_PAD);
    if (FindPad(identifier) != nullptr || free == m_identifiers.end())
        return;
    *free = identifier;
    FindPad(identifier)->connected = true;
}

void InputGatherer::RemovePad(int identifier)
{
    PadFrame* const pad = FindPad(identifier);
    if (pad == nullptr)
        return;
    *pad = PadFrame();
    m_identifiers[static_cast<size_t>(pad - m_frame.pads.data())] = NO_PAD;
}

void InputGatherer::MoveAxis(int identifier, int axis, int16_t value)
{
    PadFrame* const pad = FindPad(identifier);
    if (pad != nullptr && axis >= 0 && axis < PAD_AXIS_COUNT)
        pad->axes[static_cast<size_t>(axis)] = value;
}

void InputGatherer::PadButton(int identifier, int button, bool isDown)
{
    PadFrame* const pad = FindPad(identifier);
    if (pad != nullptr && button >= 0 && button < PAD_BUTTON_COUNT)
        SetBit(pad->buttons, button, isDown);
}

// ---- frames ----

void InputGatherer::ReleaseAll()
{
    Release(m_frame.positions);
    Release(m_frame.names);
    m_names.fill(NO_NAME);
    Release(m_frame.mouse.buttons);
    for (PadFrame& pad : m_frame.pads)
    {
        Release(pad.buttons);
        pad.axes = {};
    }
}

InputFrame InputGatherer::Take()
{
    InputFrame taken = m_frame;
    Settle(m_frame.positions);
    Settle(m_frame.names);
    Settle(m_frame.mouse.buttons);
    for (PadFrame& pad : m_frame.pads)
        Settle(pad.buttons);
    m_frame.mouse.wheelX = m_frame.mouse.wheelY = 0;
    m_frame.text.clear();
    return taken;
}
} // namespace Runner
