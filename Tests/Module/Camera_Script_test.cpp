// Storing callbacks: what is accepted, whose reference is held, when a proxy is made.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>

using namespace Recording;
using testing::ElementsAre;

namespace
{
struct Setter
{
    const char* label;
    const char* name; // of the built-in, as reports give it
    void (*set)(CCamera&, RValue*);
    RValue* (*get)(CCamera&);
    RValue CCamera::*field;
};
void PrintTo(const Setter& setter, std::ostream* out) { *out << setter.name; }

const Setter SETTERS[] = {
    {"Begin", "camera_set_begin_script", [](CCamera& camera, RValue* value) { camera.SetBeginScript(value); },
     [](CCamera& camera) { return camera.GetBeginScript(); }, &CCamera::m_beginScript},
    {"End", "camera_set_end_script", [](CCamera& camera, RValue* value) { camera.SetEndScript(value); },
     [](CCamera& camera) { return camera.GetEndScript(); }, &CCamera::m_endScript},
    {"Update", "camera_set_update_script", [](CCamera& camera, RValue* value) { camera.SetUpdateScript(value); },
     [](CCamera& camera) { return camera.GetUpdateScript(); }, &CCamera::m_updateScript}};

class CameraScript : public ManagerTest, public testing::WithParamInterface<Setter>
{
protected:
    CameraScript() { m_camera = g_CM.CreateCamera(); }
    void Set(RValue value) { GetParam().set(*m_camera, &value); }
    RValue& Field() { return m_camera->*GetParam().field; }
    std::string Report() const { return std::string(GetParam().name) + " :: invalid script reference"; }

    CCamera* m_camera;
};

RValue OfKind(uint32_t kind, int64_t bits = 0)
{
    RValue value = {};
    value.v64 = bits;
    value.kind = kind;
    return value;
}

TEST_P(CameraScript, GetterPointsAtTheField) { EXPECT_EQ(GetParam().get(*m_camera), &Field()); }

TEST_P(CameraScript, NumbersAreStoredAsTheyAreWithoutAProxy)
{
    for (RValue value : {Real(3.5), Real(-1.0), Int32(-2), Int64(1LL << 40), Bool(true)})
    {
        value.flags = 5;
        Set(value);
        EXPECT_EQ(Describe(Field()), Describe(value));
        EXPECT_EQ(Field().v64, value.v64);
        EXPECT_EQ(Field().flags, 5u);
    }
    EXPECT_EQ(m_camera->pGCProxy, nullptr);
    EXPECT_EQ(Errors(), None());
}

TEST_P(CameraScript, OtherFieldsStayAsTheyWere)
{
    Set(Real(8.0));
    for (const Setter& setter : SETTERS)
        EXPECT_EQ(Describe(m_camera->*setter.field), setter.field == GetParam().field ? "real 8" : "real -1")
            << setter.name;
}

TEST_P(CameraScript, ACallableIsCheckedThenGivenAProxyThenStoredInItsName)
{
    Callable* callable = NewCallable();
    Listen(Topic_Scripts | Topic_Collector | Topic_Values);
    TakeLog();
    Set(OfObject(callable));
    EXPECT_THAT(TakeLog(), ElementsAre("JS_IsCallable_Object(F1)", "KvObjectBase(0,16777215)=O1", "GetNewObjGCGen()",
                                       "UpdateRange(0,0)", "AddGlobalObject(O1)", "PushContextStack(O1)",
                                       "DeterminePotentialRoot(O1,F1)", "PopContextStack(1)"));
    EXPECT_EQ(Field().pObj, callable);
    EXPECT_EQ(m_camera->pGCProxy->pCamObj, m_camera);
    EXPECT_EQ(Errors(), None());
}

TEST_P(CameraScript, ASecondCallableReusesTheProxy)
{
    Set(OfObject(NewCallable()));
    const Camera_GCProxy* proxy = m_camera->pGCProxy;
    for (const Setter& setter : SETTERS)
    {
        RValue value = OfObject(NewCallable());
        setter.set(*m_camera, &value);
        EXPECT_EQ(m_camera->pGCProxy, proxy) << setter.name;
    }
    EXPECT_EQ(RootCount(), 1u);
}

TEST_P(CameraScript, TheContextIsPushedAndPoppedWithoutAProxyToo)
{
    TakeLog();
    Set(Int32(4));
    EXPECT_THAT(TakeLog(), ElementsAre("PushContextStack(null)", "PopContextStack(1)"));
}

TEST_P(CameraScript, ANumberAfterACallableIsStoredInTheProxysName)
{
    Set(OfObject(NewCallable()));
    Listen(Topic_Values);
    TakeLog();
    Set(Int32(4));
    EXPECT_THAT(TakeLog(), ElementsAre("PushContextStack(O1)", "PopContextStack(1)"));
}

TEST_P(CameraScript, TheOldValueIsReleasedBeforeTheNewOneIsTaken)
{
    Owned first(OfArray(NewArray(std::vector<double>{}))), second(OfArray(NewArray(std::vector<double>{})));
    Set(first);
    Listen(Topic_Values | Topic_Errors);
    TakeLog();
    Set(second);
    EXPECT_THAT(TakeLog(), ElementsAre("KvError(" + Report() + ")", "PushContextStack(null)", "Array_DecRef(A1)",
                                       "Array_SetOwner(A1)", "Array_IncRef(A2)", "Array_SetOwner(A2)",
                                       "DeterminePotentialRoot(null,A2)", "PopContextStack(1)"));
    EXPECT_EQ(ReferenceCount(first.pRefArray), 1);
    EXPECT_EQ(ReferenceCount(second.pRefArray), 2);
}

TEST_P(CameraScript, AStringIsReportedAndStoredWithAReferenceOfItsOwn)
{
    Owned text(NewString("scr_follow"));
    Set(text);
    EXPECT_THAT(Errors(), ElementsAre(Report()));
    EXPECT_EQ(Field().kind, VALUE_STRING);
    EXPECT_EQ(Field().pRefString, text.pRefString);
    EXPECT_EQ(text.pRefString->m_refCount, 2);
}

TEST_P(CameraScript, EveryOtherKindIsReportedAndStored)
{
    for (uint32_t kind : {VALUE_PTR, VALUE_VEC3, VALUE_UNDEFINED, VALUE_VEC4, VALUE_VEC44, VALUE_ACCESSOR, VALUE_NULL,
                          VALUE_ITERATOR, VALUE_REF, VALUE_UNSET})
    {
        Errors().clear();
        Set(OfKind(kind, 0x1122334455667788LL));
        EXPECT_THAT(Errors(), ElementsAre(Report())) << kind;
        EXPECT_EQ(Field().kind, kind);
        EXPECT_EQ(Field().v64, 0x1122334455667788LL) << kind;
    }
    Set(Real(-1.0));
}

TEST_P(CameraScript, AnObjectThatIsNotCallableIsReportedStoredAndGivenAProxy)
{
    KvObjectBase* object = NewObject();
    Set(OfObject(object));
    EXPECT_THAT(Errors(), ElementsAre(Report()));
    EXPECT_EQ(Field().pObj, object);
    EXPECT_NE(m_camera->pGCProxy, nullptr);
}

TEST_P(CameraScript, AnObjectValueWithoutAnObjectIsReportedAndStored)
{
    Set(OfObject(nullptr));
    EXPECT_THAT(Errors(), ElementsAre(Report()));
    EXPECT_EQ(Field().kind, VALUE_OBJECT);
    EXPECT_EQ(Field().pObj, nullptr);
}

TEST_P(CameraScript, TheHighByteOfAKindIsNoPartOfIt)
{
    Set(OfKind(0x05000000u | VALUE_INT32, 6));
    EXPECT_EQ(Errors(), None());
    EXPECT_EQ(Field().kind, 0x05000000u | VALUE_INT32) << "stored as it is, all the same";
    RValue callable = OfObject(NewCallable());
    callable.kind |= 0x80000000u;
    Set(callable);
    EXPECT_EQ(Errors(), None());
    EXPECT_NE(m_camera->pGCProxy, nullptr);
    Owned text(NewString("high"));
    RValue high = text;
    high.kind |= 0x01000000u;
    Set(high);
    EXPECT_EQ(text.pRefString->m_refCount, 2);
    EXPECT_THAT(Errors(), ElementsAre(Report()));
}

TEST_P(CameraScript, AKindThatOnlyLooksLikeAStringIsEightPlainBytes)
{
    Set(OfKind(0x21, 0x1122334455667788LL));
    EXPECT_THAT(Errors(), ElementsAre(Report()));
    EXPECT_EQ(Field().v64, 0x1122334455667788LL);
    Set(Real(-1.0)); // and releasing it touches nothing
    EXPECT_EQ(Describe(Field()), "real -1");
}

TEST_P(CameraScript, TheSameValueTwiceLeavesOneReference)
{
    Owned text(NewString("again")), array(OfArray(NewArray(std::vector<double>{})));
    Set(text);
    Set(text);
    EXPECT_EQ(text.pRefString->m_refCount, 2);
    Set(array);
    Set(array);
    EXPECT_EQ(ReferenceCount(array.pRefArray), 2);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
}

TEST_P(CameraScript, AFieldAssignedToItselfKeepsItsOneReference)
{
    {
        Owned text(NewString("self"));
        Set(text);
    }
    GetParam().set(*m_camera, GetParam().get(*m_camera));
    EXPECT_EQ(Field().pRefString->m_refCount, 1);
    EXPECT_STREQ(Field().GetString(), "self");
    {
        Owned array(OfArray(NewArray(std::vector<double>{})));
        Set(array);
    }
    GetParam().set(*m_camera, GetParam().get(*m_camera));
    EXPECT_EQ(ReferenceCount(Field().pRefArray), 1);
}

TEST_P(CameraScript, AFieldMayBeAssignedFromAnother)
{
    Owned text(NewString("shared"));
    for (const Setter& from : SETTERS)
    {
        from.set(*m_camera, &text);
        GetParam().set(*m_camera, from.get(*m_camera));
        EXPECT_EQ(Field().pRefString, text.pRefString) << from.name;
    }
    EXPECT_EQ(text.pRefString->m_refCount, 4) << "three fields and the test";
}

TEST_P(CameraScript, TheArgumentKeepsItsOwnReference)
{
    Owned text(NewString("mine"));
    Set(text);
    Set(Real(-1.0));
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    EXPECT_STREQ(text.GetString(), "mine");
}

TEST_P(CameraScript, ThePointedAtObjectOfAnOwningPointerIsNotReleasedByAStore)
{
    struct Item : COwnedObject
    {
        explicit Item(int* deleted) : m_deleted(deleted) {}
        ~Item() override { ++*m_deleted; }
        int* m_deleted;
    };
    int deleted = 0;
    Item item(&deleted);
    RValue pointer = OfKind(VALUE_PTR);
    pointer.ptr = &item;
    pointer.flags = VALUE_FLAG_OWNS_PTR;
    Set(pointer);
    Set(Real(1.0));
    EXPECT_EQ(deleted, 0) << "kind 3 is not among those that a store releases";
}

TEST_P(CameraScript, ALooseCameraTakesCallablesToo)
{
    CCamera camera;
    RValue value = OfObject(NewCallable());
    GetParam().set(camera, &value);
    EXPECT_EQ(camera.pGCProxy->pCamObj, &camera);
    EXPECT_EQ(RootCount(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Fields, CameraScript, testing::ValuesIn(SETTERS),
                         [](const auto& tested) { return std::string(tested.param.label); });

// ---- the check alone ----
using ScriptCheck = ManagerTest;

TEST_F(ScriptCheck, NumbersPass)
{
    for (uint32_t kind : {VALUE_REAL, VALUE_INT32, VALUE_INT64, VALUE_BOOL})
    {
        RValue value = OfKind(kind);
        ValidateValidScriptValue(&value, "name");
        value.kind |= 0xFF000000u;
        ValidateValidScriptValue(&value, "name");
    }
    EXPECT_EQ(Errors(), None());
}

TEST_F(ScriptCheck, ObjectsPassWhenTheHostCanCallThem)
{
    RValue callable = OfObject(NewCallable()), object = OfObject(NewObject()), nothing = OfObject(nullptr);
    ValidateValidScriptValue(&callable, "callable");
    ValidateValidScriptValue(&object, "object");
    ValidateValidScriptValue(&nothing, "nothing");
    EXPECT_THAT(Errors(), ElementsAre("object :: invalid script reference", "nothing :: invalid script reference"));
}

TEST_F(ScriptCheck, EverythingElseIsReportedOnceByName)
{
    for (uint32_t kind = 0; kind < 64; ++kind)
    {
        if (kind == 0 || kind == 6 || kind == 7 || kind == 10 || kind == 13)
            continue;
        RValue value = OfKind(kind);
        Errors().clear();
        ValidateValidScriptValue(&value, "50%s");
        EXPECT_THAT(Errors(), ElementsAre("50%s :: invalid script reference")) << kind;
    }
}

TEST_F(ScriptCheck, NothingElseHappens)
{
    Owned array(OfArray(NewArray(std::vector<double>{})));
    TakeLog();
    ValidateValidScriptValue(&array, "a");
    EXPECT_THAT(TakeLog(), ElementsAre("KvError(a :: invalid script reference)"));
    EXPECT_EQ(ReferenceCount(array.pRefArray), 1);
}
} // namespace
