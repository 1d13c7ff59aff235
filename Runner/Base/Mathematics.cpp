#include "Runner/Base/Mathematics.h"

#include "Runner/Base/Bits.h"
#include "Runner/Base/Range_Reduction.h"
#include "Runner/Base/Series.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace Runner
{
namespace
{
// Below it x^3/3 is less than half a unit in the last place of x: odd functions give x itself.
constexpr float TINY = 0x1p-12f;

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

// Rounds function(x) to float. Doubles tell the nearest float but for one argument in a million, whose result lies so
// close to the middle between two floats that double-doubles have to decide.
template <typename Function> float Rounded(Function function)
{
    constexpr double error = 0x1p-44;
    const double quick = function(double());
    const auto least = static_cast<float>(quick - quick * error);
    const auto most = static_cast<float>(quick + quick * error);
    return least == most ? least : RoundToFloat(function(DoubleDouble()));
}

// Mantissa and exponent as the logarithm takes them: 0.75 .. 1.5.
struct Split
{
    double mantissa;
    int exponent;
};

Split SplitForLog(double number)
{
    int exponent = 0;
    const double half = std::frexp(number, &exponent); // 0.5 .. 1
    return half < 0.75 ? Split{2.0 * half, exponent - 1} : Split{half, exponent};
}

// The logarithm, times a factor, of what has one that is no number of its own.
float LogarithmTimes(float number, DoubleDouble factor)
{
    if (number == 0.0f)
        return -INFINITE;
    if (!(number > 0.0f))
        return NOT_A_NUMBER;
    if (number == INFINITE)
        return INFINITE;
    const Split split = SplitForLog(static_cast<double>(number));
    return Rounded(
        [&](auto real)
        {
            using Real = decltype(real);
            return Series::Log<Real>(split.mantissa, split.exponent) * Series::As<Real>(factor);
        });
}

double Times2To(double number, int exponent) { return std::ldexp(number, exponent); }

DoubleDouble Times2To(DoubleDouble number, int exponent)
{
    return {std::ldexp(number.high, exponent), std::ldexp(number.low, exponent)};
}

template <typename Real> Real ExpOf(float x)
{
    const auto power = Series::Exp<Real>(Real(static_cast<double>(x)));
    return Times2To(power.mantissa, power.exponent);
}

constexpr float EXP_LIMIT = 110.0f;      // beyond it e^x is infinite, or less than half of the smallest float
constexpr float HYPERBOLIC_SMALL = 0.5f; // up to here by a series of its own
constexpr float TANH_LIMIT = 20.0f;      // from here on the nearest float is 1

template <typename Real> Real SinhOf(float x)
{
    if (std::fabs(x) <= HYPERBOLIC_SMALL)
        return Series::HyperbolicSine(Real(static_cast<double>(x)));
    const Real power = ExpOf<Real>(x);
    return (power - Real(1.0) / power) * Real(0.5);
}

template <typename Real> Real CoshOf(float x)
{
    const Real power = ExpOf<Real>(x);
    return (power + Real(1.0) / power) * Real(0.5);
}

// The angle of a point of the first quadrant that is neither the origin nor infinitely far away.
template <typename Real> Real AngleInQuadrant(float y, float x, bool isLeft)
{
    const Real angle = Series::AngleOf(Real(static_cast<double>(y)), Real(static_cast<double>(x)));
    return isLeft ? Series::As<Real>(Series::HALF_PI) * Real(2.0) - angle : angle;
}
} // namespace

float Tangent(float radians)
{
    if (!(std::fabs(radians) < INFINITE))
        return NOT_A_NUMBER;
    if (std::fabs(radians) < TINY)
        return radians;
    const ReducedAngle reduced = ReduceAngleExactly(radians);
    return Rounded(
        [&](auto real)
        {
            using Real = decltype(real);
            const Real x = Series::As<Real>(reduced.remainder);
            const Real sine = Series::Sine(x), cosine = Series::Cosine(x);
            return reduced.isOdd ? -cosine / sine : sine / cosine;
        });
}

float ArcSine(float sine)
{
    const float size = std::fabs(sine);
    if (!(size <= 1.0f))
        return NOT_A_NUMBER;
    if (size < TINY)
        return sine;
    const float angle = Rounded(
        [&](auto real)
        {
            using Real = decltype(real);
            const Real x = static_cast<double>(size);
            return Series::AngleOf(x, SquareRoot((Real(1.0) - x) * (Real(1.0) + x)));
        });
    return std::copysign(angle, sine);
}

float ArcTangent(float y, float x)
{
    if (y != y || x != x)
        return NOT_A_NUMBER;
    float sizeY = std::fabs(y), sizeX = std::fabs(x);
    if (sizeY == INFINITE || sizeX == INFINITE) // only which of the two are infinite counts
    {
        sizeY = sizeY == INFINITE ? 1.0f : 0.0f;
        sizeX = sizeX == INFINITE ? 1.0f : 0.0f;
    }
    else if (sizeY == 0.0f && sizeX == 0.0f)
        sizeX = 1.0f; // the origin counts as a point of the x axis
    const bool isLeft = std::signbit(x);
    if (sizeY == 0.0f && !isLeft)
        return y == 0.0f ? y : std::copysign(0.0f, y);
    const float angle = Rounded([&](auto real) { return AngleInQuadrant<decltype(real)>(sizeY, sizeX, isLeft); });
    return std::copysign(angle, y);
}

float Exponential(float exponent)
{
    if (exponent != exponent)
        return NOT_A_NUMBER;
    if (std::fabs(exponent) > EXP_LIMIT)
        return exponent > 0.0f ? INFINITE : 0.0f;
    return Rounded([&](auto real) { return ExpOf<decltype(real)>(exponent); });
}

float Logarithm(float number) { return LogarithmTimes(number, 1.0); }
float DecimalLogarithm(float number) { return LogarithmTimes(number, Series::INVERSE_LN_10); }

float HyperbolicSine(float x)
{
    if (x != x)
        return NOT_A_NUMBER;
    if (std::fabs(x) < TINY)
        return x;
    if (std::fabs(x) > EXP_LIMIT)
        return std::copysign(INFINITE, x);
    return Rounded([&](auto real) { return SinhOf<decltype(real)>(x); });
}

float HyperbolicCosine(float x)
{
    if (x != x)
        return NOT_A_NUMBER;
    if (std::fabs(x) > EXP_LIMIT)
        return INFINITE;
    return Rounded([&](auto real) { return CoshOf<decltype(real)>(x); });
}

float HyperbolicTangent(float x)
{
    if (x != x)
        return NOT_A_NUMBER;
    if (std::fabs(x) < TINY)
        return x;
    if (std::fabs(x) > TANH_LIMIT)
        return std::copysign(1.0f, x);
    return Rounded([&](auto real) { return SinhOf<decltype(real)>(x) / CoshOf<decltype(real)>(x); });
}

// ---- power ----

namespace
{
constexpr double LARGE_EXPONENT = 0x1p70; // of a base that is not one: the result is infinite or zero
constexpr double LARGEST_LOG = 800.0;

bool IsWhole(double number) { return number == std::floor(number); }
bool IsOdd(double number) { return IsWhole(number) && !IsWhole(number / 2.0) && std::fabs(number) < 0x1p53; }

// Small whole exponents, which games use most, by multiplications, unless the result comes near a double's ends.
constexpr double MOST_FACTORS = 32.0;
constexpr int MOST_BITS = 900;

bool IsProduct(double base, double exponent)
{
    int bits = 0;
    std::frexp(base, &bits);
    return IsWhole(exponent) && std::fabs(exponent) <= MOST_FACTORS &&
           std::fabs(exponent) * (std::abs(bits) + 1) <= MOST_BITS;
}

double Product(double base, double exponent)
{
    DoubleDouble result = 1.0, square = base;
    for (auto left = static_cast<unsigned>(std::fabs(exponent)); left != 0; left /= 2, square = square * square)
        if (left % 2 != 0)
            result = result * square;
    return exponent > 0.0 ? result.high : (DoubleDouble(1.0) / result).high;
}

// Of finite numbers above zero, the base not one, the exponent not zero.
double PowerOfPositive(double base, double exponent)
{
    if (IsProduct(base, exponent))
        return Product(base, exponent);
    if (exponent == 0.5)
        return std::sqrt(base);
    const bool grows = (base > 1.0) == (exponent > 0.0);
    const double outside = grows ? std::numeric_limits<double>::infinity() : 0.0;
    if (std::fabs(exponent) > LARGE_EXPONENT)
        return outside;
    const Split split = SplitForLog(base);
    const DoubleDouble log = Series::Log<DoubleDouble>(split.mantissa, split.exponent) * DoubleDouble(exponent);
    if (std::fabs(log.high) > LARGEST_LOG)
        return outside;
    const auto power = Series::Exp(log);
    return Scaled(power.mantissa, power.exponent);
}

// Where the base or the exponent is zero or infinite; the sign of the base is not looked at.
double PowerOfLimit(double base, double exponent)
{
    if (std::fabs(exponent) == std::numeric_limits<double>::infinity() && base == 1.0)
        return 1.0;
    return (base > 1.0) == (exponent > 0.0) ? std::numeric_limits<double>::infinity() : 0.0;
}
} // namespace

double Power(double base, double exponent)
{
    if (base == 1.0 || exponent == 0.0)
        return 1.0;
    if (base != base || exponent != exponent)
        return std::numeric_limits<double>::quiet_NaN();
    const double size = std::fabs(base);
    const bool isLimit = size == 0.0 || !std::isfinite(size) || !std::isfinite(exponent);
    if (base < 0.0 && !isLimit && !IsWhole(exponent))
        return std::numeric_limits<double>::quiet_NaN();
    const bool isNegative = std::signbit(base) && std::isfinite(exponent) && IsOdd(exponent);
    const double result = isLimit ? PowerOfLimit(size, exponent) : size == 1.0 ? 1.0 : PowerOfPositive(size, exponent);
    return isNegative ? -result : result;
}
} // namespace Runner
