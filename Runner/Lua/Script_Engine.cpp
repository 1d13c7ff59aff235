#include "Runner/Lua/Script_Engine.h"

#include "Files/Run/Run_Globals.h"
#include "Runner/Lua/Sandbox.h"
#include "Runner/Lua/Self.h"
#include "Runner/Lua/Value_Text.h"
#include "Runner/World/Instance.h"

#include <lua.hpp>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace Runner
{
namespace
{
constexpr char NO_MEMORY[] = "not enough memory";
constexpr size_t BYTES_OF_A_COLLECTION_UNIT = 16;    // Lua collects everything before it gives up on an allocation
constexpr char INCLUDED_FILES[] = "runner.included"; // registry: name -> { result }

ScriptEngine* s_current = nullptr;

int PushText(lua_State* L, const std::string& text)
{
    lua_pushlstring(L, text.data(), text.size());
    return 1;
}

// Whether the text contains a position such as "name:12:".
bool HasPosition(const std::string& text)
{
    for (size_t colon = text.find(':'); colon != std::string::npos; colon = text.find(':', colon + 1))
    {
        const size_t end = text.find_first_not_of("0123456789", colon + 1);
        if (end != std::string::npos && end > colon + 1 && text[end] == ':')
            return true;
    }
    return false;
}

// The text after a byte-order mark and after a first line for the shell (#!), whose line end stays: lines keep their
// numbers.
std::string_view WithoutPreamble(std::string_view text)
{
    constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
    if (text.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
        text.remove_prefix(BYTE_ORDER_MARK.size());
    if (text.substr(0, 1) == "#")
        text.remove_prefix(std::min(text.find('\n'), text.size()));
    return text;
}

// The file of the innermost script function that is running; empty when there is none.
std::string RunningFile(lua_State* L)
{
    lua_Debug frame;
    for (int level = 0; lua_getstack(L, level, &frame) != 0; ++level)
    {
        lua_getinfo(L, "Sl", &frame);
        if (frame.currentline > 0 && frame.source[0] == '@')
            return frame.source + 1;
    }
    return "";
}

struct ProtectedCall
{
    ScriptEngine::Body body;
    void* context;
};

int RunProtected(lua_State* L)
{
    return RunForLua(L,
                     [](lua_State* state)
                     {
                         const auto* call = static_cast<const ProtectedCall*>(lua_touserdata(state, 1));
                         call->body(state, call->context);
                         return 0;
                     });
}

// Lua calls this for an error outside of every protected call, and would end the process without a word afterwards.
// There the Runner only moves values, so that a refused allocation is the one error that can come.
int LeaveUnprotected(lua_State* L)
{
    const char* const text = lua_type(L, -1) == LUA_TSTRING ? lua_tostring(L, -1) : "";
    if (std::strcmp(text, NO_MEMORY) != 0)
        std::fprintf(stderr, "runner: an error outside of the scripts: %s\n", text);
    throw std::bad_alloc();
}

// False: body threw, and its message is on the stack.
bool RunAndCatch(lua_State* L, int (*body)(lua_State*), int& results)
{
    try
    {
        results = body(L);
        return true;
    }
    catch (const PositionedError& error)
    {
        PushText(L, error.what());
    }
    catch (const ScriptError& error)
    {
        PushText(L, ScriptPosition(L) + error.what());
    }
    catch (const std::bad_alloc&)
    {
        lua_pushstring(L, NO_MEMORY);
    }
    return false;
}
} // namespace

std::string ScriptPosition(lua_State* L)
{
    lua_Debug frame;
    for (int level = 0; lua_getstack(L, level, &frame) != 0; ++level)
    {
        lua_getinfo(L, "Sl", &frame);
        if (frame.currentline > 0)
            return std::string(frame.short_src) + ":" + std::to_string(frame.currentline) + ": ";
    }
    return "";
}

int RunForLua(lua_State* L, int (*body)(lua_State*))
{
    int results = 0;
    try
    {
        if (RunAndCatch(L, body, results))
            return results;
    }
    catch (const std::bad_alloc&) // for the text of another error
    {
        lua_pushstring(L, NO_MEMORY);
    }
    return lua_error(L);
}

// ---- life ----

ScriptEngine::ScriptEngine(Random& random)
{
    m_failure.reserve(sizeof NO_MEMORY);
    m_main = lua_newstate(&ScriptEngine::Allocate, this);
    if (m_main == nullptr)
        throw std::bad_alloc();
    lua_atpanic(m_main, LeaveUnprotected);
    m_running = m_main;
    s_current = this;
    StartCounting();
    Prepare(random);
}

ScriptEngine::~ScriptEngine()
{
    lua_State* state = m_main;
    m_main = nullptr;
    lua_close(state);
    s_current = nullptr;
    StopCounting();
}

ScriptEngine* ScriptEngine::Current() { return s_current; }

void ScriptEngine::Prepare(Random& random)
{
    const Body prepare = [](lua_State* L, void* context)
    {
        OpenSandbox(L, *static_cast<Random*>(context));
        OpenSelves(L);
        lua_newtable(L);
        lua_setfield(L, LUA_REGISTRYINDEX, INCLUDED_FILES);
    };
    Protect(prepare, &random);
}

void* ScriptEngine::Allocate(void* engine, void* block, size_t oldSize, size_t newSize)
{
    auto* self = static_cast<ScriptEngine*>(engine);
    const size_t held = block == nullptr ? 0 : oldSize; // for a new block oldSize is the type of what it is for
    if (newSize == 0)
    {
        std::free(block);
        self->m_memory -= held;
        return nullptr;
    }
    // Each coroutine counts its instructions from nothing, so making one costs as many as it may run unseen.
    if (block == nullptr && oldSize == LUA_TTHREAD)
        self->m_instructions += INSTRUCTIONS_BETWEEN_CHECKS;
    const bool isWithin =
        newSize <= held || newSize - held <= self->m_limits.memory - std::min(self->m_memory, self->m_limits.memory);
    void* moved = isWithin ? std::realloc(block, newSize) : nullptr;
    if (moved == nullptr && newSize <= held)
        moved = block; // Lua relies on it that a block can become smaller
    if (moved == nullptr)
    {
        self->NoteRefusal(!isWithin);
        luai_work(self->m_memory / BYTES_OF_A_COLLECTION_UNIT);
    }
    else
        self->m_memory = self->m_memory - held + newSize;
    return moved;
}

void ScriptEngine::NoteRefusal(bool isLimit)
try
{
    m_isLimitReached = isLimit;
    m_refusedAt.clear();
    if (m_running != nullptr)
        m_refusedAt = ScriptPosition(m_running);
}
catch (const std::bad_alloc&) // Lua calls, and there is a report without a position
{
    m_refusedAt.clear();
}

// ---- files ----

void ScriptEngine::LoadFile(lua_State* L, const std::string& name, const std::string& path)
{
    const std::vector<uint8_t> bytes = files.ReadScript(name, path);
    const std::string chunk = "@" + name;
    const std::string_view text = WithoutPreamble({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (luaL_loadbufferx(L, text.data(), text.size(), chunk.c_str(), "t") != LUA_OK)
        throw PositionedError(lua_tostring(L, -1));
}

bool ScriptEngine::RunMain(const std::string& file, const std::string& kit)
{
    struct Start
    {
        ScriptEngine& engine;
        const std::string& path;
        std::string name;
    };
    Start start = {*this, file, files.Open(file, kit)};
    const Body run = [](lua_State* L, void* context)
    {
        const auto& main = *static_cast<const Start*>(context);
        main.engine.LoadFile(L, main.name, main.path);
        lua_call(L, 0, 0);
    };
    return Protect(run, &start);
}

void ScriptEngine::Include(lua_State* L, const std::string& name)
{
    lua_getfield(L, LUA_REGISTRYINDEX, INCLUDED_FILES);
    if (lua_getfield(L, -1, name.c_str()) == LUA_TNIL)
    {
        lua_pop(L, 1);
        LoadFile(L, name, files.FindScript(name, RunningFile(L)));
        lua_createtable(L, 1, 0);
        lua_pushvalue(L, -1);
        lua_setfield(
            L, -4,
            name.c_str()); // stored before the file runs: a file that includes itself gets nil and does not recurse
        lua_insert(L, -2);
        lua_call(L, 0, 1);
        lua_rawseti(L, -2, 1);
    }
    lua_rawgeti(L, -1, 1);
}

// ---- references ----

int ScriptEngine::Keep(lua_State* L, int index)
{
    lua_pushvalue(L, index);
    const int reference = luaL_ref(L, LUA_REGISTRYINDEX);
    NoteGiver(L, index, reference);
    return reference;
}

// Lua functions are not noted: their errors have a line.
void ScriptEngine::NoteGiver(lua_State* L, int index, int reference)
{
    if (lua_iscfunction(L, index) != 0)
        m_givers[reference] = ScriptPosition(L);
}

void ScriptEngine::Drop(int reference)
{
    if (!IsOpen() || reference < 0)
        return;
    m_givers.erase(reference);
    luaL_unref(m_main, LUA_REGISTRYINDEX, reference);
}

void ScriptEngine::Push(lua_State* L, int reference) { lua_rawgeti(L, LUA_REGISTRYINDEX, reference); }

// ---- running ----

std::string ScriptEngine::PositionOfGiver() const
{
    const auto giver = m_givers.find(m_called);
    return giver == m_givers.end() ? "" : giver->second;
}

// A report that memory runs out for tells what is there.
void ScriptEngine::NoteTrouble(lua_State* L)
{
    NoteEvent(m_called);
    try
    {
        std::optional<ScriptTrouble> raised = m_raisedAgain.Find(L, 1);
        if (raised.has_value() && raised->called >= 0) // it comes out of an event inside of this one
        {
            m_trouble = std::move(*raised);
            return;
        }
        m_trouble.value = lua_type(L, 1) == LUA_TSTRING ? "" : ValueText(L, 1);
        m_trouble.stack = raised.has_value() ? std::move(raised->stack) : RunningFunctions(L);
        m_trouble.outermost = L;
    }
    catch (const std::bad_alloc&)
    {
        m_trouble.stack.clear();
    }
}

void ScriptEngine::NoteEvent(int called)
{
    m_trouble = ScriptTrouble();
    m_trouble.called = called;
    m_trouble.object = m_self != nullptr ? m_self->type.name : "";
    m_trouble.camera = Current_Object;
}

// Turns an error value of any type into a line of text, with a position where one is known. No metamethod is asked.
// Without memory for that the value stays as it is.
int ScriptEngine::DescribeError(lua_State* L)
try
{
    if (!s_current->Failed())
        s_current->NoteTrouble(L);
    std::string position = ScriptPosition(L);
    if (position.empty())
        position = s_current->PositionOfGiver();
    size_t size = 0;
    if (const char* text = lua_type(L, 1) == LUA_TSTRING ? lua_tolstring(L, 1, &size) : nullptr)
        return HasPosition(std::string(text, size)) ? 1 : PushText(L, position + std::string(text, size));
    return PushText(L, position + "an error without a message (a " + luaL_typename(L, 1) + " value)");
}
catch (const std::bad_alloc&)
{
    lua_settop(L, 1);
    return 1;
}

bool ScriptEngine::Protect(Body body, void* context, int called)
{
    if (Failed())
        return false;
    lua_State* L = m_running;
    if (lua_checkstack(L, 8) == 0)
    {
        Fail("stack overflow");
        return false;
    }
    ProtectedCall call = {body, context};
    lua_pushcfunction(L, DescribeError);
    const int handler = lua_gettop(L);
    lua_pushcfunction(L, RunProtected);
    lua_pushlightuserdata(L, &call);
    const int outer = std::exchange(m_called, called);
    const int status = lua_pcall(L, 1, 0, handler);
    m_called = outer;
    if (status != LUA_OK)
        FailWith(L, status, called);
    lua_settop(L, handler - 1);
    return status == LUA_OK;
}

// Makes the error on the stack the failure. Memory may run out for that, too: the module may have called, which no
// exception may pass.
void ScriptEngine::FailWith(lua_State* L, int status, int called)
try
{
    const char* message = lua_type(L, -1) == LUA_TSTRING ? lua_tostring(L, -1) : nullptr;
    if (!Failed() && status == LUA_ERRMEM) // no message handler has run
        NoteEvent(called);
    if (!Failed() && m_trouble.called < 0)
        m_trouble.called = called;
    Fail(status == LUA_ERRMEM ? MemoryFailure() : message == nullptr ? "an error without a message" : message);
}
catch (const std::bad_alloc&)
{
    if (!Failed())
        m_failure = NO_MEMORY; // for which room is reserved
}

bool ScriptEngine::Call(int reference, Instance* self)
{
    if (reference < 0)
        return !Failed();
    struct Started
    {
        int reference;
        Instance* self;
    };
    Started event = {reference, self};
    Instance* const before = m_self;
    m_self = self;
    const Body run = [](lua_State* L, void* context)
    {
        const auto& call = *static_cast<const Started*>(context);
        Push(L, call.reference);
        if (call.self != nullptr)
            PushSelf(L, *call.self);
        lua_call(L, call.self != nullptr ? 1 : 0, 0);
    };
    const bool succeeded = Protect(run, &event, reference);
    m_self = before;
    return succeeded;
}

// ---- failure ----

void ScriptEngine::Fail(const std::string& text)
{
    if (m_failure.empty())
        m_failure = text.empty() ? "an error without a message" : text;
}

std::string ScriptEngine::TakeFailure()
{
    std::string text = m_failure;
    m_raisedAgain.KeepEvent(text, m_trouble);
    m_failure.clear(); // its room stays reserved
    m_trouble = ScriptTrouble();
    return text;
}
} // namespace Runner
