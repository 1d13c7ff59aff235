#include "Tests/Runner/Host/Collector_Fixture.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Host/Code.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace Runner;

TEST_F(HostCollector, WhatNoRootLeadsToIsFreed)
{
    Thing* root = NewRoot("root");
    Thing* kept = New("kept");
    root->Refer(kept);
    kept->Refer(root); // a cycle with a root
    Thing* a = New("a");
    Thing* b = New("b");
    a->Refer(b);
    b->Refer(a); // and one without
    Collector::Collect(false);
    EXPECT_EQ(Live(), 2);
    EXPECT_THAT(m_log, testing::UnorderedElementsAre("pre a", "pre b", "~a", "~b"));
    ExpectChecked();
    RemoveGlobalObject(root);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, AllDoomedObjectsHearPreFreeBeforeAnyIsFreed)
{
    New("a");
    New("b");
    Collector::Collect(true);
    ASSERT_EQ(m_log.size(), 4u);
    EXPECT_EQ(m_log[0].substr(0, 3) + m_log[1].substr(0, 3), "prepre");
}

TEST_F(HostCollector, SurvivorsAreOldAndAYoungCollectionLeavesThemAlone)
{
    Thing* root = NewRoot("root");
    Collector::Collect(false);
    EXPECT_EQ(root->m_gcGen, 1);
    RemoveGlobalObject(root);
    Collector::Collect(false);
    EXPECT_EQ(Live(), 1);
    ExpectChecked();
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, AnOldObjectKeepsTheYoungThatItRefersToEvenWhenNobodyRefersToIt)
{
    Thing* old = NewRoot("old");
    Collector::Collect(false);
    RemoveGlobalObject(old);
    old->Refer(New("young"));
    Collector::Collect(false);
    EXPECT_EQ(Live(), 2);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, ArraysAreFollowedToAnyDepthAndCyclesEnd)
{
    Thing* root = NewRoot("root");
    Thing* kept = New("kept");
    const size_t blocksBefore = CurrentMemoryUse().blocks; // with the slot table, which the first object makes
    RValue value = MakeObject(kept);
    for (int depth = 0; depth < 100000; ++depth)
    {
        RValue outer = MakeArray(1);
        outer.pRefArray->m_array[0] = value;
        value = outer;
    }
    root->m_variables[1] = value; // freed with the object
    Collector::Collect(false);
    EXPECT_EQ(Live(), 2);
    RemoveGlobalObject(root);
    Collector::Collect(true);
    EXPECT_EQ(CurrentMemoryUse().blocks, blocksBefore);

    RValue itself = MakeArray(2);
    itself.pRefArray->m_array[0] = itself; // without a count of its own: taken out again below
    itself.pRefArray->m_array[1] = MakeObject(New("element"));
    Collector::PushTemporaryRoots(&itself, 1);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    Collector::PopTemporaryRoots();
    itself.pRefArray->m_array[0] = MakeUndefined();
    Release(itself);
}

TEST_F(HostCollector, ALongChainOfObjectsTakesNoStack)
{
    Thing* last = NewRoot("root");
    for (int i = 0; i < 100000; ++i)
    {
        Thing* next = New("");
        last->Refer(next);
        last = next;
    }
    Collector::Collect(true);
    EXPECT_EQ(Live(), 100001);
    ExpectChecked();
    for (int slot = 0; slot < g_slotObjects.m_nCapacity; ++slot)
        if (KvObjectBase* object = g_slotObjects.m_ppEntries[slot])
            RemoveGlobalObject(object);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, TemporaryRootsNestAndSeeWhatIsWrittenMeanwhile)
{
    RValue outer = MakeUndefined();
    RValue inner[2] = {MakeUndefined(), MakeUndefined()};
    Collector::PushTemporaryRoots(&outer, 1);
    Collector::PushTemporaryRoots(inner, 2);
    Collector::PushTemporaryRoots(nullptr, 5);
    outer = MakeObject(New("outer"));
    inner[1] = MakeObject(New("inner"));
    Collector::Collect(true);
    EXPECT_EQ(Live(), 2);
    Collector::PopTemporaryRoots();
    Collector::PopTemporaryRoots();
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    Collector::PopTemporaryRoots();
    Collector::PopTemporaryRoots(); // one too many is no harm
}

TEST_F(HostCollector, TheContextStackIsARoot)
{
    PushContextStack(New("context"));
    PushContextStack(nullptr);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    PopContextStack(2);
}

TEST_F(HostCollector, GlobalObjectsAreASet)
{
    Thing* thing = NewRoot("thing");
    AddGlobalObject(thing);
    AddGlobalObject(nullptr);
    RemoveGlobalObject(thing);
    RemoveGlobalObject(thing);
    RemoveGlobalObject(nullptr);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, ADeletedObjectIsNoRootAnyMore)
{
    Thing* thing = NewRoot("thing");
    const int slot = thing->m_slot;
    delete thing;
    EXPECT_EQ(g_slotObjects.m_ppEntries[slot], nullptr);
    Collector::Collect(true);
    ExpectChecked();
}

TEST_F(HostCollector, AnObjectThatIsStoredInPreFreeStaysWithAllThatItRefersTo)
{
    Thing* root = NewRoot("root");
    Thing* doomed = New("doomed");
    Thing* child = New("child");
    doomed->Refer(child);
    doomed->m_onPreFree = [&]
    {
        RValue value = MakeObject(doomed);
        PushContextStack(root);
        KvAssign(root->m_variables[0], value);
        PopContextStack(1);
    };
    Collector::Collect(true);
    EXPECT_EQ(Live(), 3);
    EXPECT_EQ(root->m_variables[0].pObj, doomed);
    EXPECT_EQ(doomed->m_gcGen, 1);
    ExpectChecked();
    doomed->m_onPreFree = nullptr;
    RemoveGlobalObject(root);
    Collector::Collect(true);
}

TEST_F(HostCollector, AnObjectMayDeleteAnotherInPreFree)
{
    Thing* a = New("a");
    Thing* b = New("b");
    a->m_onPreFree = [&]
    {
        delete b;
        b = nullptr;
    };
    b->m_onPreFree = [&]
    {
        delete a;
        a = nullptr;
    };
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, ACollectionWithinACollectionIsNone)
{
    New("a")->m_onPreFree = [] { Collector::Collect(true); };
    const int64_t before = Collector::GetStats().collections;
    Collector::Collect(true);
    EXPECT_EQ(Collector::GetStats().collections, before + 1);
}

TEST_F(HostCollector, NothingIsCollectedWhileCollectionIsOff)
{
    g_fGarbageCollection = false;
    Thing* thing = New("made while off");
    EXPECT_EQ(thing->m_gcGen, -1);
    EXPECT_GE(thing->m_slot, 0);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    g_fGarbageCollection = true;
    ExpectChecked();
    Collector::Collect(false);
    EXPECT_EQ(Live(), 1) << "it is in no generation yet";
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, MarkingAnswersWhetherItIsNew)
{
    Thing* thing = NewRoot("a");
    std::vector<uint32_t> marks(static_cast<size_t>(thing->m_slot) / 32 + 1, 0);
    const int words = static_cast<int>(marks.size());
    EXPECT_TRUE(thing->Mark4GC(marks.data(), words));
    EXPECT_EQ(marks.back(), uint32_t{1} << (thing->m_slot % 32));
    EXPECT_FALSE(thing->Mark4GC(marks.data(), words));
    EXPECT_FALSE(thing->MarkThisOnly4GC(marks.data(), words - 1)) << "outside";
    RemoveGlobalObject(thing);
}

TEST_F(HostCollector, AReferenceOutsideOfMarkingIsIgnored)
{
    RValue value = MakeObject(New("a"));
    AddGCRefRValue(&value);
    AddGCRefRValue(nullptr);
    DeterminePotentialRoot(nullptr, value.pObj);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, SafepointsCollectOnceEnoughWasMade)
{
    Collector::Collect(true);
    const int64_t before = Collector::GetStats().collections;
    for (int i = 0; i < 255; ++i)
    {
        New("");
        Collector::Safepoint();
    }
    EXPECT_EQ(Collector::GetStats().collections, before);
    New("");
    Collector::Safepoint();
    EXPECT_EQ(Collector::GetStats().collections, before + 1);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, SafepointsComeToOldObjectsToo)
{
    Thing* old = NewRoot("old");
    Collector::Collect(true);
    RemoveGlobalObject(old);
    for (int i = 0; i < 8 * 256; ++i)
    {
        New("");
        Collector::Safepoint();
    }
    EXPECT_THAT(m_log, testing::Contains("~old"));
}

TEST_F(HostCollector, UnderStressEverySafepointCollectsEverything)
{
    Collector::SetStress(true);
    New("a");
    Collector::Safepoint();
    Collector::SetStress(false);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollector, CollectionsAreCountedAndStampNewObjects)
{
    const Collector::Stats before = Collector::GetStats();
    const int stamp = KvObjectBase::ms_currentCounter;
    New("a");
    Collector::Collect(false);
    const Collector::Stats after = Collector::GetStats();
    EXPECT_EQ(after.collections, before.collections + 1);
    EXPECT_EQ(after.freed, before.freed + 1);
    EXPECT_EQ(KvObjectBase::ms_currentCounter, stamp + 1);
}

TEST_F(HostCollector, ACameraKeepsItsCallbacksAliveUntilItIsDestroyed)
{
    CCamera* camera = g_CM.CreateCamera();
    RValue callback = MakeObject(New("callback"));
    camera->SetBeginScript(&callback);
    TakeError(); // the thing cannot be called, which does not matter here
    ASSERT_NE(camera->pGCProxy, nullptr);
    for (const bool full : {false, true, false})
    {
        New("garbage");
        Collector::Collect(full);
        EXPECT_EQ(Live(), 2);
        ExpectChecked();
    }
    g_CM.DestroyCamera(camera->GetID());
    EXPECT_EQ(Live(), 2) << "detached, not freed";
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
    EXPECT_THAT(m_log, testing::Contains("~callback"));
}

TEST_F(HostCollector, ProxiesAndPlacedObjectsShareTheTable)
{
    std::vector<int> cameras;
    for (int i = 0; i < 200; ++i)
    {
        CCamera* camera = g_CM.CreateCamera();
        RValue callback = MakeObject(New(""));
        camera->SetUpdateScript(&callback);
        TakeError();
        cameras.push_back(camera->GetID());
        if (i % 3 == 0)
            g_CM.DestroyCamera(cameras.back());
        if (i % 7 == 0)
            Collector::Collect(i % 2 == 0);
        ExpectChecked();
    }
    for (const int id : cameras)
        g_CM.DestroyCamera(id);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}
} // namespace
