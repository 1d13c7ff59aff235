#pragma once
// The sections of a saved game's file, in the order in which they are written.

#include "Runner/Save/Byte_Stream.h"
#include "Runner/Save/Saved_State.h"

namespace Runner
{
struct Section
{
    char tag[5];
    uint32_t since;                           // the first file version that has it
    bool (*isThere)(const SavedState& state); // null: always. A file need not have the others
    void (*write)(ByteWriter& io, const SavedState& state);
    void (*read)(ByteReader& io, SavedState& state);
};

constexpr uint32_t SECTION_COUNT = 11;
extern const Section SECTIONS[SECTION_COUNT];

constexpr char THUMBNAIL_TAG[] = "THMB";

// Checks of the sections against each other. False when no game can have written them.
bool CamerasAreConsistent(
    const SavedCameras& cameras); // the stream is complete, and the flags are those of its cameras
bool ShownLayersAreConsistent(const SavedState& state);      // their numbers ascend, and a map can have them
bool ThumbnailIsConsistent(const SavedThumbnail& thumbnail); // it has as many pixels as its size says
bool ValuesAreConsistent(const SavedState& state);           // every table number names a table, and no key is NaN
} // namespace Runner
