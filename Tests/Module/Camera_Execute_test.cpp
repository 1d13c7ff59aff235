// Running a callback: which, in whose name, and what is left afterwards.

#include "Tests/Support/Fixture.h"

using namespace Recording;

namespace
{
constexpr int BEFORE = 555; // who ran before the callback

struct Mortal : COwnedObject
{
    explicit Mortal(int& deathCount) : deaths(deathCount) {}
    ~Mortal() override { ++deaths; }
    int& deaths;
};
} // namespace

class CameraExecute : public ModuleTest
{
protected:
    CameraExecute()
    {
        camera.m_ID = 7;
        Current_Object = BEFORE;
    }

    void StartInstance()
    {
        g_CM.StartRoom();
        TakeLog();
    }

    bool Run(RValue script) { return camera.ExecuteScript(&script); }

    CCamera camera;
};

// ---- no callback ----

TEST_F(CameraExecute, NullIsNoCallbackAndTouchesNothing)
{
    StartInstance();
    Listen(Topic_All);
    EXPECT_FALSE(camera.ExecuteScript(nullptr));
    EXPECT_EQ(Current_Object, BEFORE);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(CameraExecute, MinusOneOfAnyNumericKindIsNoCallback)
{
    StartInstance();
    for (const RValue& none : {Real(-1.0), Int32(-1), Int64(-1)})
    {
        EXPECT_FALSE(Run(none)) << Describe(none);
        EXPECT_EQ(Current_Object, BEFORE);
    }
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(CameraExecute, MinusOneIsNoCallbackWithoutAnInstanceAndInAJavaScriptProjectEither)
{
    EXPECT_FALSE(Run(Real(-1.0)));
    g_fIsJSProject = true;
    EXPECT_FALSE(Run(Real(-1.0)));
    EXPECT_EQ(TakeLog(), None());
}

// ---- script indices ----

TEST_F(CameraExecute, AnIndexRunsWithTheScriptInstanceAsSelfAndOther)
{
    StartInstance();
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(TakeLog(), Lines{"Script_Perform(3,I0,I0,0)"});
}

TEST_F(CameraExecute, EveryNumericKindIsAnIndex)
{
    StartInstance();
    for (const RValue& index : {Real(3.7), Int32(3), Int64(3)})
    {
        EXPECT_TRUE(Run(index));
        EXPECT_EQ(TakeLog(), Lines{"Script_Perform(3,I0,I0,0)"}) << Describe(index);
    }
    EXPECT_TRUE(Run(Bool(true)));
    EXPECT_EQ(TakeLog(), Lines{"Script_Perform(1,I0,I0,0)"});
}

TEST_F(CameraExecute, OnlyMinusOneMeansNoScript)
{
    StartInstance();
    EXPECT_TRUE(Run(Real(-2.0)));
    EXPECT_TRUE(Run(Real(1e300)));
    EXPECT_EQ(TakeLog(), (Lines{"Script_Perform(-2,I0,I0,0)", "Script_Perform(2147483647,I0,I0,0)"}));
}

TEST_F(CameraExecute, AnyOtherKindRunsAsTheIndexThatItConvertsTo)
{
    StartInstance();
    Owned text(NewString("12"));
    EXPECT_TRUE(Run(text));
    EXPECT_TRUE(Run(g_undefined));
    EXPECT_EQ(TakeLog(), (Lines{"Script_Perform(12,I0,I0,0)", "Script_Perform(0,I0,I0,0)"}));
    Owned none(NewString("-1"));
    EXPECT_FALSE(Run(none));
}

TEST_F(CameraExecute, AnIndexThatNamesNoScriptCountsAsStarted)
{
    StartInstance();
    EXPECT_TRUE(Run(Real(99.0)));
    EXPECT_EQ(Current_Object, BEFORE);
}

TEST_F(CameraExecute, WithoutAScriptInstanceAnIndexRunsNothingYetCountsAsStarted)
{
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(TakeLog(), None());
    EXPECT_EQ(Current_Object, BEFORE);
}

TEST_F(CameraExecute, InAJavaScriptProjectTheGlobalInstanceIsSelfAndOther)
{
    g_fIsJSProject = true;
    g_pGlobal = NewInstance(100005, 0, 0);
    TakeLog();
    EXPECT_TRUE(Run(Real(3.0)));
    g_CM.StartRoom();
    TakeLog();
    EXPECT_TRUE(Run(Real(4.0)));
    EXPECT_EQ(TakeLog(), Lines{"Script_Perform(4,I100005,I100005,0)"});
}

TEST_F(CameraExecute, AJavaScriptProjectNeedsNoScriptInstance)
{
    g_fIsJSProject = true;
    g_pGlobal = NewInstance(100005, 0, 0);
    TakeLog();
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(TakeLog(), Lines{"Script_Perform(3,I100005,I100005,0)"});
}

TEST_F(CameraExecute, AScriptGetsNoArgumentsAndAResultThatIsUnset)
{
    StartInstance();
    int runs = 0;
    SetScript(3,
              [&](ScriptCall& call)
              {
                  ++runs;
                  EXPECT_EQ(call.argc, 0);
                  EXPECT_EQ(call.argumentArray, nullptr);
                  EXPECT_EQ(call.result->kind, VALUE_UNSET + 0u);
                  EXPECT_EQ(call.result->flags, 0u);
                  EXPECT_EQ(call.result->v64, 0);
              });
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(runs, 1);
}

// ---- callable objects ----

TEST_F(CameraExecute, ACallableIsCalledInTheNameOfTheScriptInstance)
{
    StartInstance();
    EXPECT_TRUE(Run(OfObject(NewCallable())));
    EXPECT_EQ(TakeLog(), Lines{"Call_RValue(I0,F1,0)"});
}

TEST_F(CameraExecute, ACallableIsCalledWithoutAScriptInstanceToo)
{
    EXPECT_TRUE(Run(OfObject(NewCallable())));
    EXPECT_EQ(TakeLog(), Lines{"Call_RValue(null,F1,0)"});
}

TEST_F(CameraExecute, ACallableIsTheScriptInstancesInAJavaScriptProjectToo)
{
    StartInstance();
    g_fIsJSProject = true;
    g_pGlobal = NewInstance(100005, 0, 0);
    TakeLog();
    EXPECT_TRUE(Run(OfObject(NewCallable())));
    EXPECT_EQ(TakeLog(), Lines{"Call_RValue(I0,F1,0)"});
}

TEST_F(CameraExecute, ACallableGetsAResultThatIsUnset)
{
    uint32_t kind = 0;
    EXPECT_TRUE(Run(OfObject(NewCallable([&](ScriptCall& call) { kind = call.result->kind; }))));
    EXPECT_EQ(kind, VALUE_UNSET + 0u);
}

TEST_F(CameraExecute, TheBitsAboveTheKindDoNotMatter)
{
    StartInstance();
    RValue callable = OfObject(NewCallable());
    callable.kind |= 0xFF000000u;
    RValue index = Real(3.0);
    index.kind |= 0x01000000u;
    EXPECT_TRUE(Run(callable));
    EXPECT_TRUE(Run(index));
    EXPECT_EQ(TakeLog().front(), "Call_RValue(I0,F1,0)");
}

// ---- the current object ----

TEST_F(CameraExecute, InsideACallbackTheCurrentObjectIsTheCamera)
{
    StartInstance();
    std::vector<int> seen;
    const Script look = [&](ScriptCall&) { seen.push_back(Current_Object); };
    SetScript(3, look);
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_TRUE(Run(OfObject(NewCallable(look))));
    g_fIsJSProject = true;
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(seen, (std::vector<int>{7, 7, 7}));
    EXPECT_EQ(Current_Object, BEFORE);
}

TEST_F(CameraExecute, AfterwardsTheCurrentObjectIsTheOneBeforeWhateverTheCallbackSet)
{
    StartInstance();
    const Script meddle = [](ScriptCall&) { Current_Object = 31337; };
    SetScript(3, meddle);
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(Current_Object, BEFORE);
    EXPECT_TRUE(Run(OfObject(NewCallable(meddle))));
    EXPECT_EQ(Current_Object, BEFORE);
}

TEST_F(CameraExecute, NestedCallbacksEachSeeTheirOwnCamera)
{
    StartInstance();
    CCamera inner;
    inner.m_ID = 8;
    std::vector<int> seen;
    const auto look = [&] { seen.push_back(Current_Object); };
    SetScript(4, [&](ScriptCall&) { look(); });
    SetScript(3,
              [&](ScriptCall&)
              {
                  look();
                  RValue four = Real(4.0);
                  inner.ExecuteScript(&four);
                  look();
              });
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(seen, (std::vector<int>{7, 8, 7}));
    EXPECT_EQ(Current_Object, BEFORE);
}

// ---- results ----

TEST_F(CameraExecute, AStringResultIsReleased)
{
    StartInstance();
    const Script answer = [](ScriptCall& call) { *call.result = NewString("thanks"); };
    SetScript(3, answer);
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(LiveTexts(), 0u);
    EXPECT_TRUE(Run(OfObject(NewCallable(answer))));
    EXPECT_EQ(LiveTexts(), 0u);
}

TEST_F(CameraExecute, AnArrayResultIsReleased)
{
    StartInstance();
    const Script answer = [](ScriptCall& call) { *call.result = OfArray(NewArray(std::vector<double>{1.0})); };
    SetScript(3, answer);
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_TRUE(Run(OfObject(NewCallable(answer))));
    EXPECT_EQ(LiveArrays(), 0u);
}

TEST_F(CameraExecute, AResultThatIsNoReferenceIsLeftAlone)
{
    StartInstance();
    int deaths = 0;
    Mortal object(deaths);
    SetScript(3,
              [&](ScriptCall& call)
              {
                  *call.result = g_undefined;
                  call.result->kind = VALUE_PTR;
                  call.result->flags = VALUE_FLAG_OWNS_PTR;
                  call.result->ptr = &object;
              });
    EXPECT_TRUE(Run(Real(3.0)));
    EXPECT_EQ(deaths, 0) << "of results, strings, arrays and objects alone are released";
}

// ---- begin and end ----

TEST_F(CameraExecute, BeginRunsTheBeginCallbackAlone)
{
    StartInstance();
    camera.m_beginScript = Real(10.0);
    camera.m_endScript = Real(11.0);
    camera.m_updateScript = Real(12.0);
    camera.Begin();
    EXPECT_EQ(TakeLog(), Lines{"Script_Perform(10,I0,I0,0)"});
}

TEST_F(CameraExecute, EndRunsTheEndCallbackAlone)
{
    StartInstance();
    camera.m_beginScript = Real(10.0);
    camera.m_endScript = Real(11.0);
    camera.m_updateScript = Real(12.0);
    camera.End();
    EXPECT_EQ(TakeLog(), Lines{"Script_Perform(11,I0,I0,0)"});
}

TEST_F(CameraExecute, ANewCameraBeginsAndEndsInSilence)
{
    StartInstance();
    camera.Begin();
    camera.End();
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(CameraExecute, ACallbackStaysSetUntilItIsReplaced)
{
    StartInstance();
    camera.m_beginScript = Real(10.0);
    for (int i = 0; i < 3; ++i)
        camera.Begin();
    EXPECT_EQ(TakeLog().size(), 3u);
    EXPECT_EQ(camera.m_beginScript.val, 10.0);
}
