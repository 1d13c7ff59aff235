// What differs between processors and compilers must not show: the sign of a NaN, the size of long, the sign of char,
// and conversions out of range.
#include "Tests/Module/Builtin_Fixture.h"

#include <cmath>
#include <cstring>

namespace
{
using namespace Recording;

// The NaN that x86 makes is negative, that of ARM positive. Others carry bits of their own.
constexpr uint32_t NANS[] = {0xFFC00000u, 0x7FC00000u, 0x7FC12345u, 0xFFFFFFFFu};

float FloatOf(uint32_t bits)
{
    float number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

class Portability : public BuiltinTest
{
};

TEST_F(Portability, TheSignOfANaNDoesNotReachAColour)
{
    for (uint32_t bits : NANS)
    {
        EXPECT_EQ(ConvertAlpha(FloatOf(bits)), 0u) << std::hex << bits;
        EXPECT_EQ(GR_Color_Merge(0x00123456, 0x00FEDCBA, FloatOf(bits)), 0u) << std::hex << bits;
    }
}

// A width that is not a number spoils the projection but not the view: the area has no size, about the camera's place.
TEST_F(Portability, TheSignOfANaNDoesNotReachTheVisibleArea)
{
    CCamera& camera = *g_CM.CreateCamera();
    for (uint32_t bits : NANS)
    {
        camera.SetViewWidth(FloatOf(bits));
        camera.SetViewHeight(100.0f);
        camera.Build2DView(10.0f, 20.0f);
        camera.ApplyMatrices();
        EXPECT_TRUE(camera.Is2D() && camera.IsOrthoProj()) << std::hex << bits;
        EXPECT_FLOAT_EQ(g_ViewAreaX, 10.0f);
        EXPECT_FLOAT_EQ(g_ViewAreaY, 20.0f);
        EXPECT_EQ(g_ViewAreaW, 0.0f);
        EXPECT_EQ(g_ViewAreaH, 0.0f);
        EXPECT_TRUE(std::isnan(g_ViewAreaA));
    }
}

TEST_F(Portability, ANaNInAMatrixIsNeitherZeroNorSingular)
{
    for (uint32_t bits : NANS)
    {
        kvMatrix matrix = Identity();
        matrix._22 = FloatOf(bits);
        EXPECT_TRUE(matrix.Invert()) << std::hex << bits;
        EXPECT_TRUE(std::isnan(matrix._11));
    }
}

// Ten million steps past either end still fit 32 bits, and take the low byte of the whole number.
TEST_F(Portability, ColoursFarOutsideTheRangeFitALongOf32Bits)
{
    EXPECT_EQ(GR_Color_Merge(0, 201, 1e7f), 0x80u); // 2010000000 = 0x77CE2A80
    EXPECT_EQ(GR_Color_Merge(0, 201, 1e6f), 0x40u); // 201000000 = 0x0BFB0640
    EXPECT_EQ(GR_Color_Merge(0, 201, -1e6f), 0xC0u);
    EXPECT_EQ(GR_Color_Merge(0, 255, 1e9f), 0xFFu); // cut at 2147483647
    EXPECT_EQ(GR_Color_Merge(0, 255, -1e9f), 0u);   // cut at -2147483648
}

// Identifiers of scripts are doubles. None may wrap around to a camera that exists.
TEST_F(Portability, AnIdentifierBeyond32BitsNamesNoCamera)
{
    g_CM.CreateCamera()->SetViewX(5.0f);
    for (double id : {4294967296.0, -4294967296.0, 18446744073709551616.0, 1e300, -1e300, HUGE_VAL, -HUGE_VAL})
        EXPECT_EQ(Answer(F_CameraGetViewX, {Real(id)}), "real -1") << id;
    EXPECT_EQ(Answer(F_CameraGetViewX, {Int64(int64_t{1} << 32)}), "real -1");
    EXPECT_EQ(Answer(F_CameraGetViewX, {Real(std::nan(""))}), "real 5") << "what is no number counts as 0";
}

// 2^24 + 1 lies half-way between two floats and goes to the even one.
TEST_F(Portability, WholeNumbersOfAViewRoundToTheNearestFloat)
{
    KvRoomView view = {};
    view.xview = 16777217;
    view.yview = INT32_MAX;
    view.wview = INT32_MIN;
    view.hview = 16777219;
    const CCamera& camera = *g_CM.CreateCameraFromView(&view);
    EXPECT_EQ(camera.GetViewX(), 16777216.0f);
    EXPECT_EQ(camera.GetViewY(), 2147483648.0f);
    EXPECT_EQ(camera.GetViewWidth(), -2147483648.0f);
    EXPECT_EQ(camera.GetViewHeight(), 16777220.0f);
}

// Bytes above 127, in fields and in pixels: a signed char would smear its sign over the bytes beside it.
TEST_F(Portability, HighBytesOfAnImageStayBytes)
{
    unsigned char pixels[200 * 4];
    std::memset(pixels, 0xF1, sizeof pixels);
    int size = 0;
    unsigned char* const image = static_cast<unsigned char*>(CreateBMP(pixels, 200, 1, &size, 4));
    ASSERT_EQ(size, 54 + 600);
    const unsigned char width[] = {200, 0, 0, 0};
    const unsigned char fileSize[] = {0x8E, 0x02, 0, 0}; // 654
    EXPECT_EQ(std::memcmp(image + 18, width, 4), 0);
    EXPECT_EQ(std::memcmp(image + 2, fileSize, 4), 0);
    for (int i = 54; i < size; ++i)
        ASSERT_EQ(image[i], 0xF1) << i;
    MemoryManager::Free(image);
}

// A stream is bytes, lowest first, the same whatever wrote it.
TEST_F(Portability, AStreamIsLittleEndian)
{
    CCamera& camera = *g_CM.CreateCamera();
    camera.SetTargetInstance(-128);
    camera.SetViewX(1.0f); // 0x3F800000
    Buffer buffer;
    camera.Serialize(&buffer);
    ASSERT_EQ(buffer.bytes.size(), 112u * 4);
    const std::vector<uint8_t> x(buffer.bytes.begin() + 97 * 4, buffer.bytes.begin() + 98 * 4);
    const std::vector<uint8_t> target(buffer.bytes.begin() + 106 * 4, buffer.bytes.begin() + 107 * 4);
    EXPECT_EQ(x, (std::vector<uint8_t>{0x00, 0x00, 0x80, 0x3F}));
    EXPECT_EQ(target, (std::vector<uint8_t>{0x80, 0xFF, 0xFF, 0xFF}));
}
} // namespace
