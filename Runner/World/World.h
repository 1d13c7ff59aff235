#pragma once
// The objects of a game and the instances of its running room.
//
// W1 Instances stand in the order of creation, which is that of their identifiers.
// W2 An instance is in the recursive list of its object and of each of the object's ancestors, once, in that order.
// W3 A destroyed instance stays in every list, flagged, until RemoveDestroyed.
// W4 The identifier map holds exactly the instances of W1.
//
// One world at a time: it is what the host's instance and object maps look into.

#include "Runner/World/Instance.h"
#include "Runner/World/Instance_Grid.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Runner
{
// A sprite's frame, as far as the world needs it: pixels around the point that is put at x, y.
struct SpriteExtent
{
    float width = 0.0f, height = 0.0f, originX = 0.0f, originY = 0.0f;
};

class World
{
public:
    World();
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    static World* Current(); // null while there is none

    // ---- objects ----
    // Null once OBJECT_INDEX_LAST is taken. parent: one of this world's, or null.
    ObjectType* AddObject(std::string name, ObjectType* parent, const ObjectTraits& traits);
    ObjectType* FindObject(int index) const; // null when missing
    int ObjectCount() const { return static_cast<int>(m_objects.size()); }

    // ---- instances; events are the caller's to run ----
    Instance& Create(ObjectType& type, float x, float y);
    Instance* Find(int id) const;                      // destroyed ones too; null when missing
    Instance* FindLive(ObjectType& type, int n) const; // the n-th of the object and its children; null when missing
    int CountLive(const ObjectType& type) const;
    void Destroy(Instance& instance); // flags it
    const std::vector<std::unique_ptr<Instance>>& Instances() const { return m_instances; }
    const std::vector<Instance*>& Steppers() const { return m_steppers; } // those with a step event, in order

    // Removes what Destroy flagged. release is told of each just before it goes.
    using Release = std::function<void(Instance&)>;
    void RemoveDestroyed(const Release& release);
    void RemoveAll(const Release& release);

    // The identifier of the next instance. A saved game that is restored brings its own.
    int NextId() const { return m_nextId; }
    void SetNextId(int id) { m_nextId = id; }

    // ---- places ----
    void SetRoomSize(int width, int height); // before the room's first instance
    void Touch(Instance& instance);          // it moved, turned, or changed its sprite
    void SetSpriteExtent(int sprite, const SpriteExtent& extent);
    const SpriteExtent* FindSpriteExtent(int sprite) const;

    // The live, visible instances that touch the region, in the order of drawing: larger depth first, then by creation.
    void FindForDrawing(const RoomRegion& region, std::vector<Instance*>& found);

    // Walks everything. False, with which of W1..W4 does not hold.
    bool Check(std::string& why) const;

private:
    void Forget(Instance& instance, const Release& release);
    void RefreshGrid();
    bool CheckLists(const ObjectType& type, std::string& why) const;

    std::vector<std::unique_ptr<ObjectType>> m_objects; // by index
    std::vector<std::unique_ptr<Instance>> m_instances;
    std::unordered_map<int, Instance*> m_byId;
    std::vector<Instance*> m_steppers;
    std::vector<Instance*> m_touched;
    std::vector<SpriteExtent> m_spriteExtents; // by sprite
    InstanceGrid m_grid;
    int m_nextId = INSTANCE_ID_FIRST;
    int m_destroyed = 0; // flagged and not yet removed
};
} // namespace Runner
