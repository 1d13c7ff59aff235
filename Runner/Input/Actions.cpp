#include "Runner/Input/Actions.h"

#include <algorithm>

namespace Runner
{
const Action* Actions::Find(std::string_view name) const
{
    const auto found =
        std::find_if(m_actions.begin(), m_actions.end(), [name](const Action& action) { return action.name == name; });
    return found == m_actions.end() ? nullptr : &*found;
}

bool Actions::Add(const Action& action)
{
    if (const Action* before = Find(action.name))
    {
        m_actions[static_cast<size_t>(before - m_actions.data())] = action;
        return true;
    }
    if (m_actions.size() == LIMIT)
        return false;
    m_actions.push_back(action);
    return true;
}
} // namespace Runner
