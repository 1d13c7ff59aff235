// Every fast way against the plain one, bit for bit.

#include "Platform/Strict_Float.h"

#include "Tests/Support/Fast_Paths.h"
#include "Tests/Support/Fixture.h"

#include <vector>

namespace
{
using namespace Recording;

// The module's inverse against the definition; true when the matrix was regular.
bool ExpectDefinition(const kvMatrix& input)
{
    kvMatrix inverse = input;
    EXPECT_TRUE(InvertsByDefinition(input)) << testing::PrintToString(input);
    return inverse.Invert();
}
} // namespace

// ---- the inverse ----

TEST(FastPaths, FlatMatricesInvertByTheDefinition)
{
    AwkwardNumbers source;
    int singular = 0;
    for (int i = 0; i < 1000000 && !testing::Test::HasFailure(); ++i)
        singular += ExpectDefinition(source.Flat()) ? 0 : 1;
    EXPECT_GT(singular, 1000) << "the matrices must reach both answers";
}

TEST(FastPaths, AlmostFlatMatricesInvertByTheDefinition)
{
    AwkwardNumbers source;
    for (int i = 0; i < 500000 && !testing::Test::HasFailure(); ++i)
    {
        kvMatrix matrix = source.Flat();
        if (source.Below(4) == 0)
            matrix._44 = source.Below(2) == 0 ? std::nextafter(1.0f, 2.0f) : source.Awkward();
        else
            matrix.m[FLAT_ZEROS[source.Below(7)]] = source.Entry(source.Below(4));
        ExpectDefinition(matrix);
    }
}

TEST(FastPaths, MatricesOfAnyBitsInvertByTheDefinition)
{
    AwkwardNumbers source;
    for (int i = 0; i < 500000 && !testing::Test::HasFailure(); ++i)
    {
        kvMatrix matrix;
        for (float& entry : matrix.m)
            entry = i % 2 == 0 ? source.AnyBits() : source.Awkward();
        if (i % 3 == 0) // affine, with a last column of zeros of either sign
        {
            matrix._14 = source.Zero();
            matrix._24 = source.Zero();
            matrix._34 = source.Zero();
            matrix._44 = 1.0f;
        }
        ExpectDefinition(matrix);
    }
}

// A small share of what Tools/Fast_Path_Proof.cpp does by the hundred million.
TEST(FastPaths, MatricesOfEveryAwkwardShapeInvertByTheDefinition)
{
    AwkwardNumbers source(2026);
    for (uint32_t i = 0; i < 40000 && !testing::Test::HasFailure(); ++i)
        ExpectDefinition(source.Shaped(static_cast<MatrixShape>(i % static_cast<uint32_t>(MatrixShape::Count))));
}

TEST(FastPaths, MagnitudesAroundTheLimitInvertByTheDefinition)
{
    const float values[] = {std::nextafter(FLAT_LIMIT, 0.0f), FLAT_LIMIT, std::nextafter(FLAT_LIMIT, INFINITY), 1e25f,
                            1.0f};
    for (int entry : {0, 1, 4, 5, 10, 12, 13, 14})
        for (float value : values)
            for (float other : values)
                for (float sign : {1.0f, -1.0f})
                {
                    kvMatrix matrix = {{{other, 2, 0, 0, 3, other, 0, 0, 0, 0, other, 0, other, 5, 7, 1}}};
                    matrix.m[entry] = sign * value;
                    ExpectDefinition(matrix);
                }
}

// ---- cameras ----

class FastPathsCamera : public ModuleTest
{
};

TEST_F(FastPathsCamera, EveryBuildStoresInversesByTheDefinition)
{
    const float sizes[] = {0.0f, 1e-30f, 0.5f, 1.0f, 320.0f, 640.0f, 1919.5f, 1e6f, 1e30f, -480.0f, NOT_A_NUMBER};
    const float places[] = {0.0f, -0.0f, 0.3f, -5000.0f, 123456.0f, 1e13f, 1e38f, INFINITY};
    for (float width : sizes)
        for (float height : {240.0f, 0.0f, 1e-3f, -77.7f})
            for (float x : places)
                for (float angle = -360.0f; angle <= 360.0f; angle += 22.5f)
                {
                    CCamera camera;
                    camera.SetViewX(x);
                    camera.SetViewY(-x * 0.5f);
                    camera.SetViewWidth(width);
                    camera.SetViewHeight(height);
                    camera.SetViewAngle(angle);
                    camera.BuildView();
                    ASSERT_TRUE(StoresInversesByDefinition(camera))
                        << width << ' ' << height << ' ' << x << ' ' << angle;
                }
}

// The projection's determinant is the least float; the product's, of halves of it, is zero.
TEST_F(FastPathsCamera, AProductThatAloneHasNoInverseIsKeptInItsPlace)
{
    CCamera camera;
    camera.SetViewWidth(3.2e20f);
    camera.SetViewHeight(3.2e20f);
    camera.SetViewAngle(45.0f);
    camera.BuildView();
    EXPECT_TRUE(StoresInversesByDefinition(camera));
    EXPECT_NE(camera.m_invProjMat._11, camera.m_projMat._11);
    EXPECT_EQ(camera.m_invViewProjMat._11, camera.m_viewProjMat._11);
}

// Builders are the host's: its projection may have any entries.
TEST_F(FastPathsCamera, AHostsOwnProjectionIsInvertedByTheDefinition)
{
    for (int entry : {1, 4, 15, 2, 3, 6, 7, 8, 9, 11, 12, 13})
        for (float value : {0.5f, -2.0f, 1e20f, NOT_A_NUMBER})
        {
            OnProjection([=](kvMatrix& projection) { projection.m[entry] = value; });
            CCamera camera;
            camera.SetViewWidth(640.0f);
            camera.SetViewHeight(480.0f);
            camera.Build2DView(320.0f, 240.0f);
            ASSERT_TRUE(StoresInversesByDefinition(camera)) << entry << ' ' << value;
        }
}

TEST_F(FastPathsCamera, AHostsOwnViewIsInvertedByTheDefinition)
{
    const float values[] = {0.5f,   -2.0f,        1.5f,    std::nextafter(1.0f, 2.0f), 1e-45f, 1e13f,
                            -1e20f, NOT_A_NUMBER, INFINITY};
    for (int entry = 0; entry < 16; ++entry)
        for (float value : values)
            for (float depth : {1.0f, 4.0f})
                for (float angle : {0.0f, 30.0f})
                {
                    OnView(
                        [=](kvMatrix& view)
                        {
                            view._33 = depth;
                            view.m[entry] = value;
                        });
                    CCamera camera;
                    camera.SetViewWidth(640.0f);
                    camera.SetViewHeight(480.0f);
                    camera.SetViewAngle(angle);
                    camera.Build2DView(320.0f, 240.0f);
                    ASSERT_TRUE(StoresInversesByDefinition(camera))
                        << entry << ' ' << value << ' ' << depth << ' ' << angle;
                }
}

TEST_F(FastPathsCamera, IsFlatToTheEyeExactlyWhenNineElementsCompareEqualToZero)
{
    constexpr int projection[] = {11, 4, 8, 1, 9, 2, 6};
    constexpr int view[] = {2, 6};
    const float values[] = {0.0f, -0.0f, 1e-45f, -1e-45f, 1.0f, 2.0f, NOT_A_NUMBER, -NOT_A_NUMBER, INFINITY};
    for (float value : values) // of 2 the highest bit is set that is no sign, and no other
        for (int element = 0; element < 9; ++element)
        {
            CCamera camera;
            (element < 7 ? camera.m_projMat.m[projection[element]] : camera.m_viewMat.m[view[element - 7]]) = value;
            camera.Update2D();
            EXPECT_EQ(camera.Is2D(), value == 0.0f) << element << ' ' << value;
        }
}

// ---- look-up and saved record ----

TEST_F(FastPathsCamera, LookUpsFindWhatTheStatedOrderFinds)
{
    AwkwardNumbers source;
    for (int i = 0; i < 12; ++i)
        g_CM.CreateCamera();
    Run_Room = NewRoom(640, 480);
    for (CViewGM* view : Run_Room->r_view)
        view->cameraID = static_cast<int>(source.Below(14));
    g_CM.BuildRoomCameraList();
    for (int i = 0; i < 20000; ++i)
    {
        CCamera* camera = g_CM.GetCamera(static_cast<int>(source.Below(20)) - 3);
        if (i % 50 == 0 && camera != nullptr)
            camera->SetID(static_cast<int>(source.Below(14)) - 1); // two may bear one number from now on
        if (i % 7 == 0)
            g_CM.m_lastCamPos = static_cast<int>(source.Below(24)) - 6;
        const int id = static_cast<int>(source.Below(20)) - 3;
        ASSERT_TRUE(FindsByDefinition(id)) << i << ": " << id;
    }
}

TEST_F(FastPathsCamera, ASavedRecordIsTheStatedListOfFields)
{
    AwkwardNumbers source;
    for (int i = 0; i < 2000; ++i)
    {
        CCamera camera;
        camera.SetViewMat(source.Shaped(MatrixShape::PowersOfTwo));
        camera.m_viewX = source.Between(-1e6f, 1e6f);
        camera.m_viewAngle = source.Zero();
        camera.m_targetInstance = static_cast<int>(source.Word());
        camera.m_endScript = Real(static_cast<int>(source.Word()));
        camera.m_isViewDirty = i % 2 == 0;
        for (float& entry : camera.m_invViewProjMat.m)
            entry = entry == entry ? entry : 0.0f;
        for (float& entry : camera.m_invViewMat.m)
            entry = entry == entry ? entry : 0.0f;
        ASSERT_TRUE(SavesByDefinition(camera)) << i;
    }
}

// ---- images ----

TEST_F(FastPathsCamera, EveryWidthAndPixelDistanceStoresThreeBytesOfEachPixel)
{
    AwkwardNumbers source;
    for (int bytesPerPixel : {3, 4, 5, 8})
        for (int width = 1; width <= 200; ++width)
        {
            const HeapPicture picture([&source] { return source.Word(); }, width, 2, bytesPerPixel);
            int size = 0;
            uint8_t* const image = static_cast<uint8_t*>(CreateBMP(picture.Bytes(), width, 2, &size, bytesPerPixel));
            ASSERT_NE(image, nullptr);
            EXPECT_EQ(std::vector<uint8_t>(image + 54, image + size), picture.ThreeBytesOfEachPixel())
                << width << ' ' << bytesPerPixel;
            MemoryManager::Free(image);
        }
}

TEST(FastPaths, EveryPackerStoresThreeBytesOfEachPixelFromAnyAddress)
{
    AwkwardNumbers source;
    for (int bytesPerPixel : {3, 4, 5, 8})
        for (int width = 1; width <= 200; ++width)
            for (size_t offset = 0; offset < 16 && !testing::Test::HasFailure(); ++offset)
            {
                const HeapPicture picture([&source] { return source.Word(); }, width, 3, bytesPerPixel, offset);
                EXPECT_TRUE(PacksThreeBytesOfEachPixel(picture)) << width << ' ' << bytesPerPixel << ' ' << offset;
            }
}
