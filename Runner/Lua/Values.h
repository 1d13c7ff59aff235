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

#include <string>
#include <vector>

struct lua_State;

namespace Runner
{
// The value holds a reference of its own. Throws ScriptError for what cannot cross, in the words "a thread".
RValue ToHost(lua_State* L, int index);

void PushFromHost(lua_State* L, const RValue& value);

// Argument values of one call, released with it and roots of the collector meanwhile. Padded with undefined values, so
// that a handler may read further than the script gave.
class HostArguments
{
public:
    static constexpr int AT_LEAST = 16; // values that every handler may read

    // Takes the values 1 to count. Throws ScriptError, in the built-in's name, for one that cannot cross.
    HostArguments(lua_State* L, const std::string& builtin, int count, int padTo);
    ~HostArguments();
    HostArguments(const HostArguments&) = delete;
    HostArguments& operator=(const HostArguments&) = delete;

    RValue* Values() { return m_values; }

private:
    void ReleaseAll();

    RValue m_few[AT_LEAST];
    std::vector<RValue> m_many; // when there are more
    RValue* m_values;           // the one or the other
    int m_size;
};
} // namespace Runner
