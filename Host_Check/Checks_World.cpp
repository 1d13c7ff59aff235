// Platform/Containers.h, Files/Instance, Files/Object, Files/Room and Files/Run: what a camera that follows looks at.

#include "Host_Check/Check.h"

#include <new>

namespace HostCheck
{
namespace
{

constexpr char CONTAINERS[] = "Platform/Containers.h";
constexpr char INSTANCE[] = "Files/Instance/Instance.h";
constexpr char OBJECT[] = "Files/Object/Object.h";
constexpr char ROOM[] = "Files/Room/Room.h";
constexpr char RUN[] = "Files/Run/Run_Globals.h";
constexpr char IN_ORDER[] = "instances of this object and of its children, in a stable order";
constexpr int NO_SUCH_INDEX = 2000000000;
constexpr int LIST_MAX = 100000; // nodes: a list that is longer has no end

CInstance* MakeInstance(Trial& trial, int object, float x = 10.0f, float y = 20.0f)
{
    CInstance* instance = trial.hooks.makeInstance(object, x, y);
    trial.Expect(instance != nullptr, "the hook makeInstance made no instance of object %d", object);
    return instance;
}

CObject* FindObject(int index) { return g_ObjectHash == nullptr ? nullptr : g_ObjectHash->Find(index); }

// Where the instance stands in the object's list, -1 when it is not there. Readers stop at an entry without instance.
int PlaceInList(int object, const CInstance* instance)
{
    const CObject* found = FindObject(object);
    int place = 0;
    const KvListNode<CInstance>* node = found == nullptr ? nullptr : found->m_Instances_Recursive.m_first;
    for (; node != nullptr && node->m_obj != nullptr && place < LIST_MAX; node = node->m_next, ++place)
        if (node->m_obj == instance)
            return place;
    return -1;
}

// ---- the tables ----
void InstancesAreFound(Trial& trial)
{
    const OpenRoom room(trial);
    CInstance* first = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    CInstance* second = first != nullptr ? MakeInstance(trial, room.Child()) : nullptr;
    if (second == nullptr)
        return;
    trial.Expect(CInstance::ms_ID2Instance.Find(first->m_id) == first, "instance %d is not found by its number",
                 static_cast<int>(first->m_id));
    trial.Expect(CInstance::ms_ID2Instance.Find(second->m_id) == second, "instance %d is not found by its number",
                 static_cast<int>(second->m_id));
    trial.Expect(first->m_id != second->m_id, "two instances have the number %d", static_cast<int>(first->m_id));
}

void MissingInstanceIsNull(Trial& trial)
{
    const OpenRoom room(trial);
    const CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    if (instance == nullptr)
        return;
    for (const int missing : {NO_SUCH_INDEX, -1, -100000, instance->m_id + 1000000})
        trial.Expect(CInstance::ms_ID2Instance.Find(missing) == nullptr,
                     "CInstance::ms_ID2Instance.Find(%d) answers an instance", missing);
}

void InstancesGoWithTheirRoom(Trial& trial)
{
    int id = -1;
    {
        const OpenRoom room(trial);
        const CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
        id = instance == nullptr ? -1 : instance->m_id;
    }
    trial.Expect(CInstance::ms_ID2Instance.Find(id) == nullptr, "instance %d is found after its room has ended", id);
}

void ObjectsAreFound(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen() || !trial.Expect(g_ObjectHash != nullptr, "g_ObjectHash is null while a room runs"))
        return;
    for (const int index : {room.Parent(), room.Child(), room.Childless()})
        trial.Expect(g_ObjectHash->Find(index) != nullptr, "object %d is not found", index);
    trial.Expect(g_ObjectHash->Find(room.Parent()) != g_ObjectHash->Find(room.Child()),
                 "objects %d and %d are one and the same", room.Parent(), room.Child());
}

void MissingObjectIsNull(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen() || g_ObjectHash == nullptr)
        return;
    for (const int missing : {NO_SUCH_INDEX, -5, INSTANCE_ID_FIRST})
        trial.Expect(g_ObjectHash->Find(missing) == nullptr, "g_ObjectHash->Find(%d) answers an object", missing);
}

// ---- lists ----
void ListsTakeInChildren(Trial& trial)
{
    const OpenRoom room(trial);
    const CInstance* parent = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    const CInstance* child = parent != nullptr ? MakeInstance(trial, room.Child()) : nullptr;
    if (child == nullptr)
        return;
    trial.Expect(PlaceInList(room.Parent(), parent) >= 0, "an instance is not in the list of its object");
    trial.Expect(PlaceInList(room.Child(), child) >= 0, "an instance of the child is not in the child's list");
    trial.Expect(PlaceInList(room.Parent(), child) >= 0, "an instance of the child is not in its parent's list");
    trial.Expect(PlaceInList(room.Child(), parent) < 0, "an instance of the parent is in the child's list");
    trial.Expect(PlaceInList(room.Childless(), parent) < 0, "an instance is in the list of another object");
}

void ListsKeepTheirOrder(Trial& trial)
{
    constexpr int COUNT = 6;
    const OpenRoom room(trial);
    CInstance* instances[COUNT] = {};
    int before[COUNT];
    for (int i = 0; i < COUNT && room.IsOpen(); ++i)
        instances[i] = MakeInstance(trial, i % 2 == 0 ? room.Parent() : room.Child());
    if (instances[COUNT - 1] == nullptr)
        return;
    for (int i = 0; i < COUNT; ++i)
        before[i] = PlaceInList(room.Parent(), instances[i]);
    MakeInstance(trial, room.Parent());
    for (int i = 0; i < COUNT; ++i)
        for (int j = 0; j < i; ++j)
            trial.Expect((before[i] < before[j]) ==
                             (PlaceInList(room.Parent(), instances[i]) < PlaceInList(room.Parent(), instances[j])),
                         "a new instance has turned the order of instances %d and %d",
                         static_cast<int>(instances[j]->m_id), static_cast<int>(instances[i]->m_id));
}

void ListsEnd(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen() || MakeInstance(trial, room.Parent()) == nullptr)
        return;
    const CObject* object = FindObject(room.Parent());
    int nodes = 0;
    const KvListNode<CInstance>* node = object == nullptr ? nullptr : object->m_Instances_Recursive.m_first;
    for (; node != nullptr && nodes < LIST_MAX; node = node->m_next)
        ++nodes;
    trial.Expect(nodes < LIST_MAX, "the list of object %d has no end after %d entries", room.Parent(), nodes);
}

void EmptyListIsNull(Trial& trial)
{
    const OpenRoom room(trial);
    const CObject* object = room.IsOpen() ? FindObject(room.Childless()) : nullptr;
    if (object != nullptr)
        trial.Expect(object->m_Instances_Recursive.m_first == nullptr,
                     "the list of object %d, which has no instance, has a first entry", room.Childless());
}

// ---- instances ----
void InstancesHaveTheirPosition(Trial& trial)
{
    const OpenRoom room(trial);
    const CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Child(), 123.5f, -7.25f) : nullptr;
    if (instance == nullptr)
        return;
    trial.Expect(instance->x == 123.5f && instance->y == -7.25f, "an instance made at 123.5, -7.25 stands at %g, %g",
                 static_cast<double>(instance->x), static_cast<double>(instance->y));
    trial.Expect(instance->m_objectIndex == room.Child(), "an instance of object %d says that its object is %d",
                 room.Child(), static_cast<int>(instance->m_objectIndex));
}

void NumbersAreApart(Trial& trial)
{
    const OpenRoom room(trial);
    const CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    if (instance == nullptr)
        return;
    trial.Expect(instance->m_id >= INSTANCE_ID_FIRST, "an instance has the number %d",
                 static_cast<int>(instance->m_id));
    for (const int index : {room.Parent(), room.Child(), room.Childless()})
        trial.Expect(index < INSTANCE_ID_FIRST, "an object has the index %d", index);
}

void HelpersHoldWhatTheyAreGiven(Trial& trial)
{
    CInstance* helper = new (std::nothrow) CInstance(1.5f, 2.5f, 7, g_DummyObjectIndex, false);
    if (!trial.Expect(helper != nullptr, "no memory for an instance"))
        return;
    trial.Expect(helper->x == 1.5f && helper->y == 2.5f, "CInstance(1.5, 2.5, ...) stands at %g, %g",
                 static_cast<double>(helper->x), static_cast<double>(helper->y));
    trial.Expect(helper->m_id == 7, "CInstance(..., 7, ...) has the number %d", static_cast<int>(helper->m_id));
    trial.Expect(helper->m_objectIndex == g_DummyObjectIndex, "CInstance(..., %d, ...) says that its object is %d",
                 g_DummyObjectIndex, static_cast<int>(helper->m_objectIndex));
    trial.Expect(helper->m_flags == 0, "a new instance has the flags %u", static_cast<unsigned>(helper->m_flags));
    trial.Expect(CInstance::ms_ID2Instance.Find(7) != helper, "the host has put a helper into its table by itself");
    delete helper;
}

void BoxesAreComputed(Trial& trial)
{
    const OpenRoom room(trial);
    CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent(), 30.0f, 40.0f) : nullptr;
    if (instance == nullptr)
        return;
    for (const bool force : {true, false})
    {
        instance->m_flags |= eInstanceFlag_bbox_dirty;
        instance->Compute_BoundingBox(force);
        trial.Expect((instance->m_flags & eInstanceFlag_bbox_dirty) == 0,
                     "after Compute_BoundingBox(%s) the flags are still %u", force ? "true" : "false",
                     static_cast<unsigned>(instance->m_flags));
    }
    trial.Expect(instance->x == 30.0f && instance->y == 40.0f, "Compute_BoundingBox has moved the instance to %g, %g",
                 static_cast<double>(instance->x), static_cast<double>(instance->y));
}

void OtherFlagsStay(Trial& trial)
{
    const OpenRoom room(trial);
    CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    if (instance == nullptr)
        return;
    instance->m_flags = eInstanceFlag_Deactivated | eInstanceFlag_bbox_dirty;
    instance->Compute_BoundingBox(true);
    trial.Expect(instance->m_flags == eInstanceFlag_Deactivated, "Compute_BoundingBox leaves the flags %u of 2 and 8",
                 static_cast<unsigned>(instance->m_flags));
    instance->m_flags = 0;
}

// Changes an instance of its own, and answers its flags; 0 when the hook could not.
uint32_t FlagsAfter(Trial& trial, InstanceChange change, const char* what)
{
    const OpenRoom room(trial);
    CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    if (instance == nullptr)
        return 0;
    instance->Compute_BoundingBox(true);
    const bool done = trial.hooks.changeInstance(instance, change, 50.0f, 60.0f);
    return trial.Expect(done, "the hook changeInstance could not %s", what) ? instance->m_flags : 0;
}

void MovedIsStale(Trial& trial)
{
    const uint32_t flags = FlagsAfter(trial, InstanceChange::Move, "move");
    trial.Expect((flags & eInstanceFlag_bbox_dirty) != 0, "the flags of an instance that was moved are %u",
                 static_cast<unsigned>(flags));
}

void DeactivatedIsFlagged(Trial& trial)
{
    const uint32_t flags = FlagsAfter(trial, InstanceChange::Deactivate, "deactivate");
    trial.Expect((flags & eInstanceFlag_Deactivated) != 0, "the flags of a deactivated instance are %u",
                 static_cast<unsigned>(flags));
}

void DestroyedIsFlagged(Trial& trial)
{
    const OpenRoom room(trial);
    CInstance* instance = room.IsOpen() ? MakeInstance(trial, room.Parent()) : nullptr;
    if (instance == nullptr)
        return;
    const int id = instance->m_id;
    if (!trial.Expect(trial.hooks.changeInstance(instance, InstanceChange::Destroy, 0.0f, 0.0f),
                      "the hook changeInstance could not destroy"))
        return;
    const CInstance* left = CInstance::ms_ID2Instance.Find(id); // may be gone at once
    trial.Expect(left == nullptr || (left->m_flags & eInstanceFlag_Marked) != 0,
                 "the flags of a destroyed instance, which is still found, are %u",
                 left == nullptr ? 0u : static_cast<unsigned>(left->m_flags));
}

// ---- rooms ----
void HelpersAreShownNowhere(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen())
        return;
    const CInstance* helper = g_CM.GetScriptInstance();
    for (const int index : {room.Parent(), room.Child(), room.Childless()})
    {
        trial.Expect(index != g_DummyObjectIndex, "g_DummyObjectIndex is object %d of the room", index);
        trial.Expect(helper == nullptr || PlaceInList(index, helper) < 0,
                     "the cameras' script instance is in the list of object %d", index);
    }
}

void RoomsHaveTheirSize(Trial& trial)
{
    const OpenRoom room(trial);
    if (room.IsOpen() && Run_Room != nullptr)
        trial.Expect(Run_Room->r_width == OpenRoom::WIDTH && Run_Room->r_height == OpenRoom::HEIGHT,
                     "a room of %d x %d says that it is %d x %d", OpenRoom::WIDTH, OpenRoom::HEIGHT,
                     static_cast<int>(Run_Room->r_width), static_cast<int>(Run_Room->r_height));
}

void RoomsHaveTheirViews(Trial& trial)
{
    const OpenRoom room(trial);
    for (int i = 0; i < ROOM_VIEWS && room.IsOpen() && Run_Room != nullptr; ++i)
        trial.Expect(Run_Room->r_view[i] != nullptr, "view %d of the running room is null", i);
}

void RunRoomFollows(Trial& trial)
{
    {
        const OpenRoom room(trial);
        trial.Expect(!room.IsOpen() || Run_Room != nullptr, "Run_Room is null while a room runs");
    }
    trial.Expect(Run_Room == nullptr, "Run_Room is not null after the room has ended");
}

bool IsNoneOrACamera(int id) { return id == -1 || g_CM.GetCamera(id) != nullptr; }

void ViewsHaveCameras(Trial& trial)
{
    const OpenRoom room(trial);
    for (int i = 0; i < ROOM_VIEWS && room.IsOpen() && Run_Room != nullptr && Run_Room->r_view[i] != nullptr; ++i)
        trial.Expect(IsNoneOrACamera(Run_Room->r_view[i]->cameraID),
                     "view %d of a new room has the camera %d, which is none", i,
                     static_cast<int>(Run_Room->r_view[i]->cameraID));
}

void DefaultCameraExists(Trial& trial)
{
    trial.Expect(IsNoneOrACamera(g_DefaultCameraID), "g_DefaultCameraID is %d, which is no camera", g_DefaultCameraID);
}

void GlobalInstanceExists(Trial& trial)
{
    trial.Expect(!g_fIsJSProject || g_pGlobal != nullptr, "g_fIsJSProject is true and g_pGlobal is null");
}

constexpr Check CHECKS[] = {
    {"hash.null_when_missing", Level::Follow, CONTAINERS, "null when missing", Need_Instance, MissingInstanceIsNull},
    {"hash.object_null_when_missing", Level::Follow, CONTAINERS, "null when missing", Need_Room, MissingObjectIsNull},
    {"hash.instances", Level::Follow, CONTAINERS, "A map from int keys to objects that it does not own.", Need_Instance,
     InstancesAreFound},
    {"hash.instances_go", Level::Follow, CONTAINERS, "A map from int keys to objects that it does not own.",
     Need_Instance, InstancesGoWithTheirRoom},
    {"list.end", Level::Follow, CONTAINERS, "null at the end", Need_Instance, ListsEnd},
    {"list.empty", Level::Follow, CONTAINERS, "null when empty", Need_Room, EmptyListIsNull},
    {"object.by_index", Level::Follow, OBJECT, "by object index; null before a game is loaded", Need_Room,
     ObjectsAreFound},
    {"object.list", Level::Follow, OBJECT, IN_ORDER, Need_Instance, ListsTakeInChildren},
    {"object.list_order", Level::Follow, OBJECT, IN_ORDER, Need_Instance, ListsKeepTheirOrder},
    {"object.helpers_unseen", Level::Follow, OBJECT, "the object of helper instances that no room shows", Need_Room,
     HelpersAreShownNowhere},
    {"instance.numbers", Level::Follow, INSTANCE, "smaller numbers are object indices", Need_Instance, NumbersAreApart},
    {"instance.position", Level::Follow, INSTANCE, "position, room units", Need_Instance, InstancesHaveTheirPosition},
    {"instance.made_by_module", Level::Follow, INSTANCE,
     "Holds what it is given, with flags 0; it is in no table and no list until the host puts it there.", Need_Nothing,
     HelpersHoldWhatTheyAreGiven},
    {"instance.bounding_box", Level::Follow, INSTANCE,
     "Computes the box of a stale instance, or of any when forced; afterwards eInstanceFlag_bbox_dirty is clear.",
     Need_Instance, BoxesAreComputed},
    {"instance.bounding_box_flags", Level::Follow, INSTANCE,
     "Computes the box of a stale instance, or of any when forced; afterwards eInstanceFlag_bbox_dirty is clear.",
     Need_Instance, OtherFlagsStay},
    {"instance.moved", Level::Follow, INSTANCE, "moved since its bounding box was computed", Need_Change, MovedIsStale},
    {"instance.deactivated", Level::Follow, INSTANCE, "takes no part in the game", Need_Change, DeactivatedIsFlagged},
    {"instance.destroyed", Level::Follow, INSTANCE, "destroyed, waits for the end of the step", Need_Change,
     DestroyedIsFlagged},
    {"room.running", Level::Follow, ROOM, "the running room; null between rooms", Need_Room, RunRoomFollows},
    {"room.size", Level::Follow, ROOM, "room units", Need_Room, RoomsHaveTheirSize},
    {"room.views", Level::Follow, ROOM, "never null while the room runs", Need_Room, RoomsHaveTheirViews},
    {"room.cameras", Level::Follow, ROOM, "the camera through which the view draws, -1 for none", Need_Room,
     ViewsHaveCameras},
    {"room.default_camera", Level::Follow, ROOM, "draws rooms that use no views; -1 for none", Need_Nothing,
     DefaultCameraExists},
    {"run.global_instance", Level::Follow, RUN, "the global instance", Need_Nothing, GlobalInstanceExists},
};

} // namespace

Checks WorldChecks() { return Table(CHECKS); }

} // namespace HostCheck
