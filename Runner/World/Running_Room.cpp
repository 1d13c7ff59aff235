#include "Runner/World/Running_Room.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Files/Object/Object_Base.h"
#include "Runner/Host/Collector.h"

#include <algorithm>
#include <new>
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
    for (size_t view = 0; view < m_running->views.size(); ++view)
        MakeCamera(view);
    Run_Room = m_running.get();
    g_CM.StartRoom();
    if (g_CM.m_pScriptInstance == nullptr)
        throw std::bad_alloc();
    AddGlobalObject(g_CM.m_pScriptInstance);
    return *m_running;
}

void Rooms::MakeCamera(size_t view)
{
    if (!m_running->spec.views[view].has_value())
        return;
    KvRoomView record = *m_running->spec.views[view];
    const CCamera* camera = g_CM.CreateCameraFromView(&record);
    if (camera == nullptr)
        throw std::bad_alloc();
    m_running->views[view].cameraID = camera->GetID();
    m_ownCameras.emplace_back(camera);
}

std::vector<int> Rooms::OwnCameras() const
{
    std::vector<int> ids;
    for (const CCameraHandle& own : m_ownCameras)
        if (const CCamera* camera = own.Get())
            ids.push_back(camera->GetID());
    return ids;
}

void Rooms::AdoptCameras(const std::vector<int>& ids)
{
    m_ownCameras.clear();
    for (const int id : ids)
        if (const CCamera* camera = g_CM.GetCamera(id))
            m_ownCameras.emplace_back(camera);
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
    for (const CCameraHandle& own : m_ownCameras)
        if (const CCamera* camera = own.Get())
            g_CM.DestroyCamera(camera->GetID());
    m_ownCameras.clear();
}
} // namespace Runner
