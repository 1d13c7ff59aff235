// The two matrix setters, what they keep beside the matrices, and the test for a flat view.

#include "Tests/Support/Fixture.h"
#include "Tests/Support/Numbers.h"

#include <limits>

using namespace Recording;

namespace
{

// Two matrices of small whole numbers that do not commute: their products are exact.
const kvMatrix A = {{{1, 2, 0, 0, 0, 1, 3, 0, 0, 0, 1, 0, 5, 6, 7, 1}}};
const kvMatrix B = {{{1, 0, 0, 0, 2, 1, 0, 0, 0, 0, 1, 0, 0, 4, 0, 1}}};
const kvMatrix A_TIMES_B = {{{5, 2, 0, 0, 2, 1, 3, 0, 0, 0, 1, 0, 17, 10, 7, 1}}};
const kvMatrix B_TIMES_A = {{{1, 2, 0, 0, 2, 5, 3, 0, 0, 0, 1, 0, 5, 10, 19, 1}}};

kvMatrix Counting() // regular in no way: its rows lie in a plane, and the determinant is exactly zero
{
    kvMatrix matrix = {};
    for (int i = 0; i < 16; ++i)
        matrix.m[i] = static_cast<float>(i + 1);
    return matrix;
}

kvMatrix Inverted(kvMatrix matrix)
{
    matrix.Invert();
    return matrix;
}

// The entries of the flat-view test, by their place in the matrix.
struct Element
{
    kvMatrix CCamera::*matrix;
    int index;
};
constexpr int At(int row, int column) { return 4 * (row - 1) + column - 1; }

const Element FLAT_TEST[] = {
    {&CCamera::m_projMat, At(3, 4)}, {&CCamera::m_projMat, At(2, 1)}, {&CCamera::m_projMat, At(3, 1)},
    {&CCamera::m_projMat, At(1, 2)}, {&CCamera::m_projMat, At(3, 2)}, {&CCamera::m_projMat, At(1, 3)},
    {&CCamera::m_projMat, At(2, 3)}, {&CCamera::m_viewMat, At(1, 3)}, {&CCamera::m_viewMat, At(2, 3)},
};

bool TakesPart(kvMatrix CCamera::*matrix, int index)
{
    for (const Element& element : FLAT_TEST)
        if (element.matrix == matrix && element.index == index)
            return true;
    return false;
}
} // namespace

class CameraMatrices : public ModuleTest
{
protected:
    CCamera camera;
};

// ---- the matrix setters ----

TEST_F(CameraMatrices, SetProjMatKeepsTheProjectionItsInverseTheProductAndTheProductsInverse)
{
    camera.m_viewMat = A;
    camera.m_invViewMat = Counting();
    camera.SetProjMat(B);
    EXPECT_EQ(camera.m_projMat, B);
    EXPECT_EQ(camera.m_invProjMat, Inverted(B));
    EXPECT_EQ(camera.m_viewProjMat, A_TIMES_B) << "the view comes first";
    EXPECT_EQ(camera.m_invViewProjMat, Inverted(A_TIMES_B));
    EXPECT_EQ(camera.m_viewMat, A);
    EXPECT_EQ(camera.m_invViewMat, Counting()) << "the view's inverse is the other setter's";
}

TEST_F(CameraMatrices, SetViewMatKeepsTheViewItsInverseTheProductAndTheProductsInverse)
{
    camera.m_projMat = A;
    camera.m_invProjMat = Counting();
    camera.SetViewMat(B);
    EXPECT_EQ(camera.m_viewMat, B);
    EXPECT_EQ(camera.m_invViewMat, Inverted(B));
    EXPECT_EQ(camera.m_viewProjMat, B_TIMES_A) << "the view comes first";
    EXPECT_EQ(camera.m_invViewProjMat, Inverted(B_TIMES_A));
    EXPECT_EQ(camera.m_projMat, A);
    EXPECT_EQ(camera.m_invProjMat, Counting()) << "the projection's inverse is the other setter's";
}

TEST_F(CameraMatrices, EachMatrixSetterCallsTheHostsProductOnce)
{
    TakeLog();
    camera.SetProjMat(B);
    EXPECT_EQ(TakeLog(), Lines{"Multiply()"});
    camera.SetViewMat(A);
    EXPECT_EQ(TakeLog(), Lines{"Multiply()"});
}

TEST_F(CameraMatrices, MatrixSettersCopyBitsEvenOfNaNs)
{
    kvMatrix odd = Identity();
    odd.u[7] = 0x7FC12345u;
    odd.u[9] = 0x80000000u;
    odd.u[12] = 1u;
    camera.SetProjMat(odd);
    EXPECT_EQ(camera.m_projMat, odd);
    camera.SetViewMat(odd);
    EXPECT_EQ(camera.m_viewMat, odd);
}

TEST_F(CameraMatrices, TheInverseOfASingularMatrixIsACopyOfIt)
{
    camera.SetProjMat(Counting());
    EXPECT_EQ(camera.m_invProjMat, Counting());
    camera.SetProjMat(Identity());
    camera.SetViewMat(Counting());
    EXPECT_EQ(camera.m_invViewMat, Counting());
    EXPECT_EQ(camera.m_viewProjMat, Counting());
    EXPECT_EQ(camera.m_invViewProjMat, Counting());
}

TEST_F(CameraMatrices, MatrixSettersTakeTheCamerasOwnMatrices)
{
    camera.SetViewMat(A);
    camera.SetProjMat(B);
    camera.SetProjMat(camera.m_viewProjMat);
    EXPECT_EQ(camera.m_projMat, A_TIMES_B);
    EXPECT_EQ(camera.m_invProjMat, Inverted(A_TIMES_B));
    camera.SetViewMat(camera.m_viewMat);
    EXPECT_EQ(camera.m_viewMat, A);
}

TEST_F(CameraMatrices, MatrixSettersLeaveTheDirtyFlagAndTheRectangleAlone)
{
    for (bool dirty : {false, true})
    {
        camera.m_isViewDirty = dirty;
        camera.m_viewWidth = 320.0f;
        camera.SetProjMat(B);
        camera.SetViewMat(A);
        EXPECT_EQ(camera.IsViewDirty(), dirty);
        EXPECT_EQ(camera.m_viewWidth, 320.0f);
    }
}

TEST_F(CameraMatrices, APerspectiveProjectionIsNotFlatAndAParallelOneBackIs)
{
    kvMatrix deep, flat;
    kvMatrix::PerspectiveLH(deep, 1.0f, -0.75f, 1.0f, 32000.0f);
    kvMatrix::OrthoLH(flat, 640.0f, 480.0f, 0.0f, 32000.0f);
    camera.SetProjMat(deep);
    EXPECT_FALSE(camera.Is2D());
    EXPECT_FALSE(camera.IsOrthoProj());
    camera.SetProjMat(flat);
    EXPECT_TRUE(camera.Is2D());
    EXPECT_TRUE(camera.IsOrthoProj());
}

TEST_F(CameraMatrices, ATiltedViewIsNotFlatEvenWithAParallelProjection)
{
    kvMatrix tilted = Identity();
    tilted._13 = 0.25f;
    camera.SetViewMat(tilted);
    EXPECT_FALSE(camera.Is2D());
    EXPECT_TRUE(camera.IsOrthoProj());
    camera.SetViewMat(Identity());
    EXPECT_TRUE(camera.Is2D());
}

TEST_F(CameraMatrices, AViewTurnedAboutTheLineOfSightIsStillFlat)
{
    kvMatrix turned = Identity();
    turned._11 = turned._22 = 0.8f;
    turned._12 = 0.6f;
    turned._21 = -0.6f;
    camera.SetViewMat(turned);
    EXPECT_TRUE(camera.Is2D());
}

// ---- the flat-view test ----

TEST_F(CameraMatrices, NineElementsAloneDecideWhetherAViewIsFlat)
{
    for (kvMatrix CCamera::*matrix : {&CCamera::m_projMat, &CCamera::m_viewMat})
        for (int i = 0; i < 16; ++i)
        {
            const float kept = (camera.*matrix).m[i];
            (camera.*matrix).m[i] = 0.001f;
            camera.Update2D();
            EXPECT_EQ(camera.Is2D(), !TakesPart(matrix, i))
                << (matrix == &CCamera::m_projMat ? "projection" : "view") << " element " << i;
            (camera.*matrix).m[i] = kept;
        }
}

TEST_F(CameraMatrices, MinusZeroCountsAsZeroInTheFlatTest)
{
    for (const Element& element : FLAT_TEST)
        (camera.*element.matrix).m[element.index] = -0.0f;
    camera.m_is2D = false;
    camera.Update2D();
    EXPECT_TRUE(camera.Is2D());
}

TEST_F(CameraMatrices, NaNAndTheSmallestNumbersAreNotZeroInTheFlatTest)
{
    for (const Element& element : FLAT_TEST)
        for (float value : {NOT_A_NUMBER, std::numeric_limits<float>::denorm_min(), -1e-44f})
        {
            (camera.*element.matrix).m[element.index] = value;
            camera.m_is2D = true;
            camera.Update2D();
            EXPECT_FALSE(camera.Is2D()) << "element " << element.index << " " << value;
            (camera.*element.matrix).m[element.index] = 0.0f;
        }
}

TEST_F(CameraMatrices, AProjectionIsParallelExactlyWhenItsPerspectiveElementIsZero)
{
    for (float parallel : {0.0f, -0.0f})
    {
        camera.m_projMat._34 = parallel;
        EXPECT_TRUE(camera.IsOrthoProj()) << parallel;
    }
    for (float perspective : {1.0f, -1.0f, 1e-45f, NOT_A_NUMBER})
    {
        camera.m_projMat._34 = perspective;
        EXPECT_FALSE(camera.IsOrthoProj()) << perspective;
    }
}
