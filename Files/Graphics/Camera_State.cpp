// The cameras' part of a saved game: a plain run of 4-byte items, without header, version or lengths.
#include "Files/Graphics/Camera_State.h"

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Graphics_Support.h"
#include "Files/Graphics/Values.h"

#include <algorithm>

using namespace CameraModule;

namespace
{

constexpr int CAMERA_LOAD_LINE = 2279; // fixed by the hosts' tracking of allocations, which knows loaded cameras by it

template <typename T> T& FieldOf(CCamera& camera, const CameraStateField& field)
{
    void* const storage = reinterpret_cast<char*>(&camera) + field.offset; // aligned as the field is
    return *static_cast<T*>(storage);
}

void WriteFloats(const float* values, int count, IBuffer* buffer)
{
    for (int i = 0; i < count; ++i)
        buffer->Write(values[i]);
}

void ReadFloats(float* values, int count, IBuffer* buffer)
{
    for (int i = 0; i < count; ++i)
        values[i] = buffer->ReadFloat();
}

// The index under which a callback is saved. Callable objects are saved as none: their code belongs to the running
// game.
int ScriptIndex(const RValue& script) { return KvKind(script) == VALUE_OBJECT ? -1 : KvGetInt32(&script, 0); }

void ReadScript(RValue& script, IBuffer* buffer)
{
    const int index = buffer->ReadS32();
    ReleaseValue(script);
    script = RealValue(index);
}

void WriteField(CCamera& camera, const CameraStateField& field, IBuffer* buffer)
{
    switch (field.type)
    {
    case eState_S32: return buffer->Write(FieldOf<int32_t>(camera, field));
    case eState_F32: return WriteFloats(&FieldOf<float>(camera, field), field.count, buffer);
    case eState_Bool: return buffer->Write(FieldOf<bool>(camera, field));
    case eState_Script: return buffer->Write(ScriptIndex(FieldOf<RValue>(camera, field)));
    }
}

void ReadField(CCamera& camera, const CameraStateField& field, IBuffer* buffer)
{
    switch (field.type)
    {
    case eState_S32: FieldOf<int32_t>(camera, field) = buffer->ReadS32(); return;
    case eState_F32: return ReadFloats(&FieldOf<float>(camera, field), field.count, buffer);
    case eState_Bool: FieldOf<bool>(camera, field) = buffer->ReadBool(); return;
    case eState_Script: return ReadScript(FieldOf<RValue>(camera, field), buffer);
    }
}

void ReadRecord(CCamera& camera, IBuffer* buffer)
{
    for (const CameraStateField& field : CAMERA_STATE)
        ReadField(camera, field, buffer);
}

// Skips the record of a camera for which there is no memory. Records carry no length: one is read to get past it.
void SkipRecord(IBuffer* buffer)
{
    CCamera skipped;
    ReadRecord(skipped, buffer);
}

} // namespace

void SerializeMatrix(kvMatrix* matrix, IBuffer* buffer) { WriteFloats(matrix->m, 16, buffer); }

void DeSerializeMatrix(kvMatrix* matrix, IBuffer* buffer) { ReadFloats(matrix->m, 16, buffer); }

void CCamera::Serialize(IBuffer* buffer)
{
    for (const CameraStateField& field : CAMERA_STATE)
        WriteField(*this, field, buffer);
}

void CCamera::DeSerialize(IBuffer* buffer)
{
    const int before = m_ID;
    ReadRecord(*this, buffer);
    if (m_ID != before)
        CCameraManager::IdentifierChanged(this);
}

void CCameraManager::Serialize(IBuffer* buffer)
{
    buffer->Write(m_cameraListSize);
    for (int slot = 0; slot < m_cameraListSize; ++slot)
    {
        CCamera* const camera = m_cameras[slot];
        buffer->Write(camera != nullptr ? 1 : 0);
        if (camera != nullptr)
            camera->Serialize(buffer);
    }
}

// Destroys the camera in slot 0, looking there once for each slot of the table. Cameras in other slots survive a load
// unless a loaded camera takes theirs.
void CCameraManager::ClearForLoad()
{
    for (int pass = m_cameraListSize; pass > 0; --pass)
    {
        if (m_cameras[0] != nullptr && m_cameras[0]->m_ID != -1)
            DestroyCamera(m_cameras[0]->m_ID);
    }
}

bool CCameraManager::DeSerialize(IBuffer* buffer)
{
    ClearForLoad();
    const int count = std::min(buffer->ReadS32(), CAMERA_SLOTS_LAST_LOADED);
    for (int slot = 0; slot < count; ++slot)
    {
        if (buffer->ReadBool())
            LoadCamera(buffer);
    }
    return true;
}

// Reads a record and registers its camera. One that cannot be registered, because its identifier is damaged or the
// table cannot grow, is freed, and the load goes on.
void CCameraManager::LoadCamera(IBuffer* buffer)
{
    CCamera* const camera = NewCamera(CAMERA_LOAD_LINE);
    if (camera == nullptr)
        return SkipRecord(buffer);
    ReadRecord(*camera, buffer);
    if (camera->m_ID <= CAMERA_ID_LAST_LOADED)
        AddCameraToList(camera, camera->m_ID);
    if (!HoldsAt(camera->m_ID, camera->m_ID) || m_cameras[camera->m_ID] != camera)
        FreeCamera(camera);
}
