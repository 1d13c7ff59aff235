#pragma once
// Numbers of one version of a game as those of another, by the names that both give.

#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
class NameMatches
{
public:
    // Names by number; empty for what was given none. keepNumbers: what has no name on either side keeps its number.
    NameMatches(const std::vector<std::string>& then, const std::vector<std::string>& now, bool keepNumbers);

    int Find(int32_t number) const;                   // -1: it has no counterpart
    const std::string& OldName(int32_t number) const; // empty for none, and for a number that names nothing

private:
    std::vector<std::string> m_names; // then
    std::vector<int> m_numbers;       // now, by the number then
};
} // namespace Runner
