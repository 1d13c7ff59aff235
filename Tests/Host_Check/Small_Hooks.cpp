// What the host check needs of the small host beside the interface.

#include "Host_Check/Host_Check.h"

#include "Tests/Host_Check/Small_Hooks.h"
#include "Tests/Host_Check/Small_Host.h"

#include <cstdio>
#include <cstring>

using namespace SmallHost;
using HostCheck::BufferStep;
using HostCheck::InstanceChange;

namespace
{

bool ChangeInstance(CInstance* instance, InstanceChange change, float x, float y)
{
    uint32_t flag = 0;
    switch (change)
    {
    case InstanceChange::Move:
        instance->x = x;
        instance->y = y;
        flag = Breaks(Breakage::MovedIsNotStale) ? 0 : uint32_t{eInstanceFlag_bbox_dirty};
        break;
    case InstanceChange::Deactivate:
        flag = Breaks(Breakage::DeactivatedIsNotFlagged) ? 0 : uint32_t{eInstanceFlag_Deactivated};
        break;
    case InstanceChange::Activate: instance->m_flags &= ~static_cast<uint32_t>(eInstanceFlag_Deactivated); break;
    case InstanceChange::Destroy:
        flag = Breaks(Breakage::DestroyedIsNotFlagged) ? 0 : uint32_t{eInstanceFlag_Marked};
        break;
    }
    instance->m_flags |= flag;
    return true;
}

bool MakeScript(HostCheck::ScriptBody body, bool callable, RValue* out)
{
    *out = {};
    if (!callable)
    {
        out->val = AddScript(body);
        return true;
    }
    KvObjectBase* object = new Callable(body);
    out->kind = VALUE_OBJECT;
    out->pObj = object;
    return Place(object);
}

bool MakeText(const char* text, RValue* out)
{
    const size_t size = std::strlen(text);
    char* copy = static_cast<char*>(KvRealloc(nullptr, static_cast<int>(size) + 1));
    std::memcpy(copy, text, size + 1);
    RefString* record = new RefString;
    record->m_thing = copy;
    record->m_refCount = Breaks(Breakage::TextsHaveTwoReferences) ? 2 : 1;
    record->m_size = static_cast<int32_t>(size) + (Breaks(Breakage::TextLengthsCountTheEndMark) ? 1 : 0);
    *out = {};
    out->kind = VALUE_STRING;
    out->pRefString = record;
    return true;
}

long ReadFile(const char* path, void* out, long size)
{
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr)
        return -1;
    const long length = static_cast<long>(std::fread(out, 1, static_cast<size_t>(size), file));
    std::fclose(file);
    return length;
}

IBuffer* StepBuffer(IBuffer* buffer, BufferStep step)
{
    if (step == BufferStep::Open)
        return new Buffer;
    Buffer* own = static_cast<Buffer*>(buffer);
    own->position = 0;
    if (step == BufferStep::Rewind)
        return own;
    delete own;
    return nullptr;
}

void RefuseMemory(bool refuse) { g_refuses = refuse; }

bool ReadMatrix(eMatrix slot, float out[16])
{
    std::memcpy(out, MatrixIn(slot), 16 * sizeof(float));
    return true;
}

} // namespace

const HostCheck::Hooks& SmallHost::Hooks()
{
    static constexpr HostCheck::Hooks HOOKS = {OpenRoom,     MakeInstance, ChangeInstance, MakeScript,
                                               MakeText,     Collect,      ReadFile,       StepBuffer,
                                               RefuseMemory, TakeError,    FindFunction,   ReadMatrix};
    return HOOKS;
}
