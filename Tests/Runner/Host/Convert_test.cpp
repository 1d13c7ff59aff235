#include "Runner/Host/Code.h"
#include "Runner/Host/Convert.h"
#include "Runner/Host/Value.h"
#include "Tests/Support/Numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>

namespace
{
using namespace Runner;

const double INF = std::numeric_limits<double>::infinity();

RValue Int32(int32_t number)
{
    RValue value = MakeReal(0);
    value.kind = VALUE_INT32;
    value.v32 = number;
    return value;
}

RValue Int64(int64_t number)
{
    RValue value = MakeReal(0);
    value.kind = VALUE_INT64;
    value.v64 = number;
    return value;
}

RValue OfKind(uint32_t kind)
{
    RValue value = MakeReal(0);
    value.kind = kind;
    return value;
}

TEST(HostConvert, WholeNumbersOfRealsAreCutAndKeptInRange)
{
    const std::pair<double, int32_t> cases[] = {{0.0, 0},
                                                {2.9, 2},
                                                {-2.9, -2},
                                                {NOT_A_NUMBER_64, 0},
                                                {INF, INT_MAX},
                                                {-INF, INT_MIN},
                                                {1e300, INT_MAX},
                                                {-1e300, INT_MIN},
                                                {2147483647.0, INT_MAX},
                                                {2147483647.9, INT_MAX},
                                                {2147483648.0, INT_MAX},
                                                {-2147483648.0, INT_MIN},
                                                {-2147483648.9, INT_MIN},
                                                {-0.5, 0}};
    for (const auto& [number, expected] : cases)
    {
        const RValue value = MakeReal(number);
        EXPECT_EQ(KvGetInt32(&value, 0), expected) << number;
    }
    EXPECT_FALSE(HasError());
}

TEST(HostConvert, EveryIntegerTypeKeepsItsRange)
{
    EXPECT_EQ(NearestInteger<uint8_t>(-1), 0);
    EXPECT_EQ(NearestInteger<uint8_t>(255.5), 255);
    EXPECT_EQ(NearestInteger<uint8_t>(256), 255);
    EXPECT_EQ(NearestInteger<int8_t>(-129), -128);
    EXPECT_EQ(NearestInteger<int8_t>(128), 127);
    EXPECT_EQ(NearestInteger<uint16_t>(65535.9), 65535);
    EXPECT_EQ(NearestInteger<int16_t>(-40000), -32768);
    EXPECT_EQ(NearestInteger<uint32_t>(4294967295.0), 4294967295u);
    EXPECT_EQ(NearestInteger<uint32_t>(4294967296.0), 4294967295u);
    EXPECT_EQ(NearestInteger<int64_t>(0x1p63), INT64_MAX);
    EXPECT_EQ(NearestInteger<int64_t>(-0x1p63), INT64_MIN);
    EXPECT_EQ(NearestInteger<int64_t>(0x1p62), int64_t{1} << 62);
    EXPECT_EQ(NearestInteger<uint64_t>(0x1p63), uint64_t{1} << 63);
    EXPECT_EQ(NearestInteger<uint64_t>(0x1p64), UINT64_MAX);
    EXPECT_EQ(NearestInteger<uint64_t>(NOT_A_NUMBER_64), 0u);
}

TEST(HostConvert, FloatsRoundAndBecomeInfiniteBeyondTheirRange)
{
    const double highest = static_cast<double>(FLT_MAX);
    const double halfStep = 0x1p103; // the step above the highest float is 2^104
    EXPECT_EQ(NearestFloat(highest), FLT_MAX);
    EXPECT_EQ(NearestFloat(highest + halfStep * 0.999), FLT_MAX);
    EXPECT_EQ(NearestFloat(-highest - halfStep * 0.999), -FLT_MAX);
    EXPECT_TRUE(std::isinf(NearestFloat(highest + halfStep)));
    EXPECT_LT(NearestFloat(-highest - halfStep), -FLT_MAX);
    EXPECT_TRUE(std::isinf(NearestFloat(1e308)));
    EXPECT_EQ(NearestFloat(1.0 + 0x1p-24), 1.0f); // a tie, to even
    EXPECT_EQ(NearestFloat(1.0 + 0x1p-24 + 0x1p-50), 1.0f + FLT_EPSILON);
    EXPECT_EQ(NearestFloat(0x1p-149), FLT_TRUE_MIN);
    EXPECT_TRUE(std::isnan(NearestFloat(NOT_A_NUMBER_64)));
    EXPECT_TRUE(std::signbit(NearestFloat(-0.0)));
}

TEST(HostConvert, NotANumberAsAnArgumentIsZero)
{
    const RValue value = MakeReal(NOT_A_NUMBER_64);
    EXPECT_EQ(KvGetInt32(&value, 0), 0);
    EXPECT_EQ(KvGetFloat(&value, 0), 0.0f);
    EXPECT_EQ(KvGetReal(&value, 0), 0.0);
    EXPECT_FALSE(KvGetBool(&value, 0));
    EXPECT_TRUE(std::isnan(value.asReal()));
    EXPECT_EQ(value.asInt64(), 0);
}

TEST(HostConvert, TheIndexPicksTheArgument)
{
    const RValue args[] = {MakeReal(1), Int32(-7), Int64(int64_t{1} << 40), MakeBool(true)};
    EXPECT_EQ(KvGetInt32(args, 1), -7);
    EXPECT_EQ(KvGetInt32(args, 2), INT_MAX);
    EXPECT_EQ(KvGetReal(args, 2), 0x1p40);
    EXPECT_EQ(KvGetFloat(args, 3), 1.0f);
    EXPECT_FALSE(HasError());
}

TEST(HostConvert, TruthIsMoreThanAHalf)
{
    const std::pair<double, bool> cases[] = {{0.5, false}, {0.51, true}, {1, true},
                                             {-1, false},  {2, true},    {INF, true}};
    for (const auto& [number, expected] : cases)
    {
        const RValue value = MakeReal(number);
        EXPECT_EQ(KvGetBool(&value, 0), expected) << number;
        EXPECT_EQ(value.asBool(), expected) << number;
    }
    const RValue yes = MakeBool(true), no = MakeBool(false);
    EXPECT_TRUE(KvGetBool(&yes, 0));
    EXPECT_FALSE(KvGetBool(&no, 0));
}

TEST(HostConvert, Int64KeepsItsLowestBits)
{
    EXPECT_EQ(Int64(INT64_MAX - 1).asInt64(), INT64_MAX - 1);
    EXPECT_EQ(MakeReal(1e300).asInt64(), INT64_MAX);
    EXPECT_EQ(Int32(-5).asInt64(), -5);
}

TEST(HostConvert, TheHighBitsOfTheKindDoNotCount)
{
    const RValue value = OfKind(0xAB000000u | VALUE_INT32);
    EXPECT_EQ(KvGetInt32(&value, 0), 0);
    EXPECT_FALSE(HasError());
}

TEST(HostConvert, StringsThatAreNumbersConvert)
{
    const std::pair<const char*, double> cases[] = {{"12", 12},     {"-3.5", -3.5},   {" 7 \t\r\n", 7}, {"+4", 4},
                                                    {".5", 0.5},    {"-.25", -0.25},  {"1e3", 1000},    {"5.", 5},
                                                    {"1e999", INF}, {"-1e999", -INF}, {"1e-999", 0},    {"00012", 12}};
    for (const auto& [text, expected] : cases)
    {
        double number = -99;
        EXPECT_TRUE(ParseNumber(text, number)) << text;
        EXPECT_EQ(number, expected) << text;
    }
}

TEST(HostConvert, OtherStringsAreNoNumbers)
{
    for (const char* text :
         {"", " ", "abc", "1x", "1 2", "inf", "-inf", "nan", "+-1", "--1", "-", "+", ".", "0x10", "1e", "e5"})
    {
        double number = -99;
        EXPECT_FALSE(ParseNumber(text, number)) << text;
        EXPECT_EQ(number, 0) << text;
    }
    EXPECT_FALSE(HasError());
    double number;
    EXPECT_FALSE(ParseNumber(std::string_view("1\0", 2), number));
}

TEST(HostConvert, WhatIsNoNumberIsReportedAndZero)
{
    RValue text = MakeString("ten");
    RValue array = MakeArray(1);
    const std::pair<RValue, const char*> cases[] = {
        {text, "expected a number, got the string \"ten\""},
        {array, "expected a number, got a table"},
        {MakeUndefined(), "expected a number, got nil"},
        {OfKind(VALUE_NULL), "expected a number, got null"},
        {OfKind(VALUE_UNSET), "expected a number, got nothing"},
        {OfKind(VALUE_OBJECT), "expected a number, got an object that is not there"},
        {OfKind(VALUE_REF), "expected a number, got a value of kind 15"},
    };
    for (const auto& [value, message] : cases)
    {
        TakeError();
        EXPECT_EQ(KvGetInt32(&value, 0), 0);
        EXPECT_EQ(TakeError(), message);
        EXPECT_EQ(KvGetFloat(&value, 0), 0.0f);
        EXPECT_EQ(TakeError(), message);
        EXPECT_EQ(KvGetReal(&value, 0), 0.0);
        EXPECT_EQ(TakeError(), message);
        EXPECT_FALSE(KvGetBool(&value, 0));
        EXPECT_EQ(TakeError(), message);
    }
    EXPECT_EQ(array.asReal(), 0);
    EXPECT_EQ(TakeError(), "expected a number, got a table");
    Release(text);
    Release(array);
}
} // namespace
