#include "Runner/Inspect/Frame_Notes.h"

#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Render_Target.h"
#include "Files/Graphics_API/Graphics_API.h"
#include "Files/Instance/Instance.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Runner/World/Camera_Callbacks.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace Runner
{
namespace
{
AxisNote NoteOf(const CFollowAxis& axis)
{
    const int roomSize = axis.roomSize == nullptr ? 0 : *axis.roomSize;
    return {axis.edge, axis.size, axis.border, axis.speed, axis.roomSize != nullptr, roomSize, {}, axis.edge};
}

InstanceNote NoteOf(const Instance& instance, bool isDrawn)
{
    return {instance.m_id, instance.drawArea, isDrawn, instance.MayBeCulled(), instance.x, instance.y};
}

// By the current matrices and the published area, without instances. In a render target the projection is upside down:
// a second flip undoes the first, so that notes of targets read as those of the screen.
ViewNote NoteOfView(int view, int camera, int surface, const Port& port)
{
    kvMatrix projection = CurrentMatrix(eM_Projection), flipped;
    const kvMatrix& upright = CameraModule::ProjectionForTarget(projection, flipped);
    return {view,
            camera,
            surface,
            port,
            CurrentMatrix(eM_View),
            upright,
            CurrentMatrix(eM_View),
            upright,
            g_ViewAreaX,
            g_ViewAreaY,
            g_ViewAreaW,
            g_ViewAreaH,
            g_ViewAreaA,
            {}};
}

// The culled ones are what is left of those that a view could show.
void NoteCulled(const World& world, ViewNote& note)
{
    std::unordered_set<int> drawn;
    for (const InstanceNote& instance : note.instances)
        drawn.insert(instance.id);
    for (const auto& instance : world.Instances())
    {
        if (!instance->IsLive() || !instance->visible || drawn.count(instance->m_id) != 0)
            continue;
        ++note.culled;
        if (note.instances.size() < FrameNotes::INSTANCES_LIMIT)
            note.instances.push_back(NoteOf(*instance, false));
    }
}
} // namespace

AxisNote AxisNoteX(const CCamera& camera) { return NoteOf(camera.FollowAxisX()); }
AxisNote AxisNoteY(const CCamera& camera) { return NoteOf(camera.FollowAxisY()); }

CFollowStages StagesOf(const AxisNote& axis, float target)
{
    const int32_t roomSize = axis.roomSize;
    return CFollowAxis{axis.edge, axis.size, axis.border, axis.speed, axis.hasRoom ? &roomSize : nullptr}.StepAfter(
        target);
}

bool HasUpdateScript(const CCamera& camera)
{
    int number = -1;
    return !ScriptNumberOf(camera.m_updateScript, number) || number != -1;
}

void FrameNotes::FrameBegins(const Game& game)
{
    m_frame = game.FrameNumber();
    m_steps.clear();
    m_views.clear();
}

void FrameNotes::UpdateBegins(const CCamera& camera)
{
    StepNote note;
    note.camera = camera.GetID();
    note.target = camera.m_targetInstance;
    note.x = AxisNoteX(camera);
    note.y = AxisNoteY(camera);
    if (HasUpdateScript(camera))
        note.kind = UpdateKind::Callback;
    else if (const CInstance* instance = camera.FindTarget())
    {
        note.kind = UpdateKind::Followed;
        note.instance = instance->m_id;
        note.x.stages = StagesOf(note.x, instance->x);
        note.y.stages = StagesOf(note.y, instance->y);
    }
    else
        note.kind = note.target < 0 ? UpdateKind::NoTarget : UpdateKind::Missing;
    m_steps.push_back(note);
}

void FrameNotes::UpdateEnded(const CCamera& camera)
{
    StepNote& note = m_steps.back();
    note.hasEnded = true;
    note.x.after = camera.m_viewX;
    note.y.after = camera.m_viewY;
}

void FrameNotes::Look(const Game& game)
{
    FrameBegins(game);
    m_frame = game.FrameNumber() - 1;
    const GraphicsKeeper keeper;
    const RunningRoom* room = game.rooms.Running();
    for (int number = 0; room != nullptr && number < ROOM_VIEWS; ++number)
    {
        const View& view = room->views[static_cast<size_t>(number)];
        const CCamera* camera = view.visible ? PeekCamera(view.cameraID) : nullptr;
        if (camera == nullptr)
            continue;
        CCamera built;
        CopyForBuilding(*camera, built);
        built.ApplyMatrices();
        m_views.push_back(NoteOfView(number, view.cameraID, view.surface, game.PortOf(view)));
        StepNote step;
        step.camera = view.cameraID;
        step.kind = UpdateKind::Unseen;
        m_steps.push_back(step);
    }
}

void FrameNotes::ViewIsDrawn(const Game& game, const DrawnView& view)
{
    ViewNote note = NoteOfView(view.view, view.camera, view.surface, view.port);
    note.drawn = static_cast<int>(view.drawn.size());
    for (const Instance* instance : view.drawn)
        if (note.instances.size() < INSTANCES_LIMIT)
            note.instances.push_back(NoteOf(*instance, true));
    NoteCulled(game.world, note);
    m_views.push_back(std::move(note));
}

void FrameNotes::ShowThrough(int camera, const kvMatrix& view, const kvMatrix& projection)
{
    for (ViewNote& note : m_views)
        if (note.camera == camera && note.surface == SCREEN_SURFACE)
        {
            note.viewMatrix = view;
            note.projection = projection;
        }
}

std::vector<const ViewNote*> FrameNotes::SurfaceViews() const
{
    std::map<int, const ViewNote*> last;
    for (const ViewNote& note : m_views)
        if (note.surface != SCREEN_SURFACE)
            last[note.surface] = &note;
    std::vector<const ViewNote*> views;
    views.reserve(last.size());
    for (const auto& [surface, note] : last)
        views.push_back(note);
    return views;
}

const StepNote* FrameNotes::StepOf(int camera) const
{
    const auto found = std::find_if(m_steps.rbegin(), m_steps.rend(),
                                    [camera](const StepNote& note) { return note.camera == camera; });
    return found == m_steps.rend() ? nullptr : &*found;
}
} // namespace Runner
