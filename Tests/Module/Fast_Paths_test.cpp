// Every fast way against the plain one, bit for bit.

#include "Platform/Strict_Float.h"

#include "Files/Graphics/Matrix_Adjugate.h"
#include "Files/Graphics/Pixel_Pack.h"
#include "Tests/Support/Awkward_Numbers.h"
#include "Tests/Support/Fixture.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace
{
using namespace Recording;

bool SameButForNaNs(const kvMatrix& a, const kvMatrix& b)
{
    for (int i = 0; i < 16; ++i)
        if (!SameButForNaN(a.m[i], b.m[i]))
            return false;
    return true;
}

// The module's inverse against the definition; true when the matrix was regular.
bool ExpectDefinition(const kvMatrix& input)
{
    kvMatrix expected = input, actual = input;
    const bool regular = CameraModule::InvertByDefinition(expected.m, expected.m);
    EXPECT_EQ(actual.Invert(), regular) << testing::PrintToString(input);
    EXPECT_TRUE(SameButForNaNs(actual, expected))
        << testing::PrintToString(input) << testing::PrintToString(actual) << testing::PrintToString(expected);
    return regular;
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
protected:
    static bool IsInverse(const kvMatrix& inverse, const kvMatrix& matrix)
    {
        kvMatrix expected = matrix;
        CameraModule::InvertByDefinition(expected.m, expected.m);
        return SameButForNaNs(inverse, expected);
    }
    static testing::AssertionResult HasInversesByTheDefinition(const CCamera& camera)
    {
        if (!IsInverse(camera.m_invViewMat, camera.m_viewMat))
            return testing::AssertionFailure() << "view " << testing::PrintToString(camera.m_viewMat);
        if (!IsInverse(camera.m_invProjMat, camera.m_projMat))
            return testing::AssertionFailure() << "projection " << testing::PrintToString(camera.m_projMat);
        if (!IsInverse(camera.m_invViewProjMat, camera.m_viewProjMat))
            return testing::AssertionFailure() << "product " << testing::PrintToString(camera.m_viewProjMat);
        return testing::AssertionSuccess();
    }
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
                    ASSERT_TRUE(HasInversesByTheDefinition(camera))
                        << width << ' ' << height << ' ' << x << ' ' << angle;
                }
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
            ASSERT_TRUE(HasInversesByTheDefinition(camera)) << entry << ' ' << value;
        }
}

TEST_F(FastPathsCamera, IsFlatToTheEyeExactlyWhenNineElementsCompareEqualToZero)
{
    constexpr int projection[] = {11, 4, 8, 1, 9, 2, 6};
    constexpr int view[] = {2, 6};
    const float values[] = {0.0f, -0.0f, 1e-45f, -1e-45f, 1.0f, NOT_A_NUMBER, -NOT_A_NUMBER, INFINITY};
    for (float value : values)
        for (int element = 0; element < 9; ++element)
        {
            CCamera camera;
            (element < 7 ? camera.m_projMat.m[projection[element]] : camera.m_viewMat.m[view[element - 7]]) = value;
            camera.Update2D();
            EXPECT_EQ(camera.Is2D(), value == 0.0f) << element << ' ' << value;
        }
}

// ---- images ----

namespace
{
// A picture at the very end of a heap block, for the sanitizer, and offset bytes from its start.
class HeapPicture
{
public:
    HeapPicture(AwkwardNumbers& source, int width, int height, int bytesPerPixel, size_t offset = 0)
        : m_width(width), m_height(height), m_bytesPerPixel(bytesPerPixel), m_offset(offset)
    {
        const size_t size = offset + static_cast<size_t>(width * height * bytesPerPixel);
        m_block.reset(new uint8_t[size]);
        for (size_t i = 0; i < size; ++i)
            m_block[i] = static_cast<uint8_t>(source.Word());
    }

    uint8_t* Bytes() const { return m_block.get() + m_offset; }
    PixelPack::Picture Packed() const { return {Bytes(), m_width, m_height, m_bytesPerPixel}; }

    std::vector<uint8_t> ThreeBytesOfEachPixel() const // bottom row first
    {
        std::vector<uint8_t> bytes;
        for (int y = m_height - 1; y >= 0; --y)
            for (int x = 0; x < m_width; ++x)
                for (int byte = 0; byte < 3; ++byte)
                    bytes.push_back(Bytes()[(y * m_width + x) * m_bytesPerPixel + byte]);
        return bytes;
    }

private:
    int m_width, m_height, m_bytesPerPixel;
    size_t m_offset;
    std::unique_ptr<uint8_t[]> m_block;
};

using Packer = void (*)(uint8_t* out, PixelPack::Picture picture);

std::vector<Packer> PackersOf([[maybe_unused]] int bytesPerPixel)
{
    std::vector<Packer> packers = {PixelPack::PackPlain};
#if defined(PIXEL_PACK_SHUFFLES)
    if (bytesPerPixel == PixelPack::SHUFFLED && PixelPack::HasShuffles())
        packers.push_back(PixelPack::PackShuffled);
#endif
    return packers;
}

// Into a block of exactly the size.
std::vector<uint8_t> PackedBy(Packer packer, const HeapPicture& picture, size_t size)
{
    const std::unique_ptr<uint8_t[]> out(new uint8_t[size]);
    packer(out.get(), picture.Packed());
    return {out.get(), out.get() + size};
}
} // namespace

TEST_F(FastPathsCamera, EveryWidthAndPixelDistanceStoresThreeBytesOfEachPixel)
{
    AwkwardNumbers source;
    for (int bytesPerPixel : {3, 4, 5, 8})
        for (int width = 1; width <= 200; ++width)
        {
            const HeapPicture picture(source, width, 2, bytesPerPixel);
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
                const HeapPicture picture(source, width, 3, bytesPerPixel, offset);
                const std::vector<uint8_t> expected = picture.ThreeBytesOfEachPixel();
                const std::vector<Packer> packers = PackersOf(bytesPerPixel);
                for (size_t i = 0; i < packers.size(); ++i)
                    EXPECT_EQ(PackedBy(packers[i], picture, expected.size()), expected)
                        << "packer " << i << ": " << width << ' ' << bytesPerPixel << ' ' << offset;
            }
}
