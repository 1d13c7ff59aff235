// What the host check asks of this host beyond the interfaces: rooms, instances, a buffer, the matrices that were set.
#include "host.h"

#include <Host_Check/Host_Check.h>
#include <cstring>

namespace
{
using HostCheck::BufferStep;
using HostCheck::InstanceChange;

// Three objects that nobody has seen before: a parent, its child, and another child that gets no instance.
bool OpenAnyRoom(int width, int height, int objects[3])
{
    static int s_nextObject = 0;
    if (Run_Room != nullptr)
        CloseRoom();
    for (int i = 0; i < 3; ++i)
        objects[i] = s_nextObject++;
    DeriveObject(objects[1], objects[0]);
    DeriveObject(objects[2], objects[0]);
    if (width != 0)
        OpenRoom(width, height);
    return true;
}

CInstance* MakeInstance(int object, float x, float y) { return NewInstance(x, y, object); }

bool ChangeInstance(CInstance* instance, InstanceChange change, float x, float y)
{
    switch (change)
    {
    case InstanceChange::Move:
        instance->x = x;
        instance->y = y;
        instance->m_flags |= eInstanceFlag_bbox_dirty;
        return true;
    case InstanceChange::Deactivate: instance->m_flags |= eInstanceFlag_Deactivated; return true;
    case InstanceChange::Activate: instance->m_flags &= ~eInstanceFlag_Deactivated; return true;
    case InstanceChange::Destroy: DestroyInstance(instance); return true;
    }
    return false;
}

IBuffer* UseBuffer(IBuffer* buffer, BufferStep step)
{
    SaveBuffer* const own = static_cast<SaveBuffer*>(buffer);
    switch (step)
    {
    case BufferStep::Open: return new SaveBuffer;
    case BufferStep::Rewind: own->Rewind(); return own;
    case BufferStep::Close: delete own; break;
    }
    return nullptr;
}

bool ReadMatrix(eMatrix slot, float out[16])
{
    std::memcpy(out, MatrixOf(slot).m, sizeof(kvMatrix));
    return true;
}
} // namespace

// An entry that stays null skips the checks that need it.
const HostCheck::Hooks& HostCheckHooks()
{
    static HostCheck::Hooks s_hooks = {};
    s_hooks.openRoom = OpenAnyRoom;
    s_hooks.makeInstance = MakeInstance;
    s_hooks.changeInstance = ChangeInstance;
    s_hooks.buffer = UseBuffer;
    s_hooks.readMatrix = ReadMatrix;
    return s_hooks;
}
