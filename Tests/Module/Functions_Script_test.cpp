// The built-ins that read and replace a camera's callbacks.
#include "Tests/Module/Builtin_Fixture.h"

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::IsEmpty;

struct Callback
{
    const char* name;
    TFunction get;
    TFunction set;
    RValue CCamera::*field;
};

void PrintTo(const Callback& callback, std::ostream* out) { *out << callback.name; }

class ScriptBuiltin : public BuiltinTest, public testing::WithParamInterface<Callback>
{
protected:
    void SetUp() override
    {
        BuiltinTest::SetUp();
        g_CM.CreateCamera();
        camera = g_CM.CreateCamera(); // identifier 1
    }

    std::string Set(const RValue& script) { return Answer(GetParam().set, {Real(1), script}); }
    std::string Get() { return Answer(GetParam().get, {Real(1)}); }
    RValue& Field() { return camera->*GetParam().field; }
    std::string Builtin(const char* verb) const
    {
        return "camera_" + std::string(verb) + "_" + GetParam().name + "_script";
    }

    CCamera* camera = nullptr;
};

TEST_P(ScriptBuiltin, GetterOfANewCameraReturnsMinusOne) { EXPECT_EQ(Get(), "real -1"); }

TEST_P(ScriptBuiltin, GetterReturnsAScriptIndexAsTheNumberItIs)
{
    EXPECT_EQ(Set(Real(7)), "real -1");
    EXPECT_EQ(Get(), "real 7");
    Set(Int32(8));
    EXPECT_EQ(Get(), "int32 8");
    Set(Int64(9));
    EXPECT_EQ(Get(), "int64 9");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(ScriptBuiltin, GetterReturnsTheSameCallable)
{
    Callable* callable = NewCallable();
    EXPECT_EQ(Set(OfObject(callable)), "real -1");
    const RValue result = Call(GetParam().get, {Real(1)});
    EXPECT_EQ(result.kind, VALUE_OBJECT);
    EXPECT_EQ(result.pObj, callable);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(ScriptBuiltin, GetterTellsTheCollectorOfTheNewReference)
{
    Field() = OfObject(NewCallable());
    KvObjectBase* owner = NewObject();
    PushContextStack(owner);
    EXPECT_THAT(LogOf(GetParam().get, {Real(1)}, Topic_Values),
                ElementsAre("DeterminePotentialRoot(" + Name(owner) + ",F1)"));
    PopContextStack(1);
}

TEST_P(ScriptBuiltin, GetterTakesAReferenceOfItsOwn)
{
    Field() = NewString("kept");
    {
        Owned result(Call(GetParam().get, {Real(1)}));
        EXPECT_EQ(result.pRefString, Field().pRefString);
        EXPECT_EQ(Field().pRefString->m_refCount, 2);
    }
    EXPECT_EQ(Field().pRefString->m_refCount, 1);
}

TEST_P(ScriptBuiltin, GetterCountsAnArrayInTheStatedOrder)
{
    RefDynamicArrayOfRValue* array = NewArray(std::vector<double>{1});
    Field() = OfArray(array);
    EXPECT_THAT(LogOf(GetParam().get, {Real(1)}, Topic_Values),
                ElementsAre("Array_IncRef(A1)", "Array_SetOwner(A1)", "DeterminePotentialRoot(null,A1)"));
    Array_DecRef(array);
}

// The result is the real -1 by then: whatever it held before is the caller's.
TEST_P(ScriptBuiltin, GetterDoesNotReleaseWhatTheResultHeld)
{
    Owned text(NewString("kept"));
    RValue result = text;
    Call(GetParam().get, {Real(1)}, result);
    EXPECT_EQ(Describe(result), "real -1");
    EXPECT_EQ(text.pRefString->m_refCount, 1);
}

TEST_P(ScriptBuiltin, GetterCopiesTheFlagsOfTheStoredValue)
{
    Field().flags = 0x70;
    RValue result = Real(99);
    result.flags = 0x08;
    Call(GetParam().get, {Real(1)}, result);
    EXPECT_EQ(result.flags, 0x70u);
}

TEST_P(ScriptBuiltin, GetterOfAnUnknownCameraIsMinusOne)
{
    EXPECT_EQ(Answer(GetParam().get, {Real(UNKNOWN_CAMERA)}), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(ScriptBuiltin, GetterWithAWrongCountReportsItself)
{
    EXPECT_EQ(Answer(GetParam().get, {}), "real -1");
    EXPECT_EQ(Answer(GetParam().get, {Real(1), Real(2)}), "real -1");
    const std::string message = Builtin("get") + "() - wrong number of arguments";
    EXPECT_THAT(Errors(), ElementsAre(message, message));
}

TEST_P(ScriptBuiltin, SetterStoresOnlyItsOwnCallback)
{
    Set(Real(7));
    int changed = 0;
    for (RValue* script : {camera->GetBeginScript(), camera->GetEndScript(), camera->GetUpdateScript()})
        changed += Describe(*script) != "real -1";
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(Describe(Field()), "real 7");
    EXPECT_EQ(Describe(*g_CM.GetCamera(0)->GetBeginScript()), "real -1");
}

TEST_P(ScriptBuiltin, SetterGivesTheCameraAProxyForACallable)
{
    Set(Real(7));
    EXPECT_EQ(camera->pGCProxy, nullptr);
    Set(OfObject(NewCallable()));
    EXPECT_NE(camera->pGCProxy, nullptr);
}

TEST_P(ScriptBuiltin, SetterReportsWhatCannotRunAndStoresItAllTheSame)
{
    Owned text(NewString("draw"));
    EXPECT_EQ(Set(text), "real -1");
    EXPECT_THAT(Errors(), ElementsAre(Builtin("set") + " :: invalid script reference"));
    EXPECT_EQ(Field().pRefString, text.pRefString);
    EXPECT_EQ(text.pRefString->m_refCount, 2);
}

TEST_P(ScriptBuiltin, SetterReportsAnObjectThatCannotBeCalled)
{
    KvObjectBase* object = NewObject();
    EXPECT_EQ(Set(OfObject(object)), "real -1");
    EXPECT_THAT(Errors(), ElementsAre(Builtin("set") + " :: invalid script reference"));
    EXPECT_EQ(Field().pObj, object);
}

TEST_P(ScriptBuiltin, SetterDoesNotConvertTheScript)
{
    EXPECT_THAT(LogOf(GetParam().set, {Real(1), Real(7)}, Topic_Conversions), ElementsAre("KvGetInt32(0)"));
}

TEST_P(ScriptBuiltin, SetterOfAnUnknownCameraChecksNothing)
{
    Owned text(NewString("draw"));
    EXPECT_EQ(Answer(GetParam().set, {Real(UNKNOWN_CAMERA), text}), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(text.pRefString->m_refCount, 1);
}

TEST_P(ScriptBuiltin, SetterWithAWrongCountKeepsTheOldCallback)
{
    Set(Real(7));
    EXPECT_EQ(Answer(GetParam().set, {Real(1)}), "real -1");
    EXPECT_EQ(Answer(GetParam().set, {Real(1), Real(8), Real(9)}), "real -1");
    const std::string message = Builtin("set") + "() - wrong number of arguments";
    EXPECT_THAT(Errors(), ElementsAre(message, message));
    EXPECT_EQ(Get(), "real 7");
}

INSTANTIATE_TEST_SUITE_P(
    Callbacks, ScriptBuiltin,
    testing::Values(Callback{"begin", F_CameraGetBeginScript, F_CameraSetBeginScript, &CCamera::m_beginScript},
                    Callback{"end", F_CameraGetEndScript, F_CameraSetEndScript, &CCamera::m_endScript},
                    Callback{"update", F_CameraGetUpdateScript, F_CameraSetUpdateScript, &CCamera::m_updateScript}),
    [](const testing::TestParamInfo<Callback>& row) { return row.param.name; });
} // namespace
