#pragma once
// The objects of a game and the instances of its running room.
//
// W1 The instances are in the order of creation, which is that of their identifiers.
// W2 An instance is in the recursive list of its object and of each of the object's ancestors, once, in that order.
// W3 A destroyed instance stays in every list, flagged, until RemoveDestroyed.
// W4 The identifier map holds exactly the instances of W1.
//
// There is one world at a time: the host's instance and object maps look into it.

#include "Runner/World/Instance.h"
#include "Runner/World/Instance_Grid.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Runner
{
// Every identifier of an instance and every frame number is below this. Saves hold such numbers only, so a game ends
// with an error before its counters pass what could be loaded again: after a year of play without a pause.
constexpr int COUNTERS_END = 0x70000000;

// Size and origin of a sprite's frame, in pixels. The origin is the point of the frame that is drawn at x, y.
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

    // ---- instances: the caller runs their events ----
    bool MayCreate() const { return m_nextId < COUNTERS_END - 1; } // false: the identifiers are used up
    Instance& Create(ObjectType& type, float x, float y);          // when memory is refused, the world stays as it was
    Instance* Find(int id) const;                                  // destroyed ones too; null when missing
    Instance* FindLive(ObjectType& type, int n) const; // the n-th of the object and its children; null when missing
    int CountLive(const ObjectType& type) const;
    void Destroy(Instance& instance); // flags it
    const std::vector<std::unique_ptr<Instance>>& Instances() const { return m_instances; }
    const std::vector<Instance*>& Steppers() const { return m_steppers; } // those with a step event, in order

    // Remove the instances that Destroy flagged, or all. release, unless null, is called for each just before.
    using Release = std::function<void(Instance&)>;
    void RemoveDestroyed(const Release& release);
    void RemoveAll(const Release& release);

    // The identifier of the next instance. Restoring a saved game sets that of the save.
    int NextId() const { return m_nextId; }
    void SetNextId(int id) { m_nextId = id; }

    // ---- positions and the grid ----
    void SetRoomSize(int width, int height); // before the room's first instance
    void Touch(Instance& instance);          // must follow each change of position, angle, scale or sprite
    void SetSpriteExtent(int sprite, const SpriteExtent& extent);
    const SpriteExtent* FindSpriteExtent(int sprite) const;

    // The live, visible instances that touch the region, in the order of drawing: larger depth first, then by creation.
    void FindForDrawing(const RoomRegion& region, std::vector<Instance*>& found);

    // Checks W1..W4 for everything there is. False, and which of them does not hold, and where.
    bool Check(std::string& why) const;

private:
    void Enlist(Instance& instance);
    void Withdraw(Instance& instance);
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
