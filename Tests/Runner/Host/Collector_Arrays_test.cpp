// Arrays in the collector: which of them are roots, and for how long.

#include "Tests/Runner/Host/Collector_Fixture.h"

#include "Runner/Host/Arrays.h"

namespace Runner
{
namespace
{
class HostCollectorArrays : public HostCollector
{
protected:
    void SetUp() override
    {
        HostCollector::SetUp();
        m_gameArrays = GameArrays().Size();
    }

    void TearDown() override
    {
        EXPECT_EQ(GameArrays().Size(), m_gameArrays) << "a freed array is still listed";
        HostCollector::TearDown();
    }

    // An array whose last element is a new object, with the reference of its maker.
    RValue NewArray(int length = 1)
    {
        RValue array = MakeArray(length);
        array.pRefArray->m_array[length - 1] = MakeObject(New("element"));
        return array;
    }

    // field = value in the name of the owner, as a camera stores a callback; the giver lets go of its reference.
    static void StoreAndLetGo(RValue& field, RValue& value, KvObjectBase* owner)
    {
        PushContextStack(owner);
        KvAssign(field, value);
        PopContextStack(1);
        Release(value);
    }

    size_t m_gameArrays = 0;
};

TEST_F(HostCollectorArrays, AnArrayThatTheGameHoldsKeepsItsElementsAlive)
{
    for (const bool full : {false, true})
    {
        RValue field = MakeUndefined(), array = NewArray();
        StoreAndLetGo(field, array, nullptr);
        Collector::Collect(full);
        Collector::Collect(full);
        EXPECT_EQ(Live(), 1) << "full " << full;
        Release(field);
        Collector::Collect(true);
        EXPECT_EQ(Live(), 0) << "full " << full;
    }
}

TEST_F(HostCollectorArrays, AnArrayInsideOneThatTheGameHoldsKeepsItsElementsAlive)
{
    RValue field = MakeUndefined(), outer = MakeArray(3);
    outer.pRefArray->m_array[1] = NewArray(2);
    StoreAndLetGo(field, outer, nullptr);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    Release(field);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

// The second holder stores and overwrites in an object's name. What it overwrites has one reference left, and belongs
// to that object by the count, although the game holds it.
TEST_F(HostCollectorArrays, AnArrayStaysTheGamesWhenAnObjectSharesItForAWhile)
{
    Thing* object = NewRoot("object");
    RValue ofGame = MakeUndefined(), ofObject = MakeUndefined(), array = NewArray();
    KvAssign(ofGame, array);
    StoreAndLetGo(ofObject, array, object);
    PushContextStack(object);
    Release(ofObject);
    PopContextStack(1);
    EXPECT_EQ(ofGame.pRefArray->m_owner, object);
    RemoveGlobalObject(object);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    Release(ofGame);
}

TEST_F(HostCollectorArrays, AnArrayBecomesTheGamesWhenTheGameSharesAnObjectsOne)
{
    Thing* object = NewRoot("object");
    RValue ofGame = MakeUndefined(), array = NewArray();
    StoreAndLetGo(object->m_variables[0], array, object);
    EXPECT_EQ(GameArrays().Size(), m_gameArrays);
    KvAssign(ofGame, object->m_variables[0]);
    EXPECT_EQ(GameArrays().Size(), m_gameArrays + 1);
    RemoveGlobalObject(object);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 1);
    Release(ofGame);
}

TEST_F(HostCollectorArrays, AnArrayThatOnlyAnObjectHoldsIsNoRoot)
{
    Thing* object = New("object");
    RValue cycle = MakeArray(1);
    cycle.pRefArray->m_array[0] = MakeObject(object);
    StoreAndLetGo(object->m_variables[0], cycle, object);
    Collector::Collect(true);
    EXPECT_EQ(Live(), 0);
}

TEST_F(HostCollectorArrays, TheGamesArraysAreListedOnceAndOnlyWhileTheyLive)
{
    std::vector<RValue> fields(1000, MakeUndefined());
    RValue shared = NewArray();
    for (RValue& field : fields)
        KvAssign(field, shared);
    EXPECT_EQ(GameArrays().Size(), m_gameArrays + 1);
    Release(shared);
    for (RValue& field : fields)
        Release(field);
    EXPECT_EQ(GameArrays().Size(), m_gameArrays);
}
} // namespace
} // namespace Runner
