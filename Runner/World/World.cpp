#include "Runner/World/World.h"

#include <algorithm>
#include <utility>

namespace Runner
{
namespace
{
World* s_current = nullptr;
KvHash<CObject> s_objectHash;
} // namespace

World::World()
{
    s_current = this;
    g_ObjectHash = &s_objectHash;
}

World::~World()
{
    RemoveAll(nullptr);
    g_ObjectHash = nullptr;
    s_current = nullptr;
}

World* World::Current() { return s_current; }

// ---- objects ----

ObjectType* World::AddObject(std::string name, ObjectType* parent, const ObjectTraits& traits)
{
    if (ObjectCount() > OBJECT_INDEX_LAST)
        return nullptr;
    m_objects.push_back(std::make_unique<ObjectType>(ObjectCount(), std::move(name), parent, traits));
    return m_objects.back().get();
}

ObjectType* World::FindObject(int index) const
{
    return index >= 0 && index < ObjectCount() ? m_objects[static_cast<size_t>(index)].get() : nullptr;
}

// ---- instances ----

Instance& World::Create(ObjectType& type, float x, float y)
{
    m_instances.push_back(std::make_unique<Instance>(*this, type, x, y, m_nextId));
    Instance& instance = *m_instances.back();
    try
    {
        Enlist(instance);
    }
    catch (...)
    {
        Withdraw(instance);
        throw;
    }
    ++m_nextId;
    return instance;
}

void World::Enlist(Instance& instance)
{
    m_byId[instance.m_id] = &instance;
    for (ObjectType* kind = &instance.type; kind != nullptr; kind = kind->parent)
        kind->Append(instance);
    if (instance.type.traits.Script(Event::Step) != NO_SCRIPT)
        m_steppers.push_back(&instance);
    Touch(instance);
}

// Undoes what Enlist has done of the newest instance before memory was refused.
void World::Withdraw(Instance& instance)
{
    for (std::vector<Instance*>* list : {&m_steppers, &m_touched})
        if (!list->empty() && list->back() == &instance)
            list->pop_back();
    instance.m_flags |= eInstanceFlag_Marked;
    for (ObjectType* kind = &instance.type; kind != nullptr; kind = kind->parent)
        kind->RemoveDestroyed();
    m_byId.erase(instance.m_id);
    m_instances.pop_back();
}

Instance* World::Find(int id) const
{
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? nullptr : found->second;
}

Instance* World::FindLive(ObjectType& type, int n) const
{
    for (auto* node = type.m_Instances_Recursive.m_first; node != nullptr; node = node->m_next)
    {
        auto* instance = static_cast<Instance*>(node->m_obj);
        if (instance->IsLive() && n-- == 0)
            return instance;
    }
    return nullptr;
}

int World::CountLive(const ObjectType& type) const
{
    int count = 0;
    for (auto* node = type.m_Instances_Recursive.m_first; node != nullptr; node = node->m_next)
        count += static_cast<Instance*>(node->m_obj)->IsLive() ? 1 : 0;
    return count;
}

void World::Destroy(Instance& instance)
{
    if (instance.IsDestroyed())
        return;
    instance.m_flags |= eInstanceFlag_Marked;
    ++m_destroyed;
}

void World::Forget(Instance& instance, const Release& release)
{
    if (release)
        release(instance);
    m_byId.erase(instance.m_id);
    m_grid.Remove(instance);
}

void World::RemoveDestroyed(const Release& release)
{
    if (m_destroyed == 0)
        return;
    const auto isDestroyed = [](const Instance* instance) { return instance->IsDestroyed(); };
    m_steppers.erase(std::remove_if(m_steppers.begin(), m_steppers.end(), isDestroyed), m_steppers.end());
    m_touched.erase(std::remove_if(m_touched.begin(), m_touched.end(), isDestroyed), m_touched.end());
    std::vector<ObjectType*> kinds;
    for (const auto& instance : m_instances)
    {
        if (!instance->IsDestroyed())
            continue;
        Forget(*instance, release);
        for (ObjectType* kind = &instance->type; kind != nullptr; kind = kind->parent)
            kinds.push_back(kind);
    }
    std::sort(kinds.begin(), kinds.end(), [](const ObjectType* a, const ObjectType* b) { return a->index < b->index; });
    kinds.erase(std::unique(kinds.begin(), kinds.end()), kinds.end());
    for (ObjectType* kind : kinds)
        kind->RemoveDestroyed();
    m_instances.erase(std::remove_if(m_instances.begin(), m_instances.end(),
                                     [](const auto& instance) { return instance->IsDestroyed(); }),
                      m_instances.end());
    m_destroyed = 0;
}

void World::RemoveAll(const Release& release)
{
    for (const auto& object : m_objects)
        object->Clear();
    m_steppers.clear();
    m_touched.clear();
    for (const auto& instance : m_instances)
        if (release)
            release(*instance);
    m_byId.clear();
    m_instances.clear();
    m_grid.Reset(1, 1);
    m_destroyed = 0;
}

// ---- positions and the grid ----

void World::SetRoomSize(int width, int height)
{
    m_grid.Reset(width, height);
    for (const auto& instance : m_instances)
        Touch(*instance);
}

void World::Touch(Instance& instance)
{
    instance.m_flags |= eInstanceFlag_bbox_dirty;
    if (!instance.m_isTouched)
        m_touched.push_back(&instance);
    instance.m_isTouched = true; // once it is in the list
}

void World::SetSpriteExtent(int sprite, const SpriteExtent& extent)
{
    if (sprite < 0)
        return;
    if (static_cast<size_t>(sprite) >= m_spriteExtents.size())
        m_spriteExtents.resize(static_cast<size_t>(sprite) + 1);
    m_spriteExtents[static_cast<size_t>(sprite)] = extent;
}

const SpriteExtent* World::FindSpriteExtent(int sprite) const
{
    if (sprite < 0 || static_cast<size_t>(sprite) >= m_spriteExtents.size())
        return nullptr;
    return &m_spriteExtents[static_cast<size_t>(sprite)];
}

void World::RefreshGrid()
{
    for (Instance* instance : m_touched)
    {
        instance->ComputeAreas();
        m_grid.Put(*instance);
        instance->m_isTouched = false;
    }
    m_touched.clear();
}

void World::FindForDrawing(const RoomRegion& region, std::vector<Instance*>& found)
{
    RefreshGrid();
    found.clear();
    m_grid.Find(region, found);
    const auto isHidden = [](const Instance* instance) { return !instance->visible || !instance->IsLive(); };
    found.erase(std::remove_if(found.begin(), found.end(), isHidden), found.end());
    std::sort(found.begin(), found.end(),
              [](const Instance* a, const Instance* b)
              { return a->depth != b->depth ? a->depth > b->depth : a->m_id < b->m_id; });
}
} // namespace Runner
