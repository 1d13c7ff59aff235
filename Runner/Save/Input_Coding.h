#pragma once
// Input frames as few bytes: the part of a recording that grows with every frame.
//
// A frame is a row of 32-bit words (Input_Coding.cpp lists them). A block of frames is coded by columns: each word as
// what a prediction from the frame before leaves, so that a device which nobody touches costs nothing, and a held key
// or a resting stick next to nothing.

#include "Runner/Input/Input_Frame.h"
#include "Runner/Save/Byte_Stream.h"

#include <vector>

namespace Runner
{
void WriteInputs(ByteWriter& io, const std::vector<InputFrame>& frames);

// Reads as many frames as are asked for. The reader has failed when no writer can have written the bytes.
void ReadInputs(ByteReader& io, size_t count, std::vector<InputFrame>& frames);
} // namespace Runner
