#include "Runner/Api/Api_Functions.h"
#include "Runner/Game/Game.h"
#include "Runner/Game/View_Points.h"

namespace Runner
{
namespace
{
int ViewArgument(const Arguments& call)
{
    const int view = call.Whole(1);
    if (view < 0 || view >= ROOM_VIEWS)
        call.FailArgument(1, "is a view, 0 to " + std::to_string(ROOM_VIEWS - 1) + ", got " + DescribeAt(call.L, 1));
    return view;
}

// x and y, or nil for no such point.
int ReturnPoint(const Arguments& call, bool exists, PlanePoint point)
{
    if (!exists)
    {
        lua_pushnil(call.L);
        return 1;
    }
    lua_pushnumber(call.L, point.x);
    lua_pushnumber(call.L, point.y);
    return 2;
}

using Mapping = bool (*)(const Game& game, int view, PlanePoint from, double z, PlanePoint& to);

template <Mapping map> int MapPoint(Arguments& call)
{
    const int view = ViewArgument(call);
    const double x = static_cast<double>(call.Float(2));
    const double y = static_cast<double>(call.Float(3));
    const double z = static_cast<double>(call.Float(4, 0.0f));
    PlanePoint point;
    const bool exists = map(call.game, view, {x, y}, z, point);
    return ReturnPoint(call, exists, point);
}

int MouseRoom(Arguments& call)
{
    const int view = ViewArgument(call);
    const double z = static_cast<double>(call.Float(2, 0.0f));
    const MouseFrame& mouse = call.game.input.Frame().mouse;
    PlanePoint point;
    const bool exists =
        ViewToRoom(call.game, view, {static_cast<double>(mouse.x), static_cast<double>(mouse.y)}, z, point);
    return ReturnPoint(call, exists, point);
}

int FindViewAt(Arguments& call)
{
    const double x = static_cast<double>(call.Float(1));
    const double y = static_cast<double>(call.Float(2));
    return call.Return(ViewAt(call.game, {x, y}));
}

constexpr ApiFunction FUNCTIONS[] = {
    {"view_to_room", 3, {"view", "x", "y", "z"}, MapPoint<ViewToRoom>},
    {"room_to_view", 3, {"view", "x", "y", "z"}, MapPoint<RoomToView>},
    {"mouse_room", 1, {"view", "z"}, MouseRoom},
    {"view_at", 2, {"x", "y"}, FindViewAt},
};
} // namespace

ApiTable PointApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
