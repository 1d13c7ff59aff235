// What Lua asks of the Runner about numbers (Lua_Configuration.h), alike with every C library. Decimal texts are the C
// library's: those in use round correctly, and the tests hold them against digits of any length.

#include "Runner/Base/Bits.h"
#include "Runner/Base/Mathematics.h"
#include "Runner/Lua/Lua_Configuration.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace Runner
{
namespace
{
constexpr int FRACTION_BITS = 52;
constexpr uint64_t FRACTION = (uint64_t{1} << FRACTION_BITS) - 1;
constexpr int FRACTION_DIGITS = FRACTION_BITS / 4;

// A conversion as it stands in a format: % flags width . precision letter.
struct Conversion
{
    bool left = false, plus = false, blank = false, point = false, zeros = false;
    int width = 0;
    int precision = -1; // as many digits as it takes
    bool isUpper = false;
};

Conversion ReadConversion(const char* format)
{
    Conversion read;
    const char* c = format + 1;
    for (; *c != '\0' && std::strchr("-+ #0", *c) != nullptr; ++c)
    {
        read.left |= *c == '-';
        read.plus |= *c == '+';
        read.blank |= *c == ' ';
        read.point |= *c == '#';
        read.zeros |= *c == '0';
    }
    char* end = nullptr;
    read.width = static_cast<int>(std::strtol(c, &end, 10));
    if (*end == '.')
        read.precision = static_cast<int>(std::strtol(end + 1, &end, 10));
    read.isUpper = *end == 'A';
    return read;
}

const char* SignOf(double number, const Conversion& how)
{
    if (std::signbit(number))
        return "-";
    return how.plus ? "+" : how.blank ? " " : "";
}

// Keeps the first digits of the fraction, rounded half to even; a carry lands in the leading digit.
uint64_t RoundFraction(uint64_t significand, int digits)
{
    if (digits >= FRACTION_DIGITS)
        return significand;
    const int dropped = (FRACTION_DIGITS - digits) * 4;
    const uint64_t half = uint64_t{1} << (dropped - 1);
    const uint64_t rest = significand & (2 * half - 1);
    const uint64_t kept = significand - rest;
    const bool up = rest > half || (rest == half && (kept & (2 * half)) != 0);
    return up ? kept + 2 * half : kept;
}

// "1.8p+3": the leading digit, the fraction, the exponent.
std::string Digits(double number, const Conversion& how)
{
    const uint64_t bits = BitsOf<uint64_t>(number);
    const auto field = static_cast<int>(bits >> FRACTION_BITS & 0x7FF);
    const uint64_t significand = (bits & FRACTION) | (field == 0 ? 0 : FRACTION + 1);
    const int exponent = field == 0 ? (significand == 0 ? 0 : -1022) : field - 1023;
    const int wanted = how.precision < 0 ? FRACTION_DIGITS : how.precision;
    const uint64_t rounded = RoundFraction(significand, wanted);

    char text[40];
    std::snprintf(text, sizeof(text), "%013llx", static_cast<unsigned long long>(rounded & FRACTION));
    std::string fraction(text);
    if (how.precision < 0)
        fraction.erase(fraction.find_last_not_of('0') + 1);
    else
        fraction.resize(static_cast<size_t>(wanted), '0');
    std::snprintf(text, sizeof(text), "p%+d", exponent);
    const char* point = !fraction.empty() || how.point ? "." : "";
    return std::to_string(rounded >> FRACTION_BITS) + point + fraction + text;
}

std::string Padded(const std::string& sign, const std::string& prefix, const std::string& digits, const Conversion& how,
                   bool zeros)
{
    const size_t length = sign.size() + prefix.size() + digits.size();
    const auto width = static_cast<size_t>(how.width);
    const size_t missing = width > length ? width - length : 0;
    if (how.left)
        return sign + prefix + digits + std::string(missing, ' ');
    if (zeros)
        return sign + prefix + std::string(missing, '0') + digits;
    return std::string(missing, ' ') + sign + prefix + digits;
}

std::string HexText(double number, const Conversion& how)
{
    if (!std::isfinite(number))
        return Padded(SignOf(number, how), "", std::isnan(number) ? "nan" : "inf", how, false);
    return Padded(SignOf(number, how), "0x", Digits(number, how), how, how.zeros);
}
} // namespace

double LuaPower(double base, double exponent) { return exponent == 2.0 ? base * base : Power(base, exponent); }

double OneNaN(double number) { return std::isnan(number) ? std::numeric_limits<double>::quiet_NaN() : number; }

int LuaNumberText(char* text, size_t size, double number) { return std::snprintf(text, size, "%.14g", OneNaN(number)); }

int LuaHexText(char* text, size_t size, const char* format, double number)
{
    const Conversion how = ReadConversion(format);
    std::string all = HexText(OneNaN(number), how);
    if (how.isUpper)
        for (char& c : all)
            c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return std::snprintf(text, size, "%s", all.c_str());
}
} // namespace Runner
