#include "Runner/Host/Convert.h"

#include "Runner/Base/Decimal.h"
#include "Runner/Host/Code.h"
#include "Runner/Host/Value.h"

#include <cfloat>
#include <charconv>
#include <cstdlib>
#include <string>

namespace Runner
{
namespace
{
std::string_view WithoutBlanks(std::string_view text)
{
    constexpr char BLANKS[] = " \t\r\n";
    const size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}
} // namespace

bool ParseNumber(std::string_view text, double& number)
{
    number = 0.0;
    text = WithoutBlanks(text);
    const size_t lead = !text.empty() && (text.front() == '+' || text.front() == '-') ? 1 : 0;
    // The first character after the sign must be a digit or a point: "inf", "nan" and "+-1" are no numbers to a script.
    if (lead >= text.size() || (text[lead] != '.' && (text[lead] < '0' || text[lead] > '9')))
        return false;
    if (text.front() == '+')
        text.remove_prefix(1);
    double parsed = 0.0;
    const std::from_chars_result result = ReadDecimal(text.data(), text.data() + text.size(), parsed);
    if (result.ptr != text.data() + text.size() || result.ec == std::errc::invalid_argument)
        return false;
    // Out of range: from_chars does not say whether too large or too small, strtod gives infinity or zero.
    number = result.ec == std::errc() ? parsed : std::strtod(std::string(text).c_str(), nullptr);
    return true;
}

bool NumberOf(const RValue& value, double& number)
{
    number = 0.0;
    switch (KvKind(value))
    {
    case VALUE_REAL:
    case VALUE_BOOL: number = value.val; return true;
    case VALUE_INT32: number = value.v32; return true;
    case VALUE_INT64: number = static_cast<double>(value.v64); return true;
    case VALUE_STRING:
        return value.pRefString != nullptr && value.pRefString->get() != nullptr &&
               ParseNumber({value.pRefString->get(), static_cast<size_t>(value.pRefString->size())}, number);
    default: return false;
    }
}

float NearestFloatOutside(double number)
{
    // The first number that rounds to infinity lies half a step above the largest float. A cast is undefined beyond the
    // largest float, so the numbers below that first one are rounded down here.
    constexpr double HIGHEST = static_cast<double>(FLT_MAX);
    constexpr double HALF_STEP = 10141204801825835211973625643008.0; // 2^103
    const float highest = number < 0.0 ? -FLT_MAX : FLT_MAX;
    const double size = number < 0.0 ? -number : number;
    if (size >= HIGHEST + HALF_STEP)
        return number < 0.0 ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    return size > HIGHEST ? highest : static_cast<float>(number);
}

namespace
{
void ReportNoNumber(const RValue& value)
{
    const BuiltinCall* call = BuiltinCall::Current();
    const std::string expectation = call == nullptr ? "" : call->Expectation(value);
    KvError("%s, got %s", expectation.empty() ? "expected a number" : expectation.c_str(), Describe(value).c_str());
}

// Reports a value that is no number, and answers 0.
double NumberOrReport(const RValue& value)
{
    double number;
    if (!NumberOf(value, number))
        ReportNoNumber(value);
    return number;
}

double ArgumentNumber(const RValue* args, int index)
{
    double number = args[index].val;
    if (KvKind(args[index]) != VALUE_REAL && !NumberOf(args[index], number))
        ReportNoNumber(args[index]);
    return number == number ? number : 0.0;
}
} // namespace
} // namespace Runner

int32_t KvGetInt32(const RValue* args, int index)
{
    return Runner::NearestInteger<int32_t>(Runner::ArgumentNumber(args, index));
}

float KvGetFloat(const RValue* args, int index) { return Runner::NearestFloat(Runner::ArgumentNumber(args, index)); }

double KvGetReal(const RValue* args, int index) { return Runner::ArgumentNumber(args, index); }

bool KvGetBool(const RValue* args, int index) { return Runner::ArgumentNumber(args, index) > 0.5; }

int64_t RValue::asInt64() const
{
    if (KvKind(*this) == VALUE_INT64)
        return v64; // a double would lose the lowest bits
    return Runner::NearestInteger<int64_t>(Runner::NumberOrReport(*this));
}

double RValue::asReal() const { return Runner::NumberOrReport(*this); }

bool RValue::asBool() const { return Runner::NumberOrReport(*this) > 0.5; }
