#pragma once
// --strict: reading a variable that no script has ever set is a warning. An object's variables are those of all of its
// instances.

#include "Runner/Lua/Warnings.h"

#include <set>
#include <string>
#include <utility>

struct lua_State;

namespace Runner
{
class StrictFields
{
public:
    explicit StrictFields(Warnings& warnings) : m_warnings(warnings) {}

    void SwitchOn() { m_isOn = true; }
    bool IsOn() const { return m_isOn; }

    // owner: "object \"ball\"" or "vars". The name is the string at that index; other keys are not looked at.
    void NoteSet(lua_State* L, int name, const std::string& owner);
    void NoteRead(lua_State* L, int name, const std::string& owner); // warns once when nobody has set it

private:
    Warnings& m_warnings;
    bool m_isOn = false;
    std::set<std::pair<std::string, std::string>> m_known; // owner, name: set, or told
};

// Makes the table at the top of the stack, vars, tell what is set and read in it.
void WatchVars(lua_State* L);
} // namespace Runner
