#include "Runner/Lua/Warnings.h"

#include "Runner/Host/Console.h"

namespace Runner
{
void Warnings::Tell(const std::string& line)
{
    ++m_count;
    PrintLine("warning: " + line);
}

void Warnings::Once(const std::string& line)
{
    if (m_told.size() >= LINES_AT_MOST || !m_told.insert(line).second)
        return;
    Tell(line);
    if (m_told.size() == LINES_AT_MOST)
        PrintLine("further warnings are not told");
}
} // namespace Runner
