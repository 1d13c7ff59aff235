#pragma once
// The names that scripts have for keys, buttons and axes. Their numbers are those of Input_Frame.h.

#include "Runner/Input/Input_Frame.h"

#include <string>
#include <string_view>

namespace Runner
{
constexpr int NO_NAME = -1;

inline constexpr const char* MOUSE_BUTTON_NAMES[MOUSE_BUTTON_COUNT] = {"left", "middle", "right", "side1", "side2"};

inline constexpr const char* PAD_AXIS_NAMES[PAD_AXIS_COUNT] = {"left_x",  "left_y",       "right_x",
                                                               "right_y", "left_trigger", "right_trigger"};

inline constexpr const char* PAD_BUTTON_NAMES[PAD_BUTTON_COUNT] = {"a",
                                                                   "b",
                                                                   "x",
                                                                   "y",
                                                                   "back",
                                                                   "guide",
                                                                   "start",
                                                                   "left_stick",
                                                                   "right_stick",
                                                                   "left_shoulder",
                                                                   "right_shoulder",
                                                                   "dpad_up",
                                                                   "dpad_down",
                                                                   "dpad_left",
                                                                   "dpad_right",
                                                                   "misc",
                                                                   "paddle1",
                                                                   "paddle2",
                                                                   "paddle3",
                                                                   "paddle4",
                                                                   "touchpad"};

// The number of a name; NO_NAME when there is none. Keys: "a", "space", "left_shift", "kp_5", and the letters of a
// layout as themselves in UTF-8.
int FindKey(std::string_view name);
int FindMouseButton(std::string_view name);
int FindPadButton(std::string_view name);
int FindPadAxis(std::string_view name);

// The name of a key; empty for a number without one.
std::string KeyName(int key);

// The number of the key that writes this Unicode character; NO_NAME for one that no key is named after.
int KeyOfCharacter(uint32_t character);
} // namespace Runner
