#include "Runner/Api/Room_Fields.h"
#include "Runner/Game/Game.h"

namespace Runner
{
namespace
{
// ---- room_add ----

int RoomAdd(Arguments& call)
{
    call.Table(1);
    Fields fields(call, 1);
    Rooms& rooms = call.game.rooms;
    RoomSpec spec;
    spec.width = fields.Whole("width", call.game.ScreenWidth(), 1, ROOM_SIDE_LIMIT);
    spec.height = fields.Whole("height", call.game.ScreenHeight(), 1, ROOM_SIDE_LIMIT);
    ReadRoomFields(call, fields, spec);
    fields.Finish();
    return call.Return(rooms.Add(std::move(spec)));
}

// ---- the running room ----

int RoomGoto(Arguments& call)
{
    const int room = call.Whole(1);
    if (call.game.rooms.Find(room) == nullptr)
        call.Fail("there is no room " + std::to_string(room));
    call.game.GotoRoom(room);
    return 0;
}

int RoomGet(Arguments& call)
{
    const RunningRoom* room = call.game.rooms.Running();
    return call.Return(room == nullptr ? NO_ROOM : room->index);
}

const RunningRoom& Running(const Arguments& call)
{
    const RunningRoom* room = call.game.rooms.Running();
    if (room == nullptr)
        call.Fail("no room is running");
    return *room;
}

int RoomWidth(Arguments& call) { return call.Return(Running(call).r_width); }
int RoomHeight(Arguments& call) { return call.Return(Running(call).r_height); }

// ---- the screen ----

int ScreenSetSize(Arguments& call)
{
    const int width = call.Whole(1);
    const int height = call.Whole(2);
    if (width < 1 || height < 1 || width > PICTURE_SIDE_LIMIT || height > PICTURE_SIDE_LIMIT)
        call.Fail("width and height must be 1 to " + std::to_string(PICTURE_SIDE_LIMIT));
    if (!call.game.SetScreenSize(width, height))
        call.Fail("must come before the first sprite, surface, tile map and room");
    return 0;
}

int ScreenWidth(Arguments& call) { return call.Return(call.game.ScreenWidth()); }
int ScreenHeight(Arguments& call) { return call.Return(call.game.ScreenHeight()); }

constexpr ApiFunction FUNCTIONS[] = {
    {"room_add", 1, {FIELDS_ARGUMENT}, RoomAdd},
    {"room_goto", 1, {"room"}, RoomGoto},
    {"room_get", 0, {}, RoomGet},
    {"room_width", 0, {}, RoomWidth},
    {"room_height", 0, {}, RoomHeight},
    {"screen_set_size", 2, {"w", "h"}, ScreenSetSize},
    {"screen_width", 0, {}, ScreenWidth},
    {"screen_height", 0, {}, ScreenHeight},
};
} // namespace

ApiTable RoomApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
