#include "Runner/Save/Name_Matches.h"

#include <algorithm>
#include <map>

namespace Runner
{
namespace
{
std::map<std::string, std::vector<int>> NumbersByName(const std::vector<std::string>& names)
{
    std::map<std::string, std::vector<int>> numbers;
    for (size_t i = 0; i < names.size(); ++i)
        numbers[names[i]].push_back(static_cast<int>(i));
    return numbers;
}
} // namespace

// Of several with one name the first is the first, the second the second, as long as there are as many on both sides.
NameMatches::NameMatches(const std::vector<std::string>& then, const std::vector<std::string>& now, bool keepNumbers)
    : m_names(then), m_numbers(then.size(), -1)
{
    const auto before = NumbersByName(then), after = NumbersByName(now);
    for (const auto& [name, numbers] : before)
    {
        const auto found = after.find(name);
        if (name.empty() || found == after.end() || found->second.size() != numbers.size())
            continue;
        for (size_t i = 0; i < numbers.size(); ++i)
            m_numbers[static_cast<size_t>(numbers[i])] = found->second[i];
    }
    for (size_t i = 0; keepNumbers && i < std::min(then.size(), now.size()); ++i)
        if (then[i].empty() && now[i].empty())
            m_numbers[i] = static_cast<int>(i);
}

int NameMatches::Find(int32_t number) const
{
    const auto index = static_cast<size_t>(number);
    return number >= 0 && index < m_numbers.size() ? m_numbers[index] : -1;
}

const std::string& NameMatches::OldName(int32_t number) const
{
    static const std::string none;
    const auto index = static_cast<size_t>(number);
    return number >= 0 && index < m_names.size() ? m_names[index] : none;
}
} // namespace Runner
