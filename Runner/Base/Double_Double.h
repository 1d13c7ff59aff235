#pragma once
// Double-double arithmetic: a number is the unevaluated sum of two doubles and has about 104 bits. It takes nothing but
// plain additions and multiplications of doubles, so every machine gives the same bits. Numbers are neither huge nor
// tiny: a product must stay below 2^996, and one that is smaller than 2^-900 loses digits.

#include "Platform/Strict_Float.h"

#include <cmath>
#include <cstdint>

namespace Runner
{
struct DoubleDouble
{
    double high = 0.0;
    double low = 0.0; // half a unit in the last place of high, at most

    constexpr DoubleDouble() = default;
    constexpr DoubleDouble(double number) : high(number) {}
    constexpr DoubleDouble(double larger, double smaller) : high(larger), low(smaller) {}
};

// The sum of two doubles and its rounding error; the first is the larger one, or zero.
constexpr DoubleDouble QuickTwoSum(double larger, double smaller)
{
    const double sum = larger + smaller;
    return {sum, smaller - (sum - larger)};
}

constexpr DoubleDouble TwoSum(double a, double b)
{
    const double sum = a + b;
    const double ofB = sum - a;
    return {sum, (a - (sum - ofB)) + (b - ofB)};
}

// A product and its rounding error, by Dekker's splitting of each factor into halves of 26 bits.
constexpr DoubleDouble TwoProduct(double a, double b)
{
    constexpr double splitter = 0x1p27 + 1.0;
    const double aScaled = splitter * a, bScaled = splitter * b;
    const double aHigh = aScaled - (aScaled - a), bHigh = bScaled - (bScaled - b);
    const double aLow = a - aHigh, bLow = b - bHigh;
    const double product = a * b;
    return {product, ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow};
}

constexpr DoubleDouble operator-(DoubleDouble a) { return {-a.high, -a.low}; }

constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b)
{
    const DoubleDouble highs = TwoSum(a.high, b.high);
    const DoubleDouble lows = TwoSum(a.low, b.low);
    const DoubleDouble sum = QuickTwoSum(highs.high, highs.low + lows.high);
    return QuickTwoSum(sum.high, sum.low + lows.low);
}

constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b) { return a + -b; }

constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b)
{
    const DoubleDouble product = TwoProduct(a.high, b.high);
    return QuickTwoSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

// Long division: three digits, each a double.
constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b)
{
    const double first = a.high / b.high;
    const DoubleDouble rest = a - b * first;
    const double second = rest.high / b.high;
    const double third = (rest - b * second).high / b.high;
    return QuickTwoSum(first, second) + third;
}

// Of a number that is not negative: one step of Newton's method.
inline DoubleDouble SquareRoot(DoubleDouble square)
{
    const double root = std::sqrt(square.high);
    if (root == 0.0)
        return 0.0;
    const DoubleDouble rest = square - TwoProduct(root, root);
    return QuickTwoSum(root, rest.high / (2.0 * root));
}

inline double SquareRoot(double square) { return std::sqrt(square); }

// The nearest float, rounded once: the sum is first rounded to an odd double, which no float and no middle between two
// floats is, unless exact.
float RoundToFloat(DoubleDouble number);

// The nearest double to the number times 2^exponent, rounded once also where the result is denormal.
double Scaled(DoubleDouble number, int exponent);
} // namespace Runner
