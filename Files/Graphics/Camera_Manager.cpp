// The registry: look-up, placement, cloning, destruction. Rules R1..R6 stand in the header.
#include "Files/Graphics/Camera_Manager.h"

#include "Files/Graphics/Fatal.h"
#include "Files/Graphics/Memory_Tag.h"
#include "Platform/Compiler.h"
#include "Platform/Memory_Manager.h"

#include <algorithm>
#include <climits>
#include <new>

using namespace CameraModule;

namespace
{

CCamera** NewTable(size_t count, int line)
{
    void* const table = MemoryManager::Alloc(count * sizeof(CCamera*), MEMORY_TAG, line, true);
    if (table == nullptr)
        Fatal("out of memory for the camera table");
    return static_cast<CCamera**>(table);
}

} // namespace

CCameraManager g_CM;

bool CCameraManager::ms_identifiersChanged = false;
uint32_t CCameraManager::ms_cleanings = 0;

// ---- life ----

CCameraManager::CCameraManager()
    : m_activeCamera(nullptr), m_pScriptInstance(nullptr), m_cameras(NewTable(1, __LINE__)),
      m_roomcameras(NewTable(ROOM_CAMERAS, __LINE__)), m_cameraListSize(1), m_lastCamPos(-1)
{
}

CCameraManager::~CCameraManager()
{
    Clean();
    MemoryManager::Free(m_cameras);
    MemoryManager::Free(m_roomcameras);
}

void CCameraManager::Clean()
{
    for (int slot = 0; slot < m_cameraListSize; ++slot)
    {
        if (m_cameras[slot] != nullptr)
            FreeCamera(m_cameras[slot]);
    }
    m_activeCamera = nullptr;
    m_pScriptInstance = nullptr;
    m_lastCamPos = -1;
    ms_identifiersChanged = false;
    ++ms_cleanings;
}

// ---- look-up: identifiers are compared in each step, because hosts may write the members ----

// The first entry of that identifier. Looks at all of them, from the last to the first: a branch that leaves early
// cannot be predicted, and costs more than the rest of the list.
inline CCamera* CCameraManager::FindInRoomList(int id) const
{
    CCamera* found = nullptr;
#pragma GCC unroll 9
    for (int entry = ROOM_CAMERAS - 1; entry >= 0; --entry)
    {
        CCamera* const camera = m_roomcameras[entry];
        if (camera != nullptr)
            found = camera->m_ID == id ? camera : found;
    }
    return found;
}

CCamera* CCameraManager::GetCamera(int id)
{
    if (HoldsAt(m_lastCamPos, id))
        return m_cameras[m_lastCamPos];
    if (CCamera* const camera = FindInRoomList(id))
        return camera;
    const int slot = FindInTable(id);
    return slot != -1 ? m_cameras[slot] : nullptr;
}

int CCameraManager::FindCameraInList(int id)
{
    if (id != -1 && HoldsAt(m_lastCamPos, id))
        return m_lastCamPos;
    return FindInTable(id);
}

inline int CCameraManager::FindInTable(int id)
{
    const int slot = !ms_identifiersChanged && HoldsAt(id, id) ? id : ScanTable(id);
    if (slot != -1)
        m_lastCamPos = slot;
    return slot;
}

int CCameraManager::ScanTable(int id) const
{
    for (int slot = 0; id != -1 && slot < m_cameraListSize; ++slot)
    {
        if (HoldsAt(slot, id))
            return slot;
    }
    return -1;
}

void CCameraManager::SetActiveCamera(int id) { m_activeCamera = id == -1 ? nullptr : GetCamera(id); }

// By address alone: neither the camera nor an entry may be read, because Clean leaves entries of freed cameras.
bool CCameraManager::IsInTable(const CCamera* camera) const
{
    return std::find(m_cameras, m_cameras + m_cameraListSize, camera) != m_cameras + m_cameraListSize;
}

int CCameraManager::SlotOf(const CCamera* camera) const
{
    if (HoldsAt(camera->m_ID, camera->m_ID) && m_cameras[camera->m_ID] == camera)
        return camera->m_ID;
    CCamera** const end = m_cameras + m_cameraListSize;
    CCamera** const entry = std::find(m_cameras, end, camera);
    return entry != end ? static_cast<int>(entry - m_cameras) : -1;
}

void CCameraManager::IdentifierChanged(const CCamera* camera)
{
    ms_identifiersChanged = ms_identifiersChanged || g_CM.IsInTable(camera);
}

// ---- placement ----

// The added entries are cleared here: what a host's reallocation leaves in them is not promised.
bool CCameraManager::GrowTable(int64_t size)
{
    if (size > INT_MAX || static_cast<uint64_t>(size) > SIZE_MAX / sizeof(CCamera*))
        return false;
    CCamera** const table = KvGrowTable(m_cameras, static_cast<size_t>(size));
    if (table == nullptr)
        return false;
    std::fill(table + m_cameraListSize, table + size, nullptr);
    m_cameras = table;
    m_cameraListSize = static_cast<int32_t>(size);
    return true;
}

void CCameraManager::Store(CCamera* camera, int slot)
{
    camera->m_ID = slot;
    m_cameras[slot] = camera;
}

// The first free slot from the high point upwards; else the first that a doubled table adds, even below the high point.
bool CCameraManager::PlaceInFreeSlot(CCamera* camera)
{
    const int size = m_cameraListSize;
    int slot = std::max(m_InitialLoadHighPoint, 0);
    if (slot < size)
        slot = static_cast<int>(std::find(m_cameras + slot, m_cameras + size, nullptr) - m_cameras);
    if (slot >= size)
    {
        slot = size;
        if (!GrowTable(std::max<int64_t>(2 * int64_t{size}, 1)))
            return false;
    }
    Store(camera, slot);
    m_lastCamPos = slot;
    return true;
}

CCamera* CCameraManager::NewCamera(int line)
{
    void* const block = MemoryManager::Alloc(sizeof(CCamera), MEMORY_TAG, line, true);
    return block != nullptr ? new (block) CCamera : nullptr;
}

CCamera* CCameraManager::NewPlacedCamera(int line)
{
    CCamera* const camera = NewCamera(line);
    if (camera == nullptr || PlaceInFreeSlot(camera))
        return camera;
    FreeCamera(camera);
    return nullptr;
}

void CCameraManager::AddCameraToList(CCamera* camera, int id)
{
    if (camera == nullptr)
        return;
    if (id == -1)
    {
        PlaceInFreeSlot(camera);
        return;
    }
    if (id < 0 || (id >= m_cameraListSize &&
                   !GrowTable(id < 2 * int64_t{m_cameraListSize} ? 2 * int64_t{m_cameraListSize} : int64_t{id} + 16)))
        return;
    if (m_cameras[id] != camera && m_cameras[id] != nullptr)
        DestroyOccupant(id);
    Store(camera, id);
}

// Makes a slot free for another camera. The camera of that identifier is destroyed wherever it stands; an occupant with
// another identifier, which a host has written, is destroyed as well.
void CCameraManager::DestroyOccupant(int slot)
{
    DestroyCamera(slot);
    if (m_cameras[slot] != nullptr)
        DestroySlot(slot);
}

// ---- creation and destruction ----

CCamera* CCameraManager::CreateCamera() { return NewPlacedCamera(__LINE__); }

CCamera* CCameraManager::CloneCamera(int id)
{
    CCamera* const source = GetCamera(id);
    CCamera* const clone = source != nullptr ? NewPlacedCamera(__LINE__) : nullptr;
    if (clone == nullptr)
        return nullptr;

    clone->CopyViewFrom(*source);
    clone->SetBeginScript(source->GetBeginScript());
    clone->SetEndScript(source->GetEndScript());
    clone->SetUpdateScript(source->GetUpdateScript());
    clone->SetViewMat(source->GetViewMat());
    clone->SetProjMat(source->GetProjMat());
    clone->m_isClone = true;
    clone->m_isPersistent = source->m_isPersistent;
    return clone;
}

void CCameraManager::DestroyCamera(int id)
{
    const int slot = FindCameraInList(id);
    if (slot != -1)
        DestroySlot(slot);
}

// The cache is cleared before the list is rebuilt, and the rebuild may set it again.
void CCameraManager::DestroySlot(int slot)
{
    CCamera* const camera = m_cameras[slot];
    if (camera == m_activeCamera)
        m_activeCamera = nullptr;
    FreeCamera(camera);
    m_cameras[slot] = nullptr;
    m_lastCamPos = -1;
    BuildRoomCameraList();
}

void CCameraManager::FreeCamera(CCamera* camera)
{
    camera->~CCamera();
    MemoryManager::Free(camera);
}

// ---- events of the host: a host may bring its own functions ----

CAMERA_WEAK_FUNCTION void CCameraManager::SetInitialLoadHighPoint()
{
    const auto free = std::count(m_cameras, m_cameras + m_cameraListSize, nullptr);
    m_InitialLoadHighPoint = m_cameraListSize - static_cast<int32_t>(free);
}

CAMERA_WEAK_FUNCTION CInstance* CCameraManager::GetScriptInstance() { return m_pScriptInstance; }
