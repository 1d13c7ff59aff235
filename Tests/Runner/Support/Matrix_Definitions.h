#pragma once
// The matrix builders as they are defined: plain float operations, from left to right, each rounded. The tests and the
// proof over hundreds of millions (Tools/Builder_Proof.cpp) share them.

#include "Platform/Strict_Float.h"

#include "Platform/Matrix.h"

#include <cmath>

namespace MatrixDefinitions
{
inline kvMatrix Product(const kvMatrix& a, const kvMatrix& b)
{
    kvMatrix product;
    for (int i = 0; i < 16; ++i)
    {
        const float* const row = a.m + i / 4 * 4;
        const float* const column = b.m + i % 4;
        product.m[i] = row[0] * column[0] + row[1] * column[4] + row[2] * column[8] + row[3] * column[12];
    }
    return product;
}

inline kvVector3 Unit(float x, float y, float z)
{
    const float length = sqrtf(x * x + y * y + z * z);
    return {x / length, y / length, z / length};
}

inline kvMatrix LookAt(const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const kvVector3 z = Unit(at.x - eye.x, at.y - eye.y, at.z - eye.z);
    const kvVector3 x = Unit(up.y * z.z - up.z * z.y, up.z * z.x - up.x * z.z, up.x * z.y - up.y * z.x);
    const kvVector3 y = {z.y * x.z - z.z * x.y, z.z * x.x - z.x * x.z, z.x * x.y - z.y * x.x};
    const auto place = [&](const kvVector3& axis) { return -(axis.x * eye.x + axis.y * eye.y + axis.z * eye.z); };
    return {{{x.x, y.x, z.x, 0, x.y, y.y, z.y, 0, x.z, y.z, z.z, 0, place(x), place(y), place(z), 1}}};
}

inline kvMatrix Ortho(float width, float height, float zNear, float zFar)
{
    return {{{2.0f / width, 0, 0, 0, 0, 2.0f / height, 0, 0, 0, 0, 1.0f / (zFar - zNear), 0, 0, 0,
              zNear / (zNear - zFar), 1}}};
}
} // namespace MatrixDefinitions
