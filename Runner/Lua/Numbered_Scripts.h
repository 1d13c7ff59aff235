#pragma once
// The scripts of script_add by number; Script_Perform (Files/Script/Script.h) runs them.

#include <cstddef>
#include <vector>

namespace Runner
{
class NumberedScripts
{
public:
    int Add(int reference);     // takes a reference to a function (ScriptEngine::Keep), answers its number, from 0
    int Find(int number) const; // the reference, -1 when there is none

private:
    std::vector<int> m_references;
};
} // namespace Runner
