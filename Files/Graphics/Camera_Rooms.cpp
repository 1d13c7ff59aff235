// Cameras and the running room.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera_Manager.h"

#include "Files/Object/Object.h"
#include "Files/Object/Object_Base.h"

#include <algorithm>
#include <new>

CCamera* CCameraManager::CreateCameraFromView(KvRoomView* view)
{
    CCamera* const camera = view != nullptr ? NewPlacedCamera(__LINE__) : nullptr;
    if (camera == nullptr)
        return nullptr;

    camera->m_viewX = static_cast<float>(view->xview);
    camera->m_viewY = static_cast<float>(view->yview);
    camera->m_viewWidth = static_cast<float>(view->wview);
    camera->m_viewHeight = static_cast<float>(view->hview);
    camera->m_viewSpeedX = static_cast<float>(view->hspeed);
    camera->m_viewSpeedY = static_cast<float>(view->vspeed);
    camera->m_viewBorderX = static_cast<float>(view->hborder);
    camera->m_viewBorderY = static_cast<float>(view->vborder);
    camera->m_targetInstance = view->index;
    camera->m_viewAngle = 0.0f;
    camera->Build2DView(camera->m_viewX + camera->m_viewWidth * 0.5f, camera->m_viewY + camera->m_viewHeight * 0.5f);
    return camera;
}

void CCameraManager::StartRoom()
{
    if (m_pScriptInstance == nullptr)
        m_pScriptInstance = new (std::nothrow) CInstance(0.0f, 0.0f, 0, g_DummyObjectIndex, false);
    BuildRoomCameraList();
}

void CCameraManager::EndRoom()
{
    if (!g_fGarbageCollection)
        delete m_pScriptInstance;
    m_pScriptInstance = nullptr;

    for (int slot = std::max(m_InitialLoadHighPoint, 0); slot < m_cameraListSize; ++slot)
    {
        const CCamera* const camera = m_cameras[slot];
        if (camera != nullptr && camera->m_isClone && !camera->m_isPersistent)
            DestroyCamera(camera->m_ID);
    }
    std::fill(m_roomcameras, m_roomcameras + ROOM_CAMERAS, nullptr);
}

// Writes every entry, so that none dangles.
void CCameraManager::BuildRoomCameraList()
{
    if (Run_Room == nullptr)
        return;
    const auto find = [this](int id)
    {
        const int slot = FindCameraInList(id);
        return slot != -1 ? m_cameras[slot] : nullptr;
    };
    m_roomcameras[0] = find(g_DefaultCameraID);
    for (int view = 0; view < ROOM_VIEWS; ++view)
        m_roomcameras[1 + view] = find(Run_Room->r_view[view]->cameraID);
}
