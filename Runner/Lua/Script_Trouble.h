#pragma once
// What was running when a script failed.

#include <string>
#include <utility>
#include <vector>

struct lua_State;

namespace Runner
{
// A function that was running.
struct StackLevel
{
    std::string place;                                       // "main.lua:12: in follow"
    std::vector<std::pair<std::string, std::string>> locals; // name, value as text; in the order of their declaration
};

// Where the first failure happened, for a report. Unknown parts are empty or -1.
struct ScriptTrouble
{
    int called = -1;               // the reference of the function that the engine was to run
    int camera = -1;               // whose callback ran
    std::string object;            // the name of the object whose event ran
    std::string value;             // the error itself, when it is no text
    std::vector<StackLevel> stack; // the innermost first
};

// The Lua functions that run, at most 20, with their local variables. To be called by a C function that Lua calls. Runs
// nothing of a script.
std::vector<StackLevel> RunningFunctions(lua_State* L);
} // namespace Runner
