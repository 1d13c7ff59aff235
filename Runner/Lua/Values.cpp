#include "Runner/Lua/Values.h"

#include "Runner/Host/Collector.h"
#include "Runner/Host/Value.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Callable.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/Lua/Self.h"

#include <lua.hpp>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Runner
{
namespace
{
constexpr lua_Integer EXACT_IN_DOUBLE = lua_Integer{1} << 53;
constexpr lua_Unsigned ELEMENTS_MAX = 1 << 20; // elements of one value, over all nested tables
constexpr double WHOLE_LIMIT = 2147483648.0;

// The conversion of one value to the host.
struct Crossing
{
    lua_State* L;
    lua_Unsigned elements = 0; // converted so far. A table that another holds twice is converted twice, at each depth
};

RValue ToHostAtDepth(Crossing& crossing, int index, int depth);

RValue NumberToHost(lua_State* L, int index)
{
    const lua_Integer whole = lua_isinteger(L, index) != 0 ? lua_tointeger(L, index) : 0;
    if (whole <= EXACT_IN_DOUBLE && whole >= -EXACT_IN_DOUBLE)
        return MakeReal(lua_tonumber(L, index));
    RValue value = {};
    value.kind = VALUE_INT64;
    value.v64 = whole;
    return value;
}

RValue TextToHost(lua_State* L, int index)
{
    size_t size = 0;
    const char* text = lua_tolstring(L, index, &size);
    return MakeString(std::string_view(text, size));
}

// An array that is being filled. The destructor releases it unless Take handed it on.
struct HeldArray
{
    RValue value;
    ~HeldArray() { Release(value); }
    RValue Take()
    {
        const RValue taken = value;
        value = MakeUndefined();
        return taken;
    }
};

// Converts the elements of a table. Each level overwrites the entry in a CannotCross, so it names the outermost
// table's.
void TakeElements(Crossing& crossing, int table, int depth, const RefDynamicArrayOfRValue& array)
{
    lua_State* L = crossing.L;
    for (int i = 0; i < array.m_length; ++i)
    {
        lua_rawgeti(L, table, i + 1);
        try
        {
            array.m_array[i] = ToHostAtDepth(crossing, lua_gettop(L), depth + 1);
        }
        catch (CannotCross& error)
        {
            error.entry = i + 1;
            throw;
        }
        lua_pop(L, 1);
    }
}

RValue TableToHost(Crossing& crossing, int index, int depth)
{
    if (depth >= VALUE_DEPTH_MAX || lua_checkstack(crossing.L, 4) == 0)
        throw CannotCross("a table nested too deeply");
    const lua_Unsigned length = lua_rawlen(crossing.L, index);
    if (length > ELEMENTS_MAX - crossing.elements)
        throw CannotCross("a table with more than " + std::to_string(ELEMENTS_MAX) + " elements");
    crossing.elements += length;
    HeldArray array = {MakeArray(static_cast<int>(length))};
    if (KvKind(array.value) != VALUE_ARRAY)
        throw CannotCross("a table for which there is no memory");
    TakeElements(crossing, index, depth, *array.value.pRefArray);
    return array.Take();
}

RValue FunctionToHost(lua_State* L, int index)
{
    ScriptFunction* function = ScriptFunction::Of(L, index);
    if (function == nullptr)
        throw CannotCross("a function for which there is no memory");
    return MakeObject(function);
}

RValue ToHostAtDepth(Crossing& crossing, int index, int depth)
{
    lua_State* L = crossing.L;
    int id = 0;
    switch (lua_type(L, index))
    {
    case LUA_TNONE:
    case LUA_TNIL: return MakeUndefined();
    case LUA_TBOOLEAN: return MakeBool(lua_toboolean(L, index) != 0);
    case LUA_TNUMBER: return NumberToHost(L, index);
    case LUA_TSTRING: return TextToHost(L, index);
    case LUA_TTABLE: return TableToHost(crossing, index, depth);
    case LUA_TFUNCTION: return FunctionToHost(L, index);
    default: break;
    }
    if (SelfIdentifier(L, index, id))
        return MakeReal(id);
    throw CannotCross(DescribeAt(L, index));
}

void PushReal(lua_State* L, double number)
{
    const bool isWhole = number > -WHOLE_LIMIT && number < WHOLE_LIMIT && number == std::floor(number);
    if (isWhole && !(number == 0.0 && std::signbit(number)))
        lua_pushinteger(L, static_cast<lua_Integer>(number));
    else
        lua_pushnumber(L, number);
}

void PushArray(lua_State* L, const RefDynamicArrayOfRValue* array, int depth);

void PushAtDepth(lua_State* L, const RValue& value, int depth)
{
    switch (KvKind(value))
    {
    case VALUE_REAL: PushReal(L, value.val); break;
    case VALUE_INT32: lua_pushinteger(L, value.v32); break;
    case VALUE_INT64: lua_pushinteger(L, value.v64); break;
    case VALUE_BOOL: lua_pushboolean(L, value.asBool() ? 1 : 0); break;
    case VALUE_STRING:
        lua_pushlstring(L, value.GetString(),
                        value.pRefString == nullptr ? 0 : static_cast<size_t>(value.pRefString->m_size));
        break;
    case VALUE_ARRAY: PushArray(L, value.pRefArray, depth); break;
    case VALUE_OBJECT:
        if (const ScriptFunction* function = ScriptFunction::From(value.pObj))
            function->Push(L);
        else
            lua_pushnil(L);
        break;
    default: lua_pushnil(L); break;
    }
}

void PushArray(lua_State* L, const RefDynamicArrayOfRValue* array, int depth)
{
    if (array == nullptr || depth >= VALUE_DEPTH_MAX)
    {
        lua_pushnil(L);
        return;
    }
    luaL_checkstack(L, 4, nullptr);
    lua_createtable(L, array->m_length, 0);
    for (int i = 0; i < array->m_length; ++i)
    {
        PushAtDepth(L, array->m_array[i], depth + 1);
        lua_rawseti(L, -2, static_cast<lua_Integer>(i) + 1);
    }
}
} // namespace

RValue ToHost(lua_State* L, int index)
{
    Crossing crossing = {L};
    return ToHostAtDepth(crossing, lua_absindex(L, index), 0);
}

void PushFromHost(lua_State* L, const RValue& value) { PushAtDepth(L, value, 0); }

HostArguments::HostArguments(lua_State* L, int count, int padTo)
    : m_values(m_few), m_size(std::max({count, padTo, AT_LEAST}))
{
    if (m_size > AT_LEAST)
    {
        m_many.resize(static_cast<size_t>(m_size));
        m_values = m_many.data();
    }
    std::fill(m_values, m_values + m_size, MakeUndefined());
    Collector::PushTemporaryRoots(m_values, m_size);
    int taken = 0;
    try
    {
        for (; taken < count; ++taken)
            m_values[taken] = ToHost(L, taken + 1);
    }
    catch (CannotCross& error)
    {
        ReleaseAll();
        error.argument = taken + 1;
        throw;
    }
    catch (...)
    {
        ReleaseAll();
        throw;
    }
}

HostArguments::~HostArguments() { ReleaseAll(); }

void HostArguments::ReleaseAll()
{
    std::for_each(m_values, m_values + m_size, Release);
    Collector::PopTemporaryRoots();
}
} // namespace Runner
