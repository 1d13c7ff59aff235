#pragma once
// The scripts of script_add by number; Script_Perform (Files/Script/Script.h) runs them.

#include <cstddef>
#include <string>
#include <vector>

namespace Runner
{
class NumberedScripts
{
public:
    // Takes a reference to a function (ScriptEngine::Keep), answers its number, from 0. name: by which a saved game
    // finds it in another version of the game; empty for none.
    int Add(int reference, const std::string& name = "");
    int Find(int number) const;                                       // the reference, -1 when there is none
    const std::vector<std::string>& Names() const { return m_names; } // by number

private:
    std::vector<int> m_references;
    std::vector<std::string> m_names;
};
} // namespace Runner
