#include "Runner/Host/Slot_Table.h"

#include "Tests/Runner/Host/Collector_Fixture.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace
{
using namespace Runner;

using SlotTable = HostCollector;

TEST_F(SlotTable, APlacedObjectStandsInItsSlotYoungAndStamped)
{
    Thing* thing = New("a");
    ASSERT_GE(thing->m_slot, 0);
    EXPECT_EQ(g_slotObjects.m_ppEntries[thing->m_slot], thing);
    EXPECT_EQ(thing->m_gcGen, 0);
    EXPECT_EQ(thing->m_gcCounter, KvObjectBase::ms_currentCounter);
    EXPECT_LE(g_GCGens[0].m_rangeStart, thing->m_slot);
    EXPECT_GT(g_GCGens[0].m_rangeEnd, thing->m_slot);
    EXPECT_EQ(Live(), 1);
}

TEST_F(SlotTable, AnUnplacedObjectHasNoSlotAndIsLeftAlone)
{
    KvObjectBase object(0, 0);
    EXPECT_EQ(object.m_slot, -1);
    AddGlobalObject(&object);
    Collector::Collect(true);
    uint32_t marks[1] = {0};
    EXPECT_FALSE(object.Mark4GC(marks, 1));
    EXPECT_EQ(marks[0], 0u);
    RemoveGlobalObject(&object);
}

TEST_F(SlotTable, AFreedSlotIsTakenAgain)
{
    Thing* thing = New("a");
    const int slot = thing->m_slot;
    const int capacity = g_slotObjects.m_nCapacity;
    delete thing;
    for (int i = 0; i < 1000; ++i)
    {
        thing = New("b");
        EXPECT_EQ(thing->m_slot, slot);
        delete thing;
    }
    EXPECT_EQ(g_slotObjects.m_nCapacity, capacity);
}

TEST_F(SlotTable, ADryStackOfFreeSlotsIsNoHarm)
{
    std::vector<Thing*> things;
    for (int i = 0; i < 50; ++i)
        things.push_back(New(""));
    g_slotObjects.m_slotStackSize = 0;
    for (int i = 0; i < 50; i += 2)
        delete things[static_cast<size_t>(i)];
    g_slotObjects.m_slotStackSize = 0;
    const int capacity = g_slotObjects.m_nCapacity;
    for (int i = 0; i < 25; ++i)
        New("");
    EXPECT_EQ(g_slotObjects.m_nCapacity, capacity);
    ExpectChecked();
}

TEST_F(SlotTable, ObjectsMadeDuringASweepGoOutsideItAndStay)
{
    for (int i = 0; i < 20; ++i)
        New("a")->m_onPreFree = [this]
        {
            Thing* made = New("made");
            EXPECT_TRUE(made->m_slot < g_GCrangestart || made->m_slot >= g_GCrangeend);
        };
    Collector::Collect(true);
    EXPECT_EQ(g_GCrangestart, 0);
    EXPECT_EQ(g_GCrangeend, 0);
    EXPECT_EQ(Live(), 20);
    EXPECT_EQ(Collector::GetStats().young, 20);
    ExpectChecked();
    Collector::Collect(false);
    EXPECT_EQ(Live(), 0);
}

TEST_F(SlotTable, WithoutMemoryForASlotAnObjectIsNotPlaced)
{
    std::vector<KvObjectBase*> objects;
    FailAllocationAfter(0);
    for (;;)
    {
        objects.push_back(new KvObjectBase(0, 0));
        if (!Collector::Place(objects.back()))
            break;
    }
    FailAllocationAfter(-1);
    EXPECT_EQ(objects.back()->m_slot, -1);
    ExpectChecked();
    EXPECT_TRUE(Collector::Place(objects.back())) << "the refusal did no harm";
    FailAllocationAfter(1); // the second of the two vectors
    for (;;)
    {
        objects.push_back(new KvObjectBase(0, 0));
        if (!Collector::Place(objects.back()))
            break;
    }
    FailAllocationAfter(-1);
    ExpectChecked();
    for (KvObjectBase* object : objects)
        delete object;
}

TEST_F(SlotTable, TheEndFreesEverythingButWhatSomebodyHolds)
{
    ASSERT_EQ(m_live, 0);
    Thing* held = NewRoot("held");
    New("a")->m_onPreFree = [this] { New("made at the end"); };
    Collector::FreeEverything();
    EXPECT_EQ(Live(), 1);
    EXPECT_EQ(g_slotObjects.m_ppEntries[held->m_slot], held);
    RemoveGlobalObject(held);
    Collector::FreeEverything();
    EXPECT_EQ(g_slotObjects.m_nCapacity, 0);
    EXPECT_EQ(g_slotObjects.m_ppEntries, nullptr);
    New("afterwards"); // starts anew
    ExpectChecked();
}

TEST_F(SlotTable, TheCheckFindsADamagedTable)
{
    Thing* thing = NewRoot("a");
    std::string why;
    ++g_slotObjects.m_nCount;
    EXPECT_FALSE(Collector::Check(why));
    EXPECT_THAT(why, testing::HasSubstr("were counted"));
    --g_slotObjects.m_nCount;
    const int slot = thing->m_slot;
    thing->m_slot = slot + 1;
    EXPECT_FALSE(Collector::Check(why));
    EXPECT_THAT(why, testing::HasSubstr("holds an object whose m_slot is"));
    thing->m_slot = slot;
    const CGCGeneration span = g_GCGens[0];
    g_GCGens[0] = {0, 0};
    EXPECT_FALSE(Collector::Check(why));
    EXPECT_THAT(why, testing::HasSubstr("outside the span"));
    g_GCGens[0] = span;
    g_GCrangeend = 1;
    EXPECT_FALSE(Collector::Check(why));
    EXPECT_EQ(why, "slots are marked as being swept, but no sweep runs"); // whoever tells it names the collector
    g_GCrangeend = 0;
    RemoveGlobalObject(thing);
}

TEST_F(SlotTable, TheCheckFindsDamageOfEachKind)
{
    Thing* const thing = NewRoot("a");
    const int slot = thing->m_slot, free = g_slotObjects.m_slotStackSize;
    const CGCGeneration span = g_GCGens[thing->m_gcGen];
    const auto fault = []
    {
        std::string why;
        EXPECT_FALSE(Collector::Check(why));
        return why;
    };
    g_GCrangestart = 1;
    EXPECT_EQ(fault(), "slots are marked as being swept, but no sweep runs");
    g_GCrangestart = 0;
    for (const int wrong : {-1, g_slotObjects.m_nCapacity + 1})
    {
        g_slotObjects.m_slotStackSize = wrong;
        EXPECT_EQ(fault(), "slot table: the stack of free slots has " + std::to_string(wrong) + " entries");
    }
    g_slotObjects.m_slotStackSize = free;
    g_GCGens[thing->m_gcGen] = {slot + 1, slot + 2};
    EXPECT_THAT(fault(), testing::HasSubstr("lies outside the span of its generation"));
    g_GCGens[thing->m_gcGen] = span;
    const auto generation = std::exchange(thing->m_gcGen, 9);
    EXPECT_EQ(fault(), "slot " + std::to_string(slot) + " lies outside the span of its generation 9");
    thing->m_gcGen = generation;
    g_slotObjects.m_ppEntries[slot] = nullptr;
    --g_slotObjects.m_nCount;
    EXPECT_EQ(fault(), "a global object is not in its slot " + std::to_string(slot));
    thing->m_slot = g_slotObjects.m_nCapacity;
    EXPECT_EQ(fault(), "a global object is not in its slot " + std::to_string(g_slotObjects.m_nCapacity));
    thing->m_slot = slot;
    g_slotObjects.m_ppEntries[slot] = thing;
    ++g_slotObjects.m_nCount;
    RemoveGlobalObject(thing);
}

TEST_F(SlotTable, ASlotThatIsNotTheObjectsOwnIsNotGivenBack)
{
    Thing* const thing = NewRoot("a");
    const int slot = thing->m_slot, count = g_slotObjects.m_nCount;
    Thing* const other = NewRoot("b");
    for (const int wrong : {-1, g_slotObjects.m_nCapacity, other->m_slot})
    {
        thing->m_slot = wrong;
        GiveSlotBack(thing);
        EXPECT_EQ(thing->m_slot, wrong);
    }
    thing->m_slot = slot;
    EXPECT_EQ(g_slotObjects.m_nCount, count + 1);
    FreeEmptyTable();
    EXPECT_EQ(g_slotObjects.m_nCount, count + 1) << "a table that is not empty stays";
    RemoveGlobalObject(thing);
    RemoveGlobalObject(other);
}

TEST_F(SlotTable, ASpanWidensToTakeInASlot)
{
    CGCGeneration span = {0, 0};
    span.UpdateRange(5);
    EXPECT_EQ(span.m_rangeStart, 5);
    EXPECT_EQ(span.m_rangeEnd, 6);
    span.UpdateRange(2);
    span.UpdateRange(9);
    span.UpdateRange(4);
    EXPECT_EQ(span.m_rangeStart, 2);
    EXPECT_EQ(span.m_rangeEnd, 10);
}
} // namespace
