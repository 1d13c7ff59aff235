#include "Runner/World/Instance.h"

#include "Files/Graphics/Trigonometry.h"
#include "Platform/Matrix.h"
#include "Platform/Strict_Float.h"
#include "Runner/World/World.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
// The axis-aligned rectangle around a box that is scaled, then rotated counter-clockwise about the origin.
RoomArea RotatedBox(const RoomArea& box, const Instance& instance)
{
    const float cosine = GR_Cos(instance.angle * RADIANS_PER_DEGREE);
    const float sine = GR_Sin(instance.angle * RADIANS_PER_DEGREE);
    const float xs[2] = {box.left * instance.scaleX, box.right * instance.scaleX};
    const float ys[2] = {box.top * instance.scaleY, box.bottom * instance.scaleY};
    RoomArea rotated = {INFINITY, INFINITY, -INFINITY, -INFINITY};
    for (const float x : xs)
        for (const float y : ys)
        {
            const float rotatedX = x * cosine + y * sine;
            const float rotatedY = y * cosine - x * sine;
            rotated.left = std::min(rotated.left, rotatedX);
            rotated.right = std::max(rotated.right, rotatedX);
            rotated.top = std::min(rotated.top, rotatedY);
            rotated.bottom = std::max(rotated.bottom, rotatedY);
        }
    return rotated;
}

RoomArea Joined(const RoomArea& a, const RoomArea& b)
{
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

RoomArea Translated(const RoomArea& area, float x, float y)
{
    return {area.left + x, area.top + y, area.right + x, area.bottom + y};
}
} // namespace

Instance::Instance(World& world, ObjectType& instanceType, float startX, float startY, int id)
    : CInstance(startX, startY, id, instanceType.index, false), type(instanceType), m_world(world)
{
    sprite = type.traits.sprite;
    depth = type.traits.depth;
    visible = type.traits.visible;
    solid = type.traits.solid;
}

Instance* Instance::From(KvObjectBase* object)
{
    if (object == nullptr || object->m_kind != OBJECT_KIND_INSTANCE)
        return nullptr;
    auto* instance = static_cast<CInstance*>(object);
    return instance->m_id >= INSTANCE_ID_FIRST ? static_cast<Instance*>(instance) : nullptr;
}

void Instance::ComputeAreas()
{
    const SpriteExtent* extent = m_world.FindSpriteExtent(sprite);
    RoomArea spriteBox = {};
    if (extent != nullptr)
        spriteBox = RotatedBox(
            {-extent->originX, -extent->originY, extent->width - extent->originX, extent->height - extent->originY},
            *this);
    const RoomArea ownBox = type.traits.hasBox ? RotatedBox(type.traits.box, *this) : spriteBox;
    box = Translated(ownBox, x, y);
    drawArea = extent == nullptr ? box : Translated(Joined(ownBox, spriteBox), x, y);
    m_flags &= ~static_cast<uint32_t>(eInstanceFlag_bbox_dirty);
}
} // namespace Runner
