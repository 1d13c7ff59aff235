#include "Runner/Lua/Value_Text.h"

#include "Runner/Lua/Self.h"
#include "Runner/World/Instance.h"

#include <lua.hpp>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace Runner
{
namespace
{
constexpr size_t ENTRIES_LOOKED_AT = 200; // of a table

// The length of the UTF-8 sequence at the start of the text; 0 when there is none.
size_t SequenceLength(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const size_t length = lead < 0x80 ? 1 : lead >= 0xF0 && lead < 0xF8 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead >= 0xF8 || length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            return 0;
    return length;
}

bool IsControl(std::string_view sequence)
{
    const auto lead = static_cast<unsigned char>(sequence[0]);
    const bool isC1 = lead == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0;
    return lead < 0x20 || lead == 0x7F || isC1;
}

// A string without its line's end, quoted. Its start is enough: the whole text is cut.
std::string Quoted(lua_State* L, int index)
{
    size_t size = 0;
    const char* const text = lua_tolstring(L, index, &size);
    return "\"" + Cut({text, size}) + "\"";
}

std::string NumberText(lua_State* L, int index)
{
    char text[40];
    if (lua_isinteger(L, index) != 0)
        std::snprintf(text, sizeof(text), LUA_INTEGER_FMT, lua_tointeger(L, index));
    else
        std::snprintf(text, sizeof(text), "%.14g", lua_tonumber(L, index));
    return text;
}

std::string FunctionText(lua_State* L, int index)
{
    lua_Debug about;
    lua_pushvalue(L, index);
    lua_getinfo(L, ">S", &about);
    if (*about.what == 'C')
        return "a function of the Runner or of Lua";
    return "function of " + std::string(about.short_src) + ":" + std::to_string(about.linedefined);
}

std::string UserdataText(lua_State* L, int index)
{
    int id = 0;
    if (!SelfIdentifier(L, index, id))
        return luaL_typename(L, index);
    const Instance* const instance = SelfAt(L, index);
    return "instance " + std::to_string(id) +
           (instance == nullptr ? ", which no longer exists" : " (" + Cut(instance->type.name, 30) + ")");
}

// Everything but the content of a table.
std::string PlainText(lua_State* L, int index)
{
    switch (lua_type(L, index))
    {
    case LUA_TNIL: return "nil";
    case LUA_TBOOLEAN: return lua_toboolean(L, index) != 0 ? "true" : "false";
    case LUA_TNUMBER: return NumberText(L, index);
    case LUA_TSTRING: return Quoted(L, index);
    case LUA_TTABLE: return "{...}";
    case LUA_TFUNCTION: return FunctionText(L, index);
    case LUA_TTHREAD: return "a coroutine";
    default: return UserdataText(L, index);
    }
}

std::string KeyText(lua_State* L, int index)
{
    if (lua_type(L, index) != LUA_TSTRING)
        return "[" + PlainText(L, index) + "]";
    size_t size = 0;
    const char* const text = lua_tolstring(L, index, &size);
    return Cut({text, size}, 30);
}

// Entries 1, 2, 3 and so on. The index must be absolute.
size_t AddSequence(lua_State* L, int index, std::vector<std::string>& entries)
{
    lua_Integer next = 1;
    for (; next < 20 && lua_rawgeti(L, index, next) != LUA_TNIL; ++next, lua_pop(L, 1))
        entries.push_back(PlainText(L, -1));
    if (next < 20)
        lua_pop(L, 1);
    return static_cast<size_t>(next - 1);
}

// The others by their keys' texts: Lua's own order depends on where things lie. False: there are too many to look at.
bool AddOthers(lua_State* L, int index, size_t sequence, std::vector<std::string>& entries)
{
    std::vector<std::pair<std::string, std::string>> others;
    size_t looked = 0;
    for (lua_pushnil(L); lua_next(L, index) != 0; lua_pop(L, 1))
    {
        if (++looked > ENTRIES_LOOKED_AT)
        {
            lua_pop(L, 2);
            return false;
        }
        const bool isListed = lua_isinteger(L, -2) != 0 && lua_tointeger(L, -2) >= 1 &&
                              static_cast<size_t>(lua_tointeger(L, -2)) <= sequence;
        if (!isListed)
            others.emplace_back(KeyText(L, -2), PlainText(L, -1));
    }
    std::sort(others.begin(), others.end());
    for (const auto& [key, value] : others)
        entries.push_back(key + " = " + value);
    return true;
}

std::string TableText(lua_State* L, int index)
{
    std::vector<std::string> entries;
    const size_t sequence = AddSequence(L, index, entries);
    const bool isWhole = AddOthers(L, index, sequence, entries);
    std::string text = "{";
    for (const std::string& entry : entries)
        text += (text.size() > 1 ? ", " : "") + entry;
    return text + (isWhole ? "}" : text.size() > 1 ? ", ...}" : "a table of more than 200 entries}");
}
} // namespace

std::string Cut(std::string_view text, size_t limit)
{
    std::string line;
    size_t characters = 0;
    while (!text.empty() && characters < limit)
    {
        const size_t length = SequenceLength(text);
        const bool isShown = length > 0 && !IsControl(text.substr(0, length));
        line += isShown ? std::string(text.substr(0, length)) : "?";
        text.remove_prefix(std::max<size_t>(length, 1));
        ++characters;
    }
    return text.empty() ? line : line + "...";
}

std::string ValueText(lua_State* L, int index)
{
    index = lua_absindex(L, index);
    return Cut(lua_istable(L, index) ? TableText(L, index) : PlainText(L, index));
}
} // namespace Runner
