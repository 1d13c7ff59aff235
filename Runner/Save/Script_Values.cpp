#include "Runner/Save/Script_Values.h"

#include "Runner/Lua/Self.h"
#include "Runner/Save/Value_Tables.h"
#include "Runner/World/World.h"

#include <lua.hpp>

namespace Runner
{
namespace
{
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
} // namespace

void CaptureValues(lua_State* L, const World& world, SavedState& state)
{
    luaL_checkstack(L, LUA_MINSTACK, nullptr);
    state.values.tables.clear();
    const SelfForm selves(world);
    TableWalker walker(L, selves, state.values.tables);
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
    PushVars(L);
    const TableBuilder builder(L, state.values.tables, -1);
    builder.Fill(SelfForm(world));
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
