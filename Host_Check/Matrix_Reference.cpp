#include "Platform/Strict_Float.h"

#include "Host_Check/Matrix_Reference.h"

#include <cmath>

namespace HostCheck
{
namespace
{

// ---- in double precision ----
struct Vector
{
    double x, y, z;
};

Vector Widen(const kvVector3& v)
{
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}
double Dot(const Vector& a, const Vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vector Cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Vector Unit(const Vector& v)
{
    const double length = std::sqrt(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

double LargestTerm(const Vector& a, const Vector& b)
{
    return std::fmax(std::fabs(a.x * b.x), std::fmax(std::fabs(a.y * b.y), std::fabs(a.z * b.z)));
}

void Set(Exact& exact, int index, double entry, double largest)
{
    exact.entry[index] = entry;
    exact.largest[index] = std::fmax(std::fabs(entry), largest);
}

// One column of a look-at matrix. The components of a unit vector come from sums whose terms reach 1.
void SetColumn(Exact& exact, int column, const Vector& axis, const Vector& eye)
{
    Set(exact, column, axis.x, 1.0);
    Set(exact, 4 + column, axis.y, 1.0);
    Set(exact, 8 + column, axis.z, 1.0);
    const double reach = std::fmax(std::fabs(eye.x), std::fmax(std::fabs(eye.y), std::fabs(eye.z)));
    Set(exact, 12 + column, -Dot(axis, eye), std::fmax(LargestTerm(axis, eye), reach));
}

// ---- in the reference's order of float operations ----
float Dot(const kvVector3& a, const kvVector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
kvVector3 Cross(const kvVector3& a, const kvVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
kvVector3 Unit(const kvVector3& v)
{
    const float length = sqrtf(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

} // namespace

Exact ExactProduct(const kvMatrix& a, const kvMatrix& b)
{
    Exact exact = {};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            double sum = 0.0, largest = 0.0;
            for (int k = 0; k < 4; ++k)
            {
                const double term = static_cast<double>(a.m[4 * row + k]) * static_cast<double>(b.m[4 * k + column]);
                sum += term;
                largest = std::fmax(largest, std::fabs(term));
            }
            Set(exact, 4 * row + column, sum, largest);
        }
    return exact;
}

Exact ExactLookAt(const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const Vector from = Widen(eye), to = Widen(at);
    const Vector z = Unit(Vector{to.x - from.x, to.y - from.y, to.z - from.z});
    const Vector x = Unit(Cross(Widen(up), z));
    Exact exact = {};
    SetColumn(exact, 0, x, from);
    SetColumn(exact, 1, Cross(z, x), from);
    SetColumn(exact, 2, z, from);
    Set(exact, 15, 1.0, 1.0);
    return exact;
}

Exact ExactOrtho(float width, float height, float zNear, float zFar)
{
    const double n = static_cast<double>(zNear), f = static_cast<double>(zFar);
    Exact exact = {};
    Set(exact, 0, 2.0 / static_cast<double>(width), 0.0);
    Set(exact, 5, 2.0 / static_cast<double>(height), 0.0);
    Set(exact, 10, 1.0 / (f - n), 0.0);
    Set(exact, 14, n / (n - f), 0.0);
    Set(exact, 15, 1.0, 0.0);
    return exact;
}

Exact ExactPerspective(float width, float height, float zNear, float zFar)
{
    const double n = static_cast<double>(zNear), f = static_cast<double>(zFar);
    Exact exact = {};
    Set(exact, 0, 2.0 * n / static_cast<double>(width), 0.0);
    Set(exact, 5, 2.0 * n / static_cast<double>(height), 0.0);
    Set(exact, 10, f / (f - n), 0.0);
    Set(exact, 11, 1.0, 0.0);
    Set(exact, 14, n * f / (n - f), 0.0);
    return exact;
}

kvMatrix ReferenceProduct(const kvMatrix& a, const kvMatrix& b)
{
    kvMatrix out = {};
    for (int row = 0; row < 16; row += 4)
        for (int column = 0; column < 4; ++column)
            out.m[row + column] = a.m[row] * b.m[column] + a.m[row + 1] * b.m[4 + column] +
                                  a.m[row + 2] * b.m[8 + column] + a.m[row + 3] * b.m[12 + column];
    return out;
}

kvMatrix ReferenceLookAt(const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const kvVector3 z = Unit(kvVector3{at.x - eye.x, at.y - eye.y, at.z - eye.z});
    const kvVector3 x = Unit(Cross(up, z));
    const kvVector3 y = Cross(z, x);
    return {{{x.x, y.x, z.x, 0.0f, x.y, y.y, z.y, 0.0f, x.z, y.z, z.z, 0.0f, -Dot(x, eye), -Dot(y, eye), -Dot(z, eye),
              1.0f}}};
}

kvMatrix ReferenceOrtho(float width, float height, float zNear, float zFar)
{
    kvMatrix out = {};
    out._11 = 2.0f / width;
    out._22 = 2.0f / height;
    out._33 = 1.0f / (zFar - zNear);
    out._43 = zNear / (zNear - zFar);
    out._44 = 1.0f;
    return out;
}

kvMatrix ReferencePerspective(float width, float height, float zNear, float zFar)
{
    kvMatrix out = {};
    out._11 = 2.0f * zNear / width;
    out._22 = 2.0f * zNear / height;
    out._33 = zFar / (zFar - zNear);
    out._34 = 1.0f;
    out._43 = zNear * zFar / (zNear - zFar);
    return out;
}

} // namespace HostCheck
