// What the host check needs of the reference Runner beside the interface: a world, rooms and a script engine without a
// game around them.

#include "Host_Check/Host_Check.h"

#include "Tests/Runner/Support/Game_Support.h"

#include "Runner/Host/Buffer.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"
#include "Runner/Lua/Callable.h"
#include "Runner/Lua/Values.h"

#include <cstring>

#include <lua.hpp>

using namespace Runner;
using HostCheck::BufferStep;
using HostCheck::InstanceChange;
using HostCheck::ScriptBody;

namespace
{

struct Stage
{
    Stage()
    {
        SetSaveArea(area.Path("saves"));
        objects[0] = world.AddObject("parent", nullptr, {})->index;
        objects[1] = world.AddObject("child", world.FindObject(objects[0]), {})->index;
        objects[2] = world.AddObject("childless", nullptr, {})->index;
    }

    RunnerTest::TestDirectory area;
    Random random;
    ScriptEngine scripts{random};
    World world;
    Rooms rooms;
    int objects[3];
};

Stage& TheStage()
{
    static Stage stage;
    return stage;
}

bool OpenRoom(int width, int height, int objects[3])
{
    Stage& stage = TheStage();
    stage.rooms.End();
    stage.world.RemoveAll(nullptr);
    std::memcpy(objects, stage.objects, sizeof stage.objects);
    if (width == 0)
        return true;
    RoomSpec spec;
    spec.name = "host check";
    spec.width = width;
    spec.height = height;
    spec.views[0] = KvRoomView{1, 0, 0, 640, 480, 0, 0, 640, 480, 32, 32, -1, -1, -1};
    stage.world.SetRoomSize(width, height);
    stage.rooms.Start(stage.rooms.Add(std::move(spec)));
    return true;
}

CInstance* MakeInstance(int object, float x, float y)
{
    Stage& stage = TheStage();
    ObjectType* type = stage.world.FindObject(object);
    return type == nullptr ? nullptr : &stage.world.Create(*type, x, y);
}

bool ChangeInstance(CInstance* changed, InstanceChange change, float x, float y)
{
    Stage& stage = TheStage();
    Instance* instance = Instance::From(changed);
    switch (change)
    {
    case InstanceChange::Move:
        instance->x = x;
        instance->y = y;
        stage.world.Touch(*instance);
        break;
    case InstanceChange::Deactivate: instance->m_flags |= eInstanceFlag_Deactivated; break;
    case InstanceChange::Activate: instance->m_flags &= ~static_cast<uint32_t>(eInstanceFlag_Deactivated); break;
    case InstanceChange::Destroy: stage.world.Destroy(*instance); break;
    }
    return true;
}

// A Lua function around a body of the check. Its arguments and its result go through the Runner's own conversions.
int RunBody(lua_State* L)
{
    const auto body = reinterpret_cast<ScriptBody>(lua_touserdata(L, lua_upvalueindex(1)));
    HostArguments arguments(L, lua_gettop(L), lua_gettop(L));
    RValue result = MakeUndefined();
    body(nullptr, &result, lua_gettop(L), arguments.Values());
    PushFromHost(L, result);
    return 1;
}

bool MakeScript(ScriptBody body, bool callable, RValue* out)
{
    ScriptEngine& scripts = TheStage().scripts;
    lua_State* L = scripts.Running();
    lua_pushlightuserdata(L, reinterpret_cast<void*>(body));
    lua_pushcclosure(L, RunBody, 1);
    if (callable)
        *out = MakeObject(ScriptFunction::Of(L, -1));
    else
        *out = MakeReal(scripts.numbered.Add(scripts.Keep(L, -1)));
    lua_pop(L, 1);
    return true;
}

bool MakeText(const char* text, RValue* out)
{
    *out = MakeString(text);
    return true;
}

void CollectAll() { Collector::Collect(true); }

long ReadFile(const char* path, void* out, long size)
{
    FILE* file = std::fopen(path, "rb");
    if (file == nullptr)
        return -1;
    const long length = static_cast<long>(std::fread(out, 1, static_cast<size_t>(size), file));
    std::fclose(file);
    return length;
}

IBuffer* StepBuffer(IBuffer* buffer, BufferStep step)
{
    if (step == BufferStep::Open)
        return new TypedBuffer;
    auto* typed = static_cast<TypedBuffer*>(buffer);
    if (step == BufferStep::Rewind)
        return typed->Seek(0) ? typed : nullptr;
    delete typed;
    return nullptr;
}

void RefuseMemory(bool refuse) { FailAllocationAfter(refuse ? 0 : -1); }

bool TakeErrorText(char* out, int size)
{
    const bool waits = HasError();
    std::snprintf(out, static_cast<size_t>(size), "%s", TakeError().c_str());
    TheStage().scripts.TakeFailure();
    return waits;
}

TFunction FindFunction(const char* name)
{
    const Builtin* builtin = FindBuiltin(name);
    return builtin == nullptr ? nullptr : builtin->handler;
}

bool ReadMatrix(eMatrix slot, float out[16])
{
    std::memcpy(out, CurrentMatrix(slot).m, sizeof(kvMatrix));
    return true;
}

} // namespace

const HostCheck::Hooks& HostCheckHooks()
{
    static constexpr HostCheck::Hooks HOOKS = {OpenRoom,     MakeInstance,  ChangeInstance, MakeScript,
                                               MakeText,     CollectAll,    ReadFile,       StepBuffer,
                                               RefuseMemory, TakeErrorText, FindFunction,   ReadMatrix};
    TheStage();
    return HOOKS;
}
