// Handlers that read and replace a camera's matrices and callbacks.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Functions.h"

#include "Files/Graphics/Handlers.h"
#include "Files/Graphics/Memory_Tag.h"
#include "Files/Graphics/Render_Target.h"
#include "Files/LLVM/Arrays.h"
#include "Platform/Memory_Manager.h"

using namespace CameraModule;

namespace
{

constexpr int MATRIX_ENTRIES = 16;

// ---- matrices as arrays ----

// Makes the result an array of the sixteen numbers. Without memory for it the result stays -1.
void SetMatrixResult(RValue& result, const kvMatrix& matrix)
{
    RefDynamicArrayOfRValue* const array = ARRAY_RefAlloc();
    if (array == nullptr)
        return;
    result.kind = VALUE_ARRAY;
    result.v64 = 0; // on a 32-bit target the pointer fills half of it
    result.pRefArray = array;
    array->m_length = MATRIX_ENTRIES;
    array->m_array =
        static_cast<RValue*>(MemoryManager::Alloc(MATRIX_ENTRIES * sizeof(RValue), MEMORY_TAG, __LINE__, true));
    if (array->m_array == nullptr)
    {
        array->m_length = 0;
        FREE_RValue__Pre(&result);
        return SetReal(result, -1.0);
    }
    for (int entry = 0; entry < MATRIX_ENTRIES; ++entry)
        SetReal(array->m_array[entry], static_cast<double>(matrix.m[entry]));
}

// The array that an argument's pointer word points at, or null. The kind is not examined; a word that cannot be the
// address of a record (too small, misaligned, not in user space) is refused as null is, because it must be a number.
RefDynamicArrayOfRValue* ArrayArgument(const RValue& argument)
{
    constexpr uintptr_t FIRST_ADDRESS = 4096;
    const uintptr_t address = reinterpret_cast<uintptr_t>(argument.ptr);
    const bool inUserSpace = sizeof(address) < 8 || (static_cast<uint64_t>(address) >> 48) == 0;
    const bool aligned = address % alignof(RefDynamicArrayOfRValue) == 0;
    return address >= FIRST_ADDRESS && inUserSpace && aligned ? argument.pRefArray : nullptr;
}

// Converts an array argument; false when it was reported. Both matrix setters report in the name of
// camera_set_view_mat, because games match on the texts.
bool ReadMatrixArgument(const RValue& argument, kvMatrix& matrix)
{
    const RefDynamicArrayOfRValue* const array = ArrayArgument(argument);
    if (array == nullptr)
    {
        KvError("camera_set_view_mat() - array invalid (has it been created properly?)");
        return false;
    }
    if (array->m_length != MATRIX_ENTRIES)
    {
        KvError("camera_set_view_mat() - must be 16 entries in array");
        return false;
    }
    for (int entry = 0; entry < MATRIX_ENTRIES; ++entry)
        matrix.m[entry] = KvGetFloat(array->m_array, entry);
    return true;
}

// Replaces one matrix. A pending build runs first: it would overwrite the new matrix later.
void SetMatrixOf(RValue& result, int argc, const RValue* args, void (CCamera::*set)(const kvMatrix&), const char* name)
{
    CCamera* const camera = BeginCall(result, argc, args, 2, name);
    kvMatrix matrix;
    if (camera == nullptr || !ReadMatrixArgument(args[1], matrix))
        return;
    camera->BuildViewIfDirty();
    (camera->*set)(matrix);
}

// ---- callbacks ----

void GetCallback(RValue& result, int argc, const RValue* args, RValue* (CCamera::*script)(), const char* name)
{
    CCamera* const camera = BeginCall(result, argc, args, 1, name);
    if (camera != nullptr)
        KvAssign(result, *(camera->*script)());
}

void SetCallback(RValue& result, int argc, RValue* args, void (CCamera::*set)(RValue*), const char* name)
{
    CCamera* const camera = BeginCall(result, argc, args, 2, name);
    if (camera != nullptr)
        (camera->*set)(&args[1]);
}

} // namespace

void F_CameraGetViewMat(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CCamera* const camera = BeginCall(result, argc, args, 1, "camera_get_view_mat");
    if (camera == nullptr)
        return;
    camera->BuildViewIfDirty();
    SetMatrixResult(result, camera->m_viewMat);
}

// The projection as the graphics layer would get it now: y is flipped while a render target is bound.
void F_CameraGetProjMat(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CCamera* const camera = BeginCall(result, argc, args, 1, "camera_get_proj_mat");
    if (camera == nullptr)
        return;
    camera->BuildViewIfDirty();
    kvMatrix flipped;
    SetMatrixResult(result, ProjectionForTarget(camera->m_projMat, flipped));
}

void F_CameraSetViewMat(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetMatrixOf(result, argc, args, &CCamera::SetViewMat, "camera_set_view_mat");
}

void F_CameraSetProjMat(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetMatrixOf(result, argc, args, &CCamera::SetProjMat, "camera_set_proj_mat");
}

void F_CameraGetBeginScript(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetCallback(result, argc, args, &CCamera::GetBeginScript, "camera_get_begin_script");
}

void F_CameraSetBeginScript(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetCallback(result, argc, args, &CCamera::SetBeginScript, "camera_set_begin_script");
}

void F_CameraGetEndScript(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetCallback(result, argc, args, &CCamera::GetEndScript, "camera_get_end_script");
}

void F_CameraSetEndScript(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetCallback(result, argc, args, &CCamera::SetEndScript, "camera_set_end_script");
}

void F_CameraGetUpdateScript(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetCallback(result, argc, args, &CCamera::GetUpdateScript, "camera_get_update_script");
}

void F_CameraSetUpdateScript(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetCallback(result, argc, args, &CCamera::SetUpdateScript, "camera_set_update_script");
}
