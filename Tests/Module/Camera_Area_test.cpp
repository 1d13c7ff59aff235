// The published area, bit for bit against the measurement in its stated order of operations.

#include "Platform/Strict_Float.h"

#include "Tests/Support/Fast_Paths.h"
#include "Tests/Support/Fixture.h"

#include <cmath>

using namespace Recording;

namespace
{
// Whatever matrices the camera holds: each number has the stated bits, or is a NaN as stated.
void ExpectStatedArea(CCamera& camera)
{
    ASSERT_TRUE(PublishesTheStatedArea(camera))
        << testing::PrintToString(PublishedArea()) << " instead of "
        << testing::PrintToString(MeasureInStatedOrder(camera.m_invViewProjMat, camera.m_invViewMat))
        << testing::PrintToString(camera.m_invViewProjMat);
}

using CameraArea = ModuleTest;
} // namespace

TEST_F(CameraArea, OfAnyInversesHasTheStatedBits)
{
    AwkwardNumbers source;
    Listen(0);
    CCamera camera;
    for (int round = 0; round < 100000 && !HasFatalFailure(); ++round)
    {
        for (kvMatrix* matrix : {&camera.m_invViewProjMat, &camera.m_invViewMat})
            for (float& entry : matrix->m)
            {
                const bool zero = source.Below(3) == 0;
                entry = round % 3 == 0 ? source.AnyBits() : zero ? 0.0f : source.Between(-2000.0f, 2000.0f);
            }
        ExpectStatedArea(camera);
    }
}

TEST_F(CameraArea, OfAnyMatricesHasTheStatedBits)
{
    AwkwardNumbers source;
    for (int i = 0; i < 20000 && !HasFatalFailure(); ++i)
    {
        CCamera camera;
        kvMatrix view = source.Flat(), projection = source.Flat();
        if (i % 2 == 0)
            for (kvMatrix* matrix : {&view, &projection})
                for (float& entry : matrix->m)
                    entry = i % 4 == 0 ? source.AnyBits() : source.Awkward();
        projection._34 = source.Zero(); // parallel
        camera.SetViewMat(view);
        camera.SetProjMat(projection);
        ExpectStatedArea(camera);
    }
}

TEST_F(CameraArea, OfAViewWithoutRotationHasTheStatedBitsAtEveryMagnitude)
{
    AwkwardNumbers source;
    for (int exponent = -149; exponent <= 127; ++exponent)
        for (int i = 0; i < 50 && !HasFatalFailure(); ++i)
        {
            const auto length = [&]
            { return std::ldexp(source.Between(1.0f, 2.0f), exponent) * (source.Below(4) == 0 ? -1.0f : 1.0f); };
            const auto other = [&] { return source.Below(16) == 0 ? source.Awkward() : source.Zero(); };
            CCamera camera;
            camera.m_invViewProjMat = {{{length(), other(), other(), other(),          //
                                         other(), length(), other(), other(),          //
                                         source.Zero(), source.Zero(), 16000.0f, 0.0f, //
                                         i % 2 == 0 ? 0.0f : length(), 0.0f, 0.5f, 1.0f}}};
            camera.m_invViewMat._41 = source.Between(-1000.0f, 1000.0f);
            camera.m_invViewMat._42 = source.Between(-1000.0f, 1000.0f);
            ExpectStatedArea(camera);
        }
}

// What lies beside the axes adds up, and does not cancel: two entries of one magnitude are no upright view.
TEST_F(CameraArea, OfEqualEntriesBesideTheAxesHasTheStatedBits)
{
    for (int one : {1, 2, 4, 6})
        for (int other : {1, 2, 4, 6})
            for (float entry : {3.0f, -3.0f})
            {
                CCamera camera;
                camera.m_invViewProjMat.m[0] = 4.0f;
                camera.m_invViewProjMat.m[5] = 5.0f;
                camera.m_invViewProjMat.m[one] = 3.0f;
                camera.m_invViewProjMat.m[other] = entry;
                ExpectStatedArea(camera);
            }
}
