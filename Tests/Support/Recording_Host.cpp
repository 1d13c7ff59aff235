// The log, names and descriptions, errors, the registry of built-ins, scripts.

#include "Tests/Support/Recording_Host.h"
#include "Tests/Support/Recording_Host_State.h"

#include <cmath>
#include <cstdarg>
#include <cstring>

int Current_Object = 0;
bool g_fIsJSProject = false;
CInstance* g_pGlobal = nullptr;

namespace Recording
{
State& TheState()
{
    static State* state = new State;
    return *state;
}

void Reset()
{
    ResetCollector();
    ResetMemory();
    ResetWorld();
    ResetDisk();
    Current_Object = 0;
    g_fIsJSProject = false;
    g_pGlobal = nullptr;
    State& state = TheState();
    state.scripts.clear();
    state.builtins.clear();
    for (kvMatrix& slot : state.slots)
        slot = {};
    state.log.clear();
    state.errors.clear();
    state.faults.clear();
    state.names.clear();
    state.counters.clear();
    state.topics = Topic_Default;
    state.passesNan = true;
    state.onProjection = state.onView = nullptr;
}

// ---- log ----
void Listen(unsigned topics) { TheState().topics = topics; }
Lines& Log() { return TheState().log; }
void Note(const std::string& line) { TheState().log.push_back(line); }
Lines& Errors() { return TheState().errors; }
Lines& Faults() { return TheState().faults; }

Lines TakeLog()
{
    Lines taken;
    taken.swap(Log());
    return taken;
}

void Fault(const std::string& text)
{
    TheState().faults.push_back(text);
    Note("FAULT " + text);
}

std::string Format(const char* format, ...)
{
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

// ---- names ----
void GiveName(const void* thing, const std::string& name) { TheState().names[thing] = name; }

void GiveName(const void* thing, char letter)
{
    GiveName(thing, Format("%c%d", letter, ++TheState().counters[letter]));
}

std::string Name(const void* thing)
{
    if (thing == nullptr)
        return "null";
    const auto found = TheState().names.find(thing);
    return found == TheState().names.end() ? "?" : found->second;
}

std::string Describe(float number) { return Format("%.9g", static_cast<double>(number)); }

std::string Describe(const RValue& value)
{
    switch (KvKind(value))
    {
    case VALUE_REAL: return Format("real %.17g", value.val);
    case VALUE_INT32: return Format("int32 %d", static_cast<int>(value.v32));
    case VALUE_INT64: return Format("int64 %lld", static_cast<long long>(value.v64));
    case VALUE_BOOL: return Format("bool %g", value.val);
    case VALUE_STRING: return std::string("string ") + value.GetString();
    case VALUE_OBJECT: return "object " + Name(value.pObj);
    case VALUE_ARRAY: return "array " + Name(value.pRefArray);
    case VALUE_UNDEFINED: return "undefined";
    case VALUE_UNSET: return "unset";
    default: return Format("kind %u", static_cast<unsigned>(KvKind(value)));
    }
}

// ---- registry ----
std::vector<Builtin>& Builtins() { return TheState().builtins; }

const Builtin* FindBuiltin(const std::string& name)
{
    for (const Builtin& builtin : Builtins())
        if (builtin.name == name)
            return &builtin;
    return nullptr;
}

// ---- scripts ----
void SetScript(int index, Script body) { TheState().scripts[index] = std::move(body); }

Callable::Callable(Script callBody) : KvObjectBase(HOST_OBJECT, HOST_OBJECT), body(std::move(callBody))
{
    m_kind = OBJECT_KIND_SCRIPT_FUNCTION;
    GiveName(this, 'F');
}

Callable* NewCallable(Script body) { return new Callable(std::move(body)); }
} // namespace Recording

using namespace Recording;

void Function_Add(const char* name, TFunction handler, int argc, bool flag)
{
    RECORD(Topic_Registry, "Function_Add(%s,%d,%s)", name, argc, flag ? "true" : "false");
    TheState().builtins.push_back({name, handler, argc, flag});
}

void KvError(const char* format, ...)
{
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    TheState().errors.push_back(text);
    RECORD(Topic_Errors, "KvError(%s)", text);
}

// The body is copied before it runs: a script may replace itself.
bool Script_Perform(int index, CInstance* self, CInstance* other, int argc, RValue* result, DynamicArrayOfRValue* args)
{
    RECORD(Topic_Scripts, "Script_Perform(%d,%s,%s,%d)", index, Name(self).c_str(), Name(other).c_str(), argc);
    const auto found = TheState().scripts.find(index);
    if (found == TheState().scripts.end())
        return false;
    const Script body = found->second;
    ScriptCall call = {index, self, other, argc, result, nullptr, args};
    if (body)
        body(call);
    return true;
}

bool JS_IsCallable_Object(KvObjectBase* object)
{
    RECORD(Topic_Scripts, "JS_IsCallable_Object(%s)", Name(object).c_str());
    return object != nullptr && object->m_kind == OBJECT_KIND_SCRIPT_FUNCTION;
}

void Call_RValue(KvObjectBase* self, RValue* result, RValue* callable, int argc, RValue* args)
{
    KvObjectBase* object = KvKind(*callable) == VALUE_OBJECT ? callable->pObj : nullptr;
    RECORD(Topic_Scripts, "Call_RValue(%s,%s,%d)", Name(self).c_str(), Name(object).c_str(), argc);
    if (object == nullptr || object->m_kind != OBJECT_KIND_SCRIPT_FUNCTION)
        return;
    const Script body = static_cast<Callable*>(object)->body;
    ScriptCall call = {-1, self, nullptr, argc, result, args, nullptr};
    if (body)
        body(call);
}
