#include "Runner/World/Object_Type.h"

#include <utility>

namespace Runner
{
ObjectType::ObjectType(int objectIndex, std::string objectName, ObjectType* objectParent,
                       const ObjectTraits& objectTraits)
    : index(objectIndex), name(std::move(objectName)), parent(objectParent), traits(objectTraits)
{
    m_Instances_Recursive.m_first = nullptr;
}

ObjectType::~ObjectType() { Clear(); }

void ObjectType::Append(CInstance& instance)
{
    auto* node = new KvListNode<CInstance>{nullptr, &instance};
    (m_last == nullptr ? m_Instances_Recursive.m_first : m_last->m_next) = node;
    m_last = node;
}

void ObjectType::RemoveDestroyed()
{
    m_last = nullptr;
    KvListNode<CInstance>** link = &m_Instances_Recursive.m_first;
    while (*link != nullptr)
    {
        KvListNode<CInstance>* node = *link;
        if ((node->m_obj->m_flags & eInstanceFlag_Marked) == 0)
        {
            m_last = node;
            link = &node->m_next;
            continue;
        }
        *link = node->m_next;
        delete node;
    }
}

void ObjectType::Clear()
{
    while (m_Instances_Recursive.m_first != nullptr)
    {
        KvListNode<CInstance>* node = m_Instances_Recursive.m_first;
        m_Instances_Recursive.m_first = node->m_next;
        delete node;
    }
    m_last = nullptr;
}
} // namespace Runner
