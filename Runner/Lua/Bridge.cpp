#include "Runner/Lua/Bridge.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Function_Arguments.h"
#include "Files/Run/Run_Globals.h"
#include "Runner/Base/Ends_With.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Signature.h"
#include "Runner/Lua/Values.h"
#include "Runner/World/Instance.h"

#include <lua.hpp>

#include <string_view>

namespace Runner
{
namespace
{
// The work of a call, in instructions of Lua. Some calls look through all slots.
constexpr size_t WORK_OF_A_CALL = 20;
constexpr size_t SLOTS_IN_AN_INSTRUCTION = 8;

// Texts of the module, which games compare with: reported here where no handler does.
constexpr char NO_ARRAY[] = "camera_set_view_mat() - array invalid (has it been created properly?)";
constexpr char WRONG_COUNT[] = "() - wrong number of arguments";

// The handlers of views and of camera_set_default do not check their argument count: the host does.
bool CountsItsArguments(std::string_view builtin)
{
    return builtin.substr(0, 5) != "view_" && builtin != "camera_set_default";
}

const KvSignature* FindSignature(std::string_view builtin)
{
    for (const KvSignature& signature : KvArguments::SIGNATURES)
        if (builtin == signature.name)
            return &signature;
    return nullptr;
}

Signature NamesOf(const KvSignature& signature)
{
    Signature names = {signature.name, signature.least, {}};
    for (int i = 0; i < signature.count; ++i)
        names.arguments.push_back(signature.arguments[i].name);
    return names;
}

const char* WordsFor(eArgument kind)
{
    switch (kind)
    {
    case eArgument_Flag: return "true or false";
    case eArgument_Instance: return "an object, an instance or -1";
    case eArgument_Matrix: return "a table of 16 numbers";
    case eArgument_Script: return "a function, a number of script_add or -1";
    default: return "a number";
    }
}

// One call of a built-in by a script. The arguments stay at 1 to count of the Lua stack while it runs.
class CallFromLua : public BuiltinCall
{
public:
    CallFromLua(lua_State* state, const Builtin& builtin, const KvSignature* arguments)
        : L(state), count(lua_gettop(state)), m_builtin(builtin), m_arguments(arguments)
    {
    }

    void Check() const; // checks what the handlers do not; throws in the module's words
    int Run();

    std::string Expectation(const RValue& value) const override;

private:
    bool Takes(int i, eArgument kind) const
    {
        return m_arguments != nullptr && i <= m_arguments->count && m_arguments->arguments[i - 1].kind == kind;
    }
    Signature Names() const;
    std::string Expected(int i) const;
    std::string Refusal(const CannotCross& error) const;
    std::string Explained(const std::string& error) const;

    lua_State* const L;
    const int count;
    const Builtin& m_builtin;
    const KvSignature* m_arguments; // null: not a built-in of the module
    const RValue* m_values = nullptr;
};

// ---- texts of errors ----

Signature CallFromLua::Names() const
{
    return m_arguments != nullptr ? NamesOf(*m_arguments) : Signature{m_builtin.name.c_str(), m_builtin.argc, {}};
}

// "camera_set_view_pos: argument 2 (x) is a number"
std::string CallFromLua::Expected(int i) const
{
    const bool isKnown = m_arguments != nullptr && i <= m_arguments->count;
    return Names().Argument(i) + " is " + WordsFor(isKnown ? m_arguments->arguments[i - 1].kind : eArgument_Number);
}

// An element of an array is an entry of a matrix: the module converts the elements of no other array.
std::string CallFromLua::Expectation(const RValue& value) const
{
    for (int i = 0; m_values != nullptr && i < count; ++i)
    {
        if (&value == &m_values[i])
            return Expected(i + 1);
        const RefDynamicArrayOfRValue* array = KvKind(m_values[i]) == VALUE_ARRAY ? m_values[i].pRefArray : nullptr;
        for (int entry = 0; array != nullptr && entry < array->m_length; ++entry)
            if (&value == &array->m_array[entry])
                return Names().Argument(i + 1) + ", entry " + std::to_string(entry + 1) + " is a number";
    }
    return "";
}

std::string CallFromLua::Refusal(const CannotCross& error) const
{
    const int i = error.argument;
    if (i > Names().Most())
        return Names().Argument(i) + " cannot be " + error.what();
    if (error.entry > 0 && Takes(i, eArgument_Matrix))
        return Names().Argument(i) + ", entry " + std::to_string(error.entry) + " is a number, got " + error.what();
    return Expected(i) + ", got " + (error.entry > 0 ? "a table" : error.what());
}

// The module's text is kept; what the bridge knows beyond it follows in brackets. The function is named there when the
// text names another: both matrix setters report in the name of camera_set_view_mat.
std::string CallFromLua::Explained(const std::string& error) const
{
    if (EndsWith(error, " arguments"))
        return error + " " + Names().Wanted(count);
    for (const char* end : {"created properly?)", "entries in array", "invalid script reference"})
    {
        if (!EndsWith(error, end))
            continue;
        const std::string known = Expected(2) + ", got " + DescribeListAt(L, 2);
        const bool isNamed = error.compare(0, m_builtin.name.size(), m_builtin.name) == 0;
        return error + " (" + (isNamed ? known.substr(m_builtin.name.size() + 2) : known) + ")";
    }
    return error;
}

// ---- running ----

void CallFromLua::Check() const
{
    if (!CountsItsArguments(m_builtin.name) && count != m_builtin.argc)
        throw ScriptError(Explained(m_builtin.name + WRONG_COUNT));
    if (count == m_builtin.argc && Takes(2, eArgument_Matrix) && !lua_istable(L, 2))
        throw ScriptError(Explained(NO_ARRAY));
}

// The result of a call: a root of the collector while it runs, released afterwards, also when the call throws.
struct Result
{
    RValue value = MakeUndefined();
    Result() { Collector::PushTemporaryRoots(&value, 1); }
    ~Result()
    {
        Release(value);
        Collector::PopTemporaryRoots();
    }
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
};

CInstance* CallingInstance(const ScriptEngine& engine)
{
    if (engine.Self() != nullptr)
        return engine.Self();
    return g_CM.m_pScriptInstance != nullptr ? g_CM.m_pScriptInstance : g_pGlobal;
}

int CallFromLua::Run()
try
{
    const HostArguments arguments(L, count, m_builtin.argc);
    m_values = arguments.Values();
    Result result;
    CInstance* self = CallingInstance(*ScriptEngine::Current());
    const RefusalWatch memory;
    m_builtin.handler(result.value, self, self, count, arguments.Values());
    if (HasError())
        throw ScriptError(Explained(TakeError()));
    memory.ThrowIfRefused(); // the module goes on without a camera, but the script needs it
    PushFromHost(L, result.value);
    Collector::Safepoint();
    return 1;
}
catch (const CannotCross& error)
{
    throw ScriptError(Refusal(error));
}

int CallBuiltin(lua_State* L)
{
    const auto& builtin = *static_cast<const Builtin*>(lua_touserdata(L, lua_upvalueindex(1)));
    const ScriptEngine::RunningGuard guard(*ScriptEngine::Current(), L);
    CallFromLua call(L, builtin, static_cast<const KvSignature*>(lua_touserdata(L, lua_upvalueindex(2))));
    call.Check();
    luai_work(WORK_OF_A_CALL + static_cast<size_t>(g_CM.m_cameraListSize) / SLOTS_IN_AN_INSTRUCTION);
    luaL_checkstack(L, 8, nullptr);
    return call.Run();
}

int BuiltinEntry(lua_State* L) { return RunForLua(L, CallBuiltin); }
} // namespace

void OpenBuiltins(lua_State* L)
{
    for (const Builtin& builtin : Builtins())
    {
        lua_pushlightuserdata(L, const_cast<Builtin*>(&builtin));
        lua_pushlightuserdata(L, const_cast<KvSignature*>(FindSignature(builtin.name)));
        lua_pushcclosure(L, BuiltinEntry, 2);
        lua_setglobal(L, builtin.name.c_str());
    }
}

std::vector<Signature> BuiltinSignatures()
{
    std::vector<Signature> signatures;
    for (const KvSignature& signature : KvArguments::SIGNATURES)
        signatures.push_back(NamesOf(signature));
    return signatures;
}
} // namespace Runner
