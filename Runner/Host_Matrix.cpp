#include "Platform/Strict_Float.h"

#include "Platform/Matrix.h"

#include <cmath>

// The order of operations is part of what these functions promise, because saved states and traces are compared bit for
// bit: every sum and every product goes from left to right as written, and each operation rounds to float.

namespace
{
kvVector3 Difference(const kvVector3& a, const kvVector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }

float Dot(const kvVector3& a, const kvVector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

kvVector3 Cross(const kvVector3& a, const kvVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// A vector without length has no direction: it comes out as not a number.
kvVector3 Normalised(const kvVector3& v)
{
    const float length = sqrtf(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}
} // namespace

void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    kvMatrix product;
    for (int row = 0; row < 4; ++row)
    {
        const float* r = a.m + 4 * row;
        for (int column = 0; column < 4; ++column)
        {
            const float* c = b.m + column;
            product.m[4 * row + column] = r[0] * c[0] + r[1] * c[4] + r[2] * c[8] + r[3] * c[12];
        }
    }
    out = product;
}

void kvMatrix::LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const kvVector3 z = Normalised(Difference(at, eye));
    const kvVector3 x = Normalised(Cross(up, z));
    const kvVector3 y = Cross(z, x);

    const kvMatrix view = {{{
        x.x, y.x, z.x, 0.0f,                            //
        x.y, y.y, z.y, 0.0f,                            //
        x.z, y.z, z.z, 0.0f,                            //
        -Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1.0f, //
    }}};
    out = view;
}

void kvMatrix::OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {};
    out._11 = 2.0f / width;
    out._22 = 2.0f / height;
    out._33 = 1.0f / (zFar - zNear);
    out._43 = zNear / (zNear - zFar);
    out._44 = 1.0f;
}

void kvMatrix::PerspectiveLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {};
    out._11 = 2.0f * zNear / width;
    out._22 = 2.0f * zNear / height;
    out._33 = zFar / (zFar - zNear);
    out._34 = 1.0f;
    out._43 = zNear * zFar / (zNear - zFar);
}
