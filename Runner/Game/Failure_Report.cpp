#include "Runner/Game/Failure_Report.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Base/Printable.h"
#include "Runner/Game/Game.h"
#include "Runner/Lua/Function_Place.h"
#include "Runner/World/Camera_Callbacks.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr const char* EVENT_NAMES[EVENT_COUNT] = {"create", "step", "draw", "destroy"};

struct RoomScript
{
    const char* name;
    int RoomScripts::*reference;
};

constexpr RoomScript ROOM_SCRIPTS[] = {{"create", &RoomScripts::create},
                                       {"load", &RoomScripts::load},
                                       {"step", &RoomScripts::step},
                                       {"draw", &RoomScripts::draw},
                                       {"draw_gui", &RoomScripts::drawGui}};

std::string EventOfObjects(const World& world, int called)
{
    for (int index = 0; index < world.ObjectCount(); ++index)
        for (size_t event = 0; event < EVENT_COUNT; ++event)
            if (world.FindObject(index)->traits.events[event] == called)
                return EVENT_NAMES[event];
    return "";
}

std::string EventOfRooms(const Rooms& rooms, int called)
{
    for (int index = 0; index < rooms.Count(); ++index)
        for (const RoomScript& script : ROOM_SCRIPTS)
            if (rooms.Find(index)->scripts.*script.reference == called)
                return "room " + Printable(rooms.Find(index)->name) + ": " + script.name;
    return "";
}

// The camera may be gone, or its callback another one by now: the camera alone is told then.
std::string EventOfCamera(int camera, int called)
{
    const std::string name = "camera " + std::to_string(camera);
    const CCamera* const running = g_CM.GetCamera(camera);
    for (const CameraCallback& callback : CAMERA_CALLBACKS)
        if (running != nullptr && CallbackReference(running->*callback.value) == called)
            return name + ": " + callback.name;
    return name + ": a callback";
}

std::string EventOf(const Game& game, const ScriptTrouble& trouble)
{
    if (trouble.called < 0)
        return trouble.stack.empty() ? "" : "the game's file";
    const std::string event = trouble.object.empty() ? "" : EventOfObjects(game.world, trouble.called);
    if (!event.empty())
        return Printable(trouble.object) + ": " + event;
    const std::string ofRoom = EventOfRooms(game.rooms, trouble.called);
    return ofRoom.empty() ? EventOfCamera(trouble.camera, trouble.called) : ofRoom;
}
} // namespace

FailureReport DescribeFailure(const Game& game)
{
    const ScriptTrouble& trouble = game.scripts.Trouble();
    FailureReport report;
    report.line = game.Failure();
    report.event = EventOf(game, trouble);
    report.value = trouble.value;
    report.room = game.rooms.Running() == nullptr ? "" : game.rooms.Running()->spec.name;
    report.frame = std::max(0, game.FrameNumber() - 1); // the frame that failed is counted as well
    report.stack = trouble.stack;
    return report;
}

std::vector<std::string> FailureReport::Details() const
{
    if (event.empty())
        return {};
    std::vector<std::string> lines = {event};
    lines.push_back((room.empty() ? "" : "room " + Printable(room) + ", ") + "frame " + std::to_string(frame));
    if (!value.empty())
        lines.push_back("the error is " + value);
    for (const StackLevel& level : stack)
    {
        lines.push_back(level.place);
        for (const auto& [name, text] : level.locals)
            lines.push_back("    " + name + " = " + text);
    }
    return lines;
}
} // namespace Runner
