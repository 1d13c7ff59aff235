#include "Runner/Lua/Script_Trouble.h"

#include "Runner/Base/Ends_With.h"
#include "Runner/Lua/Value_Text.h"

#include <lua.hpp>

#include <algorithm>
#include <iterator>
#include <new>
#include <string_view>

namespace Runner
{
namespace
{
constexpr size_t LEVELS_SHOWN = 20;
constexpr int LEVELS_LOOKED_AT = 100; // with functions that are not Lua's
constexpr int LOCALS_SHOWN = 50;      // of one function; Lua has 200 at most
constexpr size_t TEXT_KEPT = 4096;    // bytes of an error that waits to be raised again: a copy costs, too

// In instructions of Lua: a script may catch errors without end, and each of them is described.
constexpr size_t WORK_OF_A_LEVEL = 500;
constexpr size_t WORK_OF_A_LOCAL = 10000; // a table is looked through

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

// The error at this index, when it is a text.
std::optional<std::string_view> ErrorTextAt(lua_State* L, int index)
{
    if (lua_type(L, index) != LUA_TSTRING)
        return std::nullopt;
    size_t size = 0;
    const char* const text = lua_tolstring(L, index, &size);
    return std::string_view(text, size);
}

// "main.lua:12"
std::string LineOf(const StackLevel& level) { return level.place.substr(0, level.place.find(": in ")); }
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
        luai_work(WORK_OF_A_LEVEL + level.locals.size() * WORK_OF_A_LOCAL);
        levels.push_back(std::move(level));
    }
    return levels;
}

void RaisedAgain::KeepEvent(const std::string& error, const ScriptTrouble& trouble)
{
    m_kept = Kept{error, nullptr, trouble};
}

// A coroutine may pass on what one that it resumed has failed with. Nothing here allocates in Lua: an error of the
// failed coroutine would have no handler.
void RaisedAgain::KeepCoroutine(lua_State* failed)
try
{
    const std::string_view text = ErrorTextAt(failed, -1).value_or("");
    if (text.size() > TEXT_KEPT || lua_checkstack(failed, LUA_MINSTACK) == 0)
        return Forget();
    Kept kept;
    kept.text = text;
    kept.value = kept.text.empty() ? lua_topointer(failed, -1) : nullptr;
    kept.trouble = Find(failed, -1).value_or(ScriptTrouble());
    if (kept.trouble.outermost != failed)
        kept.trouble.stack = RunningFunctions(failed);
    kept.trouble.outermost = failed;
    m_kept = std::move(kept);
}
catch (const std::bad_alloc&)
{
    Forget();
}

// A short text such as "no" may be the end of another error: only one that came with a file and a line is known by its
// end.
bool RaisedAgain::IsKept(lua_State* L, int index) const
{
    const std::optional<std::string_view> text = ErrorTextAt(L, index);
    if (!text.has_value())
        return m_kept->value != nullptr && m_kept->value == lua_topointer(L, index);
    const bool hasPosition = m_kept->text.find(": ") != std::string::npos;
    return !m_kept->text.empty() && (hasPosition ? EndsWith(*text, m_kept->text) : *text == m_kept->text);
}

// A function that fails anew at the line where it failed before raises an error of its own.
std::optional<ScriptTrouble> RaisedAgain::Find(lua_State* L, int index) const
{
    if (!m_kept.has_value() || !IsKept(L, index))
        return std::nullopt;
    ScriptTrouble trouble = m_kept->trouble;
    std::vector<StackLevel> running = RunningFunctions(L);
    if (!running.empty() && !trouble.stack.empty() && LineOf(running[0]) == LineOf(trouble.stack[0]))
        return std::nullopt;
    if (trouble.outermost != L)
        trouble.stack.insert(trouble.stack.end(), std::make_move_iterator(running.begin()),
                             std::make_move_iterator(running.end()));
    trouble.stack.resize(std::min(trouble.stack.size(), LEVELS_SHOWN));
    trouble.outermost = L;
    return trouble;
}
} // namespace Runner
