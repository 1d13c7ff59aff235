#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace Runner
{
// Things under small numbers from 0. A freed number is given again, the lowest first; things do not move.
template <typename T> class Numbered
{
public:
    int Add(T thing)
    {
        size_t number = 0;
        while (number < m_things.size() && m_things[number] != nullptr)
            number++;
        if (number == m_things.size())
            m_things.emplace_back();
        m_things[number] = std::make_unique<T>(std::move(thing));
        return static_cast<int>(number);
    }

    T* Find(int number) const // null when there is none
    {
        return number >= 0 && static_cast<size_t>(number) < m_things.size()
                   ? m_things[static_cast<size_t>(number)].get()
                   : nullptr;
    }

    T& Get(int number) const { return *m_things[static_cast<size_t>(number)]; } // an existing one

    void Remove(int number) { m_things[static_cast<size_t>(number)].reset(); } // an existing one

    // Null places are free numbers.
    const std::vector<std::unique_ptr<T>>& All() const { return m_things; }

private:
    std::vector<std::unique_ptr<T>> m_things;
};
} // namespace Runner
