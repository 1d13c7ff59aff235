#include "Runner/Lua/Map_Values.h"

#include "Runner/Lua/Self.h"

#include <lua.hpp>

namespace Runner
{
unsigned ScriptColour(const MapColour& colour)
{
    return static_cast<unsigned>(colour.red) | static_cast<unsigned>(colour.green) << 8 |
           static_cast<unsigned>(colour.blue) << 16;
}

void PushProperty(lua_State* L, const MapProperty& property)
{
    luaL_checkstack(L, LUA_MINSTACK, nullptr);
    switch (property.type)
    {
    case MapPropertyType::String:
    case MapPropertyType::File: lua_pushlstring(L, property.text.data(), property.text.size()); break;
    case MapPropertyType::Int:
    case MapPropertyType::Object: lua_pushinteger(L, static_cast<lua_Integer>(property.number)); break;
    case MapPropertyType::Float: lua_pushnumber(L, property.number); break;
    case MapPropertyType::Bool: lua_pushboolean(L, property.number != 0.0 ? 1 : 0); break;
    case MapPropertyType::Colour: lua_pushinteger(L, ScriptColour(property.colour)); break;
    case MapPropertyType::Class: PushProperties(L, property.members); break;
    }
}

void PushProperties(lua_State* L, const MapProperties& properties)
{
    lua_createtable(L, 0, static_cast<int>(properties.size()));
    for (const MapProperty& property : properties)
    {
        lua_pushlstring(L, property.name.data(), property.name.size());
        PushProperty(L, property);
        lua_rawset(L, -3);
    }
}

void SetProperties(lua_State* L, Instance& instance, const MapProperties& properties)
{
    PushSelf(L, instance);
    for (const MapProperty& property : properties)
    {
        lua_pushlstring(L, property.name.data(), property.name.size());
        PushProperty(L, property);
        lua_settable(L, -3);
    }
    lua_pop(L, 1);
}
} // namespace Runner
