// One step after a target, axis by axis.

#include "Tests/Support/Fixture.h"
#include "Tests/Support/Numbers.h"
#include "Tests/Support/Reference.h"

#include <cmath>
#include <random>

using namespace Recording;

namespace
{
constexpr float UNLIMITED = -1.0f;
constexpr int TARGET = 100000;
constexpr int NO_ROOM = 0;

// One axis of a step, with the edge that it must end at.
struct Step
{
    const char* name;
    float target, edge, size, border, speed;
    int room;
    float expected;
};

// The free zone of a view of 400 at 100 with a border of 50 runs from 150 to 450.
const Step STEPS[] = {
    {"InsideTheBordersTheViewStays", 300, 100, 400, 50, UNLIMITED, 1000, 100},
    {"OnTheNearBorderTheViewStays", 150, 100, 400, 50, UNLIMITED, 1000, 100},
    {"PastTheNearBorderTheViewFollows", 149, 100, 400, 50, UNLIMITED, 1000, 99},
    {"FarPastTheNearBorderTheViewFollowsAtOnce", 60, 100, 400, 50, UNLIMITED, 1000, 10},
    {"OnTheFarBorderTheViewStays", 450, 100, 400, 50, UNLIMITED, 1000, 100},
    {"PastTheFarBorderTheViewFollows", 451, 100, 400, 50, UNLIMITED, 1000, 101},
    {"FarPastTheFarBorderTheViewFollowsAtOnce", 700, 100, 400, 50, UNLIMITED, 1000, 350},
    {"ABorderOfHalfTheViewCentresOnTheTarget", 310, 100, 400, 200, UNLIMITED, 1000, 110},
    {"ABorderOfMoreThanHalfCentresToo", 310, 100, 400, 300, UNLIMITED, 1000, 110},
    {"ABorderJustBelowHalfLeavesAFreeZone", 310, 100, 400, 199.5f, UNLIMITED, 1000, 109.5f},
    {"BorderHundredInAViewOfTwoHundredCentres", 333, 0, 200, 100, UNLIMITED, 1000, 233},
    {"WithoutABorderTheTargetMayReachTheEdge", 100, 100, 400, 0, UNLIMITED, 1000, 100},
    {"ANegativeBorderLetsTheTargetOut", 60, 100, 400, -50, UNLIMITED, 1000, 100},
    {"ThePositionIsTakenDownToAWholeUnit", 120.9f, 100, 400, 50, UNLIMITED, 1000, 70},
    {"ANegativePositionIsTakenDownNotTowardsZero", -0.5f, 100, 400, -50, UNLIMITED, 1000, 49},
    {"TheRoomsNearEdgeStopsTheView", 20, 100, 400, 50, UNLIMITED, 1000, 0},
    {"TheRoomsFarEdgeStopsTheView", 990, 100, 400, 50, UNLIMITED, 1000, 600},
    {"WithoutARoomTheNearEdgeStillStopsTheView", 20, 100, 400, 50, UNLIMITED, NO_ROOM, 0},
    {"WithoutARoomNothingStopsItAtTheFarEdge", 5000, 100, 400, 50, UNLIMITED, NO_ROOM, 4650},
    {"AViewOutsideTheRoomIsBroughtIn", 300, 900, 400, 500, UNLIMITED, 1000, 100},
    {"AViewLeftOfTheRoomIsBroughtIn", 100, -100, 400, 50, UNLIMITED, 1000, 0},
    {"AViewLargerThanTheRoomEndsAtANegativeEdge", 320, 0, 800, 0, UNLIMITED, 640, -160},
    {"AViewLargerThanTheRoomWithSpeedZeroStays", 320, 0, 800, 0, 0, 640, 0},
    {"AViewLargerThanTheRoomGoesThereAtItsSpeed", 320, 0, 800, 0, 10, 640, -10},
    {"SpeedZeroHoldsTheView", 700, 100, 400, 50, 0, 1000, 100},
    {"MinusZeroSpeedHoldsTheViewToo", 700, 100, 400, 50, -0.0f, 1000, 100},
    {"AnyNegativeSpeedIsUnlimited", 700, 100, 400, 50, -0.001f, 1000, 350},
    {"SpeedLimitsAStepForward", 700, 100, 400, 50, 7.5f, 1000, 107.5f},
    {"SpeedLimitsAStepBack", 60, 100, 400, 50, 7.5f, 1000, 92.5f},
    {"AStepOfExactlyTheSpeedIsMade", 700, 100, 400, 50, 250, 1000, 350},
    {"ASpeedBeyondTheDistanceReachesTheTarget", 700, 100, 400, 50, 251, 1000, 350},
    {"SpeedLimitsTheReturnIntoTheRoomToo", 100, -100, 400, 50, 30, 1000, -70},
    {"ABorderThatIsNoNumberHoldsTheView", 700, 100, 400, NOT_A_NUMBER, UNLIMITED, 1000, 100},
    {"ATargetThatIsNoNumberHoldsTheView", NOT_A_NUMBER, 100, 400, 50, UNLIMITED, 1000, 100},
    {"ASpeedThatIsNoNumberIsUnlimited", 700, 100, 400, 50, NOT_A_NUMBER, 1000, 350},
    // Above 2^24 only even numbers are floats, above 2^25 each fourth: sums and differences are rounded, so that equal
    // sides of a comparison do not make equal results. 1 + 2^24 is 2^24.
    {"AHugeViewOnItsFarBorderAndTheRoomsFarEdgeStays", 16777216, 1, 16777216, 0, UNLIMITED, 16777216, 1},
    // 2^24 + 2 - 2^24; with a dead zone, both sums would be 2^25, and the view would stay.
    {"AHugeViewWithoutADeadZoneIsCentred", 16777218, 1, 33554432, 16777216, UNLIMITED, NO_ROOM, 2},
    // 2^24 + 1, a step of one too many, is 2^24: the step is made.
    {"AHugeStepBackOfTheSpeedIsMade", 1, 16777218, 400, 0, 16777216, NO_ROOM, 1},
    {"AHugeStepForwardOfTheSpeedIsMade", 16777220, 1, 2, 0, 16777216, NO_ROOM, 16777218},
};
} // namespace

class CameraFollowRandom : public ModuleTest
{
protected:
    CameraFollowRandom()
    {
        camera.m_viewWidth = 400.0f;
        camera.m_viewHeight = 300.0f;
        camera.m_viewX = camera.m_viewY = 100.0f;
        camera.m_viewSpeedX = camera.m_viewSpeedY = UNLIMITED;
        camera.m_targetInstance = TARGET;
    }

    CCamera camera;
};

class CameraFollowStep : public CameraFollowRandom, public testing::WithParamInterface<Step>
{
};

TEST_P(CameraFollowStep, Across)
{
    const Step& step = GetParam();
    if (step.room != NO_ROOM)
        Run_Room = NewRoom(step.room, 100000);
    NewInstance(TARGET, step.target, 250.0f);
    camera.m_viewX = step.edge;
    camera.m_viewWidth = step.size;
    camera.m_viewBorderX = step.border;
    camera.m_viewSpeedX = step.speed;
    camera.CameraUpdate();
    EXPECT_EQ(camera.m_viewX, step.expected);
    EXPECT_EQ(camera.m_viewY, 100.0f) << "the other axis has no reason to move";
}

TEST_P(CameraFollowStep, Down)
{
    const Step& step = GetParam();
    if (step.room != NO_ROOM)
        Run_Room = NewRoom(100000, step.room);
    NewInstance(TARGET, 250.0f, step.target);
    camera.m_viewY = step.edge;
    camera.m_viewHeight = step.size;
    camera.m_viewBorderY = step.border;
    camera.m_viewSpeedY = step.speed;
    camera.CameraUpdate();
    EXPECT_EQ(camera.m_viewY, step.expected);
    EXPECT_EQ(camera.m_viewX, 100.0f) << "the other axis has no reason to move";
}

INSTANTIATE_TEST_SUITE_P(All, CameraFollowStep, testing::ValuesIn(STEPS),
                         [](const testing::TestParamInfo<Step>& step) { return std::string(step.param.name); });

TEST_F(CameraFollowRandom, ANewEdgeThatIsNoNumberFallsThroughEveryComparison)
{
    NewInstance(TARGET, NOT_A_NUMBER, 250.0f);
    Run_Room = NewRoom(1000, 1000);
    camera.m_viewBorderX = 200.0f; // centres on the target
    camera.m_viewSpeedX = 5.0f;
    camera.CameraUpdate();
    EXPECT_TRUE(std::isnan(camera.m_viewX)) << camera.m_viewX;
    EXPECT_EQ(camera.m_viewY, 100.0f);
}

TEST_F(CameraFollowRandom, StepsAgreeWithTheReferenceExactly)
{
    // Quarters of a unit below 2^16 add, halve and compare without rounding: the results must be equal.
    std::mt19937 engine{20240229};
    const auto quarters = [&](int low, int high) {
        return static_cast<float>(low * 4 + static_cast<int>(engine() % static_cast<uint32_t>((high - low) * 4))) /
               4.0f;
    };
    CInstance* target = NewInstance(TARGET, 0.0f, 0.0f);
    CRoom* room = NewRoom(0, 0);
    Listen(0);
    for (int round = 0; round < 50000; ++round)
    {
        target->x = quarters(-3000, 6000);
        target->y = quarters(-3000, 6000);
        camera.m_viewX = quarters(-1000, 3000);
        camera.m_viewY = quarters(-1000, 3000);
        camera.m_viewWidth = quarters(1, 1500);
        camera.m_viewHeight = quarters(1, 1500);
        camera.m_viewBorderX = quarters(-20, 400);
        camera.m_viewBorderY = quarters(-20, 400);
        camera.m_viewSpeedX = quarters(-10, 60);
        camera.m_viewSpeedY = quarters(-10, 60);
        room->r_width = static_cast<int>(engine() % 4000u);
        room->r_height = static_cast<int>(engine() % 4000u);
        Run_Room = round % 5 == 0 ? nullptr : room;
        const auto wide = [](float number) { return static_cast<double>(number); };
        const Reference::Axis across = {wide(target->x),
                                        wide(camera.m_viewX),
                                        wide(camera.m_viewWidth),
                                        wide(camera.m_viewBorderX),
                                        wide(camera.m_viewSpeedX),
                                        Run_Room != nullptr,
                                        wide(static_cast<float>(room->r_width))};
        const Reference::Axis down = {wide(target->y),
                                      wide(camera.m_viewY),
                                      wide(camera.m_viewHeight),
                                      wide(camera.m_viewBorderY),
                                      wide(camera.m_viewSpeedY),
                                      Run_Room != nullptr,
                                      wide(static_cast<float>(room->r_height))};
        camera.CameraUpdate();
        ASSERT_EQ(wide(camera.m_viewX), Reference::Follow(across)) << "round " << round;
        ASSERT_EQ(wide(camera.m_viewY), Reference::Follow(down)) << "round " << round;
    }
}
