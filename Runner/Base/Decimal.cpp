#include "Runner/Base/Decimal.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace Runner
{
namespace
{
const char* AfterDigits(const char* at, const char* last)
{
    while (at != last && *at >= '0' && *at <= '9')
        ++at;
    return at;
}

// word: in small letters.
bool Begins(const char* at, const char* last, std::string_view word)
{
    for (const char letter : word)
    {
        if (at == last || (*at | 0x20) != letter)
            return false;
        ++at;
    }
    return true;
}

const char* AfterWord(const char* at, const char* last)
{
    for (const std::string_view word : {"infinity", "inf", "nan"})
        if (Begins(at, last, word))
            return at + word.size();
    return at;
}

// An exponent without digits is none.
const char* AfterExponent(const char* at, const char* last)
{
    if (!Begins(at, last, "e"))
        return at;
    const char* digits = at + 1;
    if (digits != last && (*digits == '+' || *digits == '-'))
        ++digits;
    const char* const end = AfterDigits(digits, last);
    return end == digits ? at : end;
}

// Where the number ends; first when there is none.
const char* EndOfNumber(const char* first, const char* last)
{
    const char* const start = first != last && *first == '-' ? first + 1 : first;
    const char* const whole = AfterDigits(start, last);
    const bool hasPoint = whole != last && *whole == '.';
    const char* const fraction = hasPoint ? AfterDigits(whole + 1, last) : whole;
    const bool hasDigits = whole != start || fraction > whole + 1;
    const char* const end = hasDigits ? AfterExponent(fraction, last) : AfterWord(start, last);
    return end == start ? first : end;
}

double Nearest(const char* text, const double&) { return std::strtod(text, nullptr); }
float Nearest(const char* text, const float&) { return std::strtof(text, nullptr); }

// The digits of a number and where its point stands, from the fewest that give it back.
struct Digits
{
    std::string digits;
    int exponent = 0; // of the first digit
};

Digits FewestDigits(double size)
{
    constexpr int ENOUGH = 17;
    char text[40] = "";
    for (int count = 1; count <= ENOUGH; ++count)
    {
        std::snprintf(text, sizeof text, "%.*e", count - 1, size);
        if (std::strtod(text, nullptr) == size)
            break;
    }
    const std::string_view all = text;
    const size_t end = all.find('e');
    Digits found = {std::string(all.substr(0, 1)), static_cast<int>(std::strtol(text + end + 1, nullptr, 10))};
    if (end > 2)
        found.digits += all.substr(2, end - 2);
    return found;
}

std::string WithExponent(const Digits& number)
{
    char exponent[16];
    std::snprintf(exponent, sizeof exponent, "e%+03d", number.exponent);
    const std::string fraction = number.digits.substr(1);
    return number.digits.substr(0, 1) + (fraction.empty() ? "" : "." + fraction) + exponent;
}

// A whole number has all of its digits, those that the shortest text leaves open, too.
std::string WithoutExponent(const Digits& number, double size)
{
    const int count = static_cast<int>(number.digits.size());
    if (number.exponent < 0)
        return "0." + std::string(static_cast<size_t>(-number.exponent - 1), '0') + number.digits;
    if (number.exponent + 1 < count)
        return std::string(number.digits).insert(static_cast<size_t>(number.exponent) + 1, ".");
    char text[400];
    std::snprintf(text, sizeof text, "%.0f", size);
    return text;
}

// The C library rounds correctly (Runner/Lua/Lua_Numbers.cpp relies on it, too); it sees what has been found to be a
// number, and nothing of what only it takes for one.
template <typename Real> std::from_chars_result Read(const char* first, const char* last, Real& value)
{
    const char* const end = EndOfNumber(first, last);
    if (end == first)
        return {first, std::errc::invalid_argument};
    const std::string text(first, end);
    errno = 0;
    const Real read = Nearest(text.c_str(), value);
    if (errno == ERANGE && (std::isinf(read) || read == Real{0}))
        return {end, std::errc::result_out_of_range};
    value = read;
    return {end, std::errc()};
}
} // namespace

std::string DecimalText(double number)
{
    const std::string sign = std::signbit(number) ? "-" : "";
    const double size = std::fabs(number);
    if (!std::isfinite(number))
        return sign + (std::isnan(number) ? "nan" : "inf");
    const Digits digits = FewestDigits(size);
    const std::string shorter = WithExponent(digits), plain = WithoutExponent(digits, size);
    return sign + (plain.size() <= shorter.size() ? plain : shorter);
}

std::from_chars_result ReadDecimal(const char* first, const char* last, double& value)
{
    return Read(first, last, value);
}

std::from_chars_result ReadDecimal(const char* first, const char* last, float& value)
{
    return Read(first, last, value);
}
} // namespace Runner
