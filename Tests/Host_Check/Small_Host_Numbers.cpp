// Matrices and conversions of the small host.

#include "Platform/Strict_Float.h"

#include "Tests/Host_Check/Small_Host.h"

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

using namespace SmallHost;

namespace
{

float Dot(const kvVector3& a, const kvVector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
kvVector3 Minus(const kvVector3& a, const kvVector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
kvVector3 Cross(const kvVector3& a, const kvVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
kvVector3 Unit(const kvVector3& v)
{
    const float length = sqrtf(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

float Entry(const kvMatrix& a, const kvMatrix& b, int row, int column)
{
    float terms[4];
    for (int k = 0; k < 4; ++k)
        terms[k] = a.m[4 * row + k] * b.m[4 * k + column];
    if (Breaks(Breakage::ProductsSumFromTheRight))
        return terms[3] + terms[2] + terms[1] + terms[0];
    const float sum = terms[0] + terms[1] + terms[2] + terms[3];
    return Breaks(Breakage::ProductsAreCoarse) ? sum * 1.00001f : sum;
}

void Transpose(kvMatrix& matrix)
{
    const kvMatrix old = matrix;
    for (int i = 0; i < 16; ++i)
        matrix.m[i] = old.m[4 * (i % 4) + i / 4];
}

} // namespace

void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    const bool isReversed = Breaks(Breakage::ProductsAreReversed);
    kvMatrix product;
    kvMatrix& target = Breaks(Breakage::ProductsOverwriteTheirFactors) ? out : product;
    for (int i = 0; i < 16; ++i)
        target.m[i] = isReversed ? Entry(b, a, i / 4, i % 4) : Entry(a, b, i / 4, i % 4);
    out = target;
}

void kvMatrix::LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const kvVector3 z = Unit(Minus(at, eye));
    const kvVector3 side = Unit(Cross(up, z));
    const bool isRight = Breaks(Breakage::ViewsAreRightHanded);
    const kvVector3 x = isRight ? kvVector3{-side.x, -side.y, -side.z} : side;
    const kvVector3 y = Breaks(Breakage::LookAtKeepsTheUpVector) ? up : Cross(z, side);
    const bool forgets = Breaks(Breakage::LookAtForgetsTheEye);
    const kvVector3 from = forgets ? kvVector3{0.0f, 0.0f, 0.0f} : eye;
    const float rows[16] = {x.x, y.x, z.x, 0.0f, x.y,           y.y,           z.y,           0.0f,
                            x.z, y.z, z.z, 0.0f, -Dot(x, from), -Dot(y, from), -Dot(z, from), 1.0f};
    std::memcpy(out.m, rows, sizeof rows);
    if (Breaks(Breakage::TranslationIsTheFourthColumn))
        Transpose(out);
}

void kvMatrix::OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {};
    out._11 = (Breaks(Breakage::OrthoTakesHalfTheBox) ? 1.0f : 2.0f) / width;
    out._22 = 2.0f / height;
    out._33 = 1.0f / (zFar - zNear);
    out._43 = zNear / (zNear - zFar);
    out._44 = 1.0f;
    if (Breaks(Breakage::DepthStartsAtMinusOne))
    {
        out._33 = 2.0f / (zFar - zNear);
        out._43 = (zNear + zFar) / (zNear - zFar);
    }
}

void kvMatrix::PerspectiveLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    if (!Breaks(Breakage::PerspectiveLeavesOldEntries))
        out = {};
    const float part = Breaks(Breakage::PerspectiveTakesHalfThePlane) ? 1.0f : 2.0f;
    out._11 = part * zNear / width;
    out._22 = part * zNear / height;
    out._33 = zFar / (zFar - zNear);
    out._34 = 1.0f;
    out._43 = zNear * zFar / (zNear - zFar);
}

// ---- conversions ----
namespace
{

double TextNumber(const RValue& value)
{
    if (value.pRefString == nullptr || Breaks(Breakage::TextIsIgnored))
        return 0.0;
    char* end = nullptr;
    const double number = std::strtod(value.pRefString->m_thing, &end);
    return end == value.pRefString->m_thing && Breaks(Breakage::OtherTextIsOne) ? 1.0 : number;
}

double NumberOf(const RValue& value)
{
    switch (Breaks(Breakage::HighBitsCount) ? value.kind : KvKind(value))
    {
    case VALUE_REAL: return value.val;
    case VALUE_BOOL: return Breaks(Breakage::TruthIsIgnored) ? 0.0 : value.val;
    case VALUE_INT32: return value.v32;
    case VALUE_INT64: return Breaks(Breakage::Integers64AreIgnored) ? 0.0 : static_cast<double>(value.v64);
    case VALUE_STRING: return TextNumber(value);
    case VALUE_UNDEFINED: return Breaks(Breakage::UndefinedIsOne) ? 1.0 : 0.0;
    default: return 0.0;
    }
}

double Argument(const RValue* args, int index)
{
    const double number = NumberOf(args[Breaks(Breakage::TheFirstArgumentIsMeant) ? 0 : index]);
    return number != number && !Breaks(Breakage::NotANumberStays) ? 0.0 : number;
}

template <typename Int> Int Nearest(double number)
{
    const double end = -2.0 * static_cast<double>(std::numeric_limits<Int>::min() / 2);
    if (number != number)
        return 0;
    if (number >= end)
        return std::numeric_limits<Int>::max();
    return number <= -end ? std::numeric_limits<Int>::min() : static_cast<Int>(number);
}

} // namespace

int32_t KvGetInt32(const RValue* args, int index)
{
    const double number = Argument(args, index);
    if (Breaks(Breakage::IntegersWrap))
        return static_cast<int32_t>(static_cast<uint32_t>(Nearest<int64_t>(number) & 0xFFFFFFFF));
    return Nearest<int32_t>(number);
}

float KvGetFloat(const RValue* args, int index)
{
    const double number = Argument(args, index);
    constexpr double LARGEST = static_cast<double>(FLT_MAX);
    if (number != number || (number >= -LARGEST && number <= LARGEST))
        return static_cast<float>(number);
    return number > 0.0 || Breaks(Breakage::LargeFloatsLoseTheirSign) ? FLT_MAX : -FLT_MAX;
}

double KvGetReal(const RValue* args, int index) { return Argument(args, index); }
bool KvGetBool(const RValue* args, int index) { return Argument(args, index) > 0.5; }

int64_t RValue::asInt64() const
{
    const bool isExact = KvKind(*this) == VALUE_INT64 && !Breaks(Breakage::Integers64PassThroughDoubles);
    return isExact ? v64 : Nearest<int64_t>(NumberOf(*this));
}

double RValue::asReal() const
{
    return Breaks(Breakage::ValuesAreWholeNumbers) ? std::floor(NumberOf(*this)) : NumberOf(*this);
}

bool RValue::asBool() const
{
    return Breaks(Breakage::AnyNumberIsTrue) ? NumberOf(*this) != 0.0 : NumberOf(*this) > 0.5;
}
