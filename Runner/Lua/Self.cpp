#include "Runner/Lua/Self.h"

#include "Runner/Base/Printable.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Script_Engine.h"
#include "Runner/World/World.h"

#include <iterator>
#include <lua.hpp>
#include <optional>
#include <variant>

namespace Runner
{
namespace
{
constexpr char SELF_TYPE[] = "instance";

struct Handle
{
    Instance* instance; // null after the instance was removed
    int id;
};

// ---- the host's fields ----

void Touch(Instance& instance)
{
    if (World* world = World::Current())
        world->Touch(instance);
}

// Fields that are not plain members of Instance: computed ones, and the position, a member of the module's CInstance.
struct SpecialField
{
    const char* name;
    void (*get)(lua_State* L, Instance& instance);
    void (*set)(lua_State* L, int value, Instance& instance); // null: read only
};

void GetId(lua_State* L, Instance& instance) { lua_pushinteger(L, instance.m_id); }
void GetObject(lua_State* L, Instance& instance) { lua_pushinteger(L, instance.m_objectIndex); }

template <float CInstance::*member> void GetPosition(lua_State* L, Instance& instance)
{
    lua_pushnumber(L, static_cast<double>(instance.*member));
}

template <float CInstance::*member> void SetPosition(lua_State* L, int value, Instance& instance)
{
    instance.*member = FiniteAt(L, value);
    Touch(instance);
}

template <float RoomArea::*edge> void GetEdge(lua_State* L, Instance& instance)
{
    if ((instance.m_flags & eInstanceFlag_bbox_dirty) != 0)
        instance.ComputeAreas();
    lua_pushnumber(L, static_cast<double>(instance.box.*edge));
}

constexpr SpecialField SPECIAL_FIELDS[] = {
    {"id", GetId, nullptr},
    {"object", GetObject, nullptr},
    {"x", GetPosition<&CInstance::x>, SetPosition<&CInstance::x>},
    {"y", GetPosition<&CInstance::y>, SetPosition<&CInstance::y>},
    {"bbox_left", GetEdge<&RoomArea::left>, nullptr},
    {"bbox_top", GetEdge<&RoomArea::top>, nullptr},
    {"bbox_right", GetEdge<&RoomArea::right>, nullptr},
    {"bbox_bottom", GetEdge<&RoomArea::bottom>, nullptr},
};

void PushValue(lua_State* L, float value) { lua_pushnumber(L, static_cast<double>(value)); }
void PushValue(lua_State* L, bool value) { lua_pushboolean(L, value ? 1 : 0); }
template <typename Whole> void PushValue(lua_State* L, Whole value) { lua_pushinteger(L, value); }

void ReadValue(lua_State* L, int index, float& value) { value = FiniteAt(L, index); }
void ReadValue(lua_State* L, int index, bool& value) { value = FlagAt(L, index); }
void ReadValue(lua_State* L, int index, uint32_t& value) { value = ColourAt(L, index); }

void ReadValue(lua_State* L, int index, int32_t& value)
{
    const int sprite = WholeAt(L, index);
    const World* world = World::Current();
    if (sprite != NO_SPRITE && (world == nullptr || world->FindSpriteExtent(sprite) == nullptr))
        throw ScriptError(NoSuchSprite(sprite));
    value = sprite;
}

// A field of an instance as scripts name it: an entry of SPECIAL_FIELDS or of INSTANCE_FIELDS. The other is null.
struct Field
{
    const SpecialField* special;
    const InstanceField* plain;

    const char* Name() const { return special != nullptr ? special->name : plain->name; }
    bool IsReadOnly() const { return special != nullptr && special->set == nullptr; }
    bool IsId() const { return special != nullptr && special->get == GetId; }

    void Get(lua_State* L, Instance& instance) const
    {
        if (special != nullptr)
            return special->get(L, instance);
        std::visit([&](auto member) { PushValue(L, instance.*member); }, plain->member);
    }

    void Set(lua_State* L, int value, Instance& instance) const
    {
        if (special != nullptr)
            return special->set(L, value, instance);
        std::visit([&](auto member) { ReadValue(L, value, instance.*member); }, plain->member);
        Touch(instance);
    }
};

constexpr size_t SPECIAL_COUNT = std::size(SPECIAL_FIELDS);
constexpr size_t FIELD_COUNT = SPECIAL_COUNT + std::size(INSTANCE_FIELDS);

Field FieldNumber(size_t number)
{
    if (number < SPECIAL_COUNT)
        return {&SPECIAL_FIELDS[number], nullptr};
    return {nullptr, &INSTANCE_FIELDS[number - SPECIAL_COUNT]};
}

// Upvalues of the accessors of fields.
constexpr int FIELD_NUMBERS = lua_upvalueindex(1); // a table from names to field numbers
constexpr int SELF_METATABLE = lua_upvalueindex(2);

// The field that the key names; none when the key names a variable of the script.
std::optional<Field> FieldAt(lua_State* L, int key)
{
    lua_pushvalue(L, key);
    const bool found = lua_rawget(L, FIELD_NUMBERS) != LUA_TNIL;
    const lua_Integer number = found ? lua_tointeger(L, -1) : 0;
    lua_pop(L, 1);
    return found ? std::optional<Field>(FieldNumber(static_cast<size_t>(number))) : std::nullopt;
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

// Argument 1 of an accessor of fields: without the name of the type, which would be looked up each time that a script
// says self.x.
Handle& AccessedHandle(lua_State* L)
{
    const bool isSelf = lua_getmetatable(L, 1) != 0 && lua_rawequal(L, -1, SELF_METATABLE) != 0;
    lua_settop(L, 3);
    return isSelf ? *static_cast<Handle*>(lua_touserdata(L, 1)) : HandleAt(L, 1);
}

std::string OwnerOf(const Instance& instance) { return "object \"" + Printable(instance.type.name) + "\""; }

// ---- metamethods ----

int ReadField(lua_State* L)
{
    const Handle& handle = AccessedHandle(L);
    const std::optional<Field> field = FieldAt(L, 2);
    if (field.has_value() && field->IsId())
        lua_pushinteger(L, handle.id);
    else if (field.has_value())
        field->Get(L, LiveInstance(L, handle));
    else if (lua_getiuservalue(L, 1, 1) == LUA_TTABLE)
    {
        lua_pushvalue(L, 2);
        lua_rawget(L, -2);
    }
    StrictFields& strict = ScriptEngine::Current()->strict;
    if (strict.IsOn() && handle.instance != nullptr && lua_isnil(L, -1) && !field.has_value())
        strict.NoteRead(L, 2, OwnerOf(*handle.instance));
    return 1;
}

void WriteVariable(lua_State* L, const Instance& instance)
{
    if (lua_type(L, 2) != LUA_TSTRING)
        throw ScriptError("a variable of an instance must have a name, got a " + KeyText(L, 2));
    StrictFields& strict = ScriptEngine::Current()->strict;
    if (strict.IsOn())
        strict.NoteSet(L, 2, OwnerOf(instance));
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
    Instance& instance = LiveInstance(L, AccessedHandle(L));
    const std::optional<Field> field = FieldAt(L, 2);
    if (!field.has_value())
    {
        WriteVariable(L, instance);
        return 0;
    }
    const std::string name = field->Name();
    if (field->IsReadOnly())
        throw ScriptError("\"" + name + "\" of an instance cannot be set");
    try
    {
        field->Set(L, 3, instance);
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

// __pairs: pairs(self) lists the variables of the script, not the fields of the host.
int ListVariables(lua_State* L)
{
    HandleAt(L, 1);
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
    for (size_t number = 0; number < FIELD_COUNT; ++number)
    {
        lua_pushinteger(L, static_cast<lua_Integer>(number));
        lua_setfield(L, -2, FieldNumber(number).Name());
    }
}

// With the field numbers at the top and the metatable below them.
void PushAccessor(lua_State* L, lua_CFunction accessor)
{
    lua_pushvalue(L, -1);
    lua_pushvalue(L, -3);
    lua_pushcclosure(L, accessor, 2);
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
    PushAccessor(L, Entry<ReadField>);
    lua_setfield(L, -3, "__index");
    PushAccessor(L, Entry<WriteField>);
    lua_setfield(L, -3, "__newindex");
    lua_pop(L, 1);
    lua_pushcfunction(L, Entry<ShowSelf>);
    lua_setfield(L, -2, "__tostring");
    lua_pushcfunction(L, ListVariables);
    lua_setfield(L, -2, "__pairs");
    lua_pushboolean(L, 0);
    lua_setfield(L, -2, "__metatable"); // getmetatable answers false, so scripts cannot reach the metamethods
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
    StrictFields& strict = ScriptEngine::Current()->strict;
    if (!strict.IsOn())
        return;
    for (lua_pushnil(L); lua_next(L, table) != 0; lua_pop(L, 1))
        strict.NoteSet(L, lua_absindex(L, -2), OwnerOf(instance));
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
