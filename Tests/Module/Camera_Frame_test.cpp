// Where a camera stands and how it is turned, read back from its matrices.

#include "Platform/Strict_Float.h"

#include "Tests/Support/Fixture.h"

#include <cmath>
#include <random>

using namespace Recording;

namespace
{
double D(float number) { return static_cast<double>(number); }
} // namespace

class CameraFrame : public ModuleTest
{
protected:
    void Build(float angle = 0.0f)
    {
        camera.m_viewWidth = 640.0f;
        camera.m_viewHeight = 480.0f;
        camera.m_viewAngle = angle;
        camera.BuildView();
        TakeLog();
    }

    CCamera camera;
};

TEST_F(CameraFrame, TheCameraStandsAtItsEye)
{
    Build();
    const kvVector3 flat = camera.GetCamPos();
    EXPECT_NEAR(D(flat.x), 320.0, 1e-3);
    EXPECT_NEAR(D(flat.y), 240.0, 1e-3);
    EXPECT_NEAR(D(flat.z), -16000.0, 1e-2);
    camera.Build3DView(320, 240);
    EXPECT_NEAR(D(camera.GetCamPos().z), -640.0, 1e-2);
}

TEST_F(CameraFrame, ThePositionIsTheFourthRowOfTheInverseView)
{
    for (int i = 0; i < 16; ++i)
        camera.m_invViewMat.m[i] = static_cast<float>(i);
    const kvVector3 place = camera.GetCamPos();
    EXPECT_EQ(place.x, 12.0f);
    EXPECT_EQ(place.y, 13.0f);
    EXPECT_EQ(place.z, 14.0f);
}

TEST_F(CameraFrame, TheDirectionIsTheThirdColumnOfTheViewAtLengthOne)
{
    camera.m_viewMat._13 = 3.0f;
    camera.m_viewMat._23 = -4.0f;
    camera.m_viewMat._33 = 12.0f;
    const kvVector3 direction = camera.GetCamDir();
    const float scale = 1.0f / 13.0f;
    EXPECT_EQ(direction.x, 3.0f * scale);
    EXPECT_EQ(direction.y, -4.0f * scale);
    EXPECT_EQ(direction.z, 12.0f * scale);
}

TEST_F(CameraFrame, UpIsTheSecondColumnOfTheViewAtLengthOne)
{
    camera.m_viewMat._12 = -2.0f;
    camera.m_viewMat._22 = 3.0f;
    camera.m_viewMat._32 = 6.0f;
    const kvVector3 up = camera.GetCamUp();
    const float scale = 1.0f / 7.0f;
    EXPECT_EQ(up.x, -2.0f * scale);
    EXPECT_EQ(up.y, 3.0f * scale);
    EXPECT_EQ(up.z, 6.0f * scale);
}

TEST_F(CameraFrame, ALengthSumsItsSquaresInOrderAndScalesByItsReciprocal)
{
    std::mt19937 engine{987654};
    std::uniform_real_distribution<float> spread{-3.0f, 3.0f};
    for (int round = 0; round < 20000; ++round)
    {
        const float x = spread(engine), y = spread(engine), z = spread(engine);
        camera.m_viewMat._13 = camera.m_viewMat._12 = x;
        camera.m_viewMat._23 = camera.m_viewMat._22 = y;
        camera.m_viewMat._33 = camera.m_viewMat._32 = z;
        const float scale = 1.0f / sqrtf(x * x + y * y + z * z);
        for (const kvVector3& unit : {camera.GetCamDir(), camera.GetCamUp()})
        {
            ASSERT_EQ(unit.x, x * scale) << x << " " << y << " " << z;
            ASSERT_EQ(unit.y, y * scale) << x << " " << y << " " << z;
            ASSERT_EQ(unit.z, z * scale) << x << " " << y << " " << z;
        }
    }
}

TEST_F(CameraFrame, RightTakesOneElementForAllThreeComponents)
{
    for (float element : {2.0f, -2.0f, 0.125f})
    {
        camera.m_viewMat._11 = 99.0f; // what a plain right vector would read
        camera.m_viewMat._21 = 98.0f;
        camera.m_viewMat._31 = element;
        const kvVector3 right = camera.GetCamRight();
        EXPECT_NEAR(D(right.x), (element < 0 ? -1 : 1) / std::sqrt(3.0), 1e-7) << element;
        EXPECT_EQ(right.x, right.y);
        EXPECT_EQ(right.y, right.z);
    }
}

TEST_F(CameraFrame, RightIsNotFiniteWhenItsElementIsZero)
{
    Build(30);
    ASSERT_EQ(camera.m_viewMat._31, 0.0f);
    const kvVector3 right = camera.GetCamRight();
    EXPECT_FALSE(std::isfinite(right.x)) << right.x;
    EXPECT_FALSE(std::isfinite(right.y)) << right.y;
    EXPECT_FALSE(std::isfinite(right.z)) << right.z;
}

TEST_F(CameraFrame, AColumnWithoutLengthIsNotFinite)
{
    camera.m_viewMat._33 = 0.0f;
    EXPECT_FALSE(std::isfinite(camera.GetCamDir().z));
    camera.m_viewMat._22 = 0.0f;
    EXPECT_FALSE(std::isfinite(camera.GetCamUp().y));
}

TEST_F(CameraFrame, ReadingTheFrameChangesNoMatrix)
{
    Build(30);
    TakeLog();
    const kvMatrix view = camera.m_viewMat, inverse = camera.m_invViewMat;
    camera.GetCamPos();
    camera.GetCamDir();
    camera.GetCamUp();
    camera.GetCamRight();
    EXPECT_EQ(camera.m_viewMat, view);
    EXPECT_EQ(camera.m_invViewMat, inverse);
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(CameraFrame, AFlatCameraLooksAlongZWithUpTurnedByItsAngle)
{
    for (float angle : {0.0f, 30.0f, 90.0f, 200.0f})
    {
        Build(angle);
        const double a = -D(angle) * 3.14159265358979 / 180.0;
        EXPECT_NEAR(D(camera.GetCamDir().z), 1.0, 1e-6);
        EXPECT_NEAR(D(camera.GetCamUp().x), std::sin(a), 2e-6) << angle;
        EXPECT_NEAR(D(camera.GetCamUp().y), std::cos(a), 2e-6) << angle;
    }
}
