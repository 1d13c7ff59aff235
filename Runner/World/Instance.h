#pragma once

#include "Files/Instance/Instance.h"
#include "Runner/World/Instance_Fields.h"

namespace Runner
{
class World;

// One thing in a room. The world owns it; the collector leaves it alone.
//
// Whoever changes a field that moves it on the screen calls World::Touch, so that its boxes and its place in the grid
// follow before they are next read.
class Instance : public CInstance, public InstanceFields
{
public:
    Instance(World& world, ObjectType& type, float x, float y, int id);

    ObjectType& type;

    // ---- where it is: current unless eInstanceFlag_bbox_dirty is set ----
    RoomArea box = {};      // the object's box, or its sprite's, turned and scaled
    RoomArea drawArea = {}; // box and sprite together

    // ---- the script's side ----
    int self = NO_SCRIPT; // Lua reference of the value that events get; made with the first event

    // Neither destroyed nor deactivated.
    bool IsLive() const { return (m_flags & (eInstanceFlag_Marked | eInstanceFlag_Deactivated)) == 0; }
    bool IsDestroyed() const { return (m_flags & eInstanceFlag_Marked) != 0; }

    // False: drawn in every view. So is an instance of whose size nothing is known.
    bool MayBeCulled() const { return type.traits.cull && (type.traits.hasBox || sprite != NO_SPRITE); }

    // Null for helper instances and other objects of the collector.
    static Instance* From(KvObjectBase* object);

    void ComputeAreas(); // box and drawArea from the fields above; the dirty flag goes

private:
    friend class World;
    friend class InstanceGrid;

    World& m_world;
    bool m_isTouched = false; // waits in the world's list for its place in the grid

    struct Span // of grid cells, last ones included
    {
        int left = 0, top = 0, right = -1, bottom = -1;
    };
    Span m_span;
    bool m_isUnbounded = false; // stands in the grid's list of instances to look at always, not in cells
    unsigned m_lastQuery = 0;   // an instance in several cells is found once
};
} // namespace Runner
