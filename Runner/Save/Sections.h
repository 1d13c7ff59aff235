#pragma once
// The parts of a saved game's file, in their order.

#include "Runner/Save/Byte_Stream.h"
#include "Runner/Save/Saved_State.h"

namespace Runner
{
struct Section
{
    char tag[5];
    void (*write)(ByteWriter& io, const SavedState& state);
    void (*read)(ByteReader& io, SavedState& state);
};

constexpr uint32_t SECTION_COUNT = 7;
extern const Section SECTIONS[SECTION_COUNT];

// What the sections say about each other. False for what no game can have written.
bool CamerasAreConsistent(const SavedCameras& cameras); // the stream is one, and the flags are of its cameras
bool ValuesAreConsistent(const SavedState& state);      // tables that are named exist, keys are keys
} // namespace Runner
