#include "Runner/Lua/Script_Trouble.h"

#include "Runner/Lua/Value_Text.h"

#include <lua.hpp>

namespace Runner
{
namespace
{
constexpr size_t LEVELS_SHOWN = 20;
constexpr int LEVELS_LOOKED_AT = 100; // with functions that are not Lua's
constexpr int LOCALS_SHOWN = 50;      // of one function; Lua has 200 at most

std::string Place(const lua_Debug& frame)
{
    const std::string name = frame.name != nullptr ? Cut(frame.name)
                             : *frame.what == 'm'  ? "the file"
                                                   : "a function of line " + std::to_string(frame.linedefined);
    return std::string(frame.short_src) + ":" + std::to_string(frame.currentline) + ": in " + name;
}

// Lua's own, such as the state of a loop, have a bracket in their names.
void AddLocals(lua_State* L, const lua_Debug& frame, StackLevel& level)
{
    for (int i = 1; i <= LOCALS_SHOWN; ++i)
    {
        const char* const name = lua_getlocal(L, &frame, i);
        if (name == nullptr)
            return;
        if (*name != '(')
            level.locals.emplace_back(Cut(name), ValueText(L, -1));
        lua_pop(L, 1);
    }
}
} // namespace

std::vector<StackLevel> RunningFunctions(lua_State* L)
{
    std::vector<StackLevel> levels;
    lua_Debug frame;
    for (int i = 0; i < LEVELS_LOOKED_AT && levels.size() < LEVELS_SHOWN && lua_getstack(L, i, &frame) != 0; ++i)
    {
        lua_getinfo(L, "nSl", &frame);
        if (frame.currentline <= 0)
            continue;
        StackLevel level;
        level.place = Place(frame);
        AddLocals(L, frame, level);
        levels.push_back(std::move(level));
    }
    return levels;
}
} // namespace Runner
