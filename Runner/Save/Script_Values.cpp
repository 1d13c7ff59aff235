#include "Runner/Save/Script_Values.h"

#include "Runner/Lua/Self.h"
#include "Runner/World/World.h"

#include <lua.hpp>

#include <algorithm>
#include <climits>
#include <unordered_map>

namespace Runner
{
namespace
{
constexpr uint32_t VARS = 0; // number of the table vars

// Pushes the table vars; a new one when a script has assigned something else to that name.
void PushVars(lua_State* L)
{
    lua_rawgeti(L, LUA_REGISTRYINDEX, LUA_RIDX_GLOBALS); // raw access: scripts may give their globals a metatable
    lua_pushliteral(L, "vars");
    if (lua_rawget(L, -2) != LUA_TTABLE)
    {
        lua_pop(L, 1);
        lua_newtable(L);
        lua_pushliteral(L, "vars");
        lua_pushvalue(L, -2);
        lua_rawset(L, -4);
    }
    lua_remove(L, -2);
}

// ---- single values ----

void Push(lua_State* L, bool flag) { lua_pushboolean(L, flag ? 1 : 0); }
void Push(lua_State* L, int64_t number) { lua_pushinteger(L, number); }
void Push(lua_State* L, double number) { lua_pushnumber(L, number); }
void Push(lua_State* L, const std::string& text) { lua_pushlstring(L, text.data(), text.size()); }

void PushKey(lua_State* L, const SavedKey& key)
{
    std::visit([L](const auto& content) { Push(L, content); }, key);
}

// Reads a boolean, number or string. False for every other type.
template <typename Value> bool ReadPlain(lua_State* L, int index, Value& value)
{
    size_t size = 0;
    switch (lua_type(L, index))
    {
    case LUA_TBOOLEAN: value = lua_toboolean(L, index) != 0; return true;
    case LUA_TNUMBER:
        if (lua_isinteger(L, index) != 0)
            value = static_cast<int64_t>(lua_tointeger(L, index));
        else
            value = lua_tonumber(L, index);
        return true;
    case LUA_TSTRING:
    {
        const char* text = lua_tolstring(L, index, &size);
        value = std::string(text, size);
        return true;
    }
    default: return false;
    }
}

// A table is entered without its number, which NumberTables sets.
bool ReadValue(lua_State* L, int index, SavedValue& value)
{
    if (lua_istable(L, index))
    {
        value = TableNumber{};
        return true;
    }
    if (const Instance* instance = SelfAt(L, index))
    {
        value = InstanceNumber{instance->m_id};
        return true;
    }
    return ReadPlain(L, index, value);
}

// ---- out of Lua ----

// Tables are numbered in the order in which they are first met, and visited in that order (breadth first), so that deep
// nesting needs no recursion.
class TableWalker
{
public:
    TableWalker(lua_State* L, std::vector<SavedTable>& tables) : m_lua(L), m_tables(tables)
    {
        lua_newtable(L);
        m_found = lua_gettop(L);
    }

    uint32_t TakeNumber(); // of the table on top of the stack, which is popped
    void WalkAll();

private:
    std::vector<SavedEntry> Entries(int table) const;
    void NumberTables(int table, std::vector<SavedEntry>& entries);

    lua_State* m_lua;
    std::vector<SavedTable>& m_tables;
    int m_found; // stack index of the list of tables
    std::unordered_map<const void*, uint32_t> m_numbers;
};

uint32_t TableWalker::TakeNumber()
{
    const auto next = static_cast<uint32_t>(m_tables.size());
    const auto [entry, isNew] = m_numbers.emplace(lua_topointer(m_lua, -1), next);
    if (isNew)
    {
        m_tables.emplace_back();
        lua_pushvalue(m_lua, -1);
        lua_rawseti(m_lua, m_found, lua_Integer{next} + 1);
    }
    lua_pop(m_lua, 1);
    return entry->second;
}

void TableWalker::WalkAll()
{
    for (size_t walked = 0; walked < m_tables.size(); ++walked)
    {
        lua_rawgeti(m_lua, m_found, static_cast<lua_Integer>(walked) + 1);
        const int table = lua_gettop(m_lua);
        std::vector<SavedEntry> entries = Entries(table);
        NumberTables(table, entries);
        m_tables[walked].entries = std::move(entries);
        lua_pop(m_lua, 1);
    }
}

// Sorted by key, because Lua's own order differs between two runs.
std::vector<SavedEntry> TableWalker::Entries(int table) const
{
    std::vector<SavedEntry> entries;
    for (lua_pushnil(m_lua); lua_next(m_lua, table) != 0; lua_pop(m_lua, 1))
    {
        SavedEntry entry;
        if (ReadPlain(m_lua, -2, entry.key) && ReadValue(m_lua, -1, entry.value))
            entries.push_back(std::move(entry));
    }
    std::sort(entries.begin(), entries.end(), [](const SavedEntry& a, const SavedEntry& b) { return a.key < b.key; });
    return entries;
}

void TableWalker::NumberTables(int table, std::vector<SavedEntry>& entries)
{
    for (SavedEntry& entry : entries)
    {
        auto* number = std::get_if<TableNumber>(&entry.value);
        if (number == nullptr)
            continue;
        PushKey(m_lua, entry.key);
        lua_rawget(m_lua, table);
        number->number = TakeNumber();
    }
}

// ---- back into Lua ----

int Clamped(size_t count) { return static_cast<int>(std::min<size_t>(count, INT_MAX)); }

// The number of keys 1, 2, 3 and so on without a gap. Entries are sorted, so these keys come in that order.
size_t SequenceLength(const SavedTable& table)
{
    size_t length = 0;
    for (const SavedEntry& entry : table.entries)
    {
        const auto* key = std::get_if<int64_t>(&entry.key);
        if (key != nullptr && *key == static_cast<int64_t>(length) + 1)
            ++length;
    }
    return length;
}

void ClearTable(lua_State* L, int table)
{
    lua_pushnil(L);
    while (lua_next(L, table) != 0)
    {
        lua_pop(L, 1);
        lua_pushvalue(L, -1);
        lua_pushnil(L);
        lua_rawset(L, table);
    }
}

class TableBuilder
{
public:
    TableBuilder(lua_State* L, const World& world, const std::vector<SavedTable>& tables)
        : m_lua(L), m_world(world), m_tables(tables)
    {
        MakeTables();
        FillTables();
    }

    void PushTable(uint32_t number) const { lua_rawgeti(m_lua, m_list, lua_Integer{number} + 1); }

private:
    void MakeTables();
    void FillTables() const;
    void PushValue(const SavedValue& value) const;

    lua_State* m_lua;
    const World& m_world;
    const std::vector<SavedTable>& m_tables;
    int m_list = 0; // stack index of the list of tables
};

void TableBuilder::MakeTables()
{
    lua_createtable(m_lua, Clamped(m_tables.size()), 0);
    m_list = lua_gettop(m_lua);
    for (size_t number = 0; number < m_tables.size(); ++number)
    {
        const size_t size = m_tables[number].entries.size();
        const size_t sequence = SequenceLength(m_tables[number]);
        if (number == VARS)
        {
            PushVars(m_lua);
            ClearTable(m_lua, lua_gettop(m_lua));
        }
        else
            lua_createtable(m_lua, Clamped(sequence), Clamped(size - sequence));
        lua_rawseti(m_lua, m_list, static_cast<lua_Integer>(number) + 1);
    }
}

void TableBuilder::FillTables() const
{
    for (size_t number = 0; number < m_tables.size(); ++number)
    {
        PushTable(static_cast<uint32_t>(number));
        const int table = lua_gettop(m_lua);
        for (const SavedEntry& entry : m_tables[number].entries)
        {
            PushKey(m_lua, entry.key);
            PushValue(entry.value);
            lua_rawset(m_lua, table);
        }
        lua_pop(m_lua, 1);
    }
}

void TableBuilder::PushValue(const SavedValue& value) const
{
    if (const auto* table = std::get_if<TableNumber>(&value))
        return PushTable(table->number);
    if (const auto* self = std::get_if<InstanceNumber>(&value))
    {
        Instance* instance = m_world.Find(self->id);
        return instance != nullptr ? PushSelf(m_lua, *instance) : lua_pushnil(m_lua);
    }
    std::visit(
        [this](const auto& content)
        {
            if constexpr (std::is_constructible_v<SavedKey, decltype(content)>)
                Push(m_lua, content);
        },
        value);
}
} // namespace

void CaptureValues(lua_State* L, const World& world, SavedState& state)
{
    luaL_checkstack(L, LUA_MINSTACK, nullptr);
    state.values.tables.clear();
    TableWalker walker(L, state.values.tables);
    PushVars(L);
    walker.TakeNumber();
    size_t index = 0;
    for (const auto& instance : world.Instances())
    {
        SavedInstance& saved = state.world.instances[index++];
        PushVariables(L, *instance);
        if (lua_istable(L, -1))
            saved.variables = walker.TakeNumber() + 1;
        else
            lua_pop(L, 1);
    }
    walker.WalkAll();
}

void RestoreValues(lua_State* L, const World& world, const SavedState& state)
{
    luaL_checkstack(L, LUA_MINSTACK, nullptr);
    const TableBuilder builder(L, world, state.values.tables);
    for (const SavedInstance& saved : state.world.instances)
    {
        Instance* instance = world.Find(saved.id);
        if (saved.variables == 0 || instance == nullptr)
            continue;
        builder.PushTable(saved.variables - 1);
        SetVariables(L, *instance, -1);
        lua_pop(L, 1);
    }
}
} // namespace Runner
