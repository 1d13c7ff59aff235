#pragma once
// What was running when a script failed.

#include <optional>
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
    int called = -1;                      // the reference of the function that the engine was to run
    int camera = -1;                      // whose callback ran
    std::string object;                   // the name of the object whose event ran
    std::string value;                    // the error itself, when it is no text
    std::vector<StackLevel> stack;        // the innermost first
    const lua_State* outermost = nullptr; // the coroutine, or the main state, whose functions end the stack
};

// The Lua functions that run, at most 20, with their local variables. To be called by a C function that Lua calls. Runs
// nothing of a script.
std::vector<StackLevel> RunningFunctions(lua_State* L);

// An error that leaves a coroutine, or an event that a script's call has run, is raised again outside of it, where the
// functions that it came from run no more. Its trouble is kept here until then.
class RaisedAgain
{
public:
    void KeepEvent(const std::string& error, const ScriptTrouble& trouble);
    void KeepCoroutine(lua_State* failed); // its error is on the top of its stack
    void Forget() { m_kept.reset(); }

    // The trouble of the error at this index, when that is the one that was kept: the same value, or a text that ends
    // with it ("story.lua:8: story.lua:3: no hero"). The functions that run in L now are added to its stack.
    std::optional<ScriptTrouble> Find(lua_State* L, int index) const;

private:
    struct Kept
    {
        std::string text;
        const void* value = nullptr; // of an error that is no text
        ScriptTrouble trouble;
    };
    bool IsKept(lua_State* L, int index) const;

    std::optional<Kept> m_kept; // the last one
};
} // namespace Runner
