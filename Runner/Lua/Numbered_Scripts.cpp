#include "Runner/Lua/Numbered_Scripts.h"

namespace Runner
{
int NumberedScripts::Add(int reference, const std::string& name)
{
    m_references.push_back(reference);
    m_names.push_back(name);
    return static_cast<int>(m_references.size()) - 1;
}

int NumberedScripts::Find(int number) const
{
    const bool exists = number >= 0 && static_cast<size_t>(number) < m_references.size();
    return exists ? m_references[static_cast<size_t>(number)] : -1;
}
} // namespace Runner
