#pragma once
// The functions of the Runner's mathematics as series, for doubles and for double-doubles: Real is one of the two. Each
// argument is first brought close to a number whose result is known from a table.

#include "Runner/Base/Double_Double.h"

#include <array>
#include <cmath>

namespace Runner::Series
{
constexpr DoubleDouble HALF_PI = {0x1.921FB54442D18p0, 0x1.1A62633145C07p-54};
constexpr DoubleDouble LN_2 = {0x1.62E42FEFA39EFp-1, 0x1.ABC9E3B39803Fp-56};
constexpr DoubleDouble INVERSE_LN_10 = {0x1.BCB7B1526E50Ep-2, 0x1.95355BAAAFAD3p-57};

// The digits that a double has, of a constant that has more.
template <typename Real> constexpr Real As(DoubleDouble number);
template <> constexpr double As<double>(DoubleDouble number) { return number.high; }
template <> constexpr DoubleDouble As<DoubleDouble>(DoubleDouble number) { return number; }

constexpr double HighOf(double number) { return number; }
constexpr double HighOf(DoubleDouble number) { return number.high; }

// ---- coefficients ----

template <size_t count> using Coefficients = std::array<DoubleDouble, count>;

// 1, 1/3, 1/5 ..., all positive or with alternating signs.
template <size_t count> constexpr Coefficients<count> OddReciprocals(double sign)
{
    Coefficients<count> made = {};
    DoubleDouble numerator = 1.0;
    for (size_t i = 0; i < count; ++i, numerator = numerator * sign)
        made[i] = numerator / DoubleDouble(static_cast<double>(2 * i + 1));
    return made;
}

// 1/first!, then every step-th factorial's reciprocal.
template <size_t count> constexpr Coefficients<count> FactorialReciprocals(size_t first, size_t step, double sign)
{
    Coefficients<count> made = {};
    DoubleDouble term = 1.0;
    size_t reached = 0;
    for (size_t i = 0; i < count; ++i)
    {
        for (; reached < first + i * step; ++reached)
            term = term / DoubleDouble(static_cast<double>(reached + 1));
        made[i] = term;
        term = term * sign;
    }
    return made;
}

// c0 + c1 z + c2 z^2 ... Of a double-double, the terms from the exact-th on have digits to spare as doubles.
template <typename Real, size_t count> constexpr Real Sum(const Coefficients<count>& coefficients, Real z, size_t exact)
{
    double tail = 0.0;
    for (size_t i = count; i > exact; --i)
        tail = tail * HighOf(z) + coefficients[i - 1].high;
    Real sum = tail;
    for (size_t i = exact; i > 0; --i)
        sum = sum * z + As<Real>(coefficients[i - 1]);
    return sum;
}

// ---- logarithm ----

// ln((1 + s) / (1 - s)); s is 1/95 at most.
template <typename Real> constexpr Real LogOfRatio(Real s)
{
    constexpr auto coefficients = OddReciprocals<7>(1.0);
    return Real(2.0) * s * Sum(coefficients, s * s, 4);
}

constexpr int LOG_STEPS = 64;    // centres of the logarithm's table lie a 64th apart
constexpr int LOG_FIRST = 48;    // 0.75
constexpr size_t LOG_COUNT = 49; // to 1.5

constexpr std::array<DoubleDouble, LOG_COUNT> MakeLogarithms()
{
    std::array<DoubleDouble, LOG_COUNT> made = {};
    constexpr int one = LOG_STEPS - LOG_FIRST;
    for (int i = one; i + 1 < static_cast<int>(LOG_COUNT); ++i)
        made[static_cast<size_t>(i) + 1] =
            made[static_cast<size_t>(i)] + LogOfRatio(DoubleDouble(1.0) / DoubleDouble(2.0 * (LOG_FIRST + i) + 1.0));
    for (int i = one; i > 0; --i)
        made[static_cast<size_t>(i) - 1] =
            made[static_cast<size_t>(i)] - LogOfRatio(DoubleDouble(1.0) / DoubleDouble(2.0 * (LOG_FIRST + i) - 1.0));
    return made;
}

// Of mantissa * 2^exponent; the mantissa is 0.75 .. 1.5.
template <typename Real> Real Log(double mantissa, int exponent)
{
    static constexpr auto logarithms = MakeLogarithms();
    const int nearest = static_cast<int>(std::floor(mantissa * LOG_STEPS + 0.5));
    const double centre = static_cast<double>(nearest) / LOG_STEPS;
    const Real ratio = Real(mantissa - centre) / (Real(mantissa) + Real(centre));
    return Real(exponent) * As<Real>(LN_2) +
           (As<Real>(logarithms[static_cast<size_t>(nearest - LOG_FIRST)]) + LogOfRatio(ratio));
}

// ---- exponential ----

constexpr int EXP_STEPS = 64;

// 1 + x + x^2/2 ...; x is 1/64 at most.
template <typename Real> constexpr Real ExpOfSmall(Real x)
{
    constexpr auto coefficients = FactorialReciprocals<12>(0, 1, 1.0);
    return Sum(coefficients, x, 6);
}

// 2^(i/64)
constexpr std::array<DoubleDouble, EXP_STEPS> MakePowers()
{
    std::array<DoubleDouble, EXP_STEPS> made = {};
    const DoubleDouble step = ExpOfSmall(LN_2 * DoubleDouble(1.0 / EXP_STEPS));
    made[0] = 1.0;
    for (size_t i = 1; i < EXP_STEPS; ++i)
        made[i] = made[i - 1] * step;
    return made;
}

// e^x is mantissa * 2^exponent.
template <typename Real> struct Exponential
{
    Real mantissa; // about 1 .. 2
    int exponent;
};

// x is -10000 .. 10000.
template <typename Real> Exponential<Real> Exp(Real x)
{
    static constexpr auto powers = MakePowers();
    const double steps = std::floor(HighOf(x) * (EXP_STEPS / LN_2.high) + 0.5);
    const Real rest = x - Real(steps) * (As<Real>(LN_2) * Real(1.0 / EXP_STEPS));
    const int whole = static_cast<int>(steps);
    const int place = whole & (EXP_STEPS - 1);
    return {ExpOfSmall(rest) * As<Real>(powers[static_cast<size_t>(place)]), (whole - place) / EXP_STEPS};
}

// ---- trigonometry ----

constexpr int ATAN_STEPS = 8;

// x is 1/8 at most.
template <typename Real> constexpr Real AtanOfSmall(Real x)
{
    constexpr auto coefficients = OddReciprocals<17>(-1.0);
    return x * Sum(coefficients, x * x, 8);
}

// The arc tangent of i/8, each by the arc between it and the one before.
constexpr std::array<DoubleDouble, ATAN_STEPS + 1> MakeArcs()
{
    std::array<DoubleDouble, ATAN_STEPS + 1> made = {};
    for (size_t i = 1; i <= ATAN_STEPS; ++i)
    {
        const auto between = static_cast<double>(size_t{ATAN_STEPS} * ATAN_STEPS + i * (i - 1));
        made[i] = made[i - 1] + AtanOfSmall(DoubleDouble(ATAN_STEPS) / DoubleDouble(between));
    }
    return made;
}

// x is 0 .. 1.
template <typename Real> Real AtanUpToOne(Real x)
{
    static constexpr auto arcs = MakeArcs();
    const int nearest = static_cast<int>(std::floor(HighOf(x) * ATAN_STEPS + 0.5));
    const Real centre = static_cast<double>(nearest) / ATAN_STEPS;
    return As<Real>(arcs[static_cast<size_t>(nearest)]) + AtanOfSmall((x - centre) / (Real(1.0) + x * centre));
}

// The angle from the x axis to a point of the first quadrant that is not the origin: 0 .. pi/2.
template <typename Real> Real AngleOf(Real y, Real x)
{
    if (HighOf(y) <= HighOf(x))
        return AtanUpToOne(y / x);
    return As<Real>(HALF_PI) - AtanUpToOne(x / y);
}

// x is -0.8 .. 0.8.
template <typename Real> Real Sine(Real x)
{
    constexpr auto coefficients = FactorialReciprocals<14>(1, 2, -1.0);
    return x * Sum(coefficients, x * x, 8);
}

template <typename Real> Real Cosine(Real x)
{
    constexpr auto coefficients = FactorialReciprocals<14>(0, 2, -1.0);
    return Sum(coefficients, x * x, 8);
}

// x is -0.5 .. 0.5; larger ones have Exp.
template <typename Real> Real HyperbolicSine(Real x)
{
    constexpr auto coefficients = FactorialReciprocals<12>(1, 2, 1.0);
    return x * Sum(coefficients, x * x, 7);
}
} // namespace Runner::Series
