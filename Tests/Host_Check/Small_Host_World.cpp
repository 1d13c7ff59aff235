// Instances, objects, rooms and views of the small host, and its graphics layer.

#include "Platform/Strict_Float.h"

#include "Tests/Host_Check/Small_Host.h"

#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <memory>

KvHash<CInstance> CInstance::ms_ID2Instance;
KvHash<CObject>* g_ObjectHash = nullptr;
int g_DummyObjectIndex = -1;
CRoom* Run_Room = nullptr;
int g_DefaultCameraID = -1;
float g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA;
int g_RenderTargetActive = -1;

namespace SmallHost
{
namespace
{

constexpr int PARENT = 3, CHILD = 5, CHILDLESS = 8, NEVER_MADE = 9;
constexpr int STRANGE_CAMERA = 4711;
enum Property
{
    Visible,
    Xport,
    Yport,
    Wport,
    Hport,
    Surface,
    PROPERTIES,
};

struct Object
{
    CObject object = {{nullptr}};
    std::vector<std::unique_ptr<KvListNode<CInstance>>> nodes; // in the order of the list

    // A change of the order of nodes reaches the list here.
    void Link()
    {
        KvListNode<CInstance>** place = &object.m_Instances_Recursive.m_first;
        for (const auto& node : nodes)
        {
            *place = node.get();
            place = &node->m_next;
        }
        *place = nodes.empty() || !Breaks(Breakage::ListsAreRings) ? nullptr : nodes.front().get();
    }
    void Append(CInstance* instance)
    {
        nodes.push_back(std::make_unique<KvListNode<CInstance>>(KvListNode<CInstance>{nullptr, instance}));
        if (Breaks(Breakage::ListsTurnAround))
            for (size_t i = 0; 2 * i + 1 < nodes.size(); ++i)
                std::swap(nodes[i], nodes[nodes.size() - 1 - i]);
        Link();
    }
};

struct View : CViewGM
{
    double properties[PROPERTIES] = {};
};

struct World
{
    std::map<int, std::unique_ptr<CInstance>> instances;
    std::map<int, Object> objects;
    std::array<View, ROOM_VIEWS> views;
    CRoom room = {};
    KvHash<CObject> hash;
    int nextId = INSTANCE_ID_FIRST;
    float matrices[3][16] = {};
    const float* matrixPlaces[3] = {};
};

World& TheWorld()
{
    static World& world = *new World;
    return world;
}

void EndRoom()
{
    World& world = TheWorld();
    if (!Breaks(Breakage::TheRoomStaysWhenItEnds))
        Run_Room = nullptr;
    world.objects.clear();
    if (!Breaks(Breakage::InstancesOutliveTheirRoom))
        world.instances.clear();
}

void MakeViews()
{
    World& world = TheWorld();
    for (int i = 0; i < ROOM_VIEWS; ++i)
    {
        View& view = world.views[static_cast<size_t>(i)];
        view = {};
        view.cameraID = Breaks(Breakage::ViewsHaveStrangeCameras) ? STRANGE_CAMERA : -1;
        world.room.r_view[i] = i == ROOM_VIEWS - 1 && Breaks(Breakage::TheLastViewIsNull) ? nullptr : &view;
    }
}

View* FindView(const char* name, int view)
{
    if (Run_Room != nullptr && view >= 0 && view < ROOM_VIEWS)
        return &TheWorld().views[Breaks(Breakage::ViewsShareTheirProperties) ? 0 : static_cast<size_t>(view)];
    if (!Breaks(Breakage::MissingViewsAreSilent))
        KvError("%s() - there is no view %d", name, view);
    return nullptr;
}

bool Get(Property property, int view, RValue* out)
{
    const View* found = FindView("view_get", view);
    if (found != nullptr && !Breaks(Breakage::GettersWriteNothing))
    {
        out->kind = VALUE_REAL;
        out->val = found->properties[property];
    }
    return found != nullptr || Breaks(Breakage::MissingViewsAreTrue);
}

bool Set(Property property, int view, const RValue* value)
{
    View* found = FindView("view_set", view);
    if (found != nullptr)
        found->properties[property] = KvGetReal(value, 0);
    return found != nullptr || Breaks(Breakage::MissingViewsAreTrue);
}

} // namespace

bool OpenRoom(int width, int height, int objects[3])
{
    World& world = TheWorld();
    EndRoom();
    objects[0] = PARENT;
    objects[1] = CHILD;
    objects[2] = CHILDLESS;
    if (width == 0)
        return true;
    for (int i = 0; i < 3; ++i)
        world.objects[objects[i]].Link();
    if (Breaks(Breakage::EmptyListsHaveAnEntry))
        world.objects[CHILDLESS].Append(nullptr);
    g_DummyObjectIndex = Breaks(Breakage::HelpersJoinTheRoom) ? CHILD : NEVER_MADE;
    g_ObjectHash = &world.hash;
    const bool swaps = Breaks(Breakage::WidthAndHeightAreSwapped);
    world.room.r_width = swaps ? height : width;
    world.room.r_height = swaps ? width : height;
    MakeViews();
    Run_Room = &world.room;
    return true;
}

CInstance* MakeInstance(int object, float x, float y)
{
    World& world = TheWorld();
    const int id = Breaks(Breakage::InstancesHaveSmallNumbers) ? world.nextId++ - 90000 : world.nextId++;
    const float left = Breaks(Breakage::InstancesStandElsewhere) ? x + 1.0f : x;
    auto made = std::make_unique<CInstance>(left, y, id, object, true);
    CInstance* instance = made.get();
    world.instances[id] = std::move(made);
    world.objects[object].Append(instance);
    if (object == CHILD && !Breaks(Breakage::ListsLeaveOutChildren))
        world.objects[PARENT].Append(instance);
    return instance;
}

const float* MatrixIn(eMatrix slot)
{
    return Breaks(Breakage::MatricesAreKeptByPointer) ? TheWorld().matrixPlaces[slot] : TheWorld().matrices[slot];
}

} // namespace SmallHost

using namespace SmallHost;

// ---- instances and objects ----
CInstance::CInstance(float atX, float atY, int id, int objectIndex, bool)
    : KvObjectBase(0, OBJECT_VARIABLE_MASK), x(atX), y(atY),
      m_flags(Breaks(Breakage::HelpersAreFlagged) ? uint32_t{eInstanceFlag_Marked} : 0), m_id(id),
      m_objectIndex(objectIndex)
{
    m_kind = OBJECT_KIND_INSTANCE;
    if (objectIndex == NEVER_MADE) // the cameras' script instance: the module leaves it to the collector
        Place(this);
}

void CInstance::Compute_BoundingBox(bool)
{
    if (Breaks(Breakage::BoxesClearEveryFlag))
        m_flags = 0;
    if (!Breaks(Breakage::BoxesStayStale))
        m_flags &= ~static_cast<uint32_t>(eInstanceFlag_bbox_dirty);
}

template <> CInstance* KvHash<CInstance>::Find(int key) const
{
    const auto& instances = TheWorld().instances;
    const auto found = instances.find(key);
    if (found != instances.end())
        return found->second.get();
    const bool answers = Breaks(Breakage::MissingInstancesAreTheFirst) && !instances.empty();
    return answers ? instances.begin()->second.get() : nullptr;
}

template <> CObject* KvHash<CObject>::Find(int key) const
{
    auto& objects = TheWorld().objects;
    const auto found = objects.find(key);
    if (found != objects.end())
        return &found->second.object;
    const bool answers = Breaks(Breakage::MissingObjectsAreTheFirst) && !objects.empty();
    return answers ? &objects.begin()->second.object : nullptr;
}

// ---- graphics ----
void Graphics::SetMatrix(eMatrix slot, float* matrix)
{
    std::memcpy(TheWorld().matrices[slot], matrix, sizeof TheWorld().matrices[slot]);
    TheWorld().matrixPlaces[slot] = matrix;
}

void SetViewExtents(float, float, float, float, float)
{
    if (Breaks(Breakage::ExtentsOverwriteTheGlobals))
        g_ViewAreaX = 0.0f;
}

// ---- views ----
bool GV_ViewCamera(CInstance*, int view, RValue* out)
{
    const View* found = FindView("view_get_camera", view);
    if (found != nullptr && !Breaks(Breakage::GettersWriteNothing))
    {
        out->kind = VALUE_REAL;
        out->val = found->cameraID;
    }
    return found != nullptr || Breaks(Breakage::MissingViewsAreTrue);
}

bool SV_ViewCamera(CInstance*, int view, RValue* value)
{
    View* found = FindView("view_set_camera", view);
    if (found != nullptr && !Breaks(Breakage::SettersOfCamerasForgetTheView))
        found->cameraID = KvGetInt32(value, 0);
    return found != nullptr || Breaks(Breakage::MissingViewsAreTrue);
}

bool GV_ViewVisible(CInstance*, int view, RValue* out) { return Get(Visible, view, out); }
bool GV_ViewXport(CInstance*, int view, RValue* out) { return Get(Xport, view, out); }
bool GV_ViewYport(CInstance*, int view, RValue* out) { return Get(Yport, view, out); }
bool GV_ViewWport(CInstance*, int view, RValue* out) { return Get(Wport, view, out); }
bool GV_ViewHport(CInstance*, int view, RValue* out) { return Get(Hport, view, out); }
bool GV_ViewSurfaceID(CInstance*, int view, RValue* out) { return Get(Surface, view, out); }
bool SV_ViewVisible(CInstance*, int view, RValue* value) { return Set(Visible, view, value); }
bool SV_ViewXport(CInstance*, int view, RValue* value) { return Set(Xport, view, value); }
bool SV_ViewYport(CInstance*, int view, RValue* value) { return Set(Yport, view, value); }
bool SV_ViewWport(CInstance*, int view, RValue* value) { return Set(Wport, view, value); }
bool SV_ViewHport(CInstance*, int view, RValue* value) { return Set(Hport, view, value); }
bool SV_ViewSurfaceID(CInstance*, int view, RValue* value) { return Set(Surface, view, value); }
