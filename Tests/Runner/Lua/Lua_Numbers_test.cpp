// Numbers and their texts in scripts: the nearest ones, whatever the C library.

#include "Runner/Base/Mathematics.h"
#include "Runner/Lua/Lua_Configuration.h"
#include "Tests/Runner/Support/Game_Support.h"
#include "Tests/Support/Exact_Decimal.h"

#include "Files/Graphics/Trigonometry.h"

#include <cinttypes>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace
{
using ExactDecimal::Decimal;

// A double as whole * 2^exponent.
struct Parts
{
    uint64_t whole;
    int exponent;
};

Parts PartsOf(uint64_t bits)
{
    const auto field = static_cast<int>(bits >> 52 & 0x7FF);
    const uint64_t fraction = bits & ((uint64_t{1} << 52) - 1);
    return {field == 0 ? fraction : fraction | uint64_t{1} << 52, (field == 0 ? 1 : field) - 1075};
}

double DoubleOf(uint64_t bits)
{
    double number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

// Positive finite doubles of every size, most of them near to one, with few and with many digits.
std::vector<uint64_t> SomeDoubles()
{
    std::vector<uint64_t> bits = {1, 2, 0x000FFFFFFFFFFFFF, 0x0010000000000000, 0x7FEFFFFFFFFFFFFF, 0x3FF0000000000000};
    std::mt19937_64 random(20261121);
    for (int i = 0; i < 400; ++i)
        bits.push_back(random() % 0x7FF0000000000000u);
    for (int i = 0; i < 3000; ++i)
        bits.push_back(0x3F00000000000000u + random() % 0x0300000000000000u);
    for (int i = 1; i < 400; ++i)
    {
        const double simple = i / 128.0;
        uint64_t pattern;
        std::memcpy(&pattern, &simple, sizeof pattern);
        bits.push_back(pattern);
    }
    return bits;
}

class LuaNumbers : public RunnerTest::GameTest
{
};

TEST_F(LuaNumbers, TheTextOfANumberIsTheNearestOfFourteenDigits)
{
    for (uint64_t bits : SomeDoubles())
    {
        const Parts parts = PartsOf(bits);
        char text[64];
        Runner::LuaNumberText(text, sizeof text, DoubleOf(bits));
        ASSERT_EQ(text, ExactDecimal::General14(ExactDecimal::Of(parts.whole, parts.exponent))) << std::hex << bits;
    }
}

// The middle between two doubles has a finite text of its own: it goes to the even one, and one more digit decides.
TEST_F(LuaNumbers, ANumeralIsTheNearestDouble)
{
    std::string pairs, expected;
    size_t count = 0;
    for (uint64_t bits : SomeDoubles())
    {
        if (++count % 8 != 0 || bits >= 0x7FEFFFFFFFFFFFFF)
            continue;
        const Parts parts = PartsOf(bits);
        const Decimal middle = ExactDecimal::Of(2 * parts.whole + 1, parts.exponent - 1);
        const std::string text = ExactDecimal::Numeral(middle);
        const size_t e = text.find('e');
        const std::string above = text.substr(0, e) + "1" + text.substr(e);
        const uint64_t even = bits % 2 == 0 ? bits : bits + 1;
        char line[64];
        std::snprintf(line, sizeof line, "%.17g %.17g\n", DoubleOf(even), DoubleOf(bits + 1));
        expected += line;
        pairs += "{ tonumber('" + text + "'), tonumber('" + above + "') },\n";
    }
    ASSERT_GT(count, 1000u);
    ASSERT_EQ(Run("for _, p in ipairs{\n" + pairs + "} do print(string.format('%.17g %.17g', p[1], p[2])) end"), "");
    EXPECT_EQ(Log(), expected);
}

TEST_F(LuaNumbers, AHexadecimalNumeralIsRoundedOnce)
{
    EXPECT_EQ(Run("assert(0x1.00000000000008p0 == 1)\n"               // the middle: to the even one
                  "assert(0x1.000000000000080001p0 == 1 + 2.0^-52)\n" // above it
                  "assert(0x1.00000000000018p0 == 1 + 2 * 2.0^-52)\n"
                  "assert(tonumber('0x1p-1074') == 2.0^-1074 and tonumber('0x.8p-1074') == 0)\n"
                  "assert(tonumber('0x1p1024') == math.huge and tonumber('0x1.8') == 1.5)"),
              "");
}

TEST_F(LuaNumbers, TheHexadecimalTextIsTheNumber)
{
    EXPECT_EQ(Run("local function is(text, format, n)\n"
                  "  assert(string.format(format, n) == text, string.format(format, n)) end\n"
                  "is('0x1p+0', '%a', 1) is('-0x1.8p+1', '%a', -3) is('0x0p+0', '%a', 0.0) is('-0x0p+0', '%a', -0.0)\n"
                  "is('0X1.ABCDEFP+4', '%A', 0x1.abcdefp4) is('0x1.999999999999ap-4', '%a', 0.1)\n"
                  "is('0x0.0000000000001p-1022', '%a', 2.0^-1074)\n"
                  "is('0x1.fffffffffffffp+1023', '%a', 0x1.fffffffffffffp+1023)\n"
                  "is('inf', '%a', 1/0) is('-INF', '%A', -1/0) is('nan', '%a', -(0/0))\n"
                  "is('0x2p+0', '%.0a', 1.5) is('0x1p+0', '%.0a', 1.25) is('0x1.8p+0', '%.1a', 0x1.88p0)\n"
                  "is('0x1.ap+0', '%.1a', 0x1.98p0) is('0x2.00p+0', '%.2a', 0x1.fffp0)\n"
                  "is('0x1.80000000000000000000p+0', '%.20a', 1.5) is('0x1.p+0', '%#a', 1)\n"
                  "is('+0x1p+0', '%+a', 1) is(' 0x1p+0', '% a', 1) is('    0x1p+0', '%10a', 1)\n"
                  "is('0x00001p+0', '%010a', 1) is('0x1p+0    |', '%-10a|', 1) is('       inf', '%010a', 1/0)\n"
                  "assert(string.format('%q', 0.1) == '0x1.999999999999ap-4')"),
              "");
}

#ifdef __GLIBC__
TEST_F(LuaNumbers, TheHexadecimalTextIsThatOfTheDevicesLibrary)
{
    for (uint64_t bits : SomeDoubles())
    {
        const double number = DoubleOf(bits);
        char ours[96], theirs[96];
        Runner::LuaHexText(ours, sizeof ours, "%a", number);
        std::snprintf(theirs, sizeof theirs, "%a", number);
        ASSERT_STREQ(ours, theirs);
        Runner::LuaHexText(ours, sizeof ours, "%+030.5A", -number);
        std::snprintf(theirs, sizeof theirs, "%+030.5A", -number);
        ASSERT_STREQ(ours, theirs);
        Runner::LuaHexText(ours, sizeof ours, "%-24.11a", number);
        std::snprintf(theirs, sizeof theirs, "%-24.11a", number);
        ASSERT_STREQ(ours, theirs);
    }
}
#endif

TEST_F(LuaNumbers, NoTextAndNoPackedNumberShowsTheSignOfANaN)
{
    EXPECT_EQ(Run("for _, v in ipairs{ 0/0, -(0/0) } do\n"
                  "  assert(v .. '' == 'nan' and table.concat{ v } == 'nan' and tostring(v) == 'nan')\n"
                  "  assert(string.format('%s %g %.2f %a %5.1e', v, v, v, v, v) == 'nan nan nan nan   nan')\n"
                  "  assert(string.format('%q', v) == '(0/0)')\n"
                  "  for _, f in ipairs{ '<d', '<n' } do\n"
                  "    assert(string.pack(f, v) == '\\0\\0\\0\\0\\0\\0\\xF8\\x7F') end\n"
                  "  assert(string.pack('<f', v) == '\\0\\0\\xC0\\x7F')\n"
                  "end"),
              "");
}

TEST_F(LuaNumbers, PackedSizesAndBytesAreAlikeOnEveryMachine)
{
    EXPECT_EQ(Run("for c, size in pairs{ b = 1, h = 2, i = 4, l = 8, j = 8, L = 8, T = 8, f = 4, d = 8, n = 8 } do\n"
                  "  assert(string.packsize(c) == size, c) end\n"
                  "assert(string.packsize('!bd') == 16 and string.packsize('!i2l') == 16)\n"
                  "assert(string.pack('i', 258) == '\\2\\1\\0\\0' and string.pack('=i', 258) == '\\2\\1\\0\\0')\n"
                  "assert(string.pack('s', 'ab') == '\\2\\0\\0\\0\\0\\0\\0\\0ab')\n"
                  "assert(string.pack('>d', 1) == '\\x3F\\xF0\\0\\0\\0\\0\\0\\0')\n"
                  "assert(not pcall(string.unpack, 's', '\\1\\0\\0\\0\\1\\0\\0\\0x'))"),
              "");
}

TEST_F(LuaNumbers, TextsCompareByTheirBytes)
{
    EXPECT_EQ(Run("assert('Z' < 'a' and 'a' < 'b' and 'a' < 'a\\0' and 'a\\0a' < 'a\\0b' and 'a\\0b' < 'aa')\n"
                  "assert('\\x7F' < '\\x80' and '\\xFF' > 'a' and '' < '\\0' and not ('a' < 'a') and 'a' <= 'a')"),
              "");
}

TEST_F(LuaNumbers, PowersThatAreExactStayExact)
{
    EXPECT_EQ(
        Run("assert(2^53 == 9007199254740992 and 10^15 == 1e15 and 10^22 == 1e22 and 2^-1074 == 5e-324)\n"
            "local x = 1.1 assert(x^2 == x * x and x^1 == x and x^0 == 1 and x^-1 == 1 / x and x^0.5 == math.sqrt(x))\n"
            "assert((-2)^3 == -8 and (-8)^(1/3) ~= (-8)^(1/3) and 0^-1 == math.huge and 2^1024 == math.huge)\n"
            "assert(math.pow(2, 10) == 1024 and math.type(2^2) == 'float')"),
        "");
}

TEST_F(LuaNumbers, QuotientsAndRemaindersOfFloatsAreExact)
{
    EXPECT_EQ(
        Run("assert(5.5 // 2 == 2 and -5.5 // 2 == -3 and 5.5 % 2 == 1.5 and -5.5 % 2 == 0.5 and 5.5 % -2 == -0.5)\n"
            "assert(1e308 % 3 == 2 and 2.0^53 % 3 == 2 and 5.3 % math.huge == 5.3 and -1 % math.huge == math.huge)\n"
            "assert(math.fmod(-5.5, 2) == -1.5 and math.fmod(1e308, 3) == 2)"),
        "");
}

// From doubles to the nearest floats, through the module's functions or the Runner's, to a double again.
TEST_F(LuaNumbers, InexactFunctionsAreTheModulesAndTheRunners)
{
    ASSERT_EQ(
        Run("local function show(...) print(string.format(string.rep('%.17g ', select('#', ...)), ...)) end\n"
            "for _, x in ipairs{ 0.1, 0.7, -0.3, 1.0 } do\n"
            "  show(math.sin(x), math.cos(x), math.acos(x), math.tan(x), math.asin(x), math.exp(x), math.atan(x),\n"
            "       math.atan(x, -2), math.atan2(x, 3), math.sinh(x), math.cosh(x), math.tanh(x)) end\n"
            "for _, x in ipairs{ 0.1, 8, 1000 } do\n"
            "  show(math.log(x), math.log(x, 2), math.log(x, 10), math.log10(x)) end"),
        "");
    std::string expected;
    const auto show = [&expected](std::initializer_list<float> numbers)
    {
        for (float number : numbers)
        {
            char text[40];
            std::snprintf(text, sizeof text, "%.17g ", static_cast<double>(number));
            expected += text;
        }
        expected += '\n';
    };
    using namespace Runner;
    for (float x : {0.1f, 0.7f, -0.3f, 1.0f})
        show({GR_Sin(x), GR_Cos(x), GR_Acos(x), Tangent(x), ArcSine(x), Exponential(x), ArcTangent(x, 1.0f),
              ArcTangent(x, -2.0f), ArcTangent(x, 3.0f), HyperbolicSine(x), HyperbolicCosine(x), HyperbolicTangent(x)});
    for (float x : {0.1f, 8.0f, 1000.0f})
        show({Logarithm(x), Logarithm(x) / Logarithm(2.0f), Logarithm(x) / Logarithm(10.0f), DecimalLogarithm(x)});
    EXPECT_EQ(Log(), expected);
}
} // namespace
