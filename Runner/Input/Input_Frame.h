#pragma once
// What scripts can see of the devices in one frame: plain data, made by a window or read from a file. A game's frames
// depend on nothing else from outside, so two runs with equal input frames are equal.

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Runner
{
// Keys have the numbers of the USB HID keyboard page (usage 4 is A, usage 40 is Enter); from FIRST_LETTER_KEY on stand
// the letters that a keyboard layout adds: the Latin-1 character 160 + n has the number FIRST_LETTER_KEY + n.
constexpr int KEY_COUNT = 512;
constexpr int FIRST_LETTER_KEY = 416;
constexpr int MOUSE_BUTTON_COUNT = 5;
constexpr int PAD_COUNT = 8;
constexpr int PAD_AXIS_COUNT = 6;
constexpr int PAD_BUTTON_COUNT = 21;
constexpr size_t TEXT_BYTES_LIMIT = 256; // of one frame; what is typed beyond it is dropped

// What a set of switches did in one frame. A switch that was pressed and released within the frame is in both sets and
// not held.
template <typename Set> struct Switches
{
    Set held = {};     // at the frame's end
    Set pressed = {};  // since the frame before
    Set released = {}; // since the frame before

    bool operator==(const Switches& other) const
    {
        return held == other.held && pressed == other.pressed && released == other.released;
    }
};

using KeySwitches = Switches<std::bitset<KEY_COUNT>>;

struct MouseFrame
{
    float x = 0.0f, y = 0.0f;       // in units of the game's screen; outside of it when the pointer is
    Switches<uint32_t> buttons;     // bit 0 left, 1 middle, 2 right, 3 and 4 the side buttons
    int32_t wheelX = 0, wheelY = 0; // notches of this frame, to the right and away from the user

    bool operator==(const MouseFrame& other) const
    {
        return x == other.x && y == other.y && buttons == other.buttons && wheelX == other.wheelX &&
               wheelY == other.wheelY;
    }
};

struct PadFrame
{
    bool connected = false;
    std::array<int16_t, PAD_AXIS_COUNT> axes = {}; // left x, y, right x, y, left trigger, right trigger; y downwards
    Switches<uint32_t> buttons;                    // bits in the order of PAD_BUTTON_NAMES

    bool operator==(const PadFrame& other) const
    {
        return connected == other.connected && axes == other.axes && buttons == other.buttons;
    }
};

struct InputFrame
{
    KeySwitches positions; // keys by their place: the number of the key that stands there on a US keyboard
    KeySwitches names;     // keys by what the user's layout writes on them
    MouseFrame mouse;
    std::array<PadFrame, PAD_COUNT> pads;
    std::string text; // typed in this frame: UTF-8, whole characters, at most TEXT_BYTES_LIMIT bytes

    bool operator==(const InputFrame& other) const
    {
        return positions == other.positions && names == other.names && mouse == other.mouse && pads == other.pads &&
               text == other.text;
    }
    bool operator!=(const InputFrame& other) const { return !(*this == other); }
};
} // namespace Runner
