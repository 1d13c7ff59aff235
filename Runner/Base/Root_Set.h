#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace Runner
{
// A set of pointers in the order in which they were added. They are compared, never followed. Adding, removing and
// asking cost the same however many there are.
template <typename T> class RootSet
{
public:
    // Entries in order; null where one was removed.
    const std::vector<T*>& Entries() const { return m_entries; }

    bool Has(T* root) const { return m_indices.count(root) != 0; }
    size_t Size() const { return m_indices.size(); }

    // Nothing for null and for what is in it. When memory is refused, the set stays as it was.
    void Add(T* root)
    {
        if (root == nullptr || Has(root))
            return;
        m_entries.push_back(root);
        try
        {
            m_indices.emplace(root, m_entries.size() - 1);
        }
        catch (...)
        {
            m_entries.pop_back();
            throw;
        }
    }

    void Remove(T* root) // nothing for what is not in it
    {
        const auto found = m_indices.find(root);
        if (found == m_indices.end())
            return;
        m_entries[found->second] = nullptr;
        m_indices.erase(found);
        if (m_indices.size() < m_entries.size() / 2)
            CloseGaps();
    }

private:
    void CloseGaps()
    {
        size_t count = 0;
        for (T* root : m_entries)
        {
            if (root == nullptr)
                continue;
            m_indices[root] = count;
            m_entries[count++] = root;
        }
        m_entries.resize(count);
    }

    std::vector<T*> m_entries;
    std::unordered_map<T*, size_t> m_indices; // of the entries
};
} // namespace Runner
