#pragma once
// Lines about what is legal and surely a mistake. The console shows them, and the end of the run tells how many.

#include <cstddef>
#include <set>
#include <string>

namespace Runner
{
class Warnings
{
public:
    static constexpr size_t LINES_AT_MOST = 200; // of Once in a game; then one last line says that the rest is not told

    void Tell(const std::string& line); // "warning: " goes before it
    void Once(const std::string& line); // a line that was told already is not told again
    size_t Count() const { return m_count; }

private:
    std::set<std::string> m_told; // at most LINES_AT_MOST
    size_t m_count = 0;
};
} // namespace Runner
