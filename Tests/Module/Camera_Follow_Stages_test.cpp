// The stages of a step after a target, asked for without a step.

#include "Files/Graphics/Camera_Follow.h"
#include "Tests/Support/Fixture.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <ostream>

using namespace Recording;

namespace
{
constexpr float UNLIMITED = -1.0f;
constexpr int NO_ROOM = 0;
constexpr int TARGET = 100000;

// One axis, the target's position, and the five stages worked out by hand.
struct Case
{
    const char* name;
    float edge, size, border, speed;
    int room;
    float target;
    float floored, atBorder, inRoom, limited;
};

// A view of 320 at 530 with a border of 80 keeps its target from 610 to 770.
const Case CASES[] = {
    // 812 + 80 - 320 = 572; 860 - 320 = 540; 530 + 6 = 536.
    {"EveryStageMovesTheEdge", 530, 320, 80, 6, 860, 812.4f, 812, 572, 540, 536},
    {"InTheDeadZoneEveryStageIsTheEdge", 530, 320, 80, 6, 2000, 700.9f, 700, 530, 530, 530},
    // 569 - 80 = 489; 530 - 6 = 524.
    {"PastTheLeftBorder", 530, 320, 80, 6, 2000, 569.5f, 569, 489, 489, 524},
    // 12 - 80 = -68, which the room stops at 0.
    {"TheRoomsLeftEdgeStopsIt", 30, 320, 80, UNLIMITED, 2000, 12.0f, 12, -68, 0, 0},
    // Without a room, only the left edge stops a view.
    {"WithoutARoomNothingStopsItOnTheRight", 530, 320, 80, UNLIMITED, NO_ROOM, 5000.0f, 5000, 4760, 4760, 4760},
    // A border of half the view: 900 - 160 = 740.
    {"WithoutADeadZoneTheTargetIsCentred", 530, 320, 160, 10, 2000, 900.25f, 900, 740, 740, 540},
    // 0 - 800 x 0.5 would centre; 640 - 800 = -160 is the far edge's answer.
    {"AViewLargerThanTheRoomEndsAtANegativeEdge", 0, 800, 0, UNLIMITED, 640, 320.0f, 320, 0, -160, -160},
    {"ANegativePositionIsTakenDown", 0, 320, -80, UNLIMITED, 2000, -0.5f, -1, 0, 0, 0},
    {"SpeedZeroHoldsTheView", 530, 320, 80, 0, 2000, 812.4f, 812, 572, 572, 530},
};

void PrintTo(const Case& row, std::ostream* out) { *out << row.name; }
} // namespace

class CameraFollowStages : public ModuleTest, public testing::WithParamInterface<Case>
{
protected:
    CFollowAxis Axis() const
    {
        const Case& row = GetParam();
        return {row.edge, row.size, row.border, row.speed, row.room == NO_ROOM ? nullptr : &row.room};
    }
};

TEST_P(CameraFollowStages, AreThoseWorkedOutByHand)
{
    const Case& row = GetParam();
    const CFollowStages stages = Axis().StepAfter(row.target);
    EXPECT_EQ(stages.target, row.target);
    EXPECT_EQ(stages.floored, row.floored);
    EXPECT_EQ(stages.border, row.atBorder);
    EXPECT_EQ(stages.room, row.inRoom);
    EXPECT_EQ(stages.speed, row.limited);
}

TEST_P(CameraFollowStages, TheLastOneIsWhatTheCameraTakes)
{
    const Case& row = GetParam();
    CCamera camera;
    camera.m_viewX = row.edge;
    camera.m_viewWidth = row.size;
    camera.m_viewHeight = 300.0f;
    camera.m_viewBorderX = row.border;
    camera.m_viewSpeedX = row.speed;
    camera.m_targetInstance = TARGET;
    const CInstance* target = NewInstance(TARGET, row.target, 50.0f);
    Run_Room = row.room == NO_ROOM ? nullptr : NewRoom(row.room, 1000);
    const float told = camera.FollowAxisX().StepAfter(target->x).speed;
    camera.CameraUpdate();
    EXPECT_EQ(camera.m_viewX, told);
    EXPECT_EQ(camera.m_viewX, row.limited);
}

INSTANTIATE_TEST_SUITE_P(All, CameraFollowStages, testing::ValuesIn(CASES),
                         [](const testing::TestParamInfo<Case>& row) { return std::string(row.param.name); });

class CameraFollowQuestions : public ModuleTest
{
protected:
    CCamera camera;
};

TEST_F(CameraFollowQuestions, ChangeNeitherCameraNorTarget)
{
    camera.m_viewX = 530.0f;
    camera.m_viewWidth = 320.0f;
    camera.m_viewSpeedX = UNLIMITED;
    camera.m_targetInstance = TARGET;
    const CInstance* target = NewInstance(TARGET, 900.0f, 50.0f, eInstanceFlag_bbox_dirty);
    TakeLog();
    EXPECT_EQ(camera.FindTarget(), target);
    EXPECT_EQ(camera.FollowAxisX().StepAfter(target->x).speed, 580.0f) << "900 on the right edge of a view of 320";
    EXPECT_EQ(TakeLog(), Lines{"FindInstance(100000)"}) << "no bounding box, no build";
    EXPECT_EQ(camera.m_viewX, 530.0f);
    EXPECT_EQ(target->m_flags, static_cast<uint32_t>(eInstanceFlag_bbox_dirty));
}

TEST_F(CameraFollowQuestions, AnswerTheAxesOfTheRecordAndTheRoom)
{
    const CRoom* room = Run_Room = NewRoom(900, 700);
    camera.m_viewX = 1.0f;
    camera.m_viewY = 2.0f;
    camera.m_viewWidth = 3.0f;
    camera.m_viewHeight = 4.0f;
    camera.m_viewBorderX = 5.0f;
    camera.m_viewBorderY = 6.0f;
    camera.m_viewSpeedX = 7.0f;
    camera.m_viewSpeedY = 8.0f;
    const CFollowAxis across = camera.FollowAxisX(), down = camera.FollowAxisY();
    EXPECT_EQ(across.edge, 1.0f);
    EXPECT_EQ(down.edge, 2.0f);
    EXPECT_EQ(across.size, 3.0f);
    EXPECT_EQ(down.size, 4.0f);
    EXPECT_EQ(across.border, 5.0f);
    EXPECT_EQ(down.border, 6.0f);
    EXPECT_EQ(across.speed, 7.0f);
    EXPECT_EQ(down.speed, 8.0f);
    EXPECT_EQ(across.roomSize, &room->r_width);
    EXPECT_EQ(down.roomSize, &room->r_height);
    Run_Room = nullptr;
    EXPECT_EQ(camera.FollowAxisX().roomSize, nullptr);
}

TEST_F(CameraFollowQuestions, FindNobodyForANegativeTargetWithoutAskingTheHost)
{
    TakeLog();
    EXPECT_EQ(camera.FindTarget(), nullptr);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(CameraFollowQuestions, ATargetThatIsNoNumberLeavesTheEdge)
{
    const CFollowStages stages = CFollowAxis{530.0f, 320.0f, 80.0f, 6.0f, nullptr}.StepAfter(NOT_A_NUMBER);
    EXPECT_TRUE(std::isnan(stages.floored));
    EXPECT_EQ(stages.border, 530.0f);
    EXPECT_EQ(stages.speed, 530.0f);
}

// Zeros of both signs are equal, so a target on the border moves nothing, and the room's edge stops nothing.
TEST_F(CameraFollowQuestions, AnEdgeOfMinusZeroKeepsItsSign)
{
    const CFollowStages stages = CFollowAxis{-0.0f, 320.0f, 0.0f, 6.0f, nullptr}.StepAfter(0.0f);
    EXPECT_TRUE(std::signbit(stages.border));
    EXPECT_TRUE(std::signbit(stages.room));
    EXPECT_TRUE(std::signbit(stages.speed));
}
