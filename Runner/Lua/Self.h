#pragma once
// A self is the value by which a script holds an instance, such as the argument of an event. It has the fields of the
// host and the variables that the script adds. It outlives its instance: the variables and id stay readable, the other
// fields are refused then.

#include <string>

struct lua_State;

namespace Runner
{
class Instance;

void OpenSelves(lua_State* L); // once per state

// Pushes the self of the instance: the same value each time.
void PushSelf(lua_State* L, Instance& instance);

// Pushes the table of the variables that scripts gave the instance, name to value; nil when there are none.
void PushVariables(lua_State* L, const Instance& instance);
void SetVariables(lua_State* L, Instance& instance, int table); // the table becomes the instance's, it is not copied

// The instance of a self; null when the value is no self or the instance no longer exists.
Instance* SelfAt(lua_State* L, int index);

// Reads the identifier of a self, also when the instance no longer exists. False: the value is no self.
bool SelfIdentifier(lua_State* L, int index, int& id);

// Detaches the self from an instance that is about to be removed.
void DropSelf(Instance& instance);
// The complaint about a number that is neither a sprite nor NO_SPRITE, to go after a name.
std::string NoSuchSprite(int sprite);
} // namespace Runner
