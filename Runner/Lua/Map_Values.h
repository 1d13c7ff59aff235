#pragma once
// What an editor's map says, as values of Lua.

#include "Runner/World/Map_Model.h"

struct lua_State;

namespace Runner
{
class Instance;

// A whole number, a number, a flag or a text; a colour as scripts have colours, without its alpha; an object as its
// number in the map, 0 for none; a class as a table of its members.
void PushProperty(lua_State* L, const MapProperty& property);
void PushProperties(lua_State* L, const MapProperties& properties); // a new table, by name

// A property whose name is a field of instances sets that field, any other becomes a variable. Throws ScriptError for a
// field that cannot be set or does not take the value.
void SetProperties(lua_State* L, Instance& instance, const MapProperties& properties);

unsigned ScriptColour(const MapColour& colour);
} // namespace Runner
