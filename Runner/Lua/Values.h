#pragma once
// Conversion of values between Lua and the host.
//
//   nil                undefined; undefined, null and unset values become nil
//   number             a real; an integer of more than 53 bits an int64. Whole reals below 2^31 become Lua integers
//   string, boolean    a string, a bool
//   table              a new array of the elements 1 to #table; an array becomes a new table. 32 levels deep at most
//   function           a callable object, which becomes the same function again
//   an instance's self the instance's identifier

#include "Files/LLVM/RValue.h"
#include "Runner/Lua/Script_Engine.h"

#include <string>
#include <vector>

struct lua_State;

namespace Runner
{
// Thrown for a value that has no host form. The text describes the value: "a coroutine".
class CannotCross : public ScriptError
{
public:
    using ScriptError::ScriptError;
    int argument = 0; // of a call, from 1; 0: the value is no argument
    int entry = 0;    // of the table that was converted, from 1; 0: it is the value itself
};

// The result holds a reference of its own: give it to Release. Throws CannotCross.
RValue ToHost(lua_State* L, int index);

void PushFromHost(lua_State* L, const RValue& value);

// The arguments of one call as host values: roots of the collector until the destructor releases them. They are padded
// with undefined values, so that a handler may read further than the script gave.
class HostArguments
{
public:
    static constexpr int AT_LEAST = 16; // values that every handler may read

    // Converts the stack's values 1 to count. Throws CannotCross with the number of the argument.
    HostArguments(lua_State* L, int count, int padTo);
    ~HostArguments();
    HostArguments(const HostArguments&) = delete;
    HostArguments& operator=(const HostArguments&) = delete;

    RValue* Values() const { return m_values; }

private:
    void ReleaseAll();

    RValue m_few[AT_LEAST];
    std::vector<RValue> m_many; // used instead of m_few when there are more
    RValue* m_values;           // m_few or the elements of m_many
    int m_size;
};
} // namespace Runner
