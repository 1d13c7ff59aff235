#pragma once
// Scripts by number, as Script_Perform runs them (Files/Script/Script.h).

#include <cstddef>
#include <vector>

namespace Runner
{
class NumberedScripts
{
public:
    int Add(int reference);     // a Lua reference to a function; answers its number, from 0
    int Find(int number) const; // the reference, -1 when there is none

private:
    std::vector<int> m_references;
};
} // namespace Runner
