// Files/Instance and Files/Object, and the globals of Files/Run.

#include "Files/Instance/Instance.h"
#include "Files/Object/Object.h"
#include "Files/Run/Run_Globals.h"
#include "Runner/Host/Collector.h"
#include "Runner/World/World.h"

int Current_Object = -1;
bool g_fIsJSProject = false;
CInstance* g_pGlobal = nullptr;

KvHash<CObject>* g_ObjectHash = nullptr;
int g_DummyObjectIndex = -1; // no object has it: helper instances are in no object's list
KvHash<CInstance> CInstance::ms_ID2Instance;

template <> CInstance* KvHash<CInstance>::Find(int key) const
{
    const Runner::World* world = Runner::World::Current();
    return world == nullptr ? nullptr : world->Find(key);
}

template <> CObject* KvHash<CObject>::Find(int key) const
{
    const Runner::World* world = Runner::World::Current();
    return world == nullptr ? nullptr : world->FindObject(key);
}

// A room's instances are owned by the world, helper instances by the collector: who needs one makes it a root.
CInstance::CInstance(float startX, float startY, int id, int objectIndex, bool)
    : KvObjectBase(0, OBJECT_VARIABLE_MASK), x(startX), y(startY), m_flags(0), m_id(id), m_objectIndex(objectIndex)
{
    m_kind = OBJECT_KIND_INSTANCE;
    if (objectIndex == g_DummyObjectIndex)
        static_cast<void>(Runner::Collector::Place(this)); // when refused, it works and is never freed
}

void CInstance::Compute_BoundingBox(bool force)
{
    Runner::Instance* instance = Runner::Instance::From(this);
    if (instance != nullptr && (force || (m_flags & eInstanceFlag_bbox_dirty) != 0))
        instance->ComputeAreas();
    m_flags &= ~static_cast<uint32_t>(eInstanceFlag_bbox_dirty);
}
