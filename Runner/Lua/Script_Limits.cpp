// How long scripts may run. A count hook counts Lua's instructions; luai_work counts what Lua's own functions do
// between two of them.

#include "Runner/Lua/Script_Engine.h"

#include <lua.hpp>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace Runner
{
namespace
{
constexpr int WORK_BETWEEN_CHECKS = 10000;
constexpr int CHECKS_AFTER_INTERRUPT = 1000; // ten million instructions: a frame that comes back is finished
constexpr int64_t COUNT_MOST = std::numeric_limits<int64_t>::max() / 2; // two of them can be added

volatile std::sig_atomic_t s_interrupted = 0;
int64_t s_checksLeft = 0; // before a script that runs on after the signal is ended
bool s_gaveUp = false;
lua_State* s_runs = nullptr; // the coroutine whose instructions are executed

// Takes what was counted since the last time.
int64_t TakeLuaWork()
{
    const int64_t work = std::min<int64_t>(WORK_BETWEEN_CHECKS - luaWorkLeft, COUNT_MOST);
    luaWorkLeft = WORK_BETWEEN_CHECKS;
    return work;
}
} // namespace

// ---- what Lua calls: in a state of its own, without an engine, too ----

long long luaWorkLeft = WORK_BETWEEN_CHECKS;

void CountLuaWork()
{
    const int64_t work = TakeLuaWork();
    ScriptEngine* const engine = ScriptEngine::Current();
    if (engine != nullptr && engine->Count(work) && s_runs != nullptr)
        engine->StopNext(s_runs);
}

void CountLuaWorkAndStop(lua_State* L)
{
    const int64_t work = TakeLuaWork();
    ScriptEngine* const engine = ScriptEngine::Current();
    if (engine != nullptr && engine->Count(work))
        engine->Stop(L);
}

// A coroutine that is resumed, or gets its turn back, after the instructions were spent stops at once: thousands of
// them would otherwise run unseen for as long as one does.
lua_State* LuaRuns(lua_State* L)
{
    lua_State* const before = std::exchange(s_runs, L);
    ScriptEngine* const engine = ScriptEngine::Current();
    if (engine != nullptr && L != nullptr && engine->MustStop())
        engine->StopNext(L);
    return before;
}

void LuaCoroutineFailed(lua_State* L)
{
    if (ScriptEngine* const engine = ScriptEngine::Current())
        engine->KeepCoroutine(L);
}

// ---- counting ----

void ScriptEngine::StartCounting()
{
    s_runs = m_main;
    lua_sethook(m_main, &ScriptEngine::CountHook, LUA_MASKCOUNT, INSTRUCTIONS_BETWEEN_CHECKS);
}

void ScriptEngine::StopCounting() { s_runs = nullptr; }

void ScriptEngine::RenewInstructions()
{
    m_instructions = 0;
    luaWorkLeft = WORK_BETWEEN_CHECKS;
}

bool ScriptEngine::Count(int64_t work)
{
    m_instructions = std::min(m_instructions + work, COUNT_MOST);
    if (s_interrupted != 0)
        s_checksLeft -= std::max<int64_t>(1, work / INSTRUCTIONS_BETWEEN_CHECKS);
    return MustStop();
}

bool ScriptEngine::MustStop() const { return HasSpentInstructions() || (s_interrupted != 0 && s_checksLeft < 0); }

void ScriptEngine::CountHook(lua_State* L, lua_Debug*)
{
    ScriptEngine& engine = *Current();
    const int counted = lua_gethookcount(L);
    if (engine.Count(counted))
        engine.Stop(L);
    if (counted != INSTRUCTIONS_BETWEEN_CHECKS) // the instructions of another frame were spent
        lua_sethook(L, &ScriptEngine::CountHook, LUA_MASKCOUNT, INSTRUCTIONS_BETWEEN_CHECKS);
}

// ---- stopping ----

void ScriptEngine::StopNext(lua_State* L) { lua_sethook(L, &ScriptEngine::CountHook, LUA_MASKCOUNT, 1); }

void ScriptEngine::PushStopText(lua_State* L) const
try
{
    std::string text = ScriptPosition(L) + "the script did not come back";
    if (HasSpentInstructions())
        text +=
            ": it has run " + std::to_string(m_limits.instructions / 1000000) + " million instructions in one frame";
    lua_pushlstring(L, text.data(), text.size());
}
catch (const std::bad_alloc&) // Lua calls
{
    lua_pushliteral(L, "the script did not come back");
}

// The script may catch this error. From now on every instruction of this coroutine is checked, so that the next error
// comes outside of the pcall that caught it.
void ScriptEngine::Stop(lua_State* L)
{
    StopNext(L);
    s_gaveUp = s_gaveUp || !HasSpentInstructions();
    PushStopText(L);
    lua_error(L);
    std::abort(); // lua_error does not return
}

// ---- interruption ----

void ScriptEngine::Interrupt() { s_interrupted = 1; }
bool ScriptEngine::Interrupted() { return s_interrupted != 0; }
bool ScriptEngine::GaveUp() { return s_gaveUp; }

void ScriptEngine::ClearInterrupt()
{
    s_interrupted = 0;
    s_checksLeft = CHECKS_AFTER_INTERRUPT;
    s_gaveUp = false;
}

// ---- limits ----

void ScriptEngine::SetLimits(const ScriptLimits& limits) { m_limits = limits; }

// Lua's own message for a refused allocation has no position, and no message handler runs.
std::string ScriptEngine::MemoryFailure() const
{
    const std::string text = m_refusedAt + "not enough memory";
    return m_isLimitReached ? text + ": scripts may use " + std::to_string(m_limits.memory >> 20) + " MiB" : text;
}
} // namespace Runner
