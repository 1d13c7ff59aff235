#include "Runner/World/Running_Room.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Files/Object/Object_Base.h"
#include "Runner/Host/Collector.h"

#include <algorithm>
#include <utility>

namespace Runner
{
namespace
{
Rooms* s_current = nullptr;

void FillView(View& view, const KvRoomView& from)
{
    view.visible = from.visible != 0;
    view.xport = from.xport;
    view.yport = from.yport;
    view.wport = from.wport;
    view.hport = from.hport;
}

bool IsStillThere(int camera, uint32_t birth)
{
    const CCamera* found = g_CM.GetCamera(camera);
    return found != nullptr && found->m_birth == birth;
}
} // namespace

// ---- the running room ----

RunningRoom::RunningRoom(int roomIndex, const RoomSpec& roomSpec)
    : index(roomIndex), spec(roomSpec), background(roomSpec.background)
{
    r_width = spec.width;
    r_height = spec.height;
    for (size_t i = 0; i < views.size(); ++i)
    {
        r_view[i] = &views[i];
        views[i].cameraID = NO_CAMERA;
        if (spec.views[i].has_value())
            FillView(views[i], *spec.views[i]);
    }
}

bool RunningRoom::HasVisibleView() const
{
    return std::any_of(views.begin(), views.end(), [](const View& view) { return view.visible; });
}

// ---- rooms ----

Rooms::Rooms() { s_current = this; }

Rooms::~Rooms()
{
    End();
    s_current = nullptr;
}

Rooms* Rooms::Current() { return s_current; }

int Rooms::Add(RoomSpec spec)
{
    m_specs.push_back(std::make_unique<RoomSpec>(std::move(spec)));
    return Count() - 1;
}

const RoomSpec* Rooms::Find(int index) const
{
    return index >= 0 && index < Count() ? m_specs[static_cast<size_t>(index)].get() : nullptr;
}

RunningRoom& Rooms::Start(int index)
{
    m_running = std::make_unique<RunningRoom>(index, *m_specs[static_cast<size_t>(index)]);
    MakeCameras(*m_running);
    Run_Room = m_running.get();
    g_CM.StartRoom();
    if (g_CM.m_pScriptInstance != nullptr)
        AddGlobalObject(g_CM.m_pScriptInstance);
    return *m_running;
}

void Rooms::MakeCameras(RunningRoom& room)
{
    for (size_t i = 0; i < room.views.size(); ++i)
    {
        if (!room.spec.views[i].has_value())
            continue;
        KvRoomView record = *room.spec.views[i];
        const CCamera* camera = g_CM.CreateCameraFromView(&record);
        if (camera == nullptr)
            continue;
        room.views[i].cameraID = camera->GetID();
        Own(camera->GetID());
    }
}

void Rooms::Own(int id)
{
    if (const CCamera* camera = g_CM.GetCamera(id))
        m_ownCameras.push_back({id, camera->m_birth});
}

std::vector<int> Rooms::OwnCameras() const
{
    std::vector<int> ids;
    for (const OwnCamera& own : m_ownCameras)
        if (IsStillThere(own.id, own.birth))
            ids.push_back(own.id);
    return ids;
}

void Rooms::AdoptCameras(const std::vector<int>& ids)
{
    m_ownCameras.clear();
    for (const int id : ids)
        Own(id);
}

// The view cameras are destroyed last, when no room runs: while one runs, each destruction builds the module's room
// list again, which EndRoom has emptied.
void Rooms::End()
{
    if (m_running == nullptr)
        return;
    CInstance* scriptInstance = g_fGarbageCollection ? g_CM.m_pScriptInstance : nullptr; // without, the module frees it
    g_CM.EndRoom();
    Collector::LetGo(scriptInstance);
    Run_Room = nullptr;
    DestroyCameras();
    m_running.reset();
}

// Allocates nothing: it also runs at the end of a game, when there is nobody to report a refusal to.
void Rooms::DestroyCameras()
{
    for (const OwnCamera& own : m_ownCameras)
        if (IsStillThere(own.id, own.birth))
            g_CM.DestroyCamera(own.id);
    m_ownCameras.clear();
}
} // namespace Runner
