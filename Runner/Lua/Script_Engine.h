#pragma once
// The script engine owns the Lua state of a game and runs its scripts.
//
// Scripts run inside Protect: no C++ exception passes through Lua and no Lua error through the module. An error that
// leaves Protect becomes the engine's failure, which stops the game; no script runs after it.

#include "Runner/Lua/Missing_Scripts.h"
#include "Runner/Lua/Numbered_Scripts.h"
#include "Runner/Lua/Script_Files.h"
#include "Runner/Lua/Script_Trouble.h"
#include "Runner/Lua/Strict_Fields.h"

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

// An error of a script, without its position. Functions that scripts call throw it; RunForLua turns it into a Lua
// error.
class ScriptError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// An error of a script whose text has the position already.
class PositionedError : public ScriptError
{
public:
    using ScriptError::ScriptError;
};

// What a game's scripts may use up.
struct ScriptLimits
{
    static constexpr size_t MEMORY_UNLESS_SET = size_t{1} << 30;

    int64_t instructions = 0;          // of Lua in one frame, the same on every machine; 0 for no limit
    size_t memory = MEMORY_UNLESS_SET; // bytes
};

class ScriptEngine
{
public:
    // random: the generator behind math.random. It must live as long as the engine.
    explicit ScriptEngine(Random& random);
    ~ScriptEngine();
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;

    static ScriptEngine* Current(); // null while there is none
    bool IsOpen() const { return m_main != nullptr; }

    NumberedScripts numbered; // the scripts of script_add
    MissingScripts missing;   // callbacks with a number that was never given
    Warnings warnings;
    StrictFields strict{warnings}; // --strict

    lua_State* Running() const { return m_running; } // the main state, or the coroutine that runs now

    // ---- files ----
    ScriptFiles files;                                             // those of the game
    bool RunMain(const std::string& file, const std::string& kit); // false: it failed, see Failure. kit: its folder
    void Include(lua_State* L, const std::string& name);           // pushes the file's result. Throws ScriptError

    // ---- values that outlive a call ----
    int Keep(lua_State* L, int index);                      // a reference to the value
    void NoteGiver(lua_State* L, int index, int reference); // for a value that was kept before and is handed over again
    void Drop(int reference);                               // ignores references below zero
    static void Push(lua_State* L, int reference);

    // ---- running scripts ----
    // Calls a kept function, with self if there is one. False: it failed. A negative reference runs nothing: true.
    bool Call(int reference, Instance* self = nullptr);

    // Runs body and catches Lua errors. False: body failed, see Failure, or did not run because of an earlier failure.
    // called: the reference of the function that body calls, if any. A C function has no lines of its own: its error
    // names the line that handed it over.
    using Body = void (*)(lua_State* L, void* context);
    bool Protect(Body body, void* context, int called = -1);

    // Makes L the running state until the guard is destroyed. A function that Lua calls holds one: L may be a
    // coroutine.
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
    void Fail(const std::string& text);                      // a failure that stands already is kept
    std::string TakeFailure();                               // clears it: scripts may run again
    const ScriptTrouble& Trouble() const { return m_trouble; }
    void KeepCoroutine(lua_State* failed) { m_raisedAgain.KeepCoroutine(failed); } // Lua calls it

    // ---- limits ----
    // Instructions and the work of Lua's own functions (Lua_Configuration.h) are counted alike. A script that has spent
    // them fails, however often it catches the error: every later instruction of it fails, too.
    void SetLimits(const ScriptLimits& limits);
    void RenewInstructions();             // a frame starts
    bool Count(int64_t work);             // answers whether the script must stop
    bool MustStop() const;                // whether it has to stop already
    void StopNext(lua_State* L);          // at the next instruction of this coroutine
    [[noreturn]] void Stop(lua_State* L); // raises the error

    // ---- interruption ----
    // A running script gets time for a frame's work and then fails, however often it catches the error. Safe in a
    // signal handler.
    static void Interrupt();
    static bool Interrupted();
    static bool GaveUp(); // whether a script has been ended for not coming back
    static void ClearInterrupt();

private:
    static constexpr int INSTRUCTIONS_BETWEEN_CHECKS = 10000;

    void StartCounting();
    static void StopCounting();
    static void* Allocate(void* engine, void* block, size_t oldSize, size_t newSize);
    static void CountHook(lua_State* L, lua_Debug* where);
    void LoadFile(lua_State* L, const std::string& name, const std::string& path);
    void Prepare(Random& random);
    std::string PositionOfGiver() const;
    bool HasSpentInstructions() const { return m_limits.instructions > 0 && m_instructions > m_limits.instructions; }
    void NoteTrouble(lua_State* L);
    void NoteEvent(int called);
    void PushStopText(lua_State* L) const;
    std::string MemoryFailure() const;
    void NoteRefusal(bool isLimit);
    void FailWith(lua_State* L, int status, int called);

    // The message handler of Protect.
    static int DescribeError(lua_State* L);

    lua_State* m_main = nullptr;
    lua_State* m_running = nullptr;
    Instance* m_self = nullptr;
    int m_called = -1;                   // the reference that Protect was given
    std::map<int, std::string> m_givers; // reference of a C function -> the position of the call that handed it over
    ScriptLimits m_limits;
    int64_t m_instructions = 0;    // of this frame so far, counted at every check
    size_t m_memory = 0;           // bytes allocated by Lua
    std::string m_refusedAt;       // the script's position at the last refused allocation
    bool m_isLimitReached = false; // by that allocation: there was memory beyond the limit
    ScriptTrouble m_trouble;
    RaisedAgain m_raisedAgain;
    std::string m_failure;
};

// "file.lua:12: " of the innermost script function that is running; empty when there is none.
std::string ScriptPosition(lua_State* L);

// Runs the body of a function that Lua calls, and raises a ScriptError or a refused allocation as a Lua error with the
// script's position. Lua's error is raised after body's locals were destroyed.
int RunForLua(lua_State* L, int (*body)(lua_State*));
} // namespace Runner
