#include "Runner/World/World.h"

namespace Runner
{
namespace
{
// Whether the type is the ancestor or one of its descendants. Null is neither.
bool Descends(const ObjectType* type, const ObjectType& ancestor)
{
    while (type != nullptr && type != &ancestor)
        type = type->parent;
    return type != nullptr;
}
} // namespace

// Checks W2 for one object: steps through its list and the world's instances side by side.
bool World::CheckLists(const ObjectType& type, std::string& why) const
{
    const KvListNode<CInstance>* node = type.m_Instances_Recursive.m_first;
    for (const auto& instance : m_instances)
    {
        if (!Descends(&instance->type, type))
            continue;
        if (node == nullptr || node->m_obj != instance.get())
        {
            why = "W2: the list of " + type.name + " does not follow the world's instances";
            return false;
        }
        node = node->m_next;
    }
    if (node != nullptr)
        why = "W2: the list of " + type.name + " is too long";
    return node == nullptr;
}

bool World::Check(std::string& why) const
{
    int last = INSTANCE_ID_FIRST - 1;
    int destroyed = 0;
    for (const auto& instance : m_instances)
    {
        if (instance->m_id <= last || instance->m_id >= m_nextId)
            why = "W1: instance " + std::to_string(instance->m_id) + " is out of order";
        if (Find(instance->m_id) != instance.get())
            why = "W4: instance " + std::to_string(instance->m_id) + " is not found by its identifier";
        last = instance->m_id;
        destroyed += instance->IsDestroyed() ? 1 : 0;
    }
    if (m_byId.size() != m_instances.size())
        why = "W4: the identifier map holds instances that do not exist";
    if (destroyed != m_destroyed)
        why = "W3: " + std::to_string(destroyed) + " instances are destroyed, " + std::to_string(m_destroyed) +
              " are counted";
    if (!why.empty())
        return false;
    for (const auto& object : m_objects)
        if (object->m_Instances_Recursive.m_first != nullptr && !CheckLists(*object, why))
            return false;
    return true;
}
} // namespace Runner
