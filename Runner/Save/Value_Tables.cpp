#include "Runner/Save/Value_Tables.h"

#include "Runner/Lua/Self.h"
#include "Runner/World/World.h"

#include <lua.hpp>

#include <algorithm>
#include <climits>
#include <string>

namespace Runner
{
namespace
{
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

} // namespace

// ---- instances ----

bool SelfForm::Read(lua_State* L, int index, int32_t& id) const
{
    const Instance* const instance = SelfAt(L, index);
    id = instance == nullptr ? 0 : instance->m_id;
    return instance != nullptr;
}

void SelfForm::Push(lua_State* L, int32_t id) const
{
    Instance* const instance = m_world.Find(id);
    if (instance != nullptr)
        PushSelf(L, *instance);
    else
        lua_pushnil(L);
}

// ---- out of Lua ----

TableWalker::TableWalker(lua_State* L, const InstanceForm& instances, std::vector<SavedTable>& tables)
    : m_lua(L), m_instances(instances), m_tables(tables)
{
    lua_newtable(L);
    m_found = lua_gettop(L);
}

// A table is entered without its number, which NumberTables sets.
bool TableWalker::ReadValue(int index, SavedValue& value) const
{
    int32_t id = 0;
    if (m_instances.Read(m_lua, index, id))
        value = InstanceNumber{id};
    else if (lua_istable(m_lua, index))
        value = TableNumber{};
    else
        return ReadPlain(m_lua, index, value);
    return true;
}

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
        if (m_instances.IsLeftOut(m_lua, lua_topointer(m_lua, table)))
            continue;
        if (ReadPlain(m_lua, -2, entry.key) && ReadValue(-1, entry.value))
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

TableBuilder::TableBuilder(lua_State* L, const std::vector<SavedTable>& tables, int first) : m_lua(L), m_tables(tables)
{
    first = lua_absindex(L, first);
    lua_createtable(L, Clamped(tables.size()), 0);
    m_list = lua_gettop(L);
    for (size_t number = 0; number < tables.size(); ++number)
    {
        const size_t size = tables[number].entries.size();
        const size_t sequence = SequenceLength(tables[number]);
        if (number == 0)
        {
            ClearTable(L, first);
            lua_pushvalue(L, first);
        }
        else
            lua_createtable(L, Clamped(sequence), Clamped(size - sequence));
        lua_rawseti(L, m_list, static_cast<lua_Integer>(number) + 1);
    }
}

void TableBuilder::PushTable(uint32_t number) const { lua_rawgeti(m_lua, m_list, lua_Integer{number} + 1); }

void TableBuilder::Fill(const InstanceForm& instances) const
{
    for (size_t number = 0; number < m_tables.size(); ++number)
    {
        PushTable(static_cast<uint32_t>(number));
        const int table = lua_gettop(m_lua);
        for (const SavedEntry& entry : m_tables[number].entries)
        {
            PushKey(m_lua, entry.key);
            PushValue(entry.value, instances);
            lua_rawset(m_lua, table);
        }
        lua_pop(m_lua, 1);
    }
}

void TableBuilder::PushValue(const SavedValue& value, const InstanceForm& instances) const
{
    if (const auto* table = std::get_if<TableNumber>(&value))
        return PushTable(table->number);
    if (const auto* instance = std::get_if<InstanceNumber>(&value))
        return instances.Push(m_lua, instance->id);
    std::visit(
        [this](const auto& content)
        {
            if constexpr (std::is_constructible_v<SavedKey, decltype(content)>)
                Push(m_lua, content);
        },
        value);
}
} // namespace Runner
