#pragma once
// Objects, which the game's scripts define: what instances are made from.

#include "Files/Object/Object.h"
#include "Runner/Base/Area.h"

#include <array>
#include <string>

namespace Runner
{
enum class Event
{
    Create,
    Step,
    Draw,
    Destroy,
};
constexpr int EVENT_COUNT = 4;

constexpr int OBJECT_INDEX_LAST = INSTANCE_ID_FIRST - 1;
constexpr int NO_SPRITE = -1;
constexpr int NO_SCRIPT = -1; // instead of a Lua reference: no function

// Defaults of new instances. A child starts from a copy of its parent's.
struct ObjectTraits
{
    int sprite = NO_SPRITE;
    bool hasBox = false; // false: the sprite's rectangle is the bounding box
    RoomArea box = {};   // around the instance's position
    float depth = 0.0f;  // larger is further away
    bool visible = true;
    bool solid = false;
    bool cull = true;                                                                   // false: drawn in every view
    std::array<int, EVENT_COUNT> events = {NO_SCRIPT, NO_SCRIPT, NO_SCRIPT, NO_SCRIPT}; // Lua references

    int Script(Event event) const { return events[static_cast<size_t>(event)]; }
};

// An object. The base's recursive list holds the instances of this object and of its children, in the order of
// creation; a destroyed one stays in it until the world removes it.
class ObjectType : public CObject
{
public:
    ObjectType(int index, std::string name, ObjectType* parent, const ObjectTraits& traits);
    ~ObjectType();
    ObjectType(const ObjectType&) = delete;
    ObjectType& operator=(const ObjectType&) = delete;

    const int index;
    const std::string name;
    ObjectType* const parent; // null for none; lives as long as its children
    const ObjectTraits traits;

    void Append(CInstance& instance);
    void RemoveDestroyed(); // drops instances that carry the destroyed flag
    void Clear();

private:
    KvListNode<CInstance>* m_last = nullptr;
};
} // namespace Runner
