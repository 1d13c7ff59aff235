// Matrix builders, conversions of arguments, the graphics layer.

#include "Platform/Strict_Float.h"

#include "Tests/Support/Recording_Host_State.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

using namespace Recording;

float g_ViewAreaX = 0.0f;
float g_ViewAreaY = 0.0f;
float g_ViewAreaW = 0.0f;
float g_ViewAreaH = 0.0f;
float g_ViewAreaA = 0.0f;
int g_RenderTargetActive = -1;

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
    const float scale = 1.0f / sqrtf(Dot(v, v));
    return {v.x * scale, v.y * scale, v.z * scale};
}

std::string Triple(const kvVector3& v) { return Describe(v.x) + "," + Describe(v.y) + "," + Describe(v.z); }

void NoteProjection(const char* name, float width, float height, float zNear, float zFar)
{
    RECORD(Topic_Matrices, "%s(%s,%s,%s,%s)", name, Describe(width).c_str(), Describe(height).c_str(),
           Describe(zNear).c_str(), Describe(zFar).c_str());
}
} // namespace

void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    RECORD(Topic_Matrices, "Multiply()");
    kvMatrix product = {};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            for (int k = 0; k < 4; ++k)
                product.m[4 * row + column] += a.m[4 * row + k] * b.m[4 * k + column];
    out = product;
}

void kvMatrix::LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    RECORD(Topic_Matrices, "LookAtLH(%s;%s;%s)", Triple(eye).c_str(), Triple(at).c_str(), Triple(up).c_str());
    const kvVector3 z = Unit(Minus(at, eye));
    const kvVector3 x = Unit(Cross(up, z));
    const kvVector3 y = Cross(z, x);
    const float rows[16] = {x.x, y.x, z.x, 0.0f, x.y,          y.y,          z.y,          0.0f,
                            x.z, y.z, z.z, 0.0f, -Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1.0f};
    std::memcpy(out.m, rows, sizeof rows);
    if (TheState().onView)
        TheState().onView(out);
}

void kvMatrix::OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    NoteProjection("OrthoLH", width, height, zNear, zFar);
    out = {};
    out._11 = 2.0f / width;
    out._22 = 2.0f / height;
    out._33 = 1.0f / (zFar - zNear);
    out._43 = zNear / (zNear - zFar);
    out._44 = 1.0f;
    if (TheState().onProjection)
        TheState().onProjection(out);
}

void kvMatrix::PerspectiveLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    NoteProjection("PerspectiveLH", width, height, zNear, zFar);
    out = {};
    out._11 = 2.0f * zNear / width;
    out._22 = 2.0f * zNear / height;
    out._33 = zFar / (zFar - zNear);
    out._34 = 1.0f;
    out._43 = zNear * zFar / (zNear - zFar);
}

// ---- graphics ----
void Graphics::SetMatrix(eMatrix slot, float* matrix)
{
    static const char* const names[] = {"view", "projection", "world"};
    RECORD(Topic_Graphics, "SetMatrix(%s)", names[slot]);
    std::memcpy(TheState().slots[slot].m, matrix, sizeof(kvMatrix));
}

void Recording::OnProjection(std::function<void(kvMatrix&)> change) { TheState().onProjection = std::move(change); }

void Recording::OnView(std::function<void(kvMatrix&)> change) { TheState().onView = std::move(change); }

void Recording::PassNan(bool passes) { TheState().passesNan = passes; }

kvMatrix Recording::LastMatrix(eMatrix slot) { return TheState().slots[slot]; }

void SetViewExtents(float x, float y, float w, float h, float a)
{
    RECORD(Topic_Graphics, "SetViewExtents(%s,%s,%s,%s,%s)", Describe(x).c_str(), Describe(y).c_str(),
           Describe(w).c_str(), Describe(h).c_str(), Describe(a).c_str());
}

// ---- conversions ----
double RValue::asReal() const
{
    switch (KvKind(*this))
    {
    case VALUE_REAL:
    case VALUE_BOOL: return val;
    case VALUE_INT32: return v32;
    case VALUE_INT64: return static_cast<double>(v64);
    case VALUE_STRING: return std::strtod(GetString(), nullptr);
    default: return 0.0;
    }
}

int64_t RValue::asInt64() const
{
    if (KvKind(*this) == VALUE_INT64)
        return v64;
    const double number = asReal();
    if (std::isnan(number))
        return 0;
    if (number >= 9223372036854775808.0)
        return std::numeric_limits<int64_t>::max();
    if (number < -9223372036854775808.0)
        return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(number);
}

bool RValue::asBool() const { return asReal() > 0.5; }

const char* RValue::GetString() const
{
    return KvKind(*this) == VALUE_STRING && pRefString != nullptr ? pRefString->m_thing : "";
}

CInstance* RValue::asObject() const
{
    const bool isInstance = KvKind(*this) == VALUE_OBJECT && pObj != nullptr && pObj->m_kind == OBJECT_KIND_INSTANCE;
    return isInstance ? static_cast<CInstance*>(pObj) : nullptr;
}

int32_t KvGetInt32(const RValue* args, int index)
{
    RECORD(Topic_Conversions, "KvGetInt32(%d)", index);
    const int64_t number = args[index].asInt64();
    if (number > std::numeric_limits<int32_t>::max())
        return std::numeric_limits<int32_t>::max();
    if (number < std::numeric_limits<int32_t>::min())
        return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(number);
}

static double ArgumentReal(const RValue* args, int index)
{
    const double number = args[index].asReal();
    return std::isnan(number) && !TheState().passesNan ? 0.0 : number;
}

// A NaN stays one unless a host's promise is asked for: tests see so what it does to a camera. Finite numbers beyond
// the floats become the largest.
float KvGetFloat(const RValue* args, int index)
{
    RECORD(Topic_Conversions, "KvGetFloat(%d)", index);
    const double number = ArgumentReal(args, index);
    constexpr float largest = std::numeric_limits<float>::max();
    if (std::isfinite(number) && std::fabs(number) > static_cast<double>(largest))
        return number > 0 ? largest : -largest;
    return static_cast<float>(number);
}

double KvGetReal(const RValue* args, int index)
{
    RECORD(Topic_Conversions, "KvGetReal(%d)", index);
    return ArgumentReal(args, index);
}

bool KvGetBool(const RValue* args, int index)
{
    RECORD(Topic_Conversions, "KvGetBool(%d)", index);
    return args[index].asBool();
}
