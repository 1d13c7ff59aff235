#include "Runner/Api/Api_Functions.h"
#include "Runner/Game/Game.h"
#include "Runner/Lua/Self.h"

namespace Runner
{
namespace
{
// ---- objects ----

RoomArea ReadBox(const Arguments& call, Fields& fields, const RoomArea& otherwise)
{
    if (!fields.PushTable("bbox"))
        return otherwise;
    float edges[4] = {};
    for (int i = 0; i < 4; ++i)
    {
        if (lua_rawgeti(call.L, -1, i + 1) != LUA_TNUMBER || lua_rawlen(call.L, -2) != 4)
            fields.Fail("bbox", "must be four numbers: {left, top, right, bottom}");
        edges[i] = PopEntry(fields, call.L, "bbox[" + std::to_string(i + 1) + "]", FiniteAt);
    }
    lua_pop(call.L, 1);
    if (edges[0] > edges[2] || edges[1] > edges[3])
        fields.Fail("bbox", "must be {left, top, right, bottom} with left <= right and top <= bottom");
    return {edges[0], edges[1], edges[2], edges[3]};
}

int ReadSprite(const Arguments& call, Fields& fields, int otherwise)
{
    const int sprite = fields.Whole("sprite", otherwise);
    if (sprite != NO_SPRITE && call.game.world.FindSpriteExtent(sprite) == nullptr)
        fields.Fail("sprite", NoSuchSprite(sprite));
    return sprite;
}

ObjectType* ReadParent(const Arguments& call, Fields& fields)
{
    if (!fields.Has("parent"))
        return nullptr;
    const int index = fields.Whole("parent", -1);
    ObjectType* parent = call.game.world.FindObject(index);
    if (parent == nullptr)
        fields.Fail("parent", "must be an object, there is no object " + std::to_string(index));
    return parent;
}

void ReadEvents(Fields& fields, ObjectTraits& traits)
{
    constexpr const char* NAMES[EVENT_COUNT] = {"create", "step", "draw", "destroy"};
    for (size_t i = 0; i < traits.events.size(); ++i)
        traits.events[i] = fields.Function(NAMES[i], traits.events[i]);
}

int ObjectAdd(Arguments& call)
{
    call.Table(1);
    Fields fields(call, 1);
    World& world = call.game.world;
    ObjectType* parent = ReadParent(call, fields);
    ObjectTraits traits = parent == nullptr ? ObjectTraits() : parent->traits;
    const std::string name = fields.Text("name", "object" + std::to_string(world.ObjectCount()));
    traits.sprite = ReadSprite(call, fields, traits.sprite);
    traits.hasBox = fields.Has("bbox") || traits.hasBox;
    traits.box = ReadBox(call, fields, traits.box);
    traits.depth = fields.Float("depth", traits.depth);
    traits.visible = fields.Flag("visible", traits.visible);
    traits.solid = fields.Flag("solid", traits.solid);
    traits.cull = fields.Flag("cull", traits.cull);
    ReadEvents(fields, traits);
    fields.Finish();
    const ObjectType* made = world.AddObject(name, parent, traits);
    if (made == nullptr)
        call.Fail("there are too many objects");
    return call.Return(made->index);
}

int ObjectGetName(Arguments& call) { return call.Return(call.Object(1).name); }

// ---- instances ----

// Raises the error of an event that the call ran. Its text has a position already.
void RaiseFailure(const Arguments& call, bool succeeded)
{
    if (!succeeded)
        throw PositionedError(call.game.scripts.TakeFailure());
}

int InstanceCreate(Arguments& call)
{
    ObjectType& object = call.Object(3);
    if (call.game.rooms.Running() == nullptr)
        call.Fail("no room is running");
    const Instance* made = call.game.CreateInstance(object, call.Float(1), call.Float(2));
    RaiseFailure(call, made != nullptr);
    return call.Return(made->m_id);
}

int InstanceDestroy(Arguments& call)
{
    Instance* instance = call.FindInstance(1);
    if (instance != nullptr)
        RaiseFailure(call, call.game.DestroyInstance(*instance));
    return 0;
}

int InstanceDeactivate(Arguments& call)
{
    if (Instance* instance = call.FindInstance(1))
        instance->m_flags |= eInstanceFlag_Deactivated;
    return 0;
}

int InstanceActivate(Arguments& call)
{
    if (Instance* instance = call.FindInstance(1))
        instance->m_flags &= ~static_cast<uint32_t>(eInstanceFlag_Deactivated);
    return 0;
}

int InstanceExists(Arguments& call)
{
    const Instance* instance = call.FindInstance(1);
    if (instance != nullptr)
        return call.Return(instance->IsLive());
    int id = 0;
    ObjectType* object = SelfIdentifier(call.L, 1, id) ? nullptr : call.game.world.FindObject(call.Whole(1));
    return call.Return(object != nullptr && call.game.world.FindLive(*object, 0) != nullptr);
}

int InstanceFind(Arguments& call)
{
    const ObjectType& object = call.Object(1);
    luai_work(static_cast<size_t>(call.game.world.CountLive(object)));
    const Instance* found = call.game.world.FindLive(call.Object(1), call.Whole(2));
    return call.Return(found == nullptr ? -1 : found->m_id);
}

int InstanceCount(Arguments& call)
{
    const int count = call.game.world.CountLive(call.Object(1));
    luai_work(static_cast<size_t>(count));
    return call.Return(count);
}

int InstanceGet(Arguments& call)
{
    Instance* instance = call.FindInstance(1);
    if (instance == nullptr || instance->IsDestroyed())
        lua_pushnil(call.L);
    else
        PushSelf(call.L, *instance);
    return 1;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"object_add", 1, {FIELDS_ARGUMENT}, ObjectAdd},
    {"object_get_name", 1, {"object"}, ObjectGetName},
    {"instance_create", 3, {"x", "y", "object"}, InstanceCreate},
    {"instance_destroy", 1, {"instance"}, InstanceDestroy},
    {"instance_deactivate", 1, {"instance"}, InstanceDeactivate},
    {"instance_activate", 1, {"instance"}, InstanceActivate},
    {"instance_exists", 1, {"instance"}, InstanceExists},
    {"instance_find", 2, {"object", "n"}, InstanceFind},
    {"instance_count", 1, {"object"}, InstanceCount},
    {"instance_get", 1, {"instance"}, InstanceGet},
};
} // namespace

ApiTable WorldApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
