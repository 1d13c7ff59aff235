// Where a proxy is placed in the collector's slot table, and how the table grows.
#include "Tests/Module/Proxy_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
// ---- from the stack of free slots ----
TEST_F(CameraProxy, TakesTheTopOfTheStackAndCountsItself)
{
    EXPECT_EQ(NextSlot(), 0);
    EXPECT_EQ(g_slotObjects.m_nCount, 1);
    EXPECT_THAT(Stack(), ElementsAre(7, 6, 5, 4, 3, 2, 1));
    EXPECT_EQ(g_slotObjects.m_nCapacity, 8);
}

TEST_F(CameraProxy, DropsOccupiedIndicesFromTheStack)
{
    Occupy({0, 1, 3});
    EXPECT_EQ(NextSlot(), 2);
    EXPECT_THAT(Stack(), ElementsAre(7, 6, 5, 4, 3));
    EXPECT_EQ(g_slotObjects.m_nCount, 4);
}

TEST_F(CameraProxy, DropsIndicesThatAreBeingSwept)
{
    Sweep(0, 3);
    EXPECT_EQ(NextSlot(), 3);
    EXPECT_THAT(Stack(), ElementsAre(7, 6, 5, 4));
}

TEST_F(CameraProxy, DropsIndicesOutsideOfTheTableFromTheStack)
{
    int* const top = g_slotObjects.m_freeSlotStack + g_slotObjects.m_slotStackSize;
    top[-1] = -1;
    top[-2] = 8; // one past the last
    top[-3] = INT_MAX;
    EXPECT_EQ(NextSlot(), 3);
    EXPECT_THAT(Stack(), ElementsAre(7, 6, 5, 4));
}

TEST_F(CameraProxy, DropsTheIndexBehindTheTableThoughNothingStandsThere)
{
    g_slotObjects.m_nCapacity = 7; // of the eight entries that are there
    g_slotObjects.m_freeSlotStack[g_slotObjects.m_slotStackSize - 1] = 7;
    EXPECT_EQ(NextSlot(), 1);
    g_slotObjects.m_nCapacity = 8;
}

TEST_F(CameraProxy, TakesTheLastIndexOfTheStackBeforeItSearches)
{
    g_slotObjects.m_freeSlotStack[0] = 5;
    g_slotObjects.m_slotStackSize = 1;
    EXPECT_EQ(NextSlot(), 5) << "a search finds slot 0";
}

TEST_F(CameraProxy, MayTakeTheSlotsOnBothSidesOfTheSweep)
{
    Sweep(1, 3);
    EXPECT_EQ(NextSlot(), 0);
    m_proxy->Detach();
    EXPECT_EQ(NextSlot(), 3);
}

TEST_F(CameraProxy, GrowsAFullTableByHalfWithTheLowestNewIndexOnTop)
{
    Occupy({0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(NextSlot(), 8);
    EXPECT_EQ(g_slotObjects.m_nCapacity, 12);
    EXPECT_THAT(Stack(), ElementsAre(7, 6, 5, 4, 3, 2, 1, 0, 11, 10, 9)) << "the host left taken indices on the stack";
    EXPECT_EQ(g_slotObjects.m_nCount, 9);
    for (int slot = 9; slot < 12; ++slot)
        EXPECT_EQ(g_slotObjects.m_ppEntries[slot], nullptr) << slot;
}

TEST_F(CameraProxy, DoesNotGrowATableWithOneFreeSlot)
{
    Occupy({0, 1, 2, 3, 4, 5, 6});
    EXPECT_EQ(NextSlot(), 7);
    EXPECT_EQ(g_slotObjects.m_nCapacity, 8);
}

struct GrowthCase
{
    int capacity, count, sweepStart, sweepEnd, expected;
};
void PrintTo(const GrowthCase& testCase, std::ostream* out)
{
    *out << testCase.count << " of " << testCase.capacity << ", sweeping " << testCase.sweepStart << " to "
         << testCase.sweepEnd;
}
class CameraProxyGrowth : public CameraProxy, public testing::WithParamInterface<GrowthCase>
{
};

TEST_P(CameraProxyGrowth, CountsTheSweptRangeAsTaken)
{
    const GrowthCase& testCase = GetParam();
    SetSlotTable(testCase.capacity);
    for (int slot = 0; slot < testCase.count; ++slot)
        OccupySlot(slot);
    Sweep(testCase.sweepStart, testCase.sweepEnd);
    const int slot = NextSlot();
    EXPECT_EQ(g_slotObjects.m_nCapacity, testCase.expected);
    EXPECT_FALSE(slot >= testCase.sweepStart && slot < testCase.sweepEnd) << slot;
    EXPECT_EQ(g_slotObjects.m_nCount, testCase.count + 1);
}

// The new capacity is (capacity + width of the sweep) * 3 / 2, cut to a whole number.
INSTANTIATE_TEST_SUITE_P(Tables, CameraProxyGrowth,
                         testing::Values(GrowthCase{8, 4, 0, 3, 8}, GrowthCase{8, 5, 0, 3, 16},
                                         GrowthCase{8, 5, 5, 8, 16}, GrowthCase{8, 7, 5, 2, 8},
                                         GrowthCase{8, 8, 5, 2, 12}, GrowthCase{3, 3, 0, 0, 4},
                                         GrowthCase{2, 2, 0, 0, 3}, GrowthCase{9, 9, 0, 0, 13},
                                         GrowthCase{1, 1, 0, 1, 3}, GrowthCase{10, 0, 0, 10, 30}));

class CameraProxyInASmallTable : public CameraProxy, public testing::WithParamInterface<int>
{
};

TEST_P(CameraProxyInASmallTable, GrowsByOneAtLeast)
{
    SetSlotTable(GetParam());
    for (int slot = 0; slot < GetParam(); ++slot)
        OccupySlot(slot);
    EXPECT_EQ(NextSlot(), GetParam());
    EXPECT_EQ(g_slotObjects.m_nCapacity, GetParam() + 1);
}

INSTANTIATE_TEST_SUITE_P(Capacities, CameraProxyInASmallTable, testing::Values(0, 1));

TEST_F(CameraProxy, ManyProxiesHaveSlotsOfTheirOwn)
{
    SetSlotTable(0);
    CreateCameras(200);
    std::vector<int> slots;
    for (int i = 0; i < 200; ++i)
    {
        SetBegin(*g_CM.m_cameras[i], OfObject(NewCallable()));
        slots.push_back(g_CM.m_cameras[i]->pGCProxy->m_slot);
    }
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(g_slotObjects.m_ppEntries[slots[static_cast<size_t>(i)]], g_CM.m_cameras[i]->pGCProxy) << i;
    EXPECT_EQ(g_slotObjects.m_nCount, 200);
    EXPECT_EQ(RootCount(), 200u);
}

// ---- when the stack is dry ----
struct SearchCase
{
    std::vector<int> taken;
    int lastFreed, sweepStart, sweepEnd, expected;
};
void PrintTo(const SearchCase& testCase, std::ostream* out)
{
    *out << "from " << testCase.lastFreed << ", sweeping " << testCase.sweepStart << " to " << testCase.sweepEnd
         << ", taken " << testing::PrintToString(testCase.taken);
}
class CameraProxySearch : public CameraProxy, public testing::WithParamInterface<SearchCase>
{
};

TEST_P(CameraProxySearch, FindsTheNextFreeEntryAndStartsAfterItNextTime)
{
    const SearchCase& testCase = GetParam();
    Occupy(testCase.taken);
    PopSlotStack();
    g_slotObjects.m_lastFreed = testCase.lastFreed;
    Sweep(testCase.sweepStart, testCase.sweepEnd);
    EXPECT_EQ(NextSlot(), testCase.expected);
    EXPECT_EQ(g_slotObjects.m_lastFreed, testCase.expected + 1);
    EXPECT_EQ(g_slotObjects.m_nCapacity, 8);
}

// From the start up to the sweep, then from its end to the table's end and on from 0 up to the sweep.
INSTANTIATE_TEST_SUITE_P(Tables, CameraProxySearch,
                         testing::Values(SearchCase{{}, 0, 0, 0, 0}, SearchCase{{0, 1}, 0, 0, 0, 2},
                                         SearchCase{{}, 5, 0, 0, 5}, SearchCase{{}, 0, 3, 5, 0},
                                         SearchCase{{0, 1, 2}, 0, 3, 5, 5}, SearchCase{{2}, 2, 3, 5, 5},
                                         SearchCase{{6, 7}, 6, 3, 5, 0}, SearchCase{{6, 7, 0, 1}, 6, 3, 5, 2},
                                         SearchCase{{}, 4, 3, 6, 6}, SearchCase{{}, 9, 12, 14, 0}));

// The second stretch ends as many entries early as the start lies beyond the sweep, so a free entry may be missed.
class CameraProxyVainSearch : public CameraProxy, public testing::WithParamInterface<SearchCase>
{
};

TEST_P(CameraProxyVainSearch, GrowsTheTableOnceAndTakesTheLowestNewSlot)
{
    const SearchCase& testCase = GetParam();
    Occupy(testCase.taken);
    PopSlotStack();
    g_slotObjects.m_lastFreed = testCase.lastFreed;
    Sweep(testCase.sweepStart, testCase.sweepEnd);
    EXPECT_EQ(NextSlot(), 8);
    EXPECT_EQ(g_slotObjects.m_nCapacity, testCase.expected);
    EXPECT_EQ(g_slotObjects.m_lastFreed, testCase.lastFreed);
}

INSTANTIATE_TEST_SUITE_P(Tables, CameraProxyVainSearch,
                         testing::Values(SearchCase{{5, 6, 7}, 5, 0, 0, 12}, SearchCase{{}, 8, 0, 0, 12},
                                         SearchCase{{}, 20, 0, 0, 12}, SearchCase{{6, 7, 0, 1, 2}, 6, 3, 5, 15}));

// ---- without memory ----
using CameraProxyDeathTest = CameraProxy;

TEST_F(CameraProxyDeathTest, WithoutMemoryForASlotTheProgramEndsWithAMessage)
{
    Occupy({0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_DEATH(
        {
            RefuseValueMemory(true);
            NewProxy();
        },
        "out of memory");
}

TEST_F(CameraProxyDeathTest, BeyondWhatTheHostCanAllocateTheProgramEndsWithAMessage)
{
    EXPECT_DEATH(
        {
            g_slotObjects.m_nCapacity = g_slotObjects.m_nCount = INT_MAX / 2; // no entry is read: the size ends it
            NewProxy();
        },
        "out of memory for the collector's slot table");
}
} // namespace
