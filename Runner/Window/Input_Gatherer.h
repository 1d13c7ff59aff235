#pragma once

#include "Runner/Input/Input_Frame.h"

#include <array>
#include <string_view>

namespace Runner
{
// Gathers what the devices report into the input of the next frame. Keys and buttons that do not exist, and pads beyond
// the first PAD_COUNT, are ignored.
class InputGatherer
{
public:
    InputGatherer();

    // name: of the key in the user's layout, NO_NAME for none. A repeated key is not pressed again.
    void Key(int position, int name, bool isDown);
    void MoveMouse(float x, float y); // units of the game's screen
    void MouseButton(int button, bool isDown);
    void TurnWheel(int x, int y);
    // Keeps whole characters of UTF-8 and no control characters but line ends and tabs; drops what is beyond the limit.
    void Type(std::string_view text);

    // Pads by the system's identifier. A new one gets the lowest free place and keeps it until it is removed.
    void AddPad(int identifier);
    void RemovePad(int identifier);
    void MoveAxis(int identifier, int axis, int16_t value);
    void PadButton(int identifier, int button, bool isDown);

    void ReleaseAll(); // the window has lost the focus: nobody will tell when what is held is let go

    InputFrame Take(); // what happened since the last call

private:
    PadFrame* FindPad(int identifier); // null when it has no place

    InputFrame m_frame;
    std::array<int, KEY_COUNT> m_names;           // by position: the name under which a held key was pressed
    std::array<int64_t, PAD_COUNT> m_identifiers; // by place; NO_PAD for a free one
};
} // namespace Runner
