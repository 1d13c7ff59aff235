#include "Runner/Lua/Self.h"

#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/World/World.h"

#include <lua.hpp>

namespace Runner
{
namespace
{
constexpr char SELF_TYPE[] = "instance";

struct Handle
{
    Instance* instance; // null once it is gone
    int id;
};

// ---- the host's fields ----

using Getter = void (*)(lua_State* L, Instance& instance);
using Setter = void (*)(lua_State* L, int value, Instance& instance); // null: read only

struct Field
{
    const char* name;
    Getter get;
    Setter set;
};

template <float Instance::*member> void GetFloat(lua_State* L, Instance& instance)
{
    lua_pushnumber(L, static_cast<double>(instance.*member));
}

template <float CInstance::*member> void GetPlace(lua_State* L, Instance& instance)
{
    lua_pushnumber(L, static_cast<double>(instance.*member));
}

template <bool Instance::*member> void GetFlag(lua_State* L, Instance& instance)
{
    lua_pushboolean(L, instance.*member ? 1 : 0);
}

void Moved(Instance& instance)
{
    if (World* world = World::Current())
        world->Touch(instance);
}

template <float Instance::*member> void SetFloat(lua_State* L, int value, Instance& instance)
{
    instance.*member = FiniteAt(L, value);
    Moved(instance);
}

template <float CInstance::*member> void SetPlace(lua_State* L, int value, Instance& instance)
{
    instance.*member = FiniteAt(L, value);
    Moved(instance);
}

template <bool Instance::*member> void SetFlag(lua_State* L, int value, Instance& instance)
{
    instance.*member = FlagAt(L, value);
}

template <float RoomArea::*edge> void GetEdge(lua_State* L, Instance& instance)
{
    if ((instance.m_flags & eInstanceFlag_bbox_dirty) != 0)
        instance.ComputeAreas();
    lua_pushnumber(L, static_cast<double>(instance.box.*edge));
}

void GetSprite(lua_State* L, Instance& instance) { lua_pushinteger(L, instance.sprite); }

void SetSprite(lua_State* L, int value, Instance& instance)
{
    const int sprite = WholeAt(L, value);
    const World* world = World::Current();
    if (sprite != NO_SPRITE && (world == nullptr || world->FindSpriteExtent(sprite) == nullptr))
        throw ScriptError(NoSuchSprite(sprite));
    instance.sprite = sprite;
    Moved(instance);
}

void GetColour(lua_State* L, Instance& instance) { lua_pushinteger(L, static_cast<lua_Integer>(instance.colour)); }
void SetColour(lua_State* L, int value, Instance& instance) { instance.colour = ColourAt(L, value); }
void GetId(lua_State* L, Instance& instance) { lua_pushinteger(L, instance.m_id); }
void GetObject(lua_State* L, Instance& instance) { lua_pushinteger(L, instance.m_objectIndex); }

constexpr Field FIELDS[] = {
    {"id", GetId, nullptr},
    {"object", GetObject, nullptr},
    {"x", GetPlace<&CInstance::x>, SetPlace<&CInstance::x>},
    {"y", GetPlace<&CInstance::y>, SetPlace<&CInstance::y>},
    {"sprite", GetSprite, SetSprite},
    {"frame", GetFloat<&Instance::frame>, SetFloat<&Instance::frame>},
    {"angle", GetFloat<&Instance::angle>, SetFloat<&Instance::angle>},
    {"xscale", GetFloat<&Instance::scaleX>, SetFloat<&Instance::scaleX>},
    {"yscale", GetFloat<&Instance::scaleY>, SetFloat<&Instance::scaleY>},
    {"colour", GetColour, SetColour},
    {"alpha", GetFloat<&Instance::alpha>, SetFloat<&Instance::alpha>},
    {"depth", GetFloat<&Instance::depth>, SetFloat<&Instance::depth>},
    {"visible", GetFlag<&Instance::visible>, SetFlag<&Instance::visible>},
    {"solid", GetFlag<&Instance::solid>, SetFlag<&Instance::solid>},
    {"bbox_left", GetEdge<&RoomArea::left>, nullptr},
    {"bbox_top", GetEdge<&RoomArea::top>, nullptr},
    {"bbox_right", GetEdge<&RoomArea::right>, nullptr},
    {"bbox_bottom", GetEdge<&RoomArea::bottom>, nullptr},
};

// The first upvalue of both accessors maps field names to entries of FIELDS. Null: a variable of the script.
const Field* FieldAt(lua_State* L, int key)
{
    lua_pushvalue(L, key);
    const bool found = lua_rawget(L, lua_upvalueindex(1)) != LUA_TNIL;
    const Field* field = found ? &FIELDS[lua_tointeger(L, -1)] : nullptr;
    lua_pop(L, 1);
    return field;
}

std::string KeyText(lua_State* L, int key)
{
    return lua_type(L, key) == LUA_TSTRING ? lua_tostring(L, key) : luaL_typename(L, key);
}

Instance& LiveInstance(lua_State* L, const Handle& handle)
{
    if (handle.instance == nullptr)
        throw ScriptError("instance " + std::to_string(handle.id) + " no longer exists, its " + KeyText(L, 2) +
                          " cannot be used");
    return *handle.instance;
}

Handle& HandleAt(lua_State* L, int index) { return *static_cast<Handle*>(luaL_checkudata(L, index, SELF_TYPE)); }

// ---- metamethods ----

int ReadField(lua_State* L)
{
    const Handle& handle = HandleAt(L, 1);
    const Field* field = FieldAt(L, 2);
    if (field != nullptr && field->get == GetId)
        lua_pushinteger(L, handle.id);
    else if (field != nullptr)
        field->get(L, LiveInstance(L, handle));
    else if (lua_getiuservalue(L, 1, 1) == LUA_TTABLE)
    {
        lua_pushvalue(L, 2);
        lua_rawget(L, -2);
    }
    return 1;
}

void WriteVariable(lua_State* L)
{
    if (lua_type(L, 2) != LUA_TSTRING)
        throw ScriptError("a variable of an instance must have a name, got a " + KeyText(L, 2));
    if (lua_getiuservalue(L, 1, 1) != LUA_TTABLE)
    {
        lua_newtable(L);
        lua_pushvalue(L, -1);
        lua_setiuservalue(L, 1, 1);
    }
    lua_pushvalue(L, 2);
    lua_pushvalue(L, 3);
    lua_rawset(L, -3);
}

int WriteField(lua_State* L)
{
    Instance& instance = LiveInstance(L, HandleAt(L, 1));
    const Field* field = FieldAt(L, 2);
    if (field == nullptr)
    {
        WriteVariable(L);
        return 0;
    }
    const std::string name = field->name;
    if (field->set == nullptr)
        throw ScriptError("\"" + name + "\" of an instance cannot be set");
    try
    {
        field->set(L, 3, instance);
    }
    catch (const ScriptError& error)
    {
        throw ScriptError("\"" + name + "\" of an instance " + error.what());
    }
    return 0;
}

int ShowSelf(lua_State* L)
{
    lua_pushfstring(L, "instance %d", HandleAt(L, 1).id);
    return 1;
}

// pairs(self) goes through the script's variables.
int ListVariables(lua_State* L)
{
    lua_getglobal(L, "pairs");
    if (lua_getiuservalue(L, 1, 1) != LUA_TTABLE)
        lua_newtable(L);
    lua_call(L, 1, 3);
    return 3;
}

template <int (*body)(lua_State*)> int Entry(lua_State* L) { return RunForLua(L, body); }

void PushFieldNames(lua_State* L)
{
    lua_newtable(L);
    int index = 0;
    for (const Field& field : FIELDS)
    {
        lua_pushinteger(L, index++);
        lua_setfield(L, -2, field.name);
    }
}
} // namespace

std::string NoSuchSprite(int sprite)
{
    return "must be a sprite or -1 for none, there is no sprite " + std::to_string(sprite);
}

void OpenSelves(lua_State* L)
{
    luaL_newmetatable(L, SELF_TYPE);
    PushFieldNames(L);
    lua_pushvalue(L, -1);
    lua_pushcclosure(L, Entry<ReadField>, 1);
    lua_setfield(L, -3, "__index");
    lua_pushcclosure(L, Entry<WriteField>, 1);
    lua_setfield(L, -2, "__newindex");
    lua_pushcfunction(L, Entry<ShowSelf>);
    lua_setfield(L, -2, "__tostring");
    lua_pushcfunction(L, ListVariables);
    lua_setfield(L, -2, "__pairs");
    lua_pushboolean(L, 0);
    lua_setfield(L, -2, "__metatable"); // out of the reach of scripts
    lua_pop(L, 1);
}

void PushSelf(lua_State* L, Instance& instance)
{
    if (instance.self != NO_SCRIPT)
    {
        ScriptEngine::Push(L, instance.self);
        return;
    }
    auto* handle = static_cast<Handle*>(lua_newuserdatauv(L, sizeof(Handle), 1));
    handle->instance = &instance;
    handle->id = instance.m_id;
    luaL_setmetatable(L, SELF_TYPE);
    lua_pushvalue(L, -1);
    instance.self = luaL_ref(L, LUA_REGISTRYINDEX);
}

void PushVariables(lua_State* L, const Instance& instance)
{
    if (instance.self == NO_SCRIPT)
    {
        lua_pushnil(L);
        return;
    }
    ScriptEngine::Push(L, instance.self);
    lua_getiuservalue(L, -1, 1);
    lua_remove(L, -2);
}

void SetVariables(lua_State* L, Instance& instance, int table)
{
    table = lua_absindex(L, table);
    PushSelf(L, instance);
    lua_pushvalue(L, table);
    lua_setiuservalue(L, -2, 1);
    lua_pop(L, 1);
}

Instance* SelfAt(lua_State* L, int index)
{
    const auto* handle = static_cast<const Handle*>(luaL_testudata(L, index, SELF_TYPE));
    return handle == nullptr ? nullptr : handle->instance;
}

bool SelfIdentifier(lua_State* L, int index, int& id)
{
    const auto* handle = static_cast<const Handle*>(luaL_testudata(L, index, SELF_TYPE));
    if (handle != nullptr)
        id = handle->id;
    return handle != nullptr;
}

void DropSelf(Instance& instance)
{
    ScriptEngine* engine = ScriptEngine::Current();
    if (engine == nullptr || !engine->IsOpen() || instance.self == NO_SCRIPT)
        return;
    lua_State* L = engine->Running();
    ScriptEngine::Push(L, instance.self);
    auto* handle = static_cast<Handle*>(lua_touserdata(L, -1));
    handle->instance = nullptr;
    lua_pop(L, 1);
    engine->Drop(instance.self);
    instance.self = NO_SCRIPT;
}
} // namespace Runner
