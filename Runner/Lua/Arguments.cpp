#include "Runner/Lua/Arguments.h"

#include "Runner/Base/Printable.h"
#include "Runner/Host/Convert.h"
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

std::string KindAt(lua_State* L, int index)
{
    const int type = lua_type(L, index);
    if (type == LUA_TNONE || type == LUA_TNIL)
        return "nil";
    return std::string("a ") + (SelfAt(L, index) != nullptr ? "instance" : lua_typename(L, type));
}

double NumberAt(lua_State* L, int index)
{
    if (lua_type(L, index) != LUA_TNUMBER)
        throw ScriptError("must be a number, got " + KindAt(L, index));
    return lua_tonumber(L, index);
}

float FloatAt(lua_State* L, int index) { return NearestFloat(NumberAt(L, index)); }

float FiniteAt(lua_State* L, int index)
{
    const float number = FloatAt(L, index);
    if (!std::isfinite(number))
        throw ScriptError("must be a finite number");
    return number;
}

int WholeAt(lua_State* L, int index)
{
    const double number = NumberAt(L, index);
    if (!(number >= static_cast<double>(INT_MIN) && number <= static_cast<double>(INT_MAX)) ||
        number != std::floor(number))
        throw ScriptError("must be a whole number of 32 bits");
    return static_cast<int>(number);
}

bool FlagAt(lua_State* L, int index)
{
    if (lua_type(L, index) == LUA_TBOOLEAN)
        return lua_toboolean(L, index) != 0;
    if (lua_type(L, index) == LUA_TNUMBER)
        return lua_tonumber(L, index) > 0.5;
    throw ScriptError("must be true or false, got " + KindAt(L, index));
}

unsigned ColourAt(lua_State* L, int index)
{
    const int colour = WholeAt(L, index);
    if (colour < 0 || colour > 0xFFFFFF)
        throw ScriptError("must be a colour, see colour_rgb");
    return static_cast<unsigned>(colour);
}

std::string TextAt(lua_State* L, int index)
{
    if (lua_type(L, index) != LUA_TSTRING)
        throw ScriptError("must be a string, got " + KindAt(L, index));
    size_t size = 0;
    const char* text = lua_tolstring(L, index, &size);
    return std::string(text, size);
}

// ---- arguments ----

ScriptArguments::ScriptArguments(lua_State* state, const FunctionHead& function) : L(state), m_function(function)
{
    const int count = lua_gettop(L);
    if (count < function.least || count > function.most)
        Fail("wrong number of arguments");
}

void ScriptArguments::Fail(const std::string& text) const { throw ScriptError(std::string(Name()) + "() - " + text); }

template <typename T> T ScriptArguments::Checked(int i, T (*read)(lua_State*, int)) const
{
    try
    {
        return read(L, i);
    }
    catch (const ScriptError& error)
    {
        Fail("argument " + std::to_string(i) + " " + error.what());
    }
}

double ScriptArguments::Number(int i) const { return Checked(i, NumberAt); }
float ScriptArguments::Float(int i) const { return Checked(i, FiniteAt); }
int ScriptArguments::Whole(int i) const { return Checked(i, WholeAt); }
bool ScriptArguments::Flag(int i, bool otherwise) const { return Has(i) ? Checked(i, FlagAt) : otherwise; }
unsigned ScriptArguments::Colour(int i) const { return Checked(i, ColourAt); }
std::string ScriptArguments::Text(int i) const { return Checked(i, TextAt); }

int ScriptArguments::Function(int i) const
{
    if (lua_type(L, i) != LUA_TFUNCTION)
        Fail("argument " + std::to_string(i) + " must be a function, got " + KindAt(L, i));
    return ScriptEngine::Current()->Keep(L, i);
}

void ScriptArguments::Table(int i) const
{
    if (lua_type(L, i) != LUA_TTABLE)
        Fail("argument " + std::to_string(i) + " must be a table, got " + KindAt(L, i));
}

Instance* ScriptArguments::FindInstance(int i) const
{
    int id = 0;
    if (!SelfIdentifier(L, i, id))
        id = Whole(i);
    return World::Current()->Find(id);
}

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

template <typename T> T Fields::Read(const char* name, T otherwise, T (*read)(lua_State*, int))
{
    if (!Push(name))
        return otherwise;
    try
    {
        otherwise = read(m_call.L, -1);
    }
    catch (const ScriptError& error)
    {
        Fail(name, error.what());
    }
    lua_pop(m_call.L, 1);
    return otherwise;
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
        Fail(name,
             "must be " + std::to_string(least) + " to " + std::to_string(most) + ", got " + std::to_string(number));
    return number;
}

int Fields::Function(const char* name, int otherwise)
{
    if (!Push(name))
        return otherwise;
    if (lua_type(m_call.L, -1) != LUA_TFUNCTION)
        Fail(name, "must be a function, got " + KindAt(m_call.L, -1));
    const int reference = ScriptEngine::Current()->Keep(m_call.L, -1);
    lua_pop(m_call.L, 1);
    return reference;
}

bool Fields::PushTable(const char* name)
{
    if (!Push(name))
        return false;
    if (lua_type(m_call.L, -1) != LUA_TTABLE)
        Fail(name, "must be a table, got " + KindAt(m_call.L, -1));
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
