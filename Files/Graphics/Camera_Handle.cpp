#include "Files/Graphics/Camera_Handle.h"

#include "Files/Graphics/Camera_Manager.h"

CCameraHandle::CCameraHandle(const CCamera* camera)
    : m_slot(camera != nullptr ? g_CM.SlotOf(camera) : -1), m_birth(camera != nullptr ? camera->m_birth : 0),
      m_cleanings(CCameraManager::ms_cleanings)
{
}

CCamera* CCameraHandle::Get() const
{
    if (m_cleanings != CCameraManager::ms_cleanings || m_slot < 0 || m_slot >= g_CM.m_cameraListSize)
        return nullptr;
    CCamera* const camera = g_CM.m_cameras[m_slot];
    return camera != nullptr && camera->m_birth == m_birth ? camera : nullptr;
}
