#pragma once
// Lua values in the words of an error report. Nothing of a script runs: no metamethod is asked.

#include <string>
#include <string_view>

struct lua_State;

namespace Runner
{
constexpr size_t VALUE_TEXT_LIMIT = 60; // characters

// The text made safe for one line: control characters become '?', what is no UTF-8 too, and a text of more than `limit`
// characters is cut there and ends with "...". However long it is, only its start is looked at.
std::string Cut(std::string_view text, size_t limit = VALUE_TEXT_LIMIT);

// The value at the index, cut to VALUE_TEXT_LIMIT characters. A table shows its first entries, and tables in it as
// {...}; an instance its number and its object; a function where it stands. Needs three free slots of the stack.
std::string ValueText(lua_State* L, int index);
} // namespace Runner
