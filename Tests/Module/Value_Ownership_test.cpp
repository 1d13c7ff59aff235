#include "Tests/Support/Fixture.h"

using namespace Recording;

namespace
{
constexpr uint32_t HIGH_BITS = 0xA5000000u; // above the kind: no part of it

RValue OfKind(uint32_t kind, int64_t bits = 0)
{
    RValue value = {};
    value.v64 = bits;
    value.kind = kind;
    return value;
}

// Says that it died, so that a test sees whether the virtual destructor ran.
struct Mortal : COwnedObject
{
    explicit Mortal(int& deathCount) : deaths(deathCount) {}
    ~Mortal() override { ++deaths; }
    int& deaths;
};

RValue Pointer(COwnedObject* object, uint32_t flags)
{
    RValue value = OfKind(VALUE_PTR);
    value.ptr = object;
    value.flags = flags;
    return value;
}
} // namespace

class ValueOwnership : public ModuleTest
{
};

// ---- which values need release ----

TEST_F(ValueOwnership, StringsArraysAndObjectsAloneNeedRelease)
{
    for (uint32_t kind = 0; kind < 32; ++kind)
        EXPECT_EQ(KvNeedsRelease(OfKind(kind)), kind == 1 || kind == 2 || kind == 6) << "kind " << kind;
    EXPECT_FALSE(KvNeedsRelease(OfKind(VALUE_UNSET)));
}

TEST_F(ValueOwnership, TheTestForReleaseLooksAtFiveBitsOfTheKind)
{
    for (uint32_t high : {0x20u, 0x40u, 0x800000u, 0x01000000u, 0xFFFFFFE0u})
        for (uint32_t kind = 0; kind < 32; ++kind)
            EXPECT_EQ(KvNeedsRelease(OfKind(high | kind)), KvNeedsRelease(OfKind(kind))) << (high | kind);
}

TEST_F(ValueOwnership, TheSharedUndefinedValueIsUndefined)
{
    EXPECT_EQ(g_undefined.kind, VALUE_UNDEFINED + 0u);
    EXPECT_EQ(g_undefined.flags, 0u);
    EXPECT_EQ(g_undefined.v64, 0);
}

// ---- release ----

TEST_F(ValueOwnership, ReleasingTheLastReferenceToAStringFreesTextAndRecord)
{
    RValue text = NewString("last");
    FREE_RValue__Pre(&text);
    EXPECT_EQ(LiveTexts(), 0u); // the record itself is the leak checker's
    EXPECT_EQ(text.pRefString, nullptr);
}

TEST_F(ValueOwnership, ReleasingOneOfTwoReferencesKeepsTheText)
{
    Owned text(NewString("shared"));
    RValue second = text;
    text.pRefString->m_refCount = 2;
    FREE_RValue__Pre(&second);
    EXPECT_EQ(second.pRefString, nullptr);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    EXPECT_STREQ(text.pRefString->m_thing, "shared");
    EXPECT_EQ(text.pRefString->m_size, 6);
}

TEST_F(ValueOwnership, TheLastDropTakesTheValueLockTwiceAndFreesInBetween)
{
    RValue text = NewString("last");
    FREE_RValue__Pre(&text);
    EXPECT_EQ(TakeLog(), (Lines{"LOCK_RVALUE_MUTEX()", "KvFree(block)", "LOCK_RVALUE_MUTEX()", "UNLOCK_RVALUE_MUTEX()",
                                "UNLOCK_RVALUE_MUTEX()"}));
}

TEST_F(ValueOwnership, ADropThatIsNotTheLastTakesTheValueLockOnce)
{
    Owned text(NewString("shared"));
    text.pRefString->m_refCount = 2;
    text.pRefString->dec();
    EXPECT_EQ(TakeLog(), (Lines{"LOCK_RVALUE_MUTEX()", "UNLOCK_RVALUE_MUTEX()"}));
}

TEST_F(ValueOwnership, ACountThatIsAlreadyZeroDropsBelowAndFreesNothing)
{
    Owned text(NewString("odd"));
    text.pRefString->m_refCount = 0;
    text.pRefString->dec();
    EXPECT_EQ(text.pRefString->m_refCount, -1);
    EXPECT_EQ(LiveTexts(), 1u);
    text.pRefString->m_refCount = 1;
}

TEST_F(ValueOwnership, ReleasingAStringWithoutARecordDoesNothing)
{
    RValue empty = OfKind(VALUE_STRING);
    FREE_RValue__Pre(&empty);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, ReleasingAStringLeavesKindAndFlags)
{
    RValue text = NewString("x");
    text.flags = 0x55;
    FREE_RValue__Pre(&text);
    EXPECT_EQ(text.kind, VALUE_STRING + 0u);
    EXPECT_EQ(text.flags, 0x55u);
}

TEST_F(ValueOwnership, ReleasingAnArrayDropsItThenReevaluatesItsOwner)
{
    RefDynamicArrayOfRValue* array = NewArray(std::vector<double>{1.0});
    RValue value = OfArray(array);
    TakeLog();
    FREE_RValue__Pre(&value);
    EXPECT_EQ(TakeLog(), (Lines{"Array_DecRef(A1)", "Array_SetOwner(A1)"}));
    EXPECT_EQ(value.pRefArray, array) << "the pointer stays";
    EXPECT_EQ(LiveArrays(), 0u);
}

TEST_F(ValueOwnership, ReleasingAnArrayWithoutARecordDoesNothing)
{
    RValue value = OfArray(nullptr);
    FREE_RValue__Pre(&value);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, APointerThatOwnsItsObjectDeletesItThroughTheVirtualDestructor)
{
    int deaths = 0;
    RValue value = Pointer(new Mortal(deaths), VALUE_FLAG_OWNS_PTR);
    FREE_RValue__Pre(&value);
    EXPECT_EQ(deaths, 1);
}

TEST_F(ValueOwnership, OtherFlagsBesideTheOwningOneDoNotMatter)
{
    int deaths = 0;
    RValue value = Pointer(new Mortal(deaths), 0xFFFFFFFFu);
    FREE_RValue__Pre(&value);
    EXPECT_EQ(deaths, 1);
}

TEST_F(ValueOwnership, APointerWithoutTheOwningFlagLeavesItsObjectAlone)
{
    int deaths = 0;
    Mortal object(deaths);
    RValue value = Pointer(&object, ~VALUE_FLAG_OWNS_PTR);
    FREE_RValue__Pre(&value);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(value.ptr, &object);
}

TEST_F(ValueOwnership, AnOwningNullPointerIsNothing)
{
    RValue value = Pointer(nullptr, VALUE_FLAG_OWNS_PTR);
    FREE_RValue__Pre(&value);
    EXPECT_EQ(value.ptr, nullptr);
}

TEST_F(ValueOwnership, ReleasingEveryOtherKindChangesNothing)
{
    for (uint32_t kind : {0u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, 13u, 14u, 15u, 0x21u, 0x22u, 0x43u, 0xFFFFFFu})
    {
        const volatile int64_t bits = 0x1122334455667788; // a compiler that knows them warns of their release
        RValue value = OfKind(kind, bits);
        value.flags = VALUE_FLAG_OWNS_PTR;
        FREE_RValue__Pre(&value);
        EXPECT_EQ(value.v64, bits) << "kind " << kind;
        EXPECT_EQ(value.flags, VALUE_FLAG_OWNS_PTR);
        EXPECT_EQ(value.kind, kind);
    }
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, ReleaseIgnoresTheBitsAboveTheKind)
{
    RValue text = NewString("x");
    text.kind |= HIGH_BITS;
    FREE_RValue__Pre(&text);
    EXPECT_EQ(LiveTexts(), 0u);

    RValue array = OfArray(NewArray(std::vector<double>{}));
    array.kind |= HIGH_BITS;
    FREE_RValue__Pre(&array);
    EXPECT_EQ(LiveArrays(), 0u);

    int deaths = 0;
    RValue pointer = Pointer(new Mortal(deaths), VALUE_FLAG_OWNS_PTR);
    pointer.kind |= HIGH_BITS;
    FREE_RValue__Pre(&pointer);
    EXPECT_EQ(deaths, 1);
}

// ---- the copy's second half ----

TEST_F(ValueOwnership, CopyingAnArrayCountsItThenReevaluatesItsOwnerThenTellsTheCollector)
{
    Owned source(OfArray(NewArray(std::vector<double>{1.0})));
    KvObjectBase* owner = NewCallable();
    PushContextStack(owner);
    TakeLog();
    Owned copy(OfKind(VALUE_ARRAY));
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(TakeLog(), (Lines{"Array_IncRef(A1)", "Array_SetOwner(A1)", "DeterminePotentialRoot(F1,A1)"}));
    EXPECT_EQ(copy.pRefArray, source.pRefArray);
    EXPECT_EQ(ReferenceCount(source.pRefArray), 2);
    PopContextStack(1);
}

TEST_F(ValueOwnership, CopyingAnArrayWithoutARecordTellsNobody)
{
    const RValue source = OfArray(nullptr);
    RValue copy = OfKind(VALUE_ARRAY, -1);
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(copy.pRefArray, nullptr);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, CopyingAnObjectTellsTheCollectorWhoRefersToIt)
{
    const RValue source = OfObject(NewCallable());
    PushContextStack(NewCallable());
    TakeLog();
    RValue copy = OfKind(VALUE_OBJECT);
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(TakeLog(), Lines{"DeterminePotentialRoot(F2,F1)"});
    EXPECT_EQ(copy.pObj, source.pObj);
    PopContextStack(1);
}

TEST_F(ValueOwnership, WithoutAContextTheOwnerIsNull)
{
    const RValue source = OfObject(NewCallable());
    RValue copy = OfKind(VALUE_OBJECT);
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(TakeLog(), Lines{"DeterminePotentialRoot(null,F1)"});
}

TEST_F(ValueOwnership, CopyingAnObjectValueWithoutAnObjectTellsNobody)
{
    const RValue source = OfObject(nullptr);
    RValue copy = OfKind(VALUE_OBJECT, -1);
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(copy.pObj, nullptr);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, CopyingAStringCountsItWithoutTheLock)
{
    Owned source(NewString("text"));
    Owned copy(OfKind(VALUE_STRING));
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(TakeLog(), None());
    EXPECT_EQ(copy.pRefString, source.pRefString);
    EXPECT_EQ(source.pRefString->m_refCount, 2);
}

TEST_F(ValueOwnership, CopyingAStringWithoutARecordCopiesTheNull)
{
    const RValue source = OfKind(VALUE_STRING);
    RValue copy = OfKind(VALUE_STRING, -1);
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(copy.pRefString, nullptr);
}

TEST_F(ValueOwnership, TheCopyIgnoresTheBitsAboveTheKind)
{
    Owned source(NewString("text"));
    source.kind |= HIGH_BITS;
    Owned copy(OfKind(source.kind));
    COPY_RValue_do__Post(&copy, &source);
    EXPECT_EQ(source.pRefString->m_refCount, 2);
    EXPECT_EQ(copy.pRefString, source.pRefString);
}

// ---- assignment ----

TEST_F(ValueOwnership, AssigningARealOverAStringReleasesTheStringFirst)
{
    RValue field = NewString("old");
    KvAssign(field, Real(2.5));
    EXPECT_EQ(LiveTexts(), 0u);
    EXPECT_EQ(field.kind, VALUE_REAL + 0u);
    EXPECT_EQ(field.val, 2.5);
}

TEST_F(ValueOwnership, AssigningAnArrayOverAnotherReleasesBeforeItCounts)
{
    Owned source(OfArray(NewArray(std::vector<double>{1.0})));
    Owned field(OfArray(NewArray(std::vector<double>{2.0})));
    TakeLog();
    KvAssign(field, source);
    EXPECT_EQ(TakeLog(), (Lines{"Array_DecRef(A2)", "Array_SetOwner(A2)", "Array_IncRef(A1)", "Array_SetOwner(A1)",
                                "DeterminePotentialRoot(null,A1)"}));
    EXPECT_EQ(LiveArrays(), 1u);
}

TEST_F(ValueOwnership, AssigningCopiesFlagsAndTheWholeKindWord)
{
    RValue source = Int64(INT64_MIN + 1);
    source.flags = 0xDEADBEEF;
    source.kind |= HIGH_BITS;
    RValue field = OfKind(VALUE_UNDEFINED);
    KvAssign(field, source);
    EXPECT_EQ(field.v64, INT64_MIN + 1);
    EXPECT_EQ(field.flags, 0xDEADBEEF);
    EXPECT_EQ(field.kind, VALUE_INT64 | HIGH_BITS);
}

TEST_F(ValueOwnership, AssigningTheSameStringAgainKeepsOneReference)
{
    Owned source(NewString("text"));
    Owned field(Real(0.0));
    for (int i = 0; i < 3; ++i)
        KvAssign(field, source);
    EXPECT_EQ(source.pRefString->m_refCount, 2) << "the source's and the field's";
}

TEST_F(ValueOwnership, AssigningAValueToItselfKeepsItsOneReference)
{
    Owned text(NewString("text"));
    KvAssign(text, text);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    EXPECT_STREQ(text.pRefString->m_thing, "text");
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, AKindThatOnlyLooksLikeAStringIsCopiedAsEightBytes)
{
    for (uint32_t kind : {0x21u, 0x22u, 0x26u, 0x41u})
    {
        const RValue source = OfKind(kind, 0x0102030405060708);
        RValue field = OfKind(kind, -1);
        KvAssign(field, source);
        EXPECT_EQ(field.v64, 0x0102030405060708) << "kind " << kind;
        EXPECT_EQ(field.kind, kind);
    }
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(ValueOwnership, AssigningAnOwningPointerDoesNotReleaseTheOldOne)
{
    int deaths = 0;
    Mortal object(deaths);
    RValue field = Pointer(&object, VALUE_FLAG_OWNS_PTR);
    KvAssign(field, Real(1.0));
    EXPECT_EQ(deaths, 0) << "a pointer is no kind that an assignment releases";
}
