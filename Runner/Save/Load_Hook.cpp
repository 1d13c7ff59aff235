#include "Runner/Save/Load_Hook.h"

#include "Runner/Game/Failure_Report.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Console.h"
#include "Runner/Lua/Arguments.h"
#include "Runner/Lua/Values.h"
#include "Runner/Save/Value_Tables.h"

#include <lua.hpp>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace Runner
{
namespace
{
// Raw access: scripts may give their globals a metatable.
void PushHook(lua_State* L)
{
    lua_rawgeti(L, LUA_REGISTRYINDEX, LUA_RIDX_GLOBALS);
    lua_pushliteral(L, "on_load");
    lua_rawget(L, -2);
    lua_remove(L, -2);
}

// ---- instances as tables ----

// Pushes the entry of that name, which only its own table may hold.
void PushField(lua_State* L, int table, const char* name)
{
    table = lua_absindex(L, table);
    lua_pushstring(L, name);
    lua_rawget(L, table);
}

// Sets the entry to the value on top, which is popped.
void SetField(lua_State* L, int table, const char* name)
{
    table = lua_absindex(L, table);
    lua_pushstring(L, name);
    lua_insert(L, -2);
    lua_rawset(L, table);
}

std::string NameOfInstance(int32_t id) { return "instance " + std::to_string(id); }

float ReadFloat(lua_State* L, int32_t id, const char* name)
{
    const double number = lua_type(L, -1) == LUA_TNUMBER ? lua_tonumber(L, -1) : std::nan("");
    const auto single = static_cast<float>(number);
    if (!std::isfinite(single))
        throw ScriptError("on_load left no finite number in " + NameOfInstance(id) + "'s " + name);
    return single;
}

// The fields of an instance that such a table has besides the script's variables, and how each is pushed and read.
struct FieldAccess
{
    lua_State* L;
    SavedInstance& instance;
    const char* name;

    void Push(float InstanceFields::*member) const { lua_pushnumber(L, static_cast<double>(instance.fields.*member)); }
    void Push(uint32_t InstanceFields::*member) const { lua_pushinteger(L, instance.fields.*member); }
    void Push(bool InstanceFields::*member) const { lua_pushboolean(L, instance.fields.*member ? 1 : 0); }
    void Push(int32_t InstanceFields::*) const { lua_pushnil(L); } // sprites have no numbers across versions

    void Read(float InstanceFields::*member) const { instance.fields.*member = ReadFloat(L, instance.id, name); }
    void Read(bool InstanceFields::*member) const { instance.fields.*member = lua_toboolean(L, -1) != 0; }
    void Read(uint32_t InstanceFields::*member) const
    {
        const lua_Integer colour = lua_isinteger(L, -1) != 0 ? lua_tointeger(L, -1) : -1;
        if (colour < 0 || colour > 0xFFFFFF)
            throw ScriptError("on_load left no colour in " + NameOfInstance(instance.id) + "'s " + name);
        instance.fields.*member = static_cast<uint32_t>(colour);
    }
    void Read(int32_t InstanceFields::*) const
    {
        if (!lua_isnil(L, -1))
            throw ScriptError("on_load cannot set " + NameOfInstance(instance.id) + "'s " + name +
                              ": the room's load event can");
    }
};

bool IsFieldName(std::string_view name)
{
    const auto isIt = [name](const InstanceField& field) { return name == field.name; };
    return name == "id" || name == "object" || name == "x" || name == "y" ||
           std::any_of(std::begin(INSTANCE_FIELDS), std::end(INSTANCE_FIELDS), isIt);
}

// Each instance is the table of its variables, with its fields added.
class TableForm final : public InstanceForm
{
public:
    explicit TableForm(int list) : m_list(list) {} // stack index of a table from identifiers to instances

    void Add(lua_State* L, int32_t id) // the table at the top, which stays there
    {
        m_ids[lua_topointer(L, -1)] = id;
        lua_pushvalue(L, -1);
        lua_rawseti(L, m_list, id);
    }

    bool Read(lua_State* L, int index, int32_t& id) const override
    {
        const auto found = lua_istable(L, index) ? m_ids.find(lua_topointer(L, index)) : m_ids.end();
        id = found == m_ids.end() ? 0 : found->second;
        return found != m_ids.end();
    }

    void Push(lua_State* L, int32_t id) const override { lua_rawgeti(L, m_list, id); }

    bool IsLeftOut(lua_State* L, const void* table) const override
    {
        if (lua_type(L, -2) != LUA_TSTRING || m_ids.count(table) == 0)
            return false;
        size_t size = 0;
        const char* const name = lua_tolstring(L, -2, &size);
        return IsFieldName({name, size});
    }

private:
    const int m_list;
    std::unordered_map<const void*, int32_t> m_ids;
};

// ---- the call ----

class HookCall
{
public:
    HookCall(lua_State* state, SavedState& saved) : L(state), m_state(saved) {}

    void Run()
    {
        luaL_checkstack(L, 2 * LUA_MINSTACK, nullptr);
        lua_newtable(L);
        m_data = lua_gettop(L);
        lua_newtable(L);
        TableForm form(lua_gettop(L));
        MakeData(form);
        PushHook(L);
        lua_pushinteger(L, m_state.names.version);
        lua_pushvalue(L, m_data);
        lua_call(L, 2, 0);
        TakeRoom();
        TakeData(form);
    }

private:
    void MakeData(TableForm& form)
    {
        lua_newtable(L);
        const TableBuilder tables(L, m_state.values.tables, -1);
        for (const SavedInstance& instance : m_state.world.instances)
        {
            if (instance.variables == 0)
                lua_newtable(L);
            else
                tables.PushTable(instance.variables - 1);
            form.Add(L, instance.id);
            lua_pop(L, 1);
        }
        tables.Fill(form);
        tables.PushTable(0);
        SetField(L, m_data, "vars");
        MakeInstances(form);
        lua_pushlstring(L, m_state.names.room.data(), m_state.names.room.size());
        SetField(L, m_data, "room");
        lua_pushinteger(L, m_state.game.frame);
        SetField(L, m_data, "frame");
    }

    void MakeInstances(const TableForm& form)
    {
        lua_newtable(L);
        lua_Integer next = 1;
        for (SavedInstance& instance : m_state.world.instances)
        {
            form.Push(L, instance.id);
            lua_pushinteger(L, instance.id);
            SetField(L, -2, "id");
            PushObject(instance);
            SetField(L, -2, "object");
            lua_pushnumber(L, static_cast<double>(instance.x));
            SetField(L, -2, "x");
            lua_pushnumber(L, static_cast<double>(instance.y));
            SetField(L, -2, "y");
            for (const InstanceField& field : INSTANCE_FIELDS)
            {
                const FieldAccess access = {L, instance, field.name};
                std::visit([&access](auto member) { access.Push(member); }, field.member);
                SetField(L, -2, field.name);
            }
            lua_rawseti(L, -2, next++);
        }
        SetField(L, m_data, "instances");
    }

    // The name of the object, or its number when it was given none.
    void PushObject(const SavedInstance& instance)
    {
        const auto index = static_cast<size_t>(instance.object);
        const std::vector<std::string>& names = m_state.names.objects;
        if (instance.object >= 0 && index < names.size() && !names[index].empty())
            lua_pushlstring(L, names[index].data(), names[index].size());
        else
            lua_pushinteger(L, instance.object);
    }

    void TakeRoom()
    {
        size_t size = 0;
        PushField(L, m_data, "room");
        if (lua_type(L, -1) != LUA_TSTRING)
            throw ScriptError("on_load left no name of a room in data.room");
        const char* const name = lua_tolstring(L, -1, &size);
        m_state.names.room.assign(name, size);
        lua_pop(L, 1);
    }

    void TakeData(const TableForm& form)
    {
        m_state.values.tables.clear();
        TableWalker walker(L, form, m_state.values.tables);
        PushTable("vars");
        int32_t id = 0;
        if (form.Read(L, -1, id))
            throw ScriptError("on_load put an instance in the place of data.vars");
        walker.TakeNumber();
        PushTable("instances");
        TakeInstances(form, walker, lua_gettop(L));
        walker.WalkAll();
    }

    void PushTable(const char* name)
    {
        PushField(L, m_data, name);
        if (!lua_istable(L, -1))
            throw ScriptError(std::string("on_load left no table in data.") + name);
    }

    // Instances that are no longer in the list are left out; the others keep their order.
    void TakeInstances(const TableForm& form, TableWalker& walker, int list)
    {
        std::unordered_map<int32_t, bool> isListed;
        for (lua_pushnil(L); lua_next(L, list) != 0; lua_pop(L, 1))
        {
            int32_t id = 0;
            if (!form.Read(L, -1, id))
                throw ScriptError("on_load put something in data.instances that is no instance of the save");
            isListed[id] = true;
        }
        std::vector<SavedInstance>& instances = m_state.world.instances;
        const auto isOut = [&isListed](const SavedInstance& instance) { return isListed.count(instance.id) == 0; };
        instances.erase(std::remove_if(instances.begin(), instances.end(), isOut), instances.end());
        for (SavedInstance& instance : instances)
        {
            form.Push(L, instance.id);
            TakeFields(instance);
            instance.variables = walker.TakeNumber() + 1;
        }
    }

    // Of the table at the top.
    void TakeFields(SavedInstance& instance)
    {
        PushField(L, -1, "x");
        instance.x = ReadFloat(L, instance.id, "x");
        lua_pop(L, 1);
        PushField(L, -1, "y");
        instance.y = ReadFloat(L, instance.id, "y");
        lua_pop(L, 1);
        for (const InstanceField& field : INSTANCE_FIELDS)
        {
            PushField(L, -1, field.name);
            const FieldAccess access = {L, instance, field.name};
            std::visit([&access](auto member) { access.Read(member); }, field.member);
            lua_pop(L, 1);
        }
        PushField(L, -1, "object");
        TakeObject(instance);
        lua_pop(L, 1);
    }

    // A name that the save does not know becomes a further object of it.
    void TakeObject(SavedInstance& instance)
    {
        size_t size = 0;
        const char* const text = lua_type(L, -1) == LUA_TSTRING ? lua_tolstring(L, -1, &size) : nullptr;
        const bool isOldNumber = lua_isinteger(L, -1) != 0 && lua_tointeger(L, -1) == instance.object;
        if (text == nullptr && !isOldNumber)
            throw ScriptError("on_load left no name of an object in " + NameOfInstance(instance.id) + "'s object");
        std::vector<std::string>& names = m_state.names.objects;
        const std::string name(text == nullptr ? "" : text, size);
        const auto index = static_cast<size_t>(instance.object);
        if (name.empty() || (index < names.size() && names[index] == name))
            return;
        const auto found = std::find(names.begin(), names.end(), name);
        instance.object = static_cast<int32_t>(found - names.begin());
        if (found == names.end())
            names.push_back(name);
    }

    lua_State* const L;
    SavedState& m_state;
    int m_data = 0; // stack index of the table that the function gets
};
} // namespace

namespace
{
// The line that refuses the save comes after this: on_load's own error, with what was running.
void TellScriptError(const Game& game)
{
    FailureReport report = DescribeFailure(game);
    if (report.stack.empty()) // it left something wrong in its table: there is no line to look at
        return;
    report.event = "on_load";
    PrintLine(report.line);
    for (const std::string& line : report.Details())
        PrintLine("    " + line);
}
} // namespace

bool HasLoadHook(Game& game)
{
    bool hasHook = false;
    const ScriptEngine::Body look = [](lua_State* L, void* found)
    {
        luaL_checkstack(L, LUA_MINSTACK, nullptr);
        PushHook(L);
        *static_cast<bool*>(found) = lua_isfunction(L, -1);
    };
    game.scripts.Protect(look, &hasHook);
    return hasHook;
}

bool RunLoadHook(Game& game, SavedState& state, std::string& why)
{
    const ScriptEngine::Body run = [](lua_State* L, void* saved)
    { HookCall(L, *static_cast<SavedState*>(saved)).Run(); };
    const bool isGood = game.scripts.Protect(run, &state);
    if (!isGood)
    {
        TellScriptError(game);
        why = "on_load failed: " + game.scripts.TakeFailure();
    }
    return isGood;
}
} // namespace Runner
