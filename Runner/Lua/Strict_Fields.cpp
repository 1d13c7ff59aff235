#include "Runner/Lua/Strict_Fields.h"

#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Value_Text.h"

#include <lua.hpp>

namespace Runner
{
namespace
{
constexpr char VARS[] = "vars";
constexpr char KIT[] = "kit/";         // the camera kit looks whether its state is there
constexpr size_t NAMES_LIMIT = 100000; // nothing is told beyond

bool ReadName(lua_State* L, int index, std::string& name)
{
    size_t size = 0;
    const char* const text = lua_type(L, index) == LUA_TSTRING ? lua_tolstring(L, index, &size) : nullptr;
    name.assign(text == nullptr ? "" : text, size);
    return text != nullptr;
}

int ReadMissing(lua_State* L)
{
    ScriptEngine::Current()->strict.NoteRead(L, 2, VARS);
    return 0;
}

int SetMissing(lua_State* L)
{
    ScriptEngine::Current()->strict.NoteSet(L, 2, VARS);
    lua_settop(L, 3);
    lua_rawset(L, 1);
    return 0;
}

template <int (*body)(lua_State*)> int Entry(lua_State* L) { return RunForLua(L, body); }
} // namespace

void StrictFields::NoteSet(lua_State* L, int name, const std::string& owner)
{
    std::string text;
    if (m_isOn && m_known.size() < NAMES_LIMIT && ReadName(L, name, text))
        m_known.emplace(owner, text);
}

void StrictFields::NoteRead(lua_State* L, int name, const std::string& owner)
{
    std::string text;
    const std::string position = m_isOn ? ScriptPosition(L) : "";
    if (!m_isOn || position.rfind(KIT, 0) == 0)
        return;
    if (m_known.size() < NAMES_LIMIT && ReadName(L, name, text) && m_known.emplace(owner, text).second)
        m_warnings.Once(position + "reads " + Cut(text) + " of " + owner + ", which no script has set");
}

void WatchVars(lua_State* L)
{
    lua_createtable(L, 0, 2);
    lua_pushcfunction(L, Entry<ReadMissing>);
    lua_setfield(L, -2, "__index");
    lua_pushcfunction(L, Entry<SetMissing>);
    lua_setfield(L, -2, "__newindex");
    lua_setmetatable(L, -2);
}
} // namespace Runner
