#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

class KvObjectBase;

namespace Runner
{
// A set of objects in the order in which they were added. The pointers are compared, never followed.
class RootSet
{
public:
    // Entries in order; null where one was removed.
    const std::vector<KvObjectBase*>& Entries() const { return m_entries; }

    bool Has(KvObjectBase* object) const { return m_places.count(object) != 0; }
    size_t Size() const { return m_places.size(); }

    void Add(KvObjectBase* object) // nothing for null and for what is in it
    {
        if (object != nullptr && m_places.emplace(object, m_entries.size()).second)
            m_entries.push_back(object);
    }

    void Remove(KvObjectBase* object) // nothing for what is not in it
    {
        const auto place = m_places.find(object);
        if (place == m_places.end())
            return;
        m_entries[place->second] = nullptr;
        m_places.erase(place);
        if (m_places.size() < m_entries.size() / 2)
            CloseGaps();
    }

private:
    void CloseGaps()
    {
        size_t count = 0;
        for (KvObjectBase* object : m_entries)
        {
            if (object == nullptr)
                continue;
            m_places[object] = count;
            m_entries[count++] = object;
        }
        m_entries.resize(count);
    }

    std::vector<KvObjectBase*> m_entries;
    std::unordered_map<KvObjectBase*, size_t> m_places;
};
} // namespace Runner
