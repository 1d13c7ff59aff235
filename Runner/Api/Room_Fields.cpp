#include "Runner/Api/Room_Fields.h"

#include "Runner/Game/Game.h"

namespace Runner
{
namespace
{
constexpr int NO_TARGET = -1; // of a view

// An object that exists, an instance that may come to exist, or none.
int ReadTarget(const Arguments& call, Fields& fields)
{
    const int target = fields.Whole("target", NO_TARGET);
    if (target < INSTANCE_ID_FIRST && target != NO_TARGET && call.game.world.FindObject(target) == nullptr)
        fields.Fail("target",
                    "must be an object, an instance or -1 for none, there is no object " + std::to_string(target));
    return target;
}

} // namespace

KvRoomView ReadView(const Arguments& call, int table, const std::string& where)
{
    Fields fields(call, table, where);
    KvRoomView view = {};
    view.visible = fields.Flag("visible", true) ? 1 : 0;
    view.xport = fields.Whole("xport", 0);
    view.yport = fields.Whole("yport", 0);
    view.wport = fields.Whole("wport", call.game.ScreenWidth());
    view.hport = fields.Whole("hport", call.game.ScreenHeight());
    view.xview = fields.Whole("x", 0);
    view.yview = fields.Whole("y", 0);
    view.wview = fields.Whole("w", view.wport);
    view.hview = fields.Whole("h", view.hport);
    view.hborder = fields.Whole("hborder", 0);
    view.vborder = fields.Whole("vborder", 0);
    view.hspeed = fields.Whole("hspeed", -1);
    view.vspeed = fields.Whole("vspeed", -1);
    view.index = ReadTarget(call, fields);
    fields.Finish();
    return view;
}

namespace
{
// Goes through all entries instead of 0 to 7, so that views[8] is refused.
void ReadViews(const Arguments& call, Fields& fields, RoomSpec& spec)
{
    lua_State* L = call.L;
    if (!fields.PushTable("views"))
        return;
    const int table = lua_gettop(L);
    for (lua_pushnil(L); lua_next(L, table) != 0; lua_pop(L, 1))
    {
        const lua_Integer number = lua_isinteger(L, -2) != 0 ? lua_tointeger(L, -2) : -1;
        if (number < 0 || number >= ROOM_VIEWS)
            fields.Fail("views", "must be numbered 0 to " + std::to_string(ROOM_VIEWS - 1));
        const std::string where = "views[" + std::to_string(number) + "]";
        if (!lua_istable(L, -1))
            fields.Fail(where, "is a table, got " + DescribeAt(L, -1));
        spec.views[static_cast<size_t>(number)] = ReadView(call, -1, where + ".");
    }
    lua_pop(L, 1);
}

RoomPlacement ReadStartingInstance(const Arguments& call, const Fields& fields, const std::string& where)
{
    lua_State* L = call.L;
    if (!lua_istable(L, -1) || lua_rawlen(L, -1) != 3)
        fields.Fail(where, "must be {object, x, y}");
    const int table = lua_gettop(L);
    for (int i = 3; i >= 1; --i)
        if (lua_rawgeti(L, table, i) != LUA_TNUMBER)
            fields.Fail(where, "must be {object, x, y}, all numbers");
    RoomPlacement placement = {};
    placement.object = PopEntry(fields, L, where + "[1]", WholeAt);
    placement.x = PopEntry(fields, L, where + "[2]", FiniteAt);
    placement.y = PopEntry(fields, L, where + "[3]", FiniteAt);
    if (call.game.world.FindObject(placement.object) == nullptr)
        fields.Fail(where, "names object " + std::to_string(placement.object) + ", which does not exist");
    return placement;
}

void ReadInstances(const Arguments& call, Fields& fields, RoomSpec& spec)
{
    if (!fields.PushTable("instances"))
        return;
    const auto count = static_cast<lua_Integer>(lua_rawlen(call.L, -1));
    for (lua_Integer i = 1; i <= count; ++i)
    {
        lua_rawgeti(call.L, -1, i);
        spec.instances.push_back(ReadStartingInstance(call, fields, "instances[" + std::to_string(i) + "]"));
        lua_pop(call.L, 1);
    }
    lua_pop(call.L, 1);
}

} // namespace

void ReadRoomFields(const Arguments& call, Fields& fields, RoomSpec& spec)
{
    spec.name = fields.Text("name", "room" + std::to_string(call.game.rooms.Count()));
    spec.background = fields.Colour("background", spec.background);
    ReadViews(call, fields, spec);
    ReadInstances(call, fields, spec);
    spec.scripts.create = fields.Function("create", NO_SCRIPT);
    spec.scripts.load = fields.Function("load", NO_SCRIPT);
    spec.scripts.step = fields.Function("step", NO_SCRIPT);
    spec.scripts.draw = fields.Function("draw", NO_SCRIPT);
    spec.scripts.drawGui = fields.Function("draw_gui", NO_SCRIPT);
}
} // namespace Runner
