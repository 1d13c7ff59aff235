// The walker over the registry's rules.
#include "Files/Graphics/Camera_Manager.h"

#include "Files/Graphics/Camera_GCProxy.h"

#include <algorithm>

namespace
{

bool HasDuplicates(CCamera* const* table, int size)
{
    for (int slot = 0; slot < size; ++slot)
    {
        // By identifier first: while R1 holds, only the camera's own slot can hold it.
        if (table[slot] != nullptr && table[slot]->m_ID != slot && std::count(table, table + size, table[slot]) != 1)
            return true;
    }
    return false;
}

bool IdentifiersAreSlots(CCamera* const* table, int size)
{
    for (int slot = 0; slot < size; ++slot)
    {
        if (table[slot] != nullptr && table[slot]->m_ID != slot)
            return false;
    }
    return true;
}

bool ProxyIsMutual(const CCamera& camera) { return camera.pGCProxy == nullptr || camera.pGCProxy->pCamObj == &camera; }

bool CallableHasProxy(const CCamera& camera)
{
    const auto isObject = [](const RValue& script) { return KvKind(script) == VALUE_OBJECT; };
    return camera.pGCProxy != nullptr ||
           !(isObject(camera.m_beginScript) || isObject(camera.m_endScript) || isObject(camera.m_updateScript));
}

} // namespace

const char* CCameraManager::Validate() const
{
    CCamera* const* const begin = m_cameras;
    CCamera* const* const end = begin + m_cameraListSize;
    const auto every = [=](bool (*rule)(const CCamera&))
    { return std::all_of(begin, end, [=](const CCamera* camera) { return camera == nullptr || rule(*camera); }); };
    const auto isNoneOrInTable = [this](const CCamera* camera) { return camera == nullptr || IsInTable(camera); };

    if (HasDuplicates(m_cameras, m_cameraListSize))
        return "R2: a camera stands in two slots";
    if (!IdentifiersAreSlots(m_cameras, m_cameraListSize))
        return "R1: a camera's identifier is not its slot";
    if (!isNoneOrInTable(m_activeCamera))
        return "R3: the active camera is not in the table";
    if (!std::all_of(m_roomcameras, m_roomcameras + ROOM_CAMERAS, isNoneOrInTable))
        return "R3: a room's camera is not in the table";
    if (!every(ProxyIsMutual))
        return "R4: a proxy does not point back at its camera";
    if (!every(CallableHasProxy))
        return "R4: a camera holds a callable object but has no proxy";
    if (m_lastCamPos < -1 || m_lastCamPos >= m_cameraListSize)
        return "R5: the cached slot lies outside the table";
    return nullptr;
}
