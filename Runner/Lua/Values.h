#pragma once
// Values across the border between Lua and the host.
//
//   nil                undefined; null and unset values come back as nil as well
//   number             a real; an integer beyond 53 bits an int64. Whole reals below 2^31 come back as Lua integers
//   string, boolean    the same
//   table              a new array of its sequence part, and back; 32 levels deep at most
//   function           a callable object; the same function comes back
//   an instance's self the instance's identifier

#include "Files/LLVM/RValue.h"
#include "Runner/Lua/Script_Engine.h"

#include <string>
#include <vector>

struct lua_State;

namespace Runner
{
// A value that the host has no form for. Its text describes the value: "a coroutine".
class CannotCross : public ScriptError
{
public:
    using ScriptError::ScriptError;
    int argument = 0; // of a call, from 1; 0: not told
    int entry = 0;    // of the table that was to cross, from 1; 0: the value itself
};

// The value holds a reference of its own. Throws CannotCross.
RValue ToHost(lua_State* L, int index);

void PushFromHost(lua_State* L, const RValue& value);

// Argument values of one call, released with it and roots of the collector meanwhile. Padded with undefined values, so
// that a handler may read further than the script gave.
class HostArguments
{
public:
    static constexpr int AT_LEAST = 16; // values that every handler may read

    // Takes the values 1 to count. Throws CannotCross, with the argument's number.
    HostArguments(lua_State* L, int count, int padTo);
    ~HostArguments();
    HostArguments(const HostArguments&) = delete;
    HostArguments& operator=(const HostArguments&) = delete;

    RValue* Values() const { return m_values; }

private:
    void ReleaseAll();

    RValue m_few[AT_LEAST];
    std::vector<RValue> m_many; // when there are more
    RValue* m_values;           // the one or the other
    int m_size;
};
} // namespace Runner
