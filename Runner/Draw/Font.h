#pragma once

#include "Runner/Draw/Picture.h"

namespace Runner
{
// The built-in font: a frame for each character, white on transparent.
constexpr int FONT_CELL_WIDTH = 8;
constexpr int FONT_CELL_HEIGHT = 12;
constexpr int FONT_FIRST = 32; // space; frames follow the ASCII order to '~'
constexpr int FONT_BLOCK = 95; // the frame after '~': all white, for shapes without a picture
constexpr int FONT_FRAMES = 96;

Picture DrawFont(); // 8 x 12 frames
} // namespace Runner
