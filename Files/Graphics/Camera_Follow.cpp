// Target following: the step that a camera takes in every update. The target moves freely in a dead zone, the view's
// rectangle without its borders; outside of it the view moves along, clamped to the room and limited in speed.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Graphics/Camera_Handle.h"
#include "Files/Graphics/Values.h"
#include "Files/Instance/Instance.h"
#include "Files/Object/Object.h"
#include "Files/Room/Room.h"

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

CInstance* FindTarget(int target)
{
    if (target < 0)
        return nullptr;
    return target >= INSTANCE_ID_FIRST ? FindById(target) : FindByObject(target);
}

// One axis of the view. The form of each comparison decides what a NaN does; keep `!(a >= b)` as it is.
struct Axis
{
    float edge, size, border, speed;

    // Dead zone: the edge stays while the target is a border away from both edges of the view, and otherwise moves by
    // what is missing. Borders that leave no zone centre the target.
    float EdgeFor(float target) const
    {
        if (2.0f * border >= size)
            return target - size * 0.5f;
        if (target - border < edge)
            return target - border;
        if (target + border > edge + size)
            return target + border - size;
        return edge;
    }

    // Clamp to the far edge last: a view larger than the room is aligned with the far edge and starts at a negative
    // coordinate.
    float ClampedToRoom(float wanted, const int32_t* roomSize) const
    {
        if (wanted < 0.0f)
            wanted = 0.0f;
        if (roomSize != nullptr)
        {
            const float end = static_cast<float>(*roomSize);
            if (wanted + size > end)
                wanted = end - size;
        }
        return wanted;
    }

    // A speed that is negative or NaN is no limit.
    float LimitedBySpeed(float wanted) const
    {
        if (!(speed >= 0.0f))
            return wanted;
        if (edge > wanted && edge - wanted > speed)
            wanted = edge - speed;
        if (edge < wanted && wanted - edge > speed)
            wanted = edge + speed;
        return wanted;
    }

    float Step(float target, const int32_t* roomSize) const
    {
        return LimitedBySpeed(ClampedToRoom(EdgeFor(floorf(target)), roomSize));
    }
};

} // namespace

void CCamera::CameraUpdate()
{
    if (!IsNoScript(m_updateScript))
    {
        const CCameraHandle self(this);
        if (ExecuteScript(&m_updateScript))
        {
            if (self.IsOfNoCamera() || self.Get() != nullptr)
                BuildViewIfDirty();
            return;
        }
    }
    if (CInstance* const target = FindTarget(m_targetInstance))
        Follow(*target);
    BuildViewIfDirty();
}

void CCamera::Follow(CInstance& target)
{
    if ((target.m_flags & eInstanceFlag_bbox_dirty) != 0)
        target.Compute_BoundingBox(true);

    const Axis horizontal = {m_viewX, m_viewWidth, m_viewBorderX, m_viewSpeedX};
    const Axis vertical = {m_viewY, m_viewHeight, m_viewBorderY, m_viewSpeedY};
    m_viewX = horizontal.Step(target.x, Run_Room != nullptr ? &Run_Room->r_width : nullptr);
    m_viewY = vertical.Step(target.y, Run_Room != nullptr ? &Run_Room->r_height : nullptr);
    BuildView();
}
