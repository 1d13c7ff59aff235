#include "Files/Instance/Instance.h"
#include "Runner/Base/Printable.h"
#include "Runner/Host/Memory.h"
#include "Runner/Host/Value.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace
{
using namespace Runner;

class HostValue : public testing::Test
{
protected:
    void TearDown() override
    {
        FailAllocationAfter(-1);
        EXPECT_EQ(CurrentMemoryUse().blocks, m_blocks) << "blocks leaked";
    }
    size_t m_blocks = CurrentMemoryUse().blocks;
};

TEST_F(HostValue, NewValuesHaveTheirKindAndNoFlags)
{
    EXPECT_EQ(MakeReal(2.5).val, 2.5);
    EXPECT_EQ(MakeReal(2.5).kind, VALUE_REAL);
    EXPECT_EQ(MakeReal(2.5).flags, 0u);
    EXPECT_EQ(MakeBool(true).kind, VALUE_BOOL);
    EXPECT_EQ(MakeBool(true).val, 1.0);
    EXPECT_EQ(MakeBool(false).val, 0.0);
    EXPECT_EQ(MakeUndefined().kind, VALUE_UNDEFINED);
    EXPECT_EQ(MakeObject(nullptr).kind, VALUE_OBJECT);
}

TEST_F(HostValue, AStringHoldsItsOwnCopyZeroBytesIncluded)
{
    std::string text("ab\0cd", 5);
    RValue value = MakeString(text);
    text = "changed";
    EXPECT_EQ(value.pRefString->size(), 5);
    EXPECT_EQ(value.pRefString->m_refCount, 1);
    EXPECT_EQ(std::memcmp(value.pRefString->get(), "ab\0cd", 6), 0);
    EXPECT_STREQ(value.GetString(), "ab");
    Release(value);
    EXPECT_EQ(value.kind, VALUE_UNDEFINED);
}

TEST_F(HostValue, GetStringOfAnythingElseIsEmpty)
{
    EXPECT_STREQ(MakeReal(1).GetString(), "");
    EXPECT_STREQ(MakeUndefined().GetString(), "");
    RValue none = MakeReal(0);
    none.kind = VALUE_STRING;
    none.pRefString = nullptr;
    EXPECT_STREQ(none.GetString(), "");
}

TEST_F(HostValue, CopiesShareOneText)
{
    RValue a = MakeString("shared");
    RValue b = MakeUndefined();
    KvAssign(b, a);
    EXPECT_EQ(a.pRefString, b.pRefString);
    EXPECT_EQ(a.pRefString->m_refCount, 2);
    Release(a);
    EXPECT_STREQ(b.GetString(), "shared");
    Release(b);
}

TEST_F(HostValue, TextOperations)
{
    RValue value = MakeString("one");
    RefString* text = value.pRefString;
    text->inc();
    EXPECT_EQ(text->m_refCount, 2);
    text->dec();
    char* other = static_cast<char*>(KvRealloc(nullptr, 6));
    std::memcpy(other, "other", 6);
    text->assign(other, 5);
    EXPECT_STREQ(text->get(), "other");
    EXPECT_EQ(text->size(), 5);
    text->remove();
    EXPECT_EQ(text->get(), nullptr);
    EXPECT_EQ(text->size(), 0);
    EXPECT_STREQ(value.GetString(), "");
    Release(value);
}

TEST_F(HostValue, AStringWithoutMemoryIsEmpty)
{
    FailAllocationAfter(0);
    RValue value = MakeString("text");
    EXPECT_EQ(value.kind, VALUE_STRING);
    EXPECT_STREQ(value.GetString(), "");
    Release(value);
}

TEST_F(HostValue, AnArrayIsNewUndefinedAndItsMakersOwn)
{
    RValue value = MakeArray(3);
    ASSERT_EQ(value.kind, VALUE_ARRAY);
    EXPECT_EQ(value.pRefArray->m_length, 3);
    EXPECT_EQ(value.pRefArray->m_refCount, 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(value.pRefArray->m_array[i].kind, VALUE_UNDEFINED);
    Release(value);
    RValue empty = MakeArray(0);
    EXPECT_EQ(empty.kind, VALUE_ARRAY);
    EXPECT_EQ(empty.pRefArray->m_length, 0);
    Release(empty);
}

TEST_F(HostValue, AnArrayThatCannotBeMadeIsUndefined)
{
    EXPECT_EQ(MakeArray(-1).kind, VALUE_UNDEFINED);
    for (int refused = 0; refused < 2; ++refused)
    {
        FailAllocationAfter(refused);
        EXPECT_EQ(MakeArray(4).kind, VALUE_UNDEFINED) << refused;
    }
}

struct Counted : COwnedObject
{
    explicit Counted(int& count) : m_count(count) { ++m_count; }
    ~Counted() override { --m_count; }
    int& m_count;
};

TEST_F(HostValue, ReleaseDeletesAnObjectThatItsPointerOwns)
{
    int count = 0;
    RValue value = MakeUndefined();
    value.kind = VALUE_PTR;
    value.ptr = static_cast<COwnedObject*>(new Counted(count));
    value.flags = VALUE_FLAG_OWNS_PTR;
    Release(value);
    EXPECT_EQ(count, 0);

    Counted kept(count);
    value.kind = VALUE_PTR;
    value.ptr = static_cast<COwnedObject*>(&kept);
    Release(value);
    EXPECT_EQ(count, 1);
}

TEST_F(HostValue, OnlyAnInstanceIsAnObjectToScripts)
{
    CInstance instance(1, 2, 100000, 5, false);
    KvObjectBase other(0, 0);
    other.m_kind = OBJECT_KIND_CONTAINER;
    EXPECT_EQ(MakeObject(&instance).asObject(), &instance);
    EXPECT_EQ(MakeObject(&other).asObject(), nullptr);
    EXPECT_EQ(MakeObject(nullptr).asObject(), nullptr);
    EXPECT_EQ(MakeReal(5).asObject(), nullptr);
    EXPECT_EQ(Describe(MakeObject(&instance)), "an instance");
    EXPECT_EQ(Describe(MakeObject(&other)), "an object");
    other.m_kind = OBJECT_KIND_SCRIPT_FUNCTION;
    EXPECT_EQ(Describe(MakeObject(&other)), "a function");
}

TEST_F(HostValue, DescribeNamesNumbersShortly)
{
    EXPECT_EQ(Describe(MakeReal(3.5)), "the number 3.5");
    EXPECT_EQ(Describe(MakeReal(-1)), "the number -1");
    EXPECT_EQ(Describe(MakeReal(0.1)), "the number 0.1");
    EXPECT_EQ(Describe(MakeReal(0.1 + 0.2)), "the number 0.30000000000000004");
    EXPECT_EQ(Describe(MakeReal(-std::numeric_limits<double>::quiet_NaN())), "the number nan");
    EXPECT_EQ(Describe(MakeBool(true)), "true");
}

TEST_F(HostValue, DescribeShowsAnyTextOnOneShortLine)
{
    RValue value = MakeString(std::string("a\nb\0c\x1b[31m", 10));
    EXPECT_EQ(Describe(value), "the string \"a?b?c?[31m\"");
    Release(value);
    value = MakeString(std::string(1000, 'x'));
    EXPECT_EQ(Describe(value), "the string \"" + std::string(60, 'x') + "...\"");
    Release(value);
}

TEST(Printable, LeavesOrdinaryTextAlone)
{
    EXPECT_EQ(Printable("gr\xC3\xBC\xC3\x9F"), "gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(Printable("abc", 3), "abc");
    EXPECT_EQ(Printable("abcd", 3), "abc...");
    EXPECT_EQ(Printable("a\tb\x7F"), "a?b?");
}
} // namespace
