// tostring, print and string.format without addresses, which differ between runs: a game's decisions could depend on
// them. The sign of a NaN, which differs between processors, is kept out of Lua's conversions themselves.

#include "Runner/Host/Console.h"
#include "Runner/Lua/Sandbox.h"
#include "Runner/Lua/Script_Engine.h"

#include <lua.hpp>

#include <cstring>
#include <string>
#include <string_view>

namespace Runner
{
namespace
{
constexpr size_t WORK_OF_A_LINE = 400; // on the console, in instructions

bool ShowsAddress(lua_State* L, int index)
{
    const int type = lua_type(L, index);
    const bool isPlain = type == LUA_TNIL || type == LUA_TBOOLEAN || type == LUA_TNUMBER || type == LUA_TSTRING;
    if (isPlain || luaL_getmetafield(L, index, "__tostring") == LUA_TNIL)
        return !isPlain;
    lua_pop(L, 1);
    return false;
}

// Pushes the text of the value.
const char* PushTextOf(lua_State* L, int index, size_t* size)
{
    if (!ShowsAddress(L, index))
        return luaL_tolstring(L, index, size);
    lua_pushstring(L, luaL_typename(L, index));
    return lua_tolstring(L, -1, size);
}

int ToString(lua_State* L)
{
    luaL_checkany(L, 1);
    PushTextOf(L, 1, nullptr);
    return 1;
}

int PrintValues(lua_State* L)
{
    std::string line;
    const int count = lua_gettop(L);
    for (int i = 1; i <= count; ++i)
    {
        size_t size = 0;
        const char* text = PushTextOf(L, i, &size);
        line.append(i > 1 ? "\t" : "").append(text, size);
        lua_pop(L, 1);
    }
    line += '\n';
    luai_work(WORK_OF_A_LINE + line.size() / 4);
    PrintLog(line);
    return 0;
}

int Print(lua_State* L) { return RunForLua(L, PrintValues); }

// Whether the format has a %p, also behind a zero byte: Lua reads on there as well.
bool AsksForAddress(std::string_view format)
{
    for (size_t percent = format.find('%'); percent != std::string_view::npos; percent = format.find('%', percent))
    {
        percent = format.find_first_not_of("-+ #0123456789.", percent + 1);
        if (percent == std::string_view::npos)
            return false;
        if (format[percent++] == 'p')
            return true;
    }
    return false;
}

// string.format. Upvalue 1: Lua's string.format.
int Format(lua_State* L)
{
    size_t size = 0;
    const char* format = luaL_checklstring(L, 1, &size);
    if (AsksForAddress({format, size}))
        return luaL_error(L, "string.format() - %%p is not available to games");
    for (int i = lua_gettop(L); i > 1; --i)
    {
        if (!ShowsAddress(L, i))
            continue;
        lua_pushstring(L, luaL_typename(L, i));
        lua_replace(L, i);
    }
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_insert(L, 1);
    lua_call(L, lua_gettop(L) - 1, 1);
    return 1;
}
} // namespace

void OpenSafeText(lua_State* L)
{
    lua_register(L, "tostring", ToString);
    lua_register(L, "print", Print);
    lua_getglobal(L, "string");
    lua_getfield(L, -1, "format");
    lua_pushcclosure(L, Format, 1);
    lua_setfield(L, -2, "format");
    lua_pop(L, 1);
}
} // namespace Runner
