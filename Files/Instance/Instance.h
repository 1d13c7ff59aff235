#pragma once

#include "Files/Object/Object_Base.h"
#include "Platform/Containers.h"

#include <cstdint>

enum eInstanceFlag : uint32_t
{
    eInstanceFlag_Marked = 1,      // destroyed, waits for the end of the step
    eInstanceFlag_Deactivated = 2, // takes no part in the game
    eInstanceFlag_bbox_dirty = 8,  // moved since its bounding box was computed
};

constexpr int INSTANCE_ID_FIRST = 100000; // smaller numbers are object indices

// One thing in a room. All operations are the host's.
class CInstance : public KvObjectBase
{
public:
    // Holds what it is given, with flags 0; it is in no table and no list until the host puts it there.
    CInstance(float x, float y, int id, int objectIndex, bool createEvent);
    // Computes the box of a stale instance, or of any when forced; afterwards eInstanceFlag_bbox_dirty is clear.
    void Compute_BoundingBox(bool force);

    float x, y; // position, room units
    uint32_t m_flags;
    int32_t m_id;
    int32_t m_objectIndex;

    static KvHash<CInstance> ms_ID2Instance;
};
