#pragma once
// Lua tables as the tables of a saved state, and back. To be used inside ScriptEngine::Protect.

#include "Runner/Save/Saved_State.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

struct lua_State;

namespace Runner
{
class World;

// How an instance stands in the tables: as its self in the running game, as a table for on_load.
class InstanceForm
{
public:
    virtual ~InstanceForm() = default;
    virtual bool Read(lua_State* L, int index, int32_t& id) const = 0; // false: the value is no instance
    virtual void Push(lua_State* L, int32_t id) const = 0;             // nil for one that does not exist

    // Whether an entry of a table is left out; its key lies at the top, the value above it.
    virtual bool IsLeftOut(lua_State*, const void* /*table*/) const { return false; }
};

// The self of each instance that exists.
class SelfForm final : public InstanceForm
{
public:
    explicit SelfForm(const World& world) : m_world(world) {}
    bool Read(lua_State* L, int index, int32_t& id) const override;
    void Push(lua_State* L, int32_t id) const override;

private:
    const World& m_world;
};

// Reads tables. They are numbered in the order in which they are first met, and visited in that order (breadth first),
// so that deep nesting needs no recursion.
class TableWalker
{
public:
    TableWalker(lua_State* L, const InstanceForm& instances, std::vector<SavedTable>& tables);

    uint32_t TakeNumber(); // of the table on top of the stack, which is popped
    void WalkAll();

private:
    bool ReadValue(int index, SavedValue& value) const;
    std::vector<SavedEntry> Entries(int table) const;
    void NumberTables(int table, std::vector<SavedEntry>& entries);

    lua_State* m_lua;
    const InstanceForm& m_instances;
    std::vector<SavedTable>& m_tables;
    int m_found; // stack index of the list of tables
    std::unordered_map<const void*, uint32_t> m_numbers;
};

// Makes tables. The one at index `first`, which is emptied, becomes table 0.
class TableBuilder
{
public:
    TableBuilder(lua_State* L, const std::vector<SavedTable>& tables, int first);

    void Fill(const InstanceForm& instances) const; // once, when the instances can be pushed
    void PushTable(uint32_t number) const;

private:
    void PushValue(const SavedValue& value, const InstanceForm& instances) const;

    lua_State* m_lua;
    const std::vector<SavedTable>& m_tables;
    int m_list = 0; // stack index of the list of tables
};
} // namespace Runner
