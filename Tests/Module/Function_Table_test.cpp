#include "Tests/Support/Fixture.h"

#include <gmock/gmock.h>
#include <set>

namespace
{
using namespace Recording;
using testing::ElementsAreArray;

struct Row
{
    const char* name;
    TFunction handler;
    int argc;
};

const Row TABLE[] = {
    {"camera_create", F_CameraCreate, 0},
    {"camera_create_view", F_CameraCreateView, 4},
    {"camera_destroy", F_CameraDestroy, 1},
    {"camera_apply", F_CameraApply, 1},
    {"camera_get_active", F_CameraGetActive, 0},
    {"camera_get_default", F_CameraGetDefault, 0},
    {"camera_set_default", F_CameraSetDefault, 1},
    {"camera_set_view_mat", F_CameraSetViewMat, 2},
    {"camera_set_proj_mat", F_CameraSetProjMat, 2},
    {"camera_set_update_script", F_CameraSetUpdateScript, 2},
    {"camera_set_begin_script", F_CameraSetBeginScript, 2},
    {"camera_set_end_script", F_CameraSetEndScript, 2},
    {"camera_set_view_pos", F_CameraSetViewPos, 3},
    {"camera_set_view_size", F_CameraSetViewSize, 3},
    {"camera_set_view_speed", F_CameraSetViewSpeed, 3},
    {"camera_set_view_border", F_CameraSetViewBorder, 3},
    {"camera_set_view_angle", F_CameraSetViewAngle, 2},
    {"camera_set_view_target", F_CameraSetViewTarget, 2},
    {"camera_get_view_mat", F_CameraGetViewMat, 1},
    {"camera_get_proj_mat", F_CameraGetProjMat, 1},
    {"camera_get_update_script", F_CameraGetUpdateScript, 1},
    {"camera_get_begin_script", F_CameraGetBeginScript, 1},
    {"camera_get_end_script", F_CameraGetEndScript, 1},
    {"camera_get_view_x", F_CameraGetViewX, 1},
    {"camera_get_view_y", F_CameraGetViewY, 1},
    {"camera_get_view_width", F_CameraGetViewWidth, 1},
    {"camera_get_view_height", F_CameraGetViewHeight, 1},
    {"camera_get_view_speed_x", F_CameraGetViewSpeedX, 1},
    {"camera_get_view_speed_y", F_CameraGetViewSpeedY, 1},
    {"camera_get_view_border_x", F_CameraGetViewBorderX, 1},
    {"camera_get_view_border_y", F_CameraGetViewBorderY, 1},
    {"camera_get_view_angle", F_CameraGetViewAngle, 1},
    {"camera_get_view_target", F_CameraGetViewTarget, 1},
    {"view_get_camera", F_ViewGetCamera, 1},
    {"view_get_visible", F_ViewGetVisible, 1},
    {"view_get_xport", F_ViewGetXport, 1},
    {"view_get_yport", F_ViewGetYport, 1},
    {"view_get_wport", F_ViewGetWport, 1},
    {"view_get_hport", F_ViewGetHport, 1},
    {"view_get_surface_id", F_ViewGetSurfaceId, 1},
    {"view_set_camera", F_ViewSetCamera, 2},
    {"view_set_visible", F_ViewSetVisible, 2},
    {"view_set_xport", F_ViewSetXport, 2},
    {"view_set_yport", F_ViewSetYport, 2},
    {"view_set_wport", F_ViewSetWport, 2},
    {"view_set_hport", F_ViewSetHport, 2},
    {"view_set_surface_id", F_ViewSetSurfaceId, 2},
};
constexpr size_t ROWS = sizeof TABLE / sizeof TABLE[0];

class FunctionTable : public ModuleTest
{
protected:
    void SetUp() override
    {
        ModuleTest::SetUp();
        g_CM.SetupLumFunctions();
    }
};

TEST_F(FunctionTable, Has47RowsInTheirOrderAllFlagged)
{
    Lines expected;
    for (const Row& row : TABLE)
        expected.push_back("Function_Add(" + std::string(row.name) + "," + std::to_string(row.argc) + ",true)");
    EXPECT_EQ(ROWS, 47u);
    EXPECT_THAT(Log(), ElementsAreArray(expected));
}

TEST_F(FunctionTable, EachNameLeadsToItsOwnHandler)
{
    ASSERT_EQ(Builtins().size(), ROWS);
    for (size_t row = 0; row < ROWS; ++row)
    {
        EXPECT_EQ(Builtins()[row].name, TABLE[row].name);
        EXPECT_EQ(Builtins()[row].handler, TABLE[row].handler) << TABLE[row].name;
    }
}

TEST_F(FunctionTable, NoTwoNamesShareAHandler)
{
    std::set<TFunction> handlers;
    for (const Builtin& builtin : Builtins())
        handlers.insert(builtin.handler);
    EXPECT_EQ(handlers.size(), ROWS);
}

TEST_F(FunctionTable, LeavesSetViewOut)
{
    EXPECT_EQ(FindBuiltin("camera_set_view"), nullptr);
    for (const Builtin& builtin : Builtins())
        EXPECT_NE(builtin.handler, F_CameraSetView) << builtin.name;
}

TEST_F(FunctionTable, SetUpTwiceEntersEveryNameTwice)
{
    g_CM.SetupLumFunctions();
    EXPECT_EQ(Builtins().size(), 2 * ROWS);
}

// ---- what a wrong count does, for every handler that checks its own ----

struct Count
{
    std::string name;
    int wrong;
};

// One argument too few and one too many. camera_create_view takes more; three handlers and those of the views take
// whatever comes.
std::vector<Count> WrongCounts()
{
    const std::set<std::string> lenient = {"camera_get_active", "camera_get_default", "camera_set_default"};
    std::vector<Count> counts;
    for (const Row& row : TABLE)
    {
        const std::string name = row.name;
        if (name.rfind("view_", 0) == 0 || lenient.count(name) != 0)
            continue;
        if (row.argc > 0)
            counts.push_back({name, row.argc - 1});
        if (name != "camera_create_view")
            counts.push_back({name, row.argc + 1});
    }
    return counts;
}

std::string WrongCountMessage(const std::string& name)
{
    if (name == "camera_create")
        return "camera_create() - doesn't take any arguments";
    if (name == "camera_create_view")
        return "camera_create_view() - must have at least 4 arguments";
    return name + "() - wrong number of arguments";
}

class WrongCount : public FunctionTable, public testing::WithParamInterface<Count>
{
};

TEST_P(WrongCount, IsReportedBeforeAnyArgumentIsReadAndTheResultIsMinusOne)
{
    const std::string name = GetParam().name;
    g_CM.CreateCamera();
    RValue args[] = {Real(0), Real(1), Real(2), Real(3), Real(4)};
    RValue result = Real(99);
    Listen(Topic_All);
    TakeLog();
    FindBuiltin(name)->handler(result, nullptr, nullptr, GetParam().wrong, args);
    EXPECT_THAT(TakeLog(), testing::ElementsAre("KvError(" + WrongCountMessage(name) + ")"));
    EXPECT_EQ(Describe(result), "real -1");
    EXPECT_EQ(g_CM.m_cameraListSize, 1);
}

TEST_P(WrongCount, OfNoOrNegativeArgumentsNeedsNoArgumentArray)
{
    const std::string name = GetParam().name;
    for (int argc : {-1, 0})
    {
        if (argc == 0 && name == "camera_create")
            continue;
        RValue result = Real(99);
        Errors().clear();
        FindBuiltin(name)->handler(result, nullptr, nullptr, argc, nullptr);
        EXPECT_THAT(Errors(), testing::ElementsAre(WrongCountMessage(name))) << argc;
        EXPECT_EQ(Describe(result), "real -1") << argc;
    }
}

TEST_P(WrongCount, DoesNotReleaseWhatTheResultHeld)
{
    RValue text = NewString("kept");
    RValue result = text;
    RValue args[] = {Real(0), Real(1), Real(2), Real(3), Real(4)};
    FindBuiltin(GetParam().name)->handler(result, nullptr, nullptr, GetParam().wrong, args);
    EXPECT_EQ(text.pRefString->m_refCount, 1);
    FREE_RValue__Pre(&text);
}

std::string CaseName(const testing::TestParamInfo<Count>& info)
{
    return info.param.name + "_" + std::to_string(info.param.wrong);
}

INSTANTIATE_TEST_SUITE_P(Handlers, WrongCount, testing::ValuesIn(WrongCounts()), CaseName);
} // namespace
