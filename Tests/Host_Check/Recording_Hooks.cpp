// What the host check needs of the recording host beside the interface.

#include "Host_Check/Host_Check.h"

#include "Tests/Support/Recording_Host.h"

#include <cstdio>
#include <cstring>

using namespace Recording;
using HostCheck::BufferStep;
using HostCheck::InstanceChange;

namespace
{

constexpr int PARENT = 1, CHILD = 2, CHILDLESS = 3;

// The instances of the room by their object, as its lists show them.
struct Stage
{
    std::vector<CInstance*> ofParent, ofChild; // those of the parent take in the child's
    int nextId = INSTANCE_ID_FIRST;
};

Stage& TheStage()
{
    static Stage stage;
    return stage;
}

void ShowLists()
{
    SetObject(PARENT, TheStage().ofParent);
    SetObject(CHILD, TheStage().ofChild);
    SetObject(CHILDLESS, {});
}

bool OpenRoom(int width, int height, int objects[3])
{
    objects[0] = PARENT;
    objects[1] = CHILD;
    objects[2] = CHILDLESS;
    Reset();
    PassNan(false);
    TheStage() = {};
    ShowLists();
    Run_Room = width == 0 ? nullptr : NewRoom(width, height);
    return true;
}

CInstance* MakeInstance(int object, float x, float y)
{
    Stage& stage = TheStage();
    CInstance* instance = NewInstance(stage.nextId++, x, y);
    instance->m_objectIndex = object;
    stage.ofParent.push_back(instance);
    if (object == CHILD)
        stage.ofChild.push_back(instance);
    ShowLists();
    return instance;
}

bool ChangeInstance(CInstance* instance, InstanceChange change, float x, float y)
{
    switch (change)
    {
    case InstanceChange::Move:
        instance->x = x;
        instance->y = y;
        instance->m_flags |= eInstanceFlag_bbox_dirty;
        break;
    case InstanceChange::Deactivate: instance->m_flags |= eInstanceFlag_Deactivated; break;
    case InstanceChange::Activate: instance->m_flags &= ~static_cast<uint32_t>(eInstanceFlag_Deactivated); break;
    case InstanceChange::Destroy: instance->m_flags |= eInstanceFlag_Marked; break;
    }
    return true;
}

bool MakeText(const char* text, RValue* out)
{
    *out = NewString(text);
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

IBuffer* StepBuffer(IBuffer*, BufferStep step)
{
    static Buffer buffer; // checks open one at a time
    if (step != BufferStep::Rewind)
        buffer.bytes.clear();
    buffer.position = 0;
    return step == BufferStep::Close ? nullptr : &buffer;
}

void RefuseMemory(bool refuse)
{
    RefuseAbove(refuse ? 0 : SIZE_MAX);
    RefuseValueMemory(refuse);
}

bool TakeError(char* out, int size)
{
    const bool had = !Errors().empty();
    std::snprintf(out, static_cast<size_t>(size), "%s", had ? Errors().front().c_str() : "");
    Errors().clear();
    return had;
}

TFunction FindFunction(const char* name)
{
    const Builtin* builtin = FindBuiltin(name);
    return builtin == nullptr ? nullptr : builtin->handler;
}

bool ReadMatrix(eMatrix slot, float out[16])
{
    const kvMatrix matrix = LastMatrix(slot);
    std::memcpy(out, matrix.m, sizeof matrix.m);
    return true;
}

} // namespace

// It has no collector to speak of: Collect frees what is no root, whatever refers to it. Callbacks are a test's own.
const HostCheck::Hooks& HostCheckHooks()
{
    static constexpr HostCheck::Hooks HOOKS = {OpenRoom,     MakeInstance, ChangeInstance, nullptr,
                                               MakeText,     nullptr,      ReadFile,       StepBuffer,
                                               RefuseMemory, TakeError,    FindFunction,   ReadMatrix};
    Reset();
    PassNan(false);
    return HOOKS;
}
