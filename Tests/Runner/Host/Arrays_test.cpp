#include "Runner/Host/Arrays.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

class HostArrays : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(CurrentMemoryUse().blocks, m_blocks) << "blocks leaked"; }
    size_t m_blocks = CurrentMemoryUse().blocks;
    KvObjectBase* m_object = reinterpret_cast<KvObjectBase*>(this); // compared only
};

TEST_F(HostArrays, ANewArrayIsEmptyAndHasOneReference)
{
    RefDynamicArrayOfRValue* array = ARRAY_RefAlloc();
    EXPECT_EQ(array->m_refCount, 1);
    EXPECT_EQ(array->m_length, 0);
    EXPECT_EQ(array->m_array, nullptr);
    Array_DecRef(array);
    Array_SetOwner(array);
}

TEST_F(HostArrays, WithoutMemoryThereIsNoArray)
{
    FailAllocationAfter(0);
    EXPECT_EQ(ARRAY_RefAlloc(), nullptr);
}

TEST_F(HostArrays, TheLastReferenceIsDroppedInTwoSteps)
{
    RValue value = MakeArray(2);
    value.pRefArray->m_array[0] = MakeString("element");
    Array_DecRef(value.pRefArray);
    EXPECT_EQ(value.pRefArray->m_refCount, 0); // still there to be handed on
    EXPECT_EQ(CurrentMemoryUse().blocks, m_blocks + 3);
    Array_SetOwner(value.pRefArray);
    EXPECT_EQ(CurrentMemoryUse().blocks, m_blocks);
}

TEST_F(HostArrays, SharedElementsOutliveTheArray)
{
    RValue text = MakeString("kept");
    RValue value = MakeArray(1);
    KvAssign(value.pRefArray->m_array[0], text);
    Release(value);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    EXPECT_STREQ(text.GetString(), "kept");
    Release(text);
}

TEST_F(HostArrays, ASharedArrayBelongsToNobody)
{
    PushContextStack(m_object);
    RValue a = MakeArray(1);
    EXPECT_EQ(a.pRefArray->m_owner, m_object);
    RValue b = MakeUndefined();
    KvAssign(b, a);
    EXPECT_EQ(a.pRefArray->m_refCount, 2);
    EXPECT_EQ(a.pRefArray->m_owner, nullptr);
    PopContextStack(1);
    PushContextStack(nullptr);
    Release(a);
    EXPECT_EQ(b.pRefArray->m_owner, nullptr);
    PopContextStack(1);
    Release(b);
}

TEST_F(HostArrays, ADeepArrayIsFreedWithoutDeepRecursion)
{
    RValue value = MakeReal(1);
    for (int depth = 0; depth < 200000; ++depth)
    {
        RValue outer = MakeArray(2);
        outer.pRefArray->m_array[1] = value;
        value = outer;
    }
    Release(value);
}

TEST_F(HostArrays, AnElementThatIsSharedWithinAnArrayIsFreedOnce)
{
    RValue inner = MakeArray(1);
    RValue outer = MakeArray(3);
    for (int i = 0; i < 3; ++i)
        KvAssign(outer.pRefArray->m_array[i], inner);
    EXPECT_EQ(inner.pRefArray->m_refCount, 4);
    Release(inner);
    Release(outer);
}

TEST_F(HostArrays, TheContextStackAnswersItsTop)
{
    KvObjectBase* top = GetContextStackTop();
    const size_t depth = ContextStack().size();
    PushContextStack(m_object);
    PushContextStack(nullptr);
    EXPECT_EQ(GetContextStackTop(), nullptr);
    PopContextStack(1);
    EXPECT_EQ(GetContextStackTop(), m_object);
    PopContextStack(0);
    PopContextStack(-3);
    EXPECT_EQ(GetContextStackTop(), m_object);
    PopContextStack(1);
    EXPECT_EQ(GetContextStackTop(), top);
    EXPECT_EQ(ContextStack().size(), depth);
}

TEST_F(HostArrays, PoppingMoreThanThereIsEmptiesTheContextStack)
{
    ASSERT_EQ(ContextStack().size(), 0u);
    PushContextStack(m_object);
    PopContextStack(1000);
    EXPECT_EQ(GetContextStackTop(), nullptr);
    EXPECT_EQ(ContextStack().size(), 0u);
}
} // namespace
