#include "Runner/Lua/Settings_Table.h"

#include "Runner/Base/Printable.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Script_Engine.h"

#include <lua.hpp>

namespace Runner
{
namespace
{
constexpr char TABLE[] = "settings";

void PushSetting(lua_State* L, const Setting& value)
{
    if (const bool* const truth = std::get_if<bool>(&value))
        lua_pushboolean(L, *truth ? 1 : 0);
    else if (const int64_t* const whole = std::get_if<int64_t>(&value))
        lua_pushinteger(L, *whole);
    else if (const double* const real = std::get_if<double>(&value))
        lua_pushnumber(L, *real);
    else
    {
        const std::string& text = std::get<HeldText>(value);
        lua_pushlstring(L, text.data(), text.size());
    }
}

std::string NameAt(lua_State* L, int index)
{
    size_t size = 0;
    const char* const text = lua_type(L, index) == LUA_TSTRING ? lua_tolstring(L, index, &size) : nullptr;
    if (size == 0 || size > SETTING_NAME_LIMIT)
        throw ScriptError("settings: a name is a string of 1 to " + std::to_string(SETTING_NAME_LIMIT) +
                          " bytes, got " + DescribeAt(L, index));
    return {text, size};
}

Setting SettingAt(lua_State* L, int index, const std::string& name)
{
    size_t size = 0;
    switch (lua_type(L, index))
    {
    case LUA_TBOOLEAN: return lua_toboolean(L, index) != 0;
    case LUA_TNUMBER:
        if (lua_isinteger(L, index) != 0)
            return int64_t{lua_tointeger(L, index)};
        return lua_tonumber(L, index);
    case LUA_TSTRING:
        if (const char* const text = lua_tolstring(L, index, &size); size <= SETTING_TEXT_LIMIT)
            return std::string(text, size);
        break;
    default: break;
    }
    throw ScriptError("settings." + Printable(name) + " is a number, true, false or a string of at most " +
                      std::to_string(SETTING_TEXT_LIMIT) + " bytes, got " + DescribeAt(L, index));
}

// Goes through the table without its metamethods.
void ReadTable(lua_State* L, void* context)
{
    auto& settings = *static_cast<Settings*>(context);
    lua_pushglobaltable(L);
    lua_pushstring(L, TABLE);
    if (lua_rawget(L, -2) != LUA_TTABLE)
        throw ScriptError("settings is a table, got " + DescribeAt(L, -1));
    const int table = lua_gettop(L);
    for (lua_pushnil(L); lua_next(L, table) != 0; lua_pop(L, 1))
    {
        if (settings.size() == SETTINGS_LIMIT)
            throw ScriptError("settings has more than " + std::to_string(SETTINGS_LIMIT) + " entries");
        const std::string name = NameAt(L, -2);
        settings[name] = SettingAt(L, -1, name);
    }
}

void FillTable(lua_State* L, const Settings& settings)
{
    for (const auto& [name, value] : settings)
    {
        lua_pushlstring(L, name.data(), name.size());
        PushSetting(L, value);
        lua_rawset(L, -3);
    }
}

// The table stays the same one, because scripts may hold it.
void ReplaceEntries(lua_State* L, void* context)
{
    lua_pushglobaltable(L);
    lua_pushstring(L, TABLE);
    if (lua_rawget(L, -2) != LUA_TTABLE)
        return OpenSettings(L, *static_cast<const Settings*>(context));
    const int table = lua_gettop(L);
    for (lua_pushnil(L); lua_next(L, table) != 0;)
    {
        lua_pop(L, 1);
        lua_pushvalue(L, -1);
        lua_pushnil(L);
        lua_rawset(L, table);
    }
    FillTable(L, *static_cast<const Settings*>(context));
}
} // namespace

void OpenSettings(lua_State* L, const Settings& settings)
{
    lua_newtable(L);
    FillTable(L, settings);
    lua_setglobal(L, TABLE);
}

bool ReplaceSettings(ScriptEngine& engine, Settings settings) { return engine.Protect(ReplaceEntries, &settings); }

bool TakeSettings(ScriptEngine& engine, Settings& settings)
{
    settings.clear();
    return engine.Protect(ReadTable, &settings);
}
} // namespace Runner
