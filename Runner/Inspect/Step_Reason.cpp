#include "Runner/Inspect/Step_Reason.h"

#include "Files/Graphics/Camera.h"
#include "Runner/Inspect/Number_Text.h"
#include "Runner/Lua/Function_Place.h"
#include "Runner/World/World.h"

namespace Runner
{
namespace
{
std::string BorderText(const AxisNote& axis, const AxisWords& words)
{
    const std::string wanted = NumberText(axis.stages.border);
    if (2.0f * axis.border >= axis.size)
        return "no dead zone, so that the centre wants " + wanted;
    if (axis.stages.border < axis.edge)
        return std::string(words.lower) + " border wants " + wanted;
    if (axis.stages.border > axis.edge)
        return std::string(words.upper) + " border wants " + wanted;
    return "the dead zone keeps " + wanted;
}

std::string RoomText(const AxisNote& axis)
{
    return (axis.hasRoom ? "room allows " : "without a room, allowed is ") + NumberText(axis.stages.room);
}

std::string SpeedText(const AxisNote& axis)
{
    return axis.speed >= 0.0f ? "speed allows " + NumberText(axis.stages.speed) : "no speed limit";
}

std::string MoveText(const AxisNote& axis)
{
    return axis.after == axis.edge ? "stays at " + NumberText(axis.edge)
                                   : "moves by " + NumberText(axis.after - axis.edge);
}

// "instance 100004 of player".
std::string InstanceText(int id)
{
    const World* world = World::Current();
    const Instance* instance = world == nullptr ? nullptr : world->Find(id);
    const std::string text = "instance " + std::to_string(id);
    return instance == nullptr ? text : text + " of " + instance->type.name;
}

// What the update left and what stands there now: later events and changes by hand set the rest.
void AddLater(float left, float now, const char* axis, std::vector<std::string>& lines)
{
    if (left != now && !(left != left && now != now))
        lines.push_back(std::string(axis) + ": after the update it was set to " + NumberText(now));
}

std::string CallbackText(const StepNote& note, const CCamera& camera)
{
    const std::string place = PlaceOf(camera.m_updateScript);
    return "its update callback ran instead of following" + (place.empty() ? "" : ": " + place) +
           (note.target >= 0 ? " (the target " + std::to_string(note.target) + " is not followed)" : "");
}

void AddUpdate(const StepNote& note, const CCamera& camera, std::vector<std::string>& lines)
{
    switch (note.kind)
    {
    case UpdateKind::Unseen: break; // there is no update to tell of
    case UpdateKind::NoTarget: lines.emplace_back("it follows nothing, and no script moved it in its update"); break;
    case UpdateKind::Missing:
        lines.push_back("its target " + std::to_string(note.target) + " stands for no active instance");
        break;
    case UpdateKind::Callback:
        lines.push_back(CallbackText(note, camera));
        lines.push_back("x: from " + NumberText(note.x.edge) + " to " + NumberText(note.x.after));
        lines.push_back("y: from " + NumberText(note.y.edge) + " to " + NumberText(note.y.after));
        break;
    case UpdateKind::Followed:
        lines.push_back("it follows " + InstanceText(note.instance));
        lines.push_back(FollowText(note.x, ACROSS));
        lines.push_back(FollowText(note.y, DOWN));
        break;
    }
}
} // namespace

std::string FollowText(const AxisNote& axis, const AxisWords& words)
{
    return std::string(words.axis) + ": target " + NumberText(axis.stages.target) + ", floored " +
           NumberText(axis.stages.floored) + "; " + BorderText(axis, words) + "; " + RoomText(axis) + "; " +
           SpeedText(axis) + "; " + MoveText(axis);
}

std::vector<std::string> ReasonLines(const StepNote* note, const CCamera& camera)
{
    if (note == nullptr)
        return {"no view was drawn through it in this frame, so it had no update"};
    if (note->kind == UpdateKind::Unseen)
        return {"nobody watched its last update; the next one will be told"};
    std::vector<std::string> lines;
    AddUpdate(*note, camera, lines);
    AddLater(note->x.after, camera.m_viewX, "x", lines);
    AddLater(note->y.after, camera.m_viewY, "y", lines);
    return lines;
}
} // namespace Runner
