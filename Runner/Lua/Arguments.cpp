#include "Runner/Lua/Arguments.h"

#include "Runner/Base/Printable.h"
#include "Runner/Host/Convert.h"
#include "Runner/Host/Value.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Self.h"
#include "Runner/World/World.h"

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <utility>

namespace Runner
{
// ---- single values ----

namespace
{
[[noreturn]] void Refuse(lua_State* L, int index, const char* expected)
{
    throw ScriptError(std::string("is ") + expected + ", got " + DescribeAt(L, index));
}

void CheckType(lua_State* L, int index, int type, const char* expected)
{
    if (lua_type(L, index) != type)
        Refuse(L, index, expected);
}

std::string DescribeText(lua_State* L, int index)
{
    size_t size = 0;
    const char* text = lua_tolstring(L, index, &size);
    return "the string \"" + Printable({text, size}) + "\"";
}
} // namespace

std::string DescribeAt(lua_State* L, int index)
{
    int id = 0;
    switch (lua_type(L, index))
    {
    case LUA_TNONE:
    case LUA_TNIL: return "nil";
    case LUA_TBOOLEAN: return lua_toboolean(L, index) != 0 ? "true" : "false";
    case LUA_TNUMBER:
        return lua_isinteger(L, index) != 0 ? "the number " + std::to_string(lua_tointeger(L, index))
                                            : Describe(MakeReal(lua_tonumber(L, index)));
    case LUA_TSTRING: return DescribeText(L, index);
    case LUA_TTHREAD: return "a coroutine";
    case LUA_TUSERDATA: return SelfIdentifier(L, index, id) ? "an instance" : "a userdata";
    default: return std::string("a ") + luaL_typename(L, index);
    }
}

std::string DescribeListAt(lua_State* L, int index)
{
    return lua_istable(L, index) ? "a table of " + std::to_string(lua_rawlen(L, index)) : DescribeAt(L, index);
}

double NumberAt(lua_State* L, int index)
{
    CheckType(L, index, LUA_TNUMBER, "a number");
    return lua_tonumber(L, index);
}

float FloatAt(lua_State* L, int index) { return NearestFloat(NumberAt(L, index)); }

float FiniteAt(lua_State* L, int index)
{
    const float number = FloatAt(L, index);
    if (!std::isfinite(number))
        Refuse(L, index, "a finite number");
    return number;
}

int WholeAt(lua_State* L, int index)
{
    CheckType(L, index, LUA_TNUMBER, "a whole number");
    const double number = lua_tonumber(L, index);
    if (!(number >= static_cast<double>(INT_MIN) && number <= static_cast<double>(INT_MAX)) ||
        number != std::floor(number))
        Refuse(L, index, "a whole number of 32 bits");
    return static_cast<int>(number);
}

bool FlagAt(lua_State* L, int index)
{
    if (lua_type(L, index) == LUA_TBOOLEAN)
        return lua_toboolean(L, index) != 0;
    if (lua_type(L, index) == LUA_TNUMBER)
        return lua_tonumber(L, index) > 0.5;
    Refuse(L, index, "true or false");
}

unsigned ColourAt(lua_State* L, int index)
{
    CheckType(L, index, LUA_TNUMBER, "a colour (see colour_rgb)");
    const double colour = lua_tonumber(L, index);
    if (!(colour >= 0.0 && colour <= 0xFFFFFF) || colour != std::floor(colour))
        Refuse(L, index, "a colour (see colour_rgb)");
    return static_cast<unsigned>(colour);
}

std::string TextAt(lua_State* L, int index)
{
    CheckType(L, index, LUA_TSTRING, "a string");
    size_t size = 0;
    const char* text = lua_tolstring(L, index, &size);
    return std::string(text, size);
}

int FunctionAt(lua_State* L, int index)
{
    CheckType(L, index, LUA_TFUNCTION, "a function");
    return ScriptEngine::Current()->Keep(L, index);
}

void CheckTableAt(lua_State* L, int index) { CheckType(L, index, LUA_TTABLE, "a table"); }

int InstanceNumberAt(lua_State* L, int index)
{
    int id = 0;
    if (SelfIdentifier(L, index, id))
        return id;
    CheckType(L, index, LUA_TNUMBER, "an instance");
    return WholeAt(L, index);
}

// ---- arguments ----

Signature FunctionHead::Names() const
{
    Signature names = {name, least, {}};
    for (const char* argument : arguments)
        if (argument != nullptr)
            names.arguments.push_back(argument);
    return names;
}

ScriptArguments::ScriptArguments(lua_State* state, const FunctionHead& function) : L(state), m_function(function)
{
    const int count = lua_gettop(L);
    const bool isTooMany = count > 0 && (count > static_cast<int>(FunctionHead::ARGUMENTS_MAX) ||
                                         function.arguments[count - 1] == nullptr);
    if (count < function.least || isTooMany)
        Fail("wrong number of arguments " + function.Names().Wanted(count));
}

void ScriptArguments::Fail(const std::string& text) const { throw ScriptError(std::string(Name()) + "() - " + text); }

void ScriptArguments::FailArgument(int i, const std::string& text) const
{
    throw ScriptError(m_function.Names().Argument(i) + " " + text);
}

template <typename T> T ScriptArguments::Checked(int i, T (*read)(lua_State*, int)) const
{
    try
    {
        return read(L, i);
    }
    catch (const ScriptError& error)
    {
        FailArgument(i, error.what());
    }
}

template <typename T> T ScriptArguments::Entry(int i, lua_Integer entry, T (*read)(lua_State*, int)) const
{
    lua_rawgeti(L, i, entry);
    try
    {
        const T value = read(L, -1);
        lua_pop(L, 1);
        return value;
    }
    catch (const ScriptError& error)
    {
        throw ScriptError(m_function.Names().Argument(i) + ", entry " + std::to_string(entry) + " " + error.what());
    }
}

double ScriptArguments::Number(int i) const { return Checked(i, NumberAt); }
float ScriptArguments::Float(int i) const { return Checked(i, FiniteAt); }
int ScriptArguments::Whole(int i) const { return Checked(i, WholeAt); }
bool ScriptArguments::Flag(int i, bool otherwise) const { return Has(i) ? Checked(i, FlagAt) : otherwise; }
unsigned ScriptArguments::Colour(int i) const { return Checked(i, ColourAt); }
std::string ScriptArguments::Text(int i) const { return Checked(i, TextAt); }

int ScriptArguments::Function(int i) const { return Checked(i, FunctionAt); }
void ScriptArguments::Table(int i) const { Checked(i, CheckTableAt); }
double ScriptArguments::NumberEntry(int i, lua_Integer entry) const { return Entry(i, entry, NumberAt); }
float ScriptArguments::FloatEntry(int i, lua_Integer entry) const { return Entry(i, entry, FiniteAt); }

Instance* ScriptArguments::FindInstance(int i) const { return World::Current()->Find(Checked(i, InstanceNumberAt)); }

ObjectType& ScriptArguments::Object(int i) const
{
    const int index = Whole(i);
    ObjectType* object = World::Current()->FindObject(index);
    if (object == nullptr)
        Fail("there is no object " + std::to_string(index));
    return *object;
}

int ScriptArguments::Return(double number) const
{
    lua_pushnumber(L, number);
    return 1;
}

int ScriptArguments::Return(int number) const
{
    lua_pushinteger(L, number);
    return 1;
}

int ScriptArguments::Return(bool truth) const
{
    lua_pushboolean(L, truth ? 1 : 0);
    return 1;
}

int ScriptArguments::Return(const std::string& text) const
{
    lua_pushlstring(L, text.data(), text.size());
    return 1;
}

// ---- fields ----

Fields::Fields(const ScriptArguments& call, int table, std::string where)
    : m_call(call), m_table(lua_absindex(call.L, table)), m_where(std::move(where))
{
}

void Fields::Fail(const std::string& name, const std::string& text) const { m_call.Fail(m_where + name + " " + text); }

bool Fields::Push(const char* name)
{
    m_known.push_back(name);
    lua_pushstring(m_call.L, name);
    if (lua_rawget(m_call.L, m_table) != LUA_TNIL)
        return true;
    lua_pop(m_call.L, 1);
    return false;
}

template <typename T> T Fields::Checked(const char* name, T (*read)(lua_State*, int)) const
{
    try
    {
        return read(m_call.L, -1);
    }
    catch (const ScriptError& error)
    {
        Fail(name, error.what());
    }
}

template <typename T> T Fields::Read(const char* name, T otherwise, T (*read)(lua_State*, int))
{
    if (!Push(name))
        return otherwise;
    T value = Checked(name, read);
    lua_pop(m_call.L, 1);
    return value;
}

bool Fields::Has(const char* name)
{
    const bool has = Push(name);
    if (has)
        lua_pop(m_call.L, 1);
    return has;
}

float Fields::Float(const char* name, float otherwise) { return Read(name, otherwise, FiniteAt); }
int Fields::Whole(const char* name, int otherwise) { return Read(name, otherwise, WholeAt); }
bool Fields::Flag(const char* name, bool otherwise) { return Read(name, otherwise, FlagAt); }
unsigned Fields::Colour(const char* name, unsigned otherwise) { return Read(name, otherwise, ColourAt); }
std::string Fields::Text(const char* name, const std::string& otherwise) { return Read(name, otherwise, TextAt); }

int Fields::Whole(const char* name, int otherwise, int least, int most)
{
    const int number = Whole(name, otherwise);
    if (number < least || number > most)
        Fail(name, "is " + std::to_string(least) + " to " + std::to_string(most) + ", got " + std::to_string(number));
    return number;
}

int Fields::Function(const char* name, int otherwise) { return Read(name, otherwise, FunctionAt); }

bool Fields::PushTable(const char* name)
{
    if (!Push(name))
        return false;
    Checked(name, CheckTableAt);
    return true;
}

void Fields::Finish() const
{
    lua_State* L = m_call.L;
    for (lua_pushnil(L); lua_next(L, m_table) != 0; lua_pop(L, 1))
    {
        const char* name = lua_type(L, -2) == LUA_TSTRING ? lua_tostring(L, -2) : nullptr;
        const auto isName = [name](const char* known) { return name != nullptr && std::strcmp(known, name) == 0; };
        if (std::none_of(m_known.begin(), m_known.end(), isName))
            m_call.Fail("there is no field \"" + m_where + (name == nullptr ? "?" : Printable(name)) + "\"");
    }
}
} // namespace Runner
