// The published area, bit for bit against the measurement in its stated order of operations.

#include "Platform/Strict_Float.h"

#include "Files/Graphics/Trigonometry.h"
#include "Tests/Support/Awkward_Numbers.h"
#include "Tests/Support/Fixture.h"

#include <array>
#include <cmath>

using namespace Recording;

namespace
{
constexpr float FULL_TURN = 6.2831855f;

struct Area
{
    float x, y, width, height, angle;
};

// The stated measurement once more, in float and in the stated order.
float MapOne(const kvMatrix& m, float x, float y, int column)
{
    return x * m.m[column] + y * m.m[4 + column] + 0.0f * m.m[8 + column] + m.m[12 + column];
}

void Measure(const kvMatrix& m, float x, float y, float (&vector)[3])
{
    for (int column = 0; column < 3; ++column)
        vector[column] = MapOne(m, x, y, column) - MapOne(m, -x, -y, column);
}

float Length(const float (&v)[3])
{
    const float square = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    return square > 0.0f ? sqrtf(square) : 0.0f;
}

Area MeasureInStatedOrder(const kvMatrix& clipToRoom, const kvMatrix& viewToRoom)
{
    float across[3], down[3];
    Measure(clipToRoom, 1.0f, 0.0f, across);
    Measure(clipToRoom, 0.0f, 1.0f, down);
    Area area = {};
    area.width = Length(across);
    area.height = Length(down);
    area.x = viewToRoom._41 - area.width * 0.5f;
    area.y = viewToRoom._42 - area.height * 0.5f;
    float cosine = down[1] / area.height;
    if (cosine <= -1.0f)
        cosine = -1.0f;
    else if (cosine >= 1.0f)
        cosine = 1.0f;
    float angle = GR_Acos(cosine);
    if (down[0] / area.height < 0.0f)
        angle = FULL_TURN - angle;
    area.angle = angle / FULL_TURN * 360.0f;
    return area;
}

// Whatever matrices the camera holds: each number has the stated bits, or is a NaN as stated.
void ExpectStatedArea(CCamera& camera)
{
    camera.ApplyMatrices();
    const Area stated = MeasureInStatedOrder(camera.m_invViewProjMat, camera.m_invViewMat);
    const std::array<float, 5> expected = {stated.x, stated.y, stated.width, stated.height, stated.angle};
    const std::array<float, 5> actual = {g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA};
    for (size_t i = 0; i < expected.size(); ++i)
        ASSERT_TRUE(SameButForNaN(actual[i], expected[i]))
            << i << ": " << Describe(actual[i]) << " instead of " << Describe(expected[i])
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
