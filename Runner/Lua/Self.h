#pragma once
// What events get: an instance as a script sees it, with the fields that the host keeps and the variables that the
// script adds. The value outlives the instance: the variables stay, the host's fields are refused then, except id.

#include <string>

struct lua_State;

namespace Runner
{
class Instance;

void OpenSelves(lua_State* L); // once per state

// The same value each time for the same instance.
void PushSelf(lua_State* L, Instance& instance);

// The script's variables of the instance as a table, name to value; nil when it has none.
void PushVariables(lua_State* L, const Instance& instance);
void SetVariables(lua_State* L, Instance& instance, int table); // takes the table over

// The instance behind a value, null when it is no self or the instance is gone.
Instance* SelfAt(lua_State* L, int index);

// The identifier behind a self value, also when the instance is gone. False when the value is none.
bool SelfIdentifier(lua_State* L, int index, int& id);

// The instance goes: its value stays, empty.
void DropSelf(Instance& instance);
// The complaint about a number that is neither a sprite nor NO_SPRITE, to go after a name.
std::string NoSuchSprite(int sprite);
} // namespace Runner
