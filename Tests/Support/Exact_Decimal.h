#pragma once
// All decimal digits of a double, by school arithmetic: a reference for conversions between numbers and their texts.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

namespace ExactDecimal
{
// digits[0] . digits[1] digits[2] ... * 10^exponent; the first digit is not zero.
struct Decimal
{
    std::string digits;
    int exponent = 0;
};

inline void Multiply(std::string& digits, int factor)
{
    int carry = 0;
    for (size_t i = digits.size(); i > 0; --i)
    {
        carry += (digits[i - 1] - '0') * factor;
        digits[i - 1] = static_cast<char>('0' + carry % 10);
        carry /= 10;
    }
    for (; carry != 0; carry /= 10)
        digits.insert(digits.begin(), static_cast<char>('0' + carry % 10));
}

// Of whole * 2^exponent; whole is not zero. A half is five tenths: each one below the point is a factor of 5 and a
// shift.
inline Decimal Of(uint64_t whole, int exponent)
{
    std::string digits = std::to_string(whole);
    for (int i = 0; i < std::abs(exponent); ++i)
        Multiply(digits, exponent > 0 ? 2 : 5);
    const int shift = std::min(exponent, 0);
    return {digits, static_cast<int>(digits.size()) - 1 + shift};
}

// Rounded half to even to so many digits.
inline Decimal Rounded(Decimal number, size_t count)
{
    if (number.digits.size() <= count)
        return number;
    const std::string rest = number.digits.substr(count);
    number.digits.resize(count);
    const std::string half = "5" + std::string(rest.size() - 1, '0');
    const bool isOdd = (number.digits.back() - '0') % 2 != 0;
    if (rest < half || (rest == half && !isOdd))
        return number;
    size_t i = count;
    for (; i > 0 && number.digits[i - 1] == '9'; --i)
        number.digits[i - 1] = '0';
    if (i > 0)
        ++number.digits[i - 1];
    else
    {
        number.digits = "1" + number.digits.substr(0, count - 1);
        ++number.exponent;
    }
    return number;
}

// As a numeral with an exponent, which any parser reads.
inline std::string Numeral(const Decimal& number)
{
    return number.digits.substr(0, 1) + "." + number.digits.substr(1) + "0e" + std::to_string(number.exponent);
}

// As C's %.14g would: without trailing zeros, with an exponent when that is below -4 or from 14 on.
inline std::string General14(Decimal number)
{
    number = Rounded(number, 14);
    number.digits.erase(number.digits.find_last_not_of('0') + 1);
    const int e = number.exponent;
    if (e < -4 || e >= 14)
    {
        char tail[16];
        std::snprintf(tail, sizeof tail, "e%c%02d", e < 0 ? '-' : '+', std::abs(e));
        const std::string rest = number.digits.substr(1);
        return number.digits.substr(0, 1) + (rest.empty() ? "" : "." + rest) + tail;
    }
    if (e < 0)
        return "0." + std::string(static_cast<size_t>(-e - 1), '0') + number.digits;
    const auto before = static_cast<size_t>(e) + 1;
    if (number.digits.size() <= before)
        return number.digits + std::string(before - number.digits.size(), '0');
    return number.digits.substr(0, before) + "." + number.digits.substr(before);
}
} // namespace ExactDecimal
