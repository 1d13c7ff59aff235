#pragma once

#include "Files/Instance/Instance.h"
#include "Runner/World/Instance_Fields.h"

namespace Runner
{
class World;

// An instance in the running room. The world owns it; the collector does not free it.
//
// World::Touch must follow every change of a field that moves or resizes the instance on the screen: its boxes and its
// cells in the grid are then updated before they are next read.
class Instance : public CInstance, public InstanceFields
{
public:
    Instance(World& world, ObjectType& type, float x, float y, int id);

    ObjectType& type;

    // ---- its area: current unless eInstanceFlag_bbox_dirty is set ----
    RoomArea box = {};      // bounding box: the object's, or the sprite's, scaled and rotated
    RoomArea drawArea = {}; // around box and sprite: what culling tests

    // ---- the script's side ----
    int self = NO_SCRIPT; // Lua reference of the value that events get; made with the first event

    // Neither destroyed nor deactivated.
    bool IsLive() const { return (m_flags & (eInstanceFlag_Marked | eInstanceFlag_Deactivated)) == 0; }
    bool IsDestroyed() const { return (m_flags & eInstanceFlag_Marked) != 0; }

    // Whether a view that it does not touch leaves it out. False for an object with cull off, and without a box and a
    // sprite, when its size is unknown.
    bool MayBeCulled() const { return type.traits.cull && (type.traits.hasBox || sprite != NO_SPRITE); }

    // The instance that the object is; null for helper instances and all other kinds of objects.
    static Instance* From(KvObjectBase* object);

    void ComputeAreas(); // computes box and drawArea from the fields above, and clears the dirty flag

private:
    friend class World;
    friend class InstanceGrid;

    World& m_world;
    bool m_isTouched = false; // in the world's list of instances to put into the grid again

    struct Span // a range of grid cells, both ends included
    {
        int left = 0, top = 0, right = -1, bottom = -1;
    };
    Span m_span;
    bool m_isUnbounded = false; // in the grid's list of instances that every query tests, and in no cell
    uint64_t m_lastQuery = 0;   // number of the query that tested it last: once a query, however many cells it is in
};
} // namespace Runner
