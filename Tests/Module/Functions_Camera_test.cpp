#include "Tests/Module/Builtin_Fixture.h"

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::IsEmpty;

class CameraProperty : public BuiltinTest
{
};

// ---- setters ----

struct Setter
{
    const char* name;
    TFunction handler;
    float CCamera::*first;
    float CCamera::*second; // null: one value
    bool dirties;
};

void PrintTo(const Setter& setter, std::ostream* out) { *out << setter.name; }

const Setter SETTERS[] = {
    {"pos", F_CameraSetViewPos, &CCamera::m_viewX, &CCamera::m_viewY, true},
    {"size", F_CameraSetViewSize, &CCamera::m_viewWidth, &CCamera::m_viewHeight, true},
    {"speed", F_CameraSetViewSpeed, &CCamera::m_viewSpeedX, &CCamera::m_viewSpeedY, false},
    {"border", F_CameraSetViewBorder, &CCamera::m_viewBorderX, &CCamera::m_viewBorderY, false},
    {"angle", F_CameraSetViewAngle, &CCamera::m_viewAngle, nullptr, true},
};

class FloatSetter : public CameraProperty, public testing::WithParamInterface<Setter>
{
protected:
    void SetUp() override
    {
        BuiltinTest::SetUp();
        camera = g_CM.CreateCamera();
        camera = g_CM.CreateCamera(); // identifier 1: a forgotten argument reads as 0
    }

    std::vector<RValue> Args(int id, double first, double second) const
    {
        std::vector<RValue> args = {Real(id), Real(first)};
        if (GetParam().second != nullptr)
            args.push_back(Real(second));
        return args;
    }

    CCamera* camera = nullptr;
};

TEST_P(FloatSetter, StoresItsFieldsAndNoOther)
{
    CCamera* expected = g_CM.CreateCamera();
    expected->*GetParam().first = 10.5f;
    if (GetParam().second != nullptr)
        expected->*GetParam().second = -20.25f;
    EXPECT_EQ(Answer(GetParam().handler, Args(1, 10.5, -20.25)), "real -1");
    EXPECT_EQ(Properties(*camera), Properties(*expected));
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(FloatSetter, LeavesOtherCamerasAlone)
{
    const std::string before = Properties(*g_CM.GetCamera(0));
    Call(GetParam().handler, Args(1, 10.5, -20.25));
    EXPECT_EQ(Properties(*g_CM.GetCamera(0)), before);
    EXPECT_FALSE(g_CM.GetCamera(0)->IsViewDirty());
}

TEST_P(FloatSetter, MarksTheViewDirtyOnlyWhereTheMatricesDependOnIt)
{
    Call(GetParam().handler, Args(1, 1, 2));
    EXPECT_EQ(camera->IsViewDirty(), GetParam().dirties);
}

TEST_P(FloatSetter, KeepsADirtyViewDirty)
{
    camera->SetViewDirty();
    Call(GetParam().handler, Args(1, 1, 2));
    EXPECT_TRUE(camera->IsViewDirty());
}

TEST_P(FloatSetter, BuildsNothing) { EXPECT_THAT(LogOf(GetParam().handler, Args(1, 1, 2), Topic_Matrices), IsEmpty()); }

TEST_P(FloatSetter, ReadsTheCameraFirstAndTheValuesAsFloats)
{
    const Lines log = LogOf(GetParam().handler, Args(1, 1, 2), Topic_Conversions);
    ASSERT_EQ(log.size(), GetParam().second == nullptr ? 2u : 3u);
    EXPECT_EQ(log[0], "KvGetInt32(0)");
    EXPECT_THAT(Lines(log.begin() + 1, log.end()),
                GetParam().second == nullptr ? testing::UnorderedElementsAreArray({"KvGetFloat(1)"})
                                             : testing::UnorderedElementsAreArray({"KvGetFloat(1)", "KvGetFloat(2)"}));
}

TEST_P(FloatSetter, ConvertsNoValueForAnUnknownCamera)
{
    EXPECT_THAT(LogOf(GetParam().handler, Args(UNKNOWN_CAMERA, 1, 2), Topic_Conversions | Topic_Errors),
                ElementsAre("KvGetInt32(0)"));
    EXPECT_EQ(Answer(GetParam().handler, Args(UNKNOWN_CAMERA, 1, 2)), "real -1");
    EXPECT_EQ(Answer(GetParam().handler, Args(-1, 1, 2)), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(FloatSetter, AWrongCountChangesNothing)
{
    const std::string before = Properties(*camera);
    std::vector<RValue> args = Args(1, 10, 20);
    args.push_back(Real(30));
    EXPECT_EQ(Answer(GetParam().handler, args), "real -1");
    EXPECT_EQ(Properties(*camera), before);
    EXPECT_FALSE(camera->IsViewDirty());
    EXPECT_THAT(Errors(),
                ElementsAre("camera_set_view_" + std::string(GetParam().name) + "() - wrong number of arguments"));
}

INSTANTIATE_TEST_SUITE_P(Setters, FloatSetter, testing::ValuesIn(SETTERS),
                         [](const testing::TestParamInfo<Setter>& row) { return row.param.name; });

TEST_F(CameraProperty, SetViewTargetStoresWhateverItIsGiven)
{
    CCamera* camera = g_CM.CreateCamera();
    for (int target : {100001, 5, 0, -1, -17, INT32_MAX, INT32_MIN})
    {
        EXPECT_EQ(Answer(F_CameraSetViewTarget, {Real(0), Real(target)}), "real -1");
        EXPECT_EQ(camera->GetTargetInstance(), target);
    }
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraProperty, SetViewTargetDoesNotDirtyTheViewNorLookForTheInstance)
{
    CCamera* camera = g_CM.CreateCamera();
    EXPECT_THAT(LogOf(F_CameraSetViewTarget, {Real(0), Real(100001)}, Topic_All),
                ElementsAre("KvGetInt32(0)", "KvGetInt32(1)"));
    EXPECT_FALSE(camera->IsViewDirty());
}

TEST_F(CameraProperty, SetViewTargetOfAnUnknownCameraReadsNoTarget)
{
    EXPECT_THAT(LogOf(F_CameraSetViewTarget, {Real(UNKNOWN_CAMERA), Real(100001)}, Topic_All),
                ElementsAre("KvGetInt32(0)"));
}

TEST_F(CameraProperty, SetViewTargetWithAWrongCountKeepsTheTarget)
{
    CCamera* camera = g_CM.CreateCamera();
    EXPECT_EQ(Answer(F_CameraSetViewTarget, {Real(0), Real(3), Real(4)}), "real -1");
    EXPECT_EQ(camera->GetTargetInstance(), -1);
    EXPECT_THAT(Errors(), ElementsAre("camera_set_view_target() - wrong number of arguments"));
}

// ---- getters ----

struct Getter
{
    const char* name;
    TFunction handler;
    float CCamera::*field;
};

void PrintTo(const Getter& getter, std::ostream* out) { *out << getter.name; }

const Getter GETTERS[] = {
    {"x", F_CameraGetViewX, &CCamera::m_viewX},
    {"y", F_CameraGetViewY, &CCamera::m_viewY},
    {"width", F_CameraGetViewWidth, &CCamera::m_viewWidth},
    {"height", F_CameraGetViewHeight, &CCamera::m_viewHeight},
    {"speed_x", F_CameraGetViewSpeedX, &CCamera::m_viewSpeedX},
    {"speed_y", F_CameraGetViewSpeedY, &CCamera::m_viewSpeedY},
    {"border_x", F_CameraGetViewBorderX, &CCamera::m_viewBorderX},
    {"border_y", F_CameraGetViewBorderY, &CCamera::m_viewBorderY},
    {"angle", F_CameraGetViewAngle, &CCamera::m_viewAngle},
};

class FloatGetter : public CameraProperty, public testing::WithParamInterface<Getter>
{
protected:
    void SetUp() override
    {
        BuiltinTest::SetUp();
        g_CM.CreateCamera();
        camera = g_CM.CreateCamera();
    }

    CCamera* camera = nullptr;
};

TEST_P(FloatGetter, ReturnsItsFieldWidenedToADouble)
{
    for (float value : {10.5f, 0.1f, -3.0e38f, 1e-45f, 0.0f})
    {
        camera->*GetParam().field = value;
        const RValue result = Call(GetParam().handler, {Real(1)});
        EXPECT_EQ(result.kind, VALUE_REAL);
        EXPECT_EQ(result.val, static_cast<double>(value));
    }
}

TEST_P(FloatGetter, LeavesADirtyViewDirty)
{
    camera->SetViewDirty();
    EXPECT_THAT(LogOf(GetParam().handler, {Real(1)}, Topic_All), ElementsAre("KvGetInt32(0)"));
    EXPECT_TRUE(camera->IsViewDirty());
}

TEST_P(FloatGetter, OfAnUnknownCameraIsMinusOneWithoutAMessage)
{
    EXPECT_EQ(Answer(GetParam().handler, {Real(UNKNOWN_CAMERA)}), "real -1");
    EXPECT_EQ(Answer(GetParam().handler, {Real(-1)}), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_P(FloatGetter, WithAWrongCountReportsItself)
{
    EXPECT_EQ(Answer(GetParam().handler, {}), "real -1");
    EXPECT_EQ(Answer(GetParam().handler, {Real(1), Real(2)}), "real -1");
    const std::string message = "camera_get_view_" + std::string(GetParam().name) + "() - wrong number of arguments";
    EXPECT_THAT(Errors(), ElementsAre(message, message));
}

INSTANTIATE_TEST_SUITE_P(Getters, FloatGetter, testing::ValuesIn(GETTERS),
                         [](const testing::TestParamInfo<Getter>& row) { return row.param.name; });

TEST_F(CameraProperty, GetViewTargetReturnsTheIdentifierAsAReal)
{
    CCamera* camera = g_CM.CreateCamera();
    for (int target : {100001, -1, INT32_MAX, INT32_MIN})
    {
        camera->SetTargetInstance(target);
        const RValue result = Call(F_CameraGetViewTarget, {Real(0)});
        EXPECT_EQ(result.kind, VALUE_REAL);
        EXPECT_EQ(result.val, static_cast<double>(target));
    }
}

TEST_F(CameraProperty, GetViewTargetOfAnUnknownCameraIsMinusOne)
{
    EXPECT_EQ(Answer(F_CameraGetViewTarget, {Real(UNKNOWN_CAMERA)}), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraProperty, GetViewTargetWithAWrongCountReportsItself)
{
    EXPECT_EQ(Answer(F_CameraGetViewTarget, {}), "real -1");
    EXPECT_THAT(Errors(), ElementsAre("camera_get_view_target() - wrong number of arguments"));
}

TEST_F(CameraProperty, AnyKindThatConvertsNamesACamera)
{
    g_CM.CreateCamera();
    g_CM.CreateCamera()->SetViewX(5);
    for (RValue id : {Real(1), Int32(1), Int64(1), Bool(true)})
        EXPECT_EQ(Answer(F_CameraGetViewX, {id}), "real 5") << Describe(id);
}

TEST_F(CameraProperty, ResultsKeepTheCallersFlags)
{
    g_CM.CreateCamera();
    for (TFunction handler : {F_CameraGetViewX, F_CameraApply, F_CameraGetActive, F_CameraCreate})
    {
        RValue result = Int32(99);
        result.flags = 0x50;
        Call(handler, {Real(0)}, result);
        EXPECT_EQ(result.kind, VALUE_REAL);
        EXPECT_EQ(result.flags, 0x50u);
    }
}

TEST_F(CameraProperty, AResultMayStandInForAnArgument)
{
    CCamera* camera = g_CM.CreateCamera();
    camera->SetViewX(7);
    RValue value = Real(0);
    F_CameraGetViewX(value, nullptr, nullptr, 1, &value);
    EXPECT_EQ(Describe(value), "real -1"); // the result is written first: -1 names no camera
}
} // namespace
