#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace Runner
{
// A table of things under small numbers, from 0. Add gives the lowest free number, so a freed number is given again.
// Things keep their address until they are removed.
template <typename T> class Numbered
{
public:
    int LowestFree()
    {
        while (m_lowestFree < m_things.size() && m_things[m_lowestFree] != nullptr)
            m_lowestFree++;
        return static_cast<int>(m_lowestFree);
    }

    int Add(T thing)
    {
        const int number = LowestFree();
        AddAt(number, std::move(thing));
        return number;
    }

    // Under a number that is free, 0 or more. The table grows to hold it: a pointer for each lower number.
    void AddAt(int number, T thing)
    {
        const auto slot = static_cast<size_t>(number);
        if (slot >= m_things.size())
            m_things.resize(slot + 1);
        m_things[slot] = std::make_unique<T>(std::move(thing));
    }

    T* Find(int number) const // null when there is none
    {
        return number >= 0 && static_cast<size_t>(number) < m_things.size()
                   ? m_things[static_cast<size_t>(number)].get()
                   : nullptr;
    }

    T& Get(int number) const { return *m_things[static_cast<size_t>(number)]; } // an existing one

    void Remove(int number) // an existing one
    {
        m_things[static_cast<size_t>(number)].reset();
        m_lowestFree = std::min(m_lowestFree, static_cast<size_t>(number));
    }

    // By number; null under a free one.
    const std::vector<std::unique_ptr<T>>& All() const { return m_things; }

private:
    std::vector<std::unique_ptr<T>> m_things;
    size_t m_lowestFree = 0; // every lower number is taken
};
} // namespace Runner
