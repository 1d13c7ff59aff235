#include "Files/Graphics/Colour.h"
#include "Tests/Support/Numbers.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace
{
constexpr float INFINITE = std::numeric_limits<float>::infinity();

float FloatOfBits(uint32_t bits)
{
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// One rounding to float. A double holds the product and the sum of two floats well enough that rounding it once more
// gives what a single float operation gives.
float Rounded(double exact) { return static_cast<float>(exact); }

// Nearest integer, ties to even, within what 32 bits hold; NaN is 0.
int64_t NearestWord(float value)
{
    if (std::isnan(value))
        return 0;
    if (value >= 2147483648.0f)
        return INT32_MAX;
    if (value < -2147483648.0f)
        return INT32_MIN;
    const double below = std::floor(static_cast<double>(value));
    const double rest = static_cast<double>(value) - below;
    const int64_t whole = static_cast<int64_t>(below);
    const bool up = rest > 0.5 || (rest == 0.5 && whole % 2 != 0);
    return up ? whole + 1 : whole;
}

unsigned MergedByte(unsigned c1, unsigned c2, float t)
{
    const float u = Rounded(1.0 - static_cast<double>(t));
    const float second = Rounded(static_cast<double>(c2) * static_cast<double>(t));
    const float first = Rounded(static_cast<double>(c1) * static_cast<double>(u));
    const int64_t sum = NearestWord(Rounded(static_cast<double>(second) + static_cast<double>(first)));
    return static_cast<unsigned>(static_cast<uint64_t>(sum) & 0xFF);
}

unsigned Packed(unsigned red, unsigned green, unsigned blue) { return red | (green << 8) | (blue << 16); }

// The three channels carry three pairs, so that an exchange of channels cannot pass.
unsigned ReferenceMerge(unsigned col1, unsigned col2, float t)
{
    return Packed(MergedByte(col1 & 0xFF, col2 & 0xFF, t), MergedByte((col1 >> 8) & 0xFF, (col2 >> 8) & 0xFF, t),
                  MergedByte((col1 >> 16) & 0xFF, (col2 >> 16) & 0xFF, t));
}

// All pairs of bytes at one blend; the count of colours that differ from the reference.
int WrongMerges(float t)
{
    int wrong = 0;
    for (unsigned c1 = 0; c1 < 256; ++c1)
        for (unsigned c2 = 0; c2 < 256; c2 += 3)
        {
            const unsigned col1 = Packed(c1, 255 - c1, c1 ^ 0x55) | c2 << 24;
            const unsigned col2 = Packed(c2, (c2 + 1) & 0xFF, (c2 + 2) & 0xFF) | c1 << 24;
            wrong += GR_Color_Merge(col1, col2, t) != ReferenceMerge(col1, col2, t);
        }
    return wrong;
}

// ---- alpha ----

struct AlphaCase
{
    float alpha;
    unsigned expected;
};

class ConvertAlphaOf : public testing::TestWithParam<AlphaCase>
{
};

TEST_P(ConvertAlphaOf, IsCutOffAndClamped) { EXPECT_EQ(ConvertAlpha(GetParam().alpha), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(Values, ConvertAlphaOf,
                         testing::Values(AlphaCase{0.0f, 0}, AlphaCase{-0.0f, 0}, AlphaCase{-0.1f, 0},
                                         AlphaCase{0.5f, 127}, AlphaCase{0.999f, 254}, AlphaCase{1.0f, 255},
                                         AlphaCase{1.0001f, 255}, AlphaCase{0.00392f, 0}, AlphaCase{0.00393f, 1},
                                         AlphaCase{1e-45f, 0}, AlphaCase{-1e-45f, 0}, AlphaCase{1e38f, 255},
                                         AlphaCase{-1e38f, 0}, AlphaCase{INFINITE, 255}, AlphaCase{-INFINITE, 0},
                                         AlphaCase{NOT_A_NUMBER, 0}, AlphaCase{-NOT_A_NUMBER, 0}));

TEST(ConvertAlpha, JustBelowOneStaysBelow255)
{
    // 255 - 255 / 2^24 lies nearer to the float below 255, which is 255 - 256 / 2^24.
    EXPECT_EQ(ConvertAlpha(FloatOfBits(0x3F7FFFFF)), 254u);
}

TEST(ConvertAlpha, RoundsTheProductToFloatBeforeItCuts)
{
    uint32_t wrongBits = 0;
    for (uint32_t bits = 0; bits <= 0x3F800000 && wrongBits == 0; bits += 97)
    {
        const float alpha = FloatOfBits(bits);
        const unsigned expected = static_cast<unsigned>(Rounded(static_cast<double>(alpha) * 255.0));
        if (ConvertAlpha(alpha) != expected)
            wrongBits = bits;
    }
    EXPECT_EQ(wrongBits, 0u) << "alpha " << FloatOfBits(wrongBits);
}

TEST(ConvertAlpha, EveryNegativeGivesZero)
{
    for (uint64_t bits = 0x80000000; bits <= 0xFFFFFFFF; bits += 99991)
        ASSERT_EQ(ConvertAlpha(FloatOfBits(static_cast<uint32_t>(bits))), 0u) << std::hex << bits;
}

TEST(ConvertAlpha, EverythingAboveOneGives255)
{
    for (uint32_t bits = 0x3F800001; bits <= 0x7F800000; bits += 9973)
        ASSERT_EQ(ConvertAlpha(FloatOfBits(bits)), 255u) << std::hex << bits;
}

// ---- packing ----

TEST(DeviceColour, RgbaPutsRedAboveGreenAboveBlue)
{
    EXPECT_EQ(GR_RGBA_To_D3DColor(255, 128, 1, 255), 0xFFFF8001u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0x11, 0x22, 0x33, 0x44), 0x44112233u);
}

TEST(DeviceColour, RgbaKeepsOnlyTheLowByteOfEachChannel)
{
    EXPECT_EQ(GR_RGBA_To_D3DColor(256, 0, 0, 0), 0u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0, 256, 0, 0), 0u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0, 0, 256, 0), 0u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0x101, 0x302, 0x503, 0), 0x010203u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(-1, 0, 0, 0), 0x00FF0000u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0, -1, 0, 0), 0x0000FF00u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0, 0, -1, 0), 0x000000FFu);
    EXPECT_EQ(GR_RGBA_To_D3DColor(INT32_MIN, INT32_MAX, INT32_MIN, 0), 0x0000FF00u);
}

TEST(DeviceColour, RgbaKeepsOnlyTheLowByteOfAlpha)
{
    EXPECT_EQ(GR_RGBA_To_D3DColor(0, 0, 0, 0x1FF), 0xFF000000u);
    EXPECT_EQ(GR_RGBA_To_D3DColor(0, 0, 0, 0xFFFFFF00), 0u);
}

using AlphaSetter = unsigned (*)(unsigned, unsigned);

class AlphaOver : public testing::TestWithParam<AlphaSetter>
{
};

TEST_P(AlphaOver, KeepsTheColourBytesInTheirOrder)
{
    EXPECT_EQ(GetParam()(0x12345678, 0x80), 0x80345678u);
    EXPECT_EQ(GetParam()(0x00FF0001, 0), 0x00FF0001u);
}

TEST_P(AlphaOver, ReplacesTheOldAlpha) { EXPECT_EQ(GetParam()(0xFF000000, 0x01), 0x01000000u); }

TEST_P(AlphaOver, KeepsOnlyTheLowByteOfAlpha) { EXPECT_EQ(GetParam()(0x00ABCDEF, 0xFFFFFF12), 0x12ABCDEFu); }

INSTANTIATE_TEST_SUITE_P(BothNames, AlphaOver, testing::Values(&GR_Color_To_D3DColor, &GR_D3DColor_Change_Alpha));

TEST(DeviceColour, ToRunnerColourKeepsEveryBit)
{
    for (unsigned colour : {0xAA112233u, 0u, 0xFFFFFFFFu, 0xFF000000u, 0x00ABCDEFu})
        EXPECT_EQ(GR_D3DColor_To_Color(colour), colour);
}

// ---- blending ----

struct MergeCase
{
    unsigned col1, col2;
    float lerp;
    unsigned expected;
};

class MergeOf : public testing::TestWithParam<MergeCase>
{
};

TEST_P(MergeOf, IsTheStatedColour)
{
    const MergeCase& merge = GetParam();
    EXPECT_EQ(GR_Color_Merge(merge.col1, merge.col2, merge.lerp), merge.expected) << std::hex << merge.expected;
}

INSTANTIATE_TEST_SUITE_P(Ends, MergeOf,
                         testing::Values(MergeCase{0xFF0000FF, 0, 0.0f, 0x000000FF},
                                         MergeCase{0x123456, 0x654321, 0.0f, 0x123456},
                                         MergeCase{0x123456, 0x654321, 1.0f, 0x654321},
                                         MergeCase{0x123456, 0x654321, -0.0f, 0x123456}));

// 127.5 is a tie and goes to 128; 0.5 and 2.5 are ties and go down to the even neighbour, 1.5 up to it.
INSTANTIATE_TEST_SUITE_P(Ties, MergeOf,
                         testing::Values(MergeCase{0x0000FF, 0x00FF00, 0.5f, 0x8080}, MergeCase{0, 1, 0.5f, 0},
                                         MergeCase{1, 2, 0.5f, 2}, MergeCase{2, 3, 0.5f, 2},
                                         MergeCase{0x030100, 0x040200, 0.5f, 0x040200}));

// 3 * (1 - 0.1f) and 14 * (1 - 0.01f) lie exactly between two floats: the first is rounded down, so that the sum stays
// below 3.5, the second up, so that the sum passes 14.5. Without that rounding the sums are 3.5 and 14.5: 4 and 14.
INSTANTIATE_TEST_SUITE_P(Rounding, MergeOf,
                         testing::Values(MergeCase{3, 8, 0.1f, 3}, MergeCase{14, 64, 0.01f, 15},
                                         MergeCase{0x0300, 0x0800, 0.1f, 0x0300},
                                         MergeCase{0x0E0000, 0x400000, 0.01f, 0x0F0000}));

// 255 * 2 = 510 = 0x1FE. 255 * -1 = -255 = 0x...01. Green and blue wrap inside their own bytes.
INSTANTIATE_TEST_SUITE_P(Outside, MergeOf,
                         testing::Values(MergeCase{0, 0xFF, 2.0f, 0xFE}, MergeCase{0, 0xFF00, 2.0f, 0xFE00},
                                         MergeCase{0, 0xFF0000, 2.0f, 0xFE0000}, MergeCase{0, 0xFF, -1.0f, 0x01},
                                         MergeCase{0, 0xFF00, -1.0f, 0x0100}, MergeCase{0, 0xFF0000, -1.0f, 0x010000},
                                         MergeCase{0xFF, 0, 2.0f, 0x01}, MergeCase{0, 0x01, -1.0f, 0xFF}));

// Beyond 32 bits the channel is the low byte of the largest or the smallest word.
INSTANTIATE_TEST_SUITE_P(FarOutside, MergeOf,
                         testing::Values(MergeCase{0, 0xFF, 1e30f, 0xFF}, MergeCase{0, 0xFF, -1e30f, 0},
                                         MergeCase{0, 0x010000, 3e9f, 0xFF0000}, MergeCase{0, 0x0100, 3e9f, 0xFF00},
                                         MergeCase{0, 0x01, -3e9f, 0}, MergeCase{0xFFFFFF, 0, 1e30f, 0},
                                         MergeCase{0, 0x01, 2147483648.0f, 0xFF},
                                         MergeCase{0, 0x01, 2147483520.0f, 0x80},
                                         MergeCase{0, 0x01, -2147483648.0f, 0}));

INSTANTIATE_TEST_SUITE_P(NotANumber, MergeOf,
                         testing::Values(MergeCase{0x123456, 0x654321, NOT_A_NUMBER, 0},
                                         MergeCase{0x123456, 0x654321, -NOT_A_NUMBER, 0},
                                         MergeCase{0x123456, 0x654321, INFINITE, 0},
                                         MergeCase{0x123456, 0x654321, -INFINITE, 0}, MergeCase{0, 0, INFINITE, 0}));

TEST(ColourMerge, DropsTheTopBytesOfBoth)
{
    EXPECT_EQ(GR_Color_Merge(0xFF000000, 0xFF000000, 0.5f), 0u);
    EXPECT_EQ(GR_Color_Merge(0xFF000001, 0xAA000001, 2.0f), 1u);
}

#if defined(UNDER_AN_EMULATOR) || defined(__SANITIZE_ADDRESS__)
constexpr int APART = 10; // 66 million merges would take long there; the optimised suite has all of them
#else
constexpr int APART = 1;
#endif

TEST(ColourMerge, IsExactForEveryPairOfBytesAtEveryThousandth)
{
    for (int thousandth = 0; thousandth <= 1000; thousandth += APART)
    {
        const float t = static_cast<float>(thousandth) / 1000.0f;
        ASSERT_EQ(WrongMerges(t), 0) << "of the pairs at " << t;
    }
}

TEST(ColourMerge, IsExactOutsideTheRangeAndNearItsEnds)
{
    for (float t : {-0.1f, -1.7f, 1.1f, 2.5f, 100.3f, -77.7f, 1e-7f, 1e-20f, 1e-45f, 0.99999994f, 1.0000001f, 1e6f,
                    -1e7f, 8.4e6f, 1e9f, -1e12f, 3e38f, -3e38f})
        EXPECT_EQ(WrongMerges(t), 0) << "of the pairs at " << t;
}
} // namespace
