// The reading of decimal numbers, held against the standard library's on a machine that has it.
#include "Runner/Base/Decimal.h"

#include "Runner/Base/Bits.h"

#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace
{
using namespace Runner;

// The same place, the same fault, the same bits of the value, which stays at 7 where there is no number.
template <typename Real, typename Bits> void ExpectAsStandard(const std::string& text)
{
    Real ours = 7, standard = 7;
    const char* const first = text.data();
    const char* const last = first + text.size();
    const std::from_chars_result read = ReadDecimal(first, last, ours);
    const std::from_chars_result expected = std::from_chars(first, last, standard);
    EXPECT_EQ(read.ptr - first, expected.ptr - first) << text;
    EXPECT_EQ(read.ec, expected.ec) << text;
    EXPECT_EQ(std::isnan(ours), std::isnan(standard)) << text;
    if (!std::isnan(ours))
    {
        EXPECT_EQ(BitsOf<Bits>(ours), BitsOf<Bits>(standard)) << text;
    }
}

void ExpectAsStandard(const std::string& text)
{
    ExpectAsStandard<double, uint64_t>(text);
    ExpectAsStandard<float, uint32_t>(text);
}

TEST(Decimal, ReadsAndRefusesWhatTheStandardLibraryDoes)
{
    for (const char* text : {"",
                             "-",
                             "+1",
                             " 1",
                             "1 ",
                             "1",
                             "-0",
                             "0.5",
                             ".5",
                             "5.",
                             ".",
                             "-.",
                             "1e5",
                             "1E-5",
                             "1e+5",
                             "1e",
                             "1e+",
                             "1ex",
                             "e5",
                             "0x10",
                             "1.2.3",
                             "inf",
                             "-INF",
                             "Infinity",
                             "infin",
                             "nan",
                             "-NaN",
                             "nothing",
                             "1,5",
                             "--1",
                             "1e400",
                             "-1e400",
                             "1e-400",
                             "5e-324",
                             "1e39",
                             "1e-46",
                             "9007199254740993",
                             "0.1",
                             "3.4028235e38",
                             "16777217",
                             "1e23",
                             "123456789012345678901234567890"})
        ExpectAsStandard(text);
}

std::string StandardText(double number)
{
    char text[400];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

TEST(Decimal, WritesAsTheStandardLibraryDoes)
{
    for (const double number : {0.0,
                                -0.0,
                                1.0,
                                -1.5,
                                0.1,
                                0.001,
                                0.0001,
                                0.00012,
                                0.00001,
                                12345.0,
                                100000.0,
                                1e20,
                                1e21,
                                1e22,
                                1e23,
                                9007199254740993.0,
                                1.2345678901234568e20,
                                1.7976931348623157e308,
                                5e-324,
                                2.2250738585072014e-308,
                                1.0 / 3.0,
                                123456.789,
                                HUGE_VAL,
                                -HUGE_VAL})
        EXPECT_EQ(DecimalText(number), StandardText(number));
}

TEST(Decimal, WritesAndReadsAnyNumberAsTheStandardLibraryDoes)
{
    uint64_t state = 20261122;
    for (int i = 0; i < 3000; ++i)
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        const auto number = BitsOf<double>(state);
        const std::string text = StandardText(number);
        ExpectAsStandard(text);
        if (!std::isnan(number))
        {
            EXPECT_EQ(DecimalText(number), text);
        }
    }
}
} // namespace
