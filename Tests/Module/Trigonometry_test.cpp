// Sine, cosine and arc cosine: the device's bits, by hashes of its own C library's answers, and independently of those
// the right values. Square root and floor: exact by definition, on this machine as on any.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Trigonometry.h"
#include "Tests/Support/Exact_Functions.h"
#include "Tests/Support/Trigonometry_Hashes.h"

#include <gtest/gtest.h>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

using namespace Trigonometry;

namespace
{
constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr double PI = 3.14159265358979323846;
constexpr Function OURS[FUNCTIONS] = {GR_Sin, GR_Cos, GR_Acos};

// ---- the device's bits ----

struct Part
{
    uint32_t number;
    const char* name;
};

// The whole is the proof's (Tools/Trigonometry_Proof.cpp). These are where a mistake would be.
constexpr Part PARTS_TO_CHECK[] = {
    {0x000, "ZeroAndDenormals"},
    {0x007, "LargestDenormals"},
    {0x008, "SmallestNormals"},
    {0x397, "BelowTheLeastAngleThatIsComputed"},
    {0x398, "FromTheLeastAngleThatIsComputed"},
    {0x3EF, "BelowAHalf"},
    {0x3F0, "FromAHalf"},
    {0x3F4, "AboutAnEighthOfATurn"},
    {0x3F7, "BelowOne"},
    {0x3F8, "FromOne"},
    {0x401, "AboutThreeEighthsOfATurn"},
    {0x407, "AboutFiveEighthsOfATurn"},
    {0x42E, "BelowTheLeastLargeAngle"},
    {0x42F, "FromTheLeastLargeAngle"},
    {0x4B0, "LargeAngles"},
    {0x644, "AnglesAbout1e22"},
    {0x7F7, "LargestNumbers"},
    {0x7F8, "InfinityAndSignallingNaNs"},
    {0x7FC, "QuietNaNs"},
    {0x800, "MinusZeroAndDenormals"},
    {0xBF4, "AboutMinusAnEighthOfATurn"},
    {0xBF7, "AboveMinusOne"},
    {0xBF8, "FromMinusOneDown"},
    {0xFF7, "LargestNegativeNumbers"},
    {0xFF8, "MinusInfinityAndSignallingNaNs"},
    {0xFFF, "NegativeNaNs"},
    {AROUND_EIGHTHS, "AroundTheMultiplesOfAnEighth"},
    {SAMPLE, "EachFourThousandthFloat"},
};

const std::vector<std::optional<Row>>& Golden()
{
    static const auto golden = ReadGolden(SOURCE_DIR "/Tests/Golden/trigonometry.txt");
    return golden;
}

void ExpectGolden(uint32_t part)
{
    ASSERT_TRUE(Golden()[part].has_value()) << "Tests/Golden/trigonometry.txt lacks part " << part;
    for (unsigned i = 0; i < FUNCTIONS; ++i)
        EXPECT_EQ(HashPart(part, OURS[i]), (*Golden()[part])[i]) << NAMES[i] << ", part " << std::hex << part;
}

void PrintTo(const Part& part, std::ostream* out) { *out << part.name; }

class TrigonometryPart : public testing::TestWithParam<Part>
{
};

TEST_P(TrigonometryPart, HasTheDevicesBits) { ExpectGolden(GetParam().number); }

std::string PartName(const testing::TestParamInfo<Part>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Floats, TrigonometryPart, testing::ValuesIn(PARTS_TO_CHECK), PartName);

// ---- processors that take denormal numbers for zero ----

#if defined(__SSE__)
constexpr unsigned DENORMALS_ARE_ZERO = 0x8040; // read as zero, and stored as zero
unsigned FloatControl() { return _mm_getcsr(); }
void SetFloatControl(unsigned control) { _mm_setcsr(control); }
#elif defined(__ARM_FP) && defined(__arm__)
constexpr unsigned DENORMALS_ARE_ZERO = 1u << 24;
unsigned FloatControl()
{
    unsigned control;
    __asm__ volatile("vmrs %0, fpscr" : "=r"(control));
    return control;
}
void SetFloatControl(unsigned control) { __asm__ volatile("vmsr fpscr, %0" : : "r"(control)); }
#elif defined(__aarch64__)
constexpr unsigned long DENORMALS_ARE_ZERO = 1ul << 24;
unsigned long FloatControl()
{
    unsigned long control;
    __asm__ volatile("mrs %0, fpcr" : "=r"(control));
    return control;
}
void SetFloatControl(unsigned long control) { __asm__ volatile("msr fpcr, %0" : : "r"(control)); }
#else
constexpr unsigned DENORMALS_ARE_ZERO = 0; // no such mode: the test repeats the ordinary one
unsigned FloatControl() { return 0; }
void SetFloatControl(unsigned) {}
#endif

class DenormalsAreZero
{
public:
    DenormalsAreZero() { SetFloatControl(m_before | DENORMALS_ARE_ZERO); }
    DenormalsAreZero(const DenormalsAreZero&) = delete;
    DenormalsAreZero& operator=(const DenormalsAreZero&) = delete;
    ~DenormalsAreZero() { SetFloatControl(m_before); }

private:
    const decltype(FloatControl()) m_before = FloatControl();
};

TEST(Trigonometry, HasTheDevicesBitsWhereTheProcessorTakesDenormalsForZero)
{
    Golden(); // read before the mode changes
    const DenormalsAreZero mode;
    for (const uint32_t part : {0x000u, 0x007u, 0x008u, 0x3F7u, 0x3F8u, 0x807u, SAMPLE})
        ExpectGolden(part);
}

// ---- the right values ----

double DistanceInUnits(float actual, double expected) // in the last place of a float of that size
{
    const int exponent = expected == 0.0 ? -126 : std::max(std::ilogb(expected), -126);
    return std::fabs(static_cast<double>(actual) - expected) / std::ldexp(1.0, exponent - 23);
}

// Calls use(float) for floats of every size up to a limit, both signs.
template <typename Use> void ForEachUpTo(float limit, Use use)
{
    constexpr uint32_t step = 20011; // a prime
    for (uint32_t bits = 0; bits <= BitsOf(limit); bits += step)
        for (const float number : {FromBits(bits), -FromBits(bits)})
            use(number);
    use(limit);
    use(-limit);
}

TEST(Trigonometry, SineAndCosineAreWithinTheirStatedDistanceOfTheReferenceInDouble)
{
    ForEachUpTo(std::numeric_limits<float>::max(),
                [](float angle)
                {
                    const SineCosine both = GR_SinCos(angle);
                    ASSERT_LE(DistanceInUnits(both.sine, std::sin(static_cast<double>(angle))), 0.57) << angle;
                    ASSERT_LE(DistanceInUnits(both.cosine, std::cos(static_cast<double>(angle))), 0.57) << angle;
                });
}

TEST(Trigonometry, ArcCosineIsWithinItsStatedDistanceOfTheReferenceInDouble)
{
    ForEachUpTo(1.0f,
                [](float cosine) {
                    ASSERT_LE(DistanceInUnits(GR_Acos(cosine), std::acos(static_cast<double>(cosine))), 0.9) << cosine;
                });
}

TEST(Trigonometry, KnownAnglesGiveKnownValues)
{
    EXPECT_EQ(GR_Cos(0.0f), 1.0f);
    EXPECT_EQ(GR_Cos(-0.0f), 1.0f);
    EXPECT_EQ(GR_Sin(static_cast<float>(PI / 2)), 1.0f);
    EXPECT_EQ(GR_Cos(static_cast<float>(PI)), -1.0f);
    EXPECT_EQ(GR_Sin(static_cast<float>(PI / 6)), 0.5f);
    EXPECT_EQ(GR_Acos(-1.0f), static_cast<float>(PI));
    EXPECT_EQ(GR_Acos(0.0f), static_cast<float>(PI / 2));
    EXPECT_EQ(GR_Acos(0.5f), static_cast<float>(PI / 3));
    EXPECT_EQ(BitsOf(GR_Acos(1.0f)), 0u) << "plus zero";
}

TEST(Trigonometry, TheSineOfAZeroAndOfADenormalIsThatNumber)
{
    for (const uint32_t bits : {0x00000000u, 0x80000000u, 0x00000001u, 0x80000001u, 0x007FFFFFu, 0x807FFFFFu})
        EXPECT_EQ(BitsOf(GR_Sin(FromBits(bits))), bits);
}

TEST(Trigonometry, SineIsOddAndCosineIsEvenInEveryBit)
{
    ForEachUpTo(std::numeric_limits<float>::max(),
                [](float angle)
                {
                    const SineCosine there = GR_SinCos(angle), back = GR_SinCos(-angle);
                    ASSERT_EQ(BitsOf(back.sine), BitsOf(-there.sine)) << angle;
                    ASSERT_EQ(BitsOf(back.cosine), BitsOf(there.cosine)) << angle;
                });
}

TEST(Trigonometry, NaNsOfEitherSignAndAnyPayloadGiveNaN)
{
    constexpr uint32_t step = 509; // a prime, through quiet and signalling ones
    for (uint32_t payload = 1; payload < 0x800000u; payload += step)
        for (const uint32_t sign : {0u, 0x80000000u})
            for (const Function function : OURS)
                ASSERT_TRUE(std::isnan(function(FromBits(sign | 0x7F800000u | payload)))) << std::hex << payload;
}

TEST(Trigonometry, OutsideTheDomainIsNaN)
{
    for (const float angle : {INFINITE, -INFINITE})
        for (const Function function : OURS)
            EXPECT_TRUE(std::isnan(function(angle))) << angle;
    for (const float cosine : {FromBits(0x3F800001u), -FromBits(0x3F800001u), 2.0f, -1e38f})
        EXPECT_TRUE(std::isnan(GR_Acos(cosine))) << cosine;
}

// ---- square root and floor, which the module takes from the C library ----

// IEEE 754 demands of a square root what it demands of a sum: of all floats, the nearest. Processors and C libraries
// keep to it. A floor is a float always, so that nothing is left to round. All 2^32 floats: "trigonometry_proof exact".
void ExpectRootAndFloor(float number)
{
    ASSERT_TRUE(IsRoundedRoot(number, sqrtf(number))) << std::hexfloat << number << ": " << sqrtf(number);
    ASSERT_TRUE(IsFloor(number, floorf(number))) << std::hexfloat << number << ": " << floorf(number);
}

void ExpectRootAndFloorAbout(float number)
{
    for (uint32_t i = 0; i < 5; ++i)
        ExpectRootAndFloor(FromBits(BitsOf(number) - 2 + i));
}

TEST(SquareRootAndFloor, AreExactForFloatsOfEverySize)
{
    ForEachUpTo(INFINITE, ExpectRootAndFloor);
    ExpectRootAndFloor(std::numeric_limits<float>::quiet_NaN());
}

TEST(SquareRootAndFloor, AreExactAboutSquaresWhereTheRootIsWhole)
{
    for (int root = 1; root <= 4096; ++root)
        ExpectRootAndFloorAbout(static_cast<float>(root * root));
}

// The hard cases: a root half-way between two floats, as nearly as a float can come to its square.
TEST(SquareRootAndFloor, AreExactAboutSquaresOfMiddles)
{
    for (double middle = 0x1000001p-24; middle < 2.0; middle += 0x1002p-24) // 25 digits, the last one set
        ExpectRootAndFloorAbout(static_cast<float>(middle * middle));
}

TEST(SquareRootAndFloor, AreExactAboutWholeNumbersAndHalves)
{
    for (int half = 1; half < 1 << 24; half = half * 5 / 4 + 1)
        for (const float sign : {1.0f, -1.0f})
            ExpectRootAndFloorAbout(sign * 0.5f * static_cast<float>(half));
}

TEST(SquareRootAndFloor, TheDefinitionRefusesWhatIsOneUnitOff)
{
    for (const float number : {2.0f, 3.0f, 4.0f, 1e-30f, 1e30f, 0x1p-140f})
        for (const int off : {-1, 1})
            EXPECT_FALSE(IsRoundedRoot(number, FromBits(BitsOf(sqrtf(number)) + static_cast<uint32_t>(off)))) << number;
    EXPECT_FALSE(IsFloor(2.5f, 1.0f));
    EXPECT_FALSE(IsFloor(2.5f, 3.0f));
    EXPECT_FALSE(IsFloor(2.5f, 2.25f));
    EXPECT_FALSE(IsFloor(-0.0f, 0.0f));
    EXPECT_FALSE(IsRoundedRoot(-0.0f, 0.0f));
    EXPECT_FALSE(IsRoundedRoot(-1.0f, 1.0f));
}
} // namespace
