#pragma once
// The Lua state of a game.
//
// No C++ exception ever passes through Lua, and no Lua error through the module: scripts run inside Protect, and what
// goes wrong there becomes the engine's failure, which stops the game. After a failure no script runs any more.

#include "Runner/Base/Hash.h"
#include "Runner/Lua/Missing_Scripts.h"
#include "Runner/Lua/Numbered_Scripts.h"

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>

struct lua_Debug;
struct lua_State;

namespace Runner
{
class Instance;
class Random;

// What a script did wrong, without its position. Thrown by the functions that scripts call, inside Runner/Lua only.
class ScriptError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Likewise, with the position in the text already.
class PositionedError : public ScriptError
{
public:
    using ScriptError::ScriptError;
};

class ScriptEngine
{
public:
    // random: what math.random draws from. Lives as long as the engine.
    explicit ScriptEngine(Random& random);
    ~ScriptEngine();
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;

    static ScriptEngine* Current(); // null while there is none
    bool IsOpen() const { return m_main != nullptr; }

    NumberedScripts numbered; // callbacks that scripts gave as numbers
    MissingScripts missing;   // callbacks with a number that was never given

    lua_State* Running() const { return m_running; } // the main state, or the coroutine that runs now

    // ---- files; names are relative to the main file's directory ----
    bool RunMain(const std::string& file);                   // false: see Failure
    void Include(lua_State* L, const std::string& name);     // pushes the file's result. Throws ScriptError
    std::string PathOf(const std::string& name) const;       // of a file that belongs to the game. Throws ScriptError
    uint64_t Fingerprint() const { return m_files.Value(); } // of the names and texts of all files run so far

    // ---- values that outlive a call ----
    int Keep(lua_State* L, int index);                      // a reference to the value
    void NoteGiver(lua_State* L, int index, int reference); // a script hands over a value that was kept before
    void Drop(int reference);                               // takes the ones below zero
    static void Push(lua_State* L, int reference);

    // ---- running scripts ----
    // Calls a kept function, with self when that is given. True for a negative reference: there is nothing to run.
    bool Call(int reference, Instance* self = nullptr);

    // Runs body inside Lua's protection. False: it failed, see Failure; or an earlier failure stands, and it did not
    // run.
    // called: the kept function that body calls. When that is a C function, its error names the line that gave it.
    using Body = void (*)(lua_State* L, void* context);
    bool Protect(Body body, void* context, int called = -1);

    // The function that Lua calls runs in the coroutine L until the guard goes.
    class RunningGuard
    {
    public:
        RunningGuard(ScriptEngine& engine, lua_State* L) : m_engine(engine), m_before(engine.m_running)
        {
            engine.m_running = L;
        }
        ~RunningGuard() { m_engine.m_running = m_before; }
        RunningGuard(const RunningGuard&) = delete;
        RunningGuard& operator=(const RunningGuard&) = delete;

    private:
        ScriptEngine& m_engine;
        lua_State* m_before;
    };

    // The instance whose event runs; null outside events.
    Instance* Self() const { return m_self; }

    // ---- failure ----
    bool Failed() const { return !m_failure.empty(); }
    const std::string& Failure() const { return m_failure; } // one line, with file and line of the script
    void Fail(const std::string& text);                      // the first one stays
    std::string TakeFailure();                               // and scripts may run again

    // Makes running scripts fail soon. May be called from a signal handler.
    static void Interrupt();
    static bool Interrupted();
    static void ClearInterrupt();

private:
    static void* Allocate(void* engine, void* block, size_t oldSize, size_t newSize);
    static void CheckInterrupt(lua_State* L, lua_Debug* where);
    void LoadFile(lua_State* L, const std::string& path, const std::string& shownName);
    void Prepare(Random& random);
    std::string PositionOfGiver() const;

    // For error messages that Lua makes: runs inside Protect.
    static int DescribeError(lua_State* L);

    lua_State* m_main = nullptr;
    lua_State* m_running = nullptr;
    Instance* m_self = nullptr;
    int m_called = -1;                   // the kept function that Protect runs
    std::map<int, std::string> m_givers; // reference of a C function -> the position of the call that handed it over
    size_t m_memory = 0;                 // bytes that Lua holds
    std::string m_directory; // of the main file, with a separator at its end; empty for the working directory
    std::string m_failure;
    Hash m_files;
};

// "file.lua:12: " of the innermost script function that is running; empty when there is none.
std::string ScriptPosition(lua_State* L);

// For functions that Lua calls: runs body, which may throw, and raises what it threw as an error with the script's
// position. Everything that body made is gone by then.
int RunForLua(lua_State* L, int (*body)(lua_State*));
} // namespace Runner
