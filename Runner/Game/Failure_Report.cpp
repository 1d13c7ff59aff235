#include "Runner/Game/Failure_Report.h"

#include "Runner/Game/Game.h"

#include <algorithm>
#include <sstream>

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
                return std::string("the ") + script.name + " script of room \"" + rooms.Find(index)->name + "\"";
    return "";
}

std::string EventOf(const Game& game, const ScriptTrouble& trouble)
{
    if (trouble.called < 0)
        return "the game's file";
    const std::string event = EventOfObjects(game.world, trouble.called);
    const std::string ofRoom = EventOfRooms(game.rooms, trouble.called);
    if (!event.empty())
        return "the " + event + " event of object \"" + trouble.object + "\"";
    return ofRoom.empty() ? "a callback of camera " + std::to_string(trouble.camera) : ofRoom;
}
} // namespace

FailureReport DescribeFailure(const Game& game)
{
    const ScriptTrouble& trouble = game.scripts.Trouble();
    const int failed = std::max(0, game.FrameNumber() - 1); // the frame that failed is counted as well
    FailureReport report = {game.Failure(), EventOf(game, trouble), failed, {}};
    std::istringstream lines(trouble.stack);
    for (std::string line; std::getline(lines, line);)
        report.stack.push_back(line);
    return report;
}
} // namespace Runner
