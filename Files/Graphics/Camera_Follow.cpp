// Target following: the step that a camera takes in every update. The target moves freely in a dead zone, the view's
// rectangle without its borders; outside of it the view moves along, clamped to the room and limited in speed.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Graphics/Camera_Follow.h"
#include "Files/Graphics/Camera_Handle.h"
#include "Files/Graphics/Values.h"
#include "Files/Instance/Instance.h"
#include "Files/Object/Object.h"
#include "Files/Room/Room.h"
#include "Platform/Compiler.h"

#include <cmath>

using namespace CameraModule;

namespace
{

bool IsActive(const CInstance* instance)
{
    return (instance->m_flags & (eInstanceFlag_Marked | eInstanceFlag_Deactivated)) == 0;
}

CInstance* FindById(int id)
{
    CInstance* const instance = CInstance::ms_ID2Instance.Find(id);
    return instance != nullptr && IsActive(instance) ? instance : nullptr;
}

// The first active instance of the object or of its children. An entry without an instance ends the search.
CInstance* FindByObject(int index)
{
    CObject* const object = g_ObjectHash != nullptr ? g_ObjectHash->Find(index) : nullptr;
    if (object == nullptr)
        return nullptr;
    for (KvListNode<CInstance>* node = object->m_Instances_Recursive.m_first; node != nullptr; node = node->m_next)
    {
        if (node->m_obj == nullptr || IsActive(node->m_obj))
            return node->m_obj;
    }
    return nullptr;
}

inline CInstance* TargetOf(int target)
{
    if (target < 0)
        return nullptr;
    return target >= INSTANCE_ID_FIRST ? FindById(target) : FindByObject(target);
}

// The edge stays while the target is a border away from both edges of the view, and otherwise moves by what is missing.
// Borders that leave no dead zone centre the target. Here and below the form of each comparison decides what a NaN
// does; keep `!(a >= b)` as it is.
float EdgeFor(float target, const CFollowAxis& axis)
{
    if (2.0f * axis.border >= axis.size)
        return target - axis.size * 0.5f;
    if (target - axis.border < axis.edge)
        return target - axis.border;
    if (target + axis.border > axis.edge + axis.size)
        return target + axis.border - axis.size;
    return axis.edge;
}

// Clamp to the far edge last: a view larger than the room is aligned with the far edge and starts at a negative
// coordinate.
float ClampedToRoom(float wanted, const CFollowAxis& axis)
{
    if (wanted < 0.0f)
        wanted = 0.0f;
    if (axis.roomSize != nullptr)
    {
        const float end = static_cast<float>(*axis.roomSize);
        if (wanted + axis.size > end)
            wanted = end - axis.size;
    }
    return wanted;
}

float LimitedBySpeed(float wanted, const CFollowAxis& axis)
{
    if (!(axis.speed >= 0.0f))
        return wanted;
    if (axis.edge > wanted && axis.edge - wanted > axis.speed)
        wanted = axis.edge - axis.speed;
    if (axis.edge < wanted && wanted - axis.edge > axis.speed)
        wanted = axis.edge + axis.speed;
    return wanted;
}

// Inlined, so that an update, which needs the last stage alone, stores no other and calls nothing.
CAMERA_ALWAYS_INLINE CFollowStages StagesOf(const CFollowAxis& axis, float target)
{
    CFollowStages stages;
    stages.target = target;
    stages.floored = floorf(target);
    stages.border = EdgeFor(stages.floored, axis);
    stages.room = ClampedToRoom(stages.border, axis);
    stages.speed = LimitedBySpeed(stages.room, axis);
    return stages;
}

CAMERA_ALWAYS_INLINE CFollowAxis AxisX(const CCamera& camera)
{
    return {camera.m_viewX, camera.m_viewWidth, camera.m_viewBorderX, camera.m_viewSpeedX,
            Run_Room != nullptr ? &Run_Room->r_width : nullptr};
}

CAMERA_ALWAYS_INLINE CFollowAxis AxisY(const CCamera& camera)
{
    return {camera.m_viewY, camera.m_viewHeight, camera.m_viewBorderY, camera.m_viewSpeedY,
            Run_Room != nullptr ? &Run_Room->r_height : nullptr};
}

} // namespace

CFollowStages CFollowAxis::StepAfter(float target) const { return StagesOf(*this, target); }

CFollowAxis CCamera::FollowAxisX() const { return AxisX(*this); }

CFollowAxis CCamera::FollowAxisY() const { return AxisY(*this); }

CInstance* CCamera::FindTarget() const { return TargetOf(m_targetInstance); }

// Apart from CameraUpdate, so that a step without a callback pays nothing for the handle.
bool CCamera::UpdateByScript()
{
    const CCameraHandle self(this);
    if (!ExecuteScript(&m_updateScript))
        return false;
    if (self.IsOfNoCamera() || self.Get() != nullptr)
        BuildViewIfDirty();
    return true;
}

void CCamera::CameraUpdate()
{
    if (!IsNoScript(m_updateScript) && UpdateByScript())
        return;
    if (CInstance* const target = TargetOf(m_targetInstance))
        Follow(*target);
    BuildViewIfDirty();
}

void CCamera::Follow(CInstance& target)
{
    if ((target.m_flags & eInstanceFlag_bbox_dirty) != 0)
        target.Compute_BoundingBox(true);

    const float newX = StagesOf(AxisX(*this), target.x).speed;
    const float newY = StagesOf(AxisY(*this), target.y).speed;
    m_viewX = newX;
    m_viewY = newY;
    BuildView();
}
