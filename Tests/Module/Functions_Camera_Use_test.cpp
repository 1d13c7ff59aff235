#include "Tests/Module/Builtin_Fixture.h"

#include <algorithm>
#include <limits>

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::IsEmpty;

class CameraBuiltin : public BuiltinTest
{
};

// ---- creation ----

TEST_F(CameraBuiltin, CreateReturnsTheNewIdentifiers)
{
    EXPECT_EQ(Answer(F_CameraCreate, {}), "real 0");
    EXPECT_EQ(Answer(F_CameraCreate, {}), "real 1");
    EXPECT_EQ(Answer(F_CameraCreate, {}), "real 2");
    EXPECT_NE(g_CM.GetCamera(2), nullptr);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, CreateTakesTheFirstFreeSlot)
{
    for (int count = 0; count < 4; ++count)
        Call(F_CameraCreate, {});
    Call(F_CameraDestroy, {Real(1)});
    EXPECT_EQ(Answer(F_CameraCreate, {}), "real 1");
}

TEST_F(CameraBuiltin, CreateWithAnArgumentCreatesNothing)
{
    EXPECT_EQ(Answer(F_CameraCreate, {Real(1)}), "real -1");
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
    EXPECT_THAT(Errors(), ElementsAre("camera_create() - doesn't take any arguments"));
}

TEST_F(CameraBuiltin, CreateDoesNotActivate)
{
    Call(F_CameraCreate, {});
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
}

TEST_F(CameraBuiltin, CreateWithoutMemoryReturnsMinusOne)
{
    RefuseAbove(0);
    EXPECT_EQ(Answer(F_CameraCreate, {}), "real -1");
    EXPECT_EQ(Answer(F_CameraCreateView, {Real(0), Real(0), Real(640), Real(480)}), "real -1");
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
}

TEST_F(CameraBuiltin, CreateViewWithFourArgumentsTakesTheDefaults)
{
    EXPECT_EQ(Answer(F_CameraCreateView, {Real(10), Real(20), Real(640), Real(480)}), "real 0");
    EXPECT_EQ(Properties(*g_CM.GetCamera(0)), "10 20 640 480 -1 -1 0 0 0 -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, CreateViewTakesEachFurtherArgumentInItsTurn)
{
    const char* const expected[] = {
        "1 2 30 40 -1 -1 0 0 5 -1", "1 2 30 40 -1 -1 0 0 5 6", "1 2 30 40 7 -1 0 0 5 6",
        "1 2 30 40 7 8 0 0 5 6",    "1 2 30 40 7 8 9 0 5 6",   "1 2 30 40 7 8 9 10 5 6",
        "1 2 30 40 7 8 9 10 5 6", // the eleventh is ignored
    };
    std::vector<RValue> args = {Real(1), Real(2), Real(30), Real(40)};
    int id = 0;
    for (const char* properties : expected)
    {
        args.push_back(Real(static_cast<double>(args.size() + 1)));
        EXPECT_EQ(Answer(F_CameraCreateView, args), "real " + std::to_string(id));
        EXPECT_EQ(Properties(*g_CM.GetCamera(id)), properties) << args.size() << " arguments";
        ++id;
    }
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, CreateViewReadsNoArgumentThatIsNotThere)
{
    EXPECT_THAT(LogOf(F_CameraCreateView, {Real(1), Real(2), Real(30), Real(40)}, Topic_Conversions),
                testing::UnorderedElementsAre("KvGetFloat(0)", "KvGetFloat(1)", "KvGetFloat(2)", "KvGetFloat(3)"));
}

TEST_F(CameraBuiltin, CreateViewReadsTheTargetAsAnInteger)
{
    std::vector<RValue> args(12, Real(1));
    EXPECT_THAT(LogOf(F_CameraCreateView, args, Topic_Conversions),
                testing::UnorderedElementsAre("KvGetFloat(0)", "KvGetFloat(1)", "KvGetFloat(2)", "KvGetFloat(3)",
                                              "KvGetFloat(4)", "KvGetInt32(5)", "KvGetFloat(6)", "KvGetFloat(7)",
                                              "KvGetFloat(8)", "KvGetFloat(9)"));
}

TEST_F(CameraBuiltin, CreateViewCreatesTheCameraBeforeItReadsAnything)
{
    const Lines log =
        LogOf(F_CameraCreateView, std::vector<RValue>(10, Real(1)), Topic_Conversions | Topic_Memory | Topic_Matrices);
    const auto position = [&](const char* start)
    {
        const auto found =
            std::find_if(log.begin(), log.end(), [&](const std::string& line) { return line.rfind(start, 0) == 0; });
        return found - log.begin();
    };
    EXPECT_LT(position("Alloc"), position("KvGet"));
    EXPECT_LT(position("KvGet"), position("LookAtLH"));
    EXPECT_EQ(
        std::count_if(log.begin(), log.end(), [](const std::string& line) { return line.rfind("LookAtLH", 0) == 0; }),
        1);
}

TEST_F(CameraBuiltin, CreateViewBuildsA2DViewAboutTheCentre)
{
    const Lines log = LogOf(F_CameraCreateView, {Real(0), Real(0), Real(640), Real(480)}, Topic_Matrices);
    EXPECT_THAT(log, testing::Contains("LookAtLH(320,240,-16000;320,240,0;-0,1,0)"));
    EXPECT_THAT(log, testing::Contains("OrthoLH(640,480,0,32000)"));
    CCamera* camera = g_CM.GetCamera(0);
    EXPECT_TRUE(camera->Is2D());
    EXPECT_FALSE(camera->IsViewDirty());
    EXPECT_EQ(camera->GetCamPos().x, 320.0f);
    EXPECT_EQ(camera->GetCamPos().y, 240.0f);
}

TEST_F(CameraBuiltin, CreateViewTurnsTheViewByItsAngle)
{
    Call(F_CameraCreateView, {Real(0), Real(0), Real(640), Real(480), Real(90)});
    // A quarter turn: the room's x axis lies along the view's y axis, one way or the other.
    const kvMatrix view = g_CM.GetCamera(0)->GetViewMat();
    EXPECT_NEAR(view._11, 0.0f, 1e-6f);
    EXPECT_NEAR(view._12, -1.0f, 1e-6f);
}

TEST_F(CameraBuiltin, CreateViewWithTooFewArgumentsCreatesNothing)
{
    std::vector<RValue> args;
    for (int count = 0; count < 4; ++count)
    {
        Errors().clear();
        EXPECT_EQ(Answer(F_CameraCreateView, args), "real -1");
        EXPECT_THAT(Errors(), ElementsAre("camera_create_view() - must have at least 4 arguments")) << count;
        args.push_back(Real(1));
    }
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
}

TEST_F(CameraBuiltin, CreateViewTakesSizesThatShowNothing)
{
    EXPECT_EQ(Answer(F_CameraCreateView, {Real(0), Real(0), Real(0), Real(0)}), "real 0");
    const double nothing = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Answer(F_CameraCreateView, {Real(nothing), Real(nothing), Real(nothing), Real(nothing)}), "real 1");
    EXPECT_THAT(Errors(), IsEmpty());
}

// ---- destruction ----

TEST_F(CameraBuiltin, DestroyRemovesTheCamera)
{
    g_CM.CreateCamera();
    g_CM.CreateCamera();
    EXPECT_EQ(Answer(F_CameraDestroy, {Real(0)}), "real -1");
    EXPECT_EQ(g_CM.GetCamera(0), nullptr);
    EXPECT_NE(g_CM.GetCamera(1), nullptr);
}

TEST_F(CameraBuiltin, DestroyOfTheActiveCameraLeavesNoneActive)
{
    for (int id : {1, 0})
    {
        RenewManager();
        g_CM.CreateCamera();
        g_CM.CreateCamera();
        g_CM.SetActiveCamera(id);
        Call(F_CameraDestroy, {Real(id)});
        EXPECT_EQ(g_CM.GetActiveCamera(), nullptr) << id;
        EXPECT_EQ(Answer(F_CameraGetActive, {}), "real -1") << id;
    }
}

TEST_F(CameraBuiltin, DestroyOfAnotherCameraKeepsTheActiveOne)
{
    g_CM.CreateCamera();
    g_CM.CreateCamera();
    g_CM.SetActiveCamera(1);
    Call(F_CameraDestroy, {Real(0)});
    EXPECT_EQ(Answer(F_CameraGetActive, {}), "real 1");
}

TEST_F(CameraBuiltin, DestroyOfAnUnknownCameraIsSilent)
{
    g_CM.CreateCamera();
    for (int id : {UNKNOWN_CAMERA, -1, -2, 1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(Answer(F_CameraDestroy, {Real(id)}), "real -1");
    EXPECT_NE(g_CM.GetCamera(0), nullptr);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, DestroyTwiceIsSilent)
{
    g_CM.CreateCamera();
    Call(F_CameraDestroy, {Real(0)});
    EXPECT_EQ(Answer(F_CameraDestroy, {Real(0)}), "real -1");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, DestroyWithAWrongCountDestroysNothing)
{
    g_CM.CreateCamera();
    EXPECT_EQ(Answer(F_CameraDestroy, {Real(0), Real(0)}), "real -1");
    EXPECT_NE(g_CM.GetCamera(0), nullptr);
    EXPECT_THAT(Errors(), ElementsAre("camera_destroy() - wrong number of arguments"));
}

// ---- application ----

TEST_F(CameraBuiltin, ApplyBuildsADirtyViewAndSetsTheMatrices)
{
    Call(F_CameraCreateView, {Real(0), Real(0), Real(640), Real(480)});
    Call(F_CameraSetViewPos, {Real(0), Real(100), Real(50)});
    EXPECT_EQ(Answer(F_CameraApply, {Real(0)}), "real -1");
    EXPECT_FALSE(g_CM.GetCamera(0)->IsViewDirty());
    EXPECT_NEAR(g_ViewAreaX, 100.0f, 1e-3f);
    EXPECT_NEAR(g_ViewAreaY, 50.0f, 1e-3f);
    const Lines log = LogOf(F_CameraApply, {Real(0)}, Topic_Graphics);
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[0].substr(0, 15), "SetViewExtents(");
    EXPECT_EQ(log[1], "SetMatrix(view)");
    EXPECT_EQ(log[2], "SetMatrix(projection)");
}

TEST_F(CameraBuiltin, ApplyRunsNoCallbackAndActivatesNothing)
{
    CCamera* camera = g_CM.CreateCamera();
    RValue script = Real(3);
    camera->SetBeginScript(&script);
    camera->SetEndScript(&script);
    camera->SetUpdateScript(&script);
    EXPECT_THAT(LogOf(F_CameraApply, {Real(0)}, Topic_Scripts), IsEmpty());
    EXPECT_EQ(g_CM.GetActiveCamera(), nullptr);
}

TEST_F(CameraBuiltin, ApplyOfAnUnknownCameraSetsNothing)
{
    EXPECT_THAT(LogOf(F_CameraApply, {Real(UNKNOWN_CAMERA)}, Topic_Graphics | Topic_Errors), IsEmpty());
    EXPECT_EQ(Answer(F_CameraApply, {Real(UNKNOWN_CAMERA)}), "real -1");
}

TEST_F(CameraBuiltin, ApplyWithAWrongCountSetsNothing)
{
    g_CM.CreateCamera();
    EXPECT_THAT(LogOf(F_CameraApply, {Real(0), Real(0)}, Topic_Graphics | Topic_Errors),
                ElementsAre("KvError(camera_apply() - wrong number of arguments)"));
}

// ---- the active and the default camera ----

TEST_F(CameraBuiltin, GetActiveReturnsTheActiveIdentifier)
{
    EXPECT_EQ(Answer(F_CameraGetActive, {}), "real -1");
    g_CM.CreateCamera();
    g_CM.CreateCamera();
    g_CM.SetActiveCamera(1);
    EXPECT_EQ(Answer(F_CameraGetActive, {}), "real 1");
}

TEST_F(CameraBuiltin, GetActiveReadsTheCamerasOwnIdentifier)
{
    CCamera* camera = g_CM.CreateCamera();
    g_CM.SetActiveCamera(0);
    camera->SetID(12);
    EXPECT_EQ(Answer(F_CameraGetActive, {}), "real 12");
}

TEST_F(CameraBuiltin, GetDefaultReturnsTheDefaultCamera)
{
    g_CM.CreateCamera();
    g_CM.CreateCamera();
    g_DefaultCameraID = 1;
    EXPECT_EQ(Answer(F_CameraGetDefault, {}), "real 1");
}

TEST_F(CameraBuiltin, GetDefaultIsMinusOneWhenThereIsNone)
{
    g_CM.CreateCamera();
    g_DefaultCameraID = -1;
    EXPECT_EQ(Answer(F_CameraGetDefault, {}), "real -1");
    g_DefaultCameraID = UNKNOWN_CAMERA;
    EXPECT_EQ(Answer(F_CameraGetDefault, {}), "real -1");
}

TEST_F(CameraBuiltin, GetActiveAndGetDefaultCheckNoCount)
{
    g_CM.CreateCamera();
    g_CM.SetActiveCamera(0);
    g_DefaultCameraID = 0;
    EXPECT_EQ(Answer(F_CameraGetActive, {Real(5), Real(6)}), "real 0");
    EXPECT_EQ(Answer(F_CameraGetDefault, {Real(5), Real(6)}), "real 0");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, SetDefaultTakesAnExistingCamera)
{
    g_CM.CreateCamera();
    g_CM.CreateCamera();
    Call(F_CameraSetDefault, {Real(1)});
    EXPECT_EQ(g_DefaultCameraID, 1);
    EXPECT_EQ(Answer(F_CameraGetDefault, {}), "real 1");
}

TEST_F(CameraBuiltin, SetDefaultOfAnUnknownCameraKeepsTheOldOne)
{
    g_CM.CreateCamera();
    Call(F_CameraSetDefault, {Real(0)});
    for (int id : {UNKNOWN_CAMERA, -1})
        Call(F_CameraSetDefault, {Real(id)});
    EXPECT_EQ(Answer(F_CameraGetDefault, {}), "real 0");
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, SetDefaultNeverTouchesTheResult)
{
    g_CM.CreateCamera();
    for (int id : {0, UNKNOWN_CAMERA})
    {
        RValue result = Int32(99);
        result.flags = 0x50;
        Call(F_CameraSetDefault, {Real(id)}, result);
        EXPECT_EQ(Describe(result), "int32 99");
        EXPECT_EQ(result.flags, 0x50u);
    }
}

TEST_F(CameraBuiltin, SetDefaultChecksNoCount)
{
    g_CM.CreateCamera();
    g_CM.CreateCamera();
    Call(F_CameraSetDefault, {Real(1), Real(0), Real(0)});
    EXPECT_EQ(g_DefaultCameraID, 1);
    EXPECT_THAT(Errors(), IsEmpty());
}

TEST_F(CameraBuiltin, SetDefaultReachesTheRoomListOnlyAtTheNextRebuild)
{
    g_CM.CreateCamera();
    Run_Room = NewRoom(640, 480);
    g_CM.StartRoom();
    Call(F_CameraSetDefault, {Real(0)});
    EXPECT_EQ(g_CM.m_roomcameras[0], nullptr);
    g_CM.BuildRoomCameraList();
    EXPECT_EQ(g_CM.m_roomcameras[0], g_CM.GetCamera(0));
}

// ---- all properties at once, for hosts: no script reaches it ----

std::vector<RValue> ElevenArguments(int id)
{
    std::vector<RValue> args = {Real(id)};
    for (int value = 1; value <= 10; ++value)
        args.push_back(Real(value));
    return args;
}

TEST_F(CameraBuiltin, SetViewStoresAllTenProperties)
{
    CCamera* camera = g_CM.CreateCamera();
    EXPECT_EQ(Answer(F_CameraSetView, ElevenArguments(0)), "real -1");
    EXPECT_EQ(Properties(*camera), "1 2 3 4 5 6 7 8 9 10");
    EXPECT_TRUE(camera->IsViewDirty());
}

TEST_F(CameraBuiltin, SetViewReadsItsArgumentsInOrder)
{
    g_CM.CreateCamera();
    EXPECT_THAT(LogOf(F_CameraSetView, ElevenArguments(0), Topic_All),
                ElementsAre("KvGetInt32(0)", "KvGetFloat(1)", "KvGetFloat(2)", "KvGetFloat(3)", "KvGetFloat(4)",
                            "KvGetFloat(5)", "KvGetFloat(6)", "KvGetFloat(7)", "KvGetFloat(8)", "KvGetFloat(9)",
                            "KvGetInt32(10)"));
}

TEST_F(CameraBuiltin, SetViewOfAnUnknownCameraIsSilent)
{
    EXPECT_THAT(LogOf(F_CameraSetView, ElevenArguments(UNKNOWN_CAMERA), Topic_All), ElementsAre("KvGetInt32(0)"));
    EXPECT_EQ(Answer(F_CameraSetView, ElevenArguments(UNKNOWN_CAMERA)), "real -1");
}

TEST_F(CameraBuiltin, SetViewWithAWrongCountChangesNothing)
{
    CCamera* camera = g_CM.CreateCamera();
    std::vector<RValue> args = ElevenArguments(0);
    args.pop_back();
    EXPECT_EQ(Answer(F_CameraSetView, args), "real -1");
    args.resize(12, Real(0));
    EXPECT_EQ(Answer(F_CameraSetView, args), "real -1");
    const std::string message = "camera_set_view() - wrong number of arguments";
    EXPECT_THAT(Errors(), ElementsAre(message, message));
    EXPECT_EQ(camera->m_viewX, 0.0f);
    EXPECT_FALSE(camera->IsViewDirty());
}
} // namespace
