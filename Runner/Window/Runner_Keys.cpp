#include "Runner/Window/Runner_Keys.h"

#include "Runner/Base/Printable.h"
#include "Runner/Input/Input_Names.h"

#include <algorithm>
#include <cstddef>

namespace Runner
{
namespace
{
int FindCommand(const std::string& name)
{
    for (int i = 0; i < COMMAND_COUNT; ++i)
        if (name == COMMANDS[i].name)
            return i;
    return NO_NAME;
}

std::string CommandNames()
{
    std::string names;
    for (const CommandHead& command : COMMANDS)
        names += std::string(names.empty() ? "" : ", ") + command.name;
    return names;
}
} // namespace

RunnerKeys::RunnerKeys()
{
    for (size_t i = 0; i < m_keys.size(); ++i)
        m_keys[i] = FindKey(COMMANDS[i].key);
}

std::string RunnerKeys::Move(const std::string& text)
{
    for (size_t start = 0; start <= text.size();)
    {
        const size_t end = std::min(text.find(',', start), text.size());
        const std::string part = text.substr(start, end - start);
        const size_t equals = std::min(part.find('='), part.size());
        const int command = FindCommand(part.substr(0, equals));
        if (command == NO_NAME || equals == part.size())
            return "\"" + Printable(part) + "\" moves no key: give NAME=KEY, where NAME is one of " + CommandNames();
        const std::string name = part.substr(equals + 1);
        const int key = FindKey(name);
        if (key == NO_NAME && !name.empty())
            return "there is no key \"" + Printable(name) + "\"";
        m_keys[static_cast<size_t>(command)] = key;
        start = end + 1;
    }
    return "";
}

bool RunnerKeys::Find(int key, Command& command) const
{
    const auto found = std::find(m_keys.begin(), m_keys.end(), key);
    if (key == NO_NAME || found == m_keys.end())
        return false;
    command = static_cast<Command>(found - m_keys.begin());
    return true;
}
} // namespace Runner
