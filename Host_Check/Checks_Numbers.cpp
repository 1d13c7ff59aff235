// Files/Code/Function.h: the conversions of arguments. Files/LLVM/RValue.h: those of a value.

#include "Host_Check/Check.h"
#include "Host_Check/Optional_Names.h"

#include <cfloat>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Code/Function.h";
constexpr char VALUE_HEADER[] = "Files/LLVM/RValue.h";
constexpr char WHATEVER[] = "Conversions of args[index], whatever its kind.";
constexpr char NEAREST[] =
    "NaN gives 0, a number out of range the nearest in range; for a float that is the largest one "
    "or an infinity, of the number's sign.";

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double UNBOUNDED = std::numeric_limits<double>::infinity();

RValue Integer32(int32_t number)
{
    RValue value = OfKind(VALUE_INT32);
    value.v32 = number;
    return value;
}

RValue Truth(bool truth)
{
    RValue value = OfKind(VALUE_BOOL);
    value.val = truth ? 1.0 : 0.0;
    return value;
}

RValue WithHighBits(RValue value)
{
    value.kind |= 0x5A000000u;
    return value;
}

struct Sample
{
    const char* what;
    RValue value;
    double number;
};

constexpr int INDEX = 2; // of the argument that is converted: those beside it are another number

struct Arguments
{
    explicit Arguments(const RValue& value) : values{Real(77), Real(78), value, Real(79)} {}
    RValue values[4];
};

// Each kind of number, as each conversion sees it.
void ExpectConversions(Trial& trial, const Sample& sample)
{
    const Arguments args(sample.value);
    const int32_t integer = KvGetInt32(args.values, INDEX);
    trial.Expect(integer == static_cast<int32_t>(sample.number), "KvGetInt32 makes %d of %s", static_cast<int>(integer),
                 sample.what);
    const float single = KvGetFloat(args.values, INDEX);
    trial.Expect(single == static_cast<float>(sample.number), "KvGetFloat makes %.9g of %s",
                 static_cast<double>(single), sample.what);
    const double number = KvGetReal(args.values, INDEX);
    trial.Expect(number == sample.number, "KvGetReal makes %.17g of %s", number, sample.what);
    if (HostCheck_GetBool != nullptr)
        trial.Expect(HostCheck_GetBool(args.values, INDEX) == (sample.number > 0.5), "KvGetBool makes %s of %s",
                     sample.number > 0.5 ? "false" : "true", sample.what);
}

void RealsAreConverted(Trial& trial)
{
    ExpectConversions(trial, {"the real 3", Real(3), 3});
    ExpectConversions(trial, {"the real -100000", Real(-100000), -100000});
    ExpectConversions(trial, {"the real 0", Real(0), 0});
}

void IntegersAreConverted(Trial& trial)
{
    ExpectConversions(trial, {"the 32-bit integer -5", Integer32(-5), -5});
    ExpectConversions(trial, {"the 32-bit integer 100001", Integer32(100001), 100001});
    ExpectConversions(trial, {"the 64-bit integer 7", Integer64(7), 7});
    ExpectConversions(trial, {"the 64-bit integer -7", Integer64(-7), -7});
}

void TruthIsConverted(Trial& trial)
{
    ExpectConversions(trial, {"true", Truth(true), 1});
    ExpectConversions(trial, {"false", Truth(false), 0});
}

void HighBitsAreNoPartOfTheKind(Trial& trial)
{
    ExpectConversions(trial, {"the real 3 with high bits in its kind", WithHighBits(Real(3)), 3});
    ExpectConversions(trial, {"the 32-bit integer 4 with high bits in its kind", WithHighBits(Integer32(4)), 4});
}

// Neither a number nor anything else: their value bits are zero, so that a host that looks behind a pointer is caught
// by the null there.
void OthersAreZero(Trial& trial)
{
    for (const uint32_t kind : {uint32_t{VALUE_UNDEFINED}, uint32_t{VALUE_NULL}, uint32_t{VALUE_UNSET},
                                uint32_t{VALUE_STRING}, uint32_t{VALUE_ARRAY}, uint32_t{VALUE_OBJECT},
                                uint32_t{VALUE_PTR}, uint32_t{VALUE_VEC3}, uint32_t{VALUE_VEC4}, uint32_t{VALUE_VEC44},
                                uint32_t{VALUE_ACCESSOR}, uint32_t{VALUE_ITERATOR}, uint32_t{0x21}, uint32_t{0x1234}})
    {
        char what[48];
        std::snprintf(what, sizeof what, "an empty value of kind %u", static_cast<unsigned>(kind));
        ExpectConversions(trial, {what, OfKind(kind), 0});
    }
    ForgetErrors(trial);
}

void TextThatIsANumber(Trial& trial)
{
    RValue text = {};
    if (!trial.Expect(trial.hooks.makeText("12.5", &text), "the hook makeText could make no text"))
        return;
    const Arguments args(text);
    trial.Expect(KvGetReal(args.values, INDEX) == 12.5, "KvGetReal makes %.17g of the text 12.5",
                 KvGetReal(args.values, INDEX));
    trial.Expect(KvGetInt32(args.values, INDEX) == 12, "KvGetInt32 makes %d of the text 12.5",
                 static_cast<int>(KvGetInt32(args.values, INDEX)));
    FREE_RValue__Pre(&text);
}

// Scripts hand over text where a number belongs; what is no number must come out as one all the same.
void TextThatIsNone(Trial& trial)
{
    RValue text = {};
    if (!trial.Expect(trial.hooks.makeText("left", &text), "the hook makeText could make no text"))
        return;
    ExpectConversions(trial, {"the text left", text, 0});
    ForgetErrors(trial);
    FREE_RValue__Pre(&text);
}

void NotANumberIsZero(Trial& trial)
{
    ExpectConversions(trial, {"not a number", Real(NOT_A_NUMBER), 0});
    ExpectConversions(trial, {"not a number with its sign", Real(-NOT_A_NUMBER), 0});
}

void IntegersSaturate(Trial& trial)
{
    struct
    {
        RValue value;
        int32_t nearest;
    } const samples[] = {{Real(2147483648.0), INT32_MAX},
                         {Real(1e30), INT32_MAX},
                         {Real(UNBOUNDED), INT32_MAX},
                         {Real(-1e30), INT32_MIN},
                         {Real(-UNBOUNDED), INT32_MIN},
                         {Real(-2147483649.0), INT32_MIN},
                         {Integer64(int64_t{1} << 40), INT32_MAX},
                         {Integer64(-(int64_t{1} << 40)), INT32_MIN},
                         {Integer64(INT64_MAX), INT32_MAX}};
    for (const auto& sample : samples)
    {
        const Arguments args(sample.value);
        const int32_t integer = KvGetInt32(args.values, INDEX);
        trial.Expect(integer == sample.nearest, "KvGetInt32 makes %d of %.17g", static_cast<int>(integer),
                     KvGetReal(args.values, INDEX));
    }
}

void FloatsSaturate(Trial& trial)
{
    for (const double number : {1e300, 3.5e38, UNBOUNDED})
    {
        const Arguments above(Real(number)), below(Real(-number));
        const float high = KvGetFloat(above.values, INDEX), low = KvGetFloat(below.values, INDEX);
        trial.Expect(high >= FLT_MAX, "KvGetFloat makes %.9g of %.17g", static_cast<double>(high), number);
        trial.Expect(low <= -FLT_MAX, "KvGetFloat makes %.9g of %.17g", static_cast<double>(low), -number);
    }
    const Arguments least(Real(1e-300));
    trial.Expect(KvGetFloat(least.values, INDEX) == 0.0f, "KvGetFloat makes %.9g of 1e-300",
                 static_cast<double>(KvGetFloat(least.values, INDEX)));
}

// ---- the methods of a value ----
constexpr char LEFT_OUT[] = "the host leaves this operation out; the module never calls it";

void ValueAsReal(Trial& trial)
{
    if (HostCheck_AsReal == nullptr)
        return trial.NotTested(LEFT_OUT);
    for (const Sample& sample :
         {Sample{"the real 2.5", Real(2.5), 2.5}, Sample{"the 32-bit integer -5", Integer32(-5), -5},
          Sample{"the 64-bit integer 9", Integer64(9), 9}, Sample{"true", Truth(true), 1}})
        trial.Expect(HostCheck_AsReal(&sample.value) == sample.number, "asReal makes %.17g of %s",
                     HostCheck_AsReal(&sample.value), sample.what);
}

void ValueAsInt64(Trial& trial)
{
    if (HostCheck_AsInt64 == nullptr)
        return trial.NotTested(LEFT_OUT);
    for (const int64_t number : {int64_t{9007199254740993}, INT64_MAX, INT64_MIN, int64_t{-1}})
    {
        const RValue value = Integer64(number);
        trial.Expect(HostCheck_AsInt64(&value) == number, "asInt64 makes %lld of the 64-bit integer %lld",
                     static_cast<long long>(HostCheck_AsInt64(&value)), static_cast<long long>(number));
    }
}

void ValueAsBool(Trial& trial)
{
    if (HostCheck_AsBool == nullptr)
        return trial.NotTested(LEFT_OUT);
    for (const double number : {0.0, 0.5, -3.0, 0.75, 1.0})
    {
        const RValue value = Real(number);
        trial.Expect(HostCheck_AsBool(&value) == (number > 0.5), "asBool makes %s of the real %g",
                     number > 0.5 ? "false" : "true", number);
    }
}

constexpr Check CHECKS[] = {
    {"number.of_real", Level::Follow, HEADER, WHATEVER, Need_Nothing, RealsAreConverted},
    {"number.of_integer", Level::Follow, HEADER, WHATEVER, Need_Nothing, IntegersAreConverted},
    {"number.of_bool", Level::Follow, VALUE_HEADER, "val is 0 or 1", Need_Nothing, TruthIsConverted},
    {"number.nan", Level::Follow, HEADER, NEAREST, Need_Nothing, NotANumberIsZero},
    {"number.integer_range", Level::Follow, HEADER, NEAREST, Need_Nothing, IntegersSaturate},
    {"number.float_range", Level::Follow, HEADER, NEAREST, Need_Nothing, FloatsSaturate},
    {"number.of_nothing", Level::Follow, HEADER, "A value that stands for no number is converted to 0.", Need_Nothing,
     OthersAreZero},
    {"number.of_text", Level::BuiltIns, HEADER, WHATEVER, Need_Text, TextThatIsANumber},
    {"number.of_other_text", Level::BuiltIns, HEADER, "A value that stands for no number is converted to 0.", Need_Text,
     TextThatIsNone},
    {"number.kind_mask", Level::Follow, VALUE_HEADER, "the kind; the high 8 bits of the word are not part of it",
     Need_Nothing, HighBitsAreNoPartOfTheKind},
    {"value.as_int64", Level::BuiltIns, VALUE_HEADER, "of a VALUE_INT64 all 64 bits", Need_Nothing, ValueAsInt64},
    {"value.as_real", Level::BuiltIns, VALUE_HEADER, "the number of a real, an integer or a bool", Need_Nothing,
     ValueAsReal},
    {"value.as_bool", Level::BuiltIns, VALUE_HEADER, "true above one half", Need_Nothing, ValueAsBool},
};

} // namespace

Checks NumberChecks() { return Table(CHECKS); }

} // namespace HostCheck
