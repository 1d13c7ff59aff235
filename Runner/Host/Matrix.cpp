#include "Platform/Strict_Float.h"

#include "Platform/Matrix.h"

#include "Platform/Lanes.h"

#include <cmath>
#include <limits>

// The order of operations is part of the contract, because saved states and traces are compared bit for bit: sums and
// products are evaluated from left to right as written, and each operation rounds to float.

#if defined(__SSE2__)

// Four lanes at a time, with the operations in the order of the scalar definitions below, so that all bits are equal.

namespace
{
using Lanes::Magnitudes;
using Lanes::Only;
using Lanes::Pick;
using Lanes::Spread;

inline __m128 Load(const kvVector3& v)
{
    const __m128 xy = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&v.x)));
    return _mm_movelh_ps(xy, _mm_load_ss(&v.z));
}

// Every lane divided by 1 - 2^-24, the float below 1. The quotient exceeds a float by half a unit in the last place to
// a whole one, so that it rounds to the next float, but for numbers below the normal ones, which stay.
inline __m128 DividedByOneBelow(__m128 v)
{
    const __m128 normal = _mm_cmpge_ps(Magnitudes(v), _mm_set1_ps(std::numeric_limits<float>::min()));
    const __m128i step = _mm_srli_epi32(_mm_castps_si128(normal), 31);
    return _mm_castsi128_ps(_mm_add_epi32(_mm_castps_si128(v), step));
}

// Skips the root and the division when the squared length is 1 or a float beside it: the root of 1 and of the next
// float is 1, that of the float below 1 is that float. The side vectors of nearly all flat cameras have such a length.
inline __m128 Normalised(__m128 v)
{
    const __m128 squares = _mm_mul_ps(v, v);
    const __m128 sum = _mm_add_ss(_mm_add_ss(squares, Spread<1>(squares)), Spread<2>(squares));
    constexpr uint32_t belowOne = 0x3F7FFFFF; // the bits of the float below 1; those of 1 and of the next follow
    const uint32_t beyond = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_castps_si128(sum))) - belowOne;
    if (beyond > 2)
        return _mm_div_ps(v, Spread<0>(_mm_sqrt_ss(sum)));
    return beyond == 0 ? DividedByOneBelow(v) : v;
}

// True when x and y are zero and |z| lies in [1e-15, 1e15]. Within these bounds z * z neither overflows nor underflows
// and sqrtf(z * z) == |z| exactly, so the root can be skipped.
inline bool PointsAlongZ(__m128 v)
{
    const __m128 sizes = Magnitudes(v);
    const __m128 least = _mm_setr_ps(0.0f, 0.0f, 1e-15f, 0.0f), most = _mm_setr_ps(0.0f, 0.0f, 1e15f, 0.0f);
    return Lanes::InAll(_mm_and_ps(_mm_cmpge_ps(sizes, least), _mm_cmple_ps(sizes, most)));
}

// Flat cameras look along z. The unit vector then is (0, 0, 1), with the sign that each component had.
inline __m128 DirectionOf(__m128 v)
{
    if (!PointsAlongZ(v))
        return Normalised(v);
    return _mm_or_ps(_mm_and_ps(v, _mm_set1_ps(-0.0f)), _mm_setr_ps(0.0f, 0.0f, 1.0f, 0.0f));
}

// Rotating the difference instead of both factors saves a shuffle.
inline __m128 Cross(__m128 a, __m128 b)
{
    return Pick<1, 2, 0, 3>(_mm_sub_ps(_mm_mul_ps(a, Pick<1, 2, 0, 3>(b)), _mm_mul_ps(Pick<1, 2, 0, 3>(a), b)));
}

// One row of a product. Each lane is a column.
inline __m128 RowTimes(const float* row, __m128 b0, __m128 b1, __m128 b2, __m128 b3)
{
    const __m128 a = _mm_loadu_ps(row);
    const __m128 sum = _mm_add_ps(_mm_mul_ps(Spread<0>(a), b0), _mm_mul_ps(Spread<1>(a), b1));
    return _mm_add_ps(_mm_add_ps(sum, _mm_mul_ps(Spread<2>(a), b2)), _mm_mul_ps(Spread<3>(a), b3));
}
} // namespace

void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    const __m128 b0 = _mm_loadu_ps(b.m), b1 = _mm_loadu_ps(b.m + 4);
    const __m128 b2 = _mm_loadu_ps(b.m + 8), b3 = _mm_loadu_ps(b.m + 12);
#pragma GCC unroll 4
    for (int row = 0; row < 16;
         row += 4) // out may be a or b: b is in registers, and each row of a is read before it is written
        _mm_storeu_ps(out.m + row, RowTimes(a.m + row, b0, b1, b2, b3));
}

void kvMatrix::LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const __m128 from = Load(eye);
    const __m128 z = DirectionOf(_mm_sub_ps(Load(at), from));
    const __m128 x = Normalised(Cross(Load(up), z));
    __m128 row0 = x, row1 = Cross(z, x), row2 = z, row3 = _mm_setzero_ps();
    _MM_TRANSPOSE4_PS(row0, row1, row2, row3); // row3 receives the fourth lanes and is not used

    const __m128 sum = _mm_add_ps(_mm_mul_ps(row0, Spread<0>(from)), _mm_mul_ps(row1, Spread<1>(from)));
    const __m128 place = _mm_add_ps(sum, _mm_mul_ps(row2, Spread<2>(from)));
    const __m128 lanes012 = _mm_castsi128_ps(_mm_setr_epi32(-1, -1, -1, 0));
    _mm_storeu_ps(out.m, row0);
    _mm_storeu_ps(out.m + 4, row1);
    _mm_storeu_ps(out.m + 8, row2);
    _mm_storeu_ps(out.m + 12, _mm_xor_ps(_mm_and_ps(place, lanes012), _mm_setr_ps(-0.0f, -0.0f, -0.0f, 1.0f)));
}

void kvMatrix::OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    const __m128 quotients =
        _mm_div_ps(_mm_setr_ps(2.0f, 2.0f, 1.0f, zNear), _mm_setr_ps(width, height, zFar - zNear, zNear - zFar));
    const __m128 withOnes = _mm_unpackhi_ps(quotients, _mm_set1_ps(1.0f));
    _mm_storeu_ps(out.m, Only<0>(quotients));
    _mm_storeu_ps(out.m + 4, Only<1>(quotients));
    _mm_storeu_ps(out.m + 8, Only<2>(quotients));
    _mm_storeu_ps(out.m + 12, _mm_shuffle_ps(_mm_setzero_ps(), withOnes, _MM_SHUFFLE(3, 2, 0, 0)));
}

#else

namespace
{
kvVector3 Difference(const kvVector3& a, const kvVector3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }

float Dot(const kvVector3& a, const kvVector3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

kvVector3 Cross(const kvVector3& a, const kvVector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// A vector of length zero gives NaN.
kvVector3 Normalised(const kvVector3& v)
{
    const float length = sqrtf(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}
} // namespace

// out may be a or b: b is read first, and each row of a is read before it is written.
void kvMatrix::Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b)
{
    const float b11 = b._11, b12 = b._12, b13 = b._13, b14 = b._14;
    const float b21 = b._21, b22 = b._22, b23 = b._23, b24 = b._24;
    const float b31 = b._31, b32 = b._32, b33 = b._33, b34 = b._34;
    const float b41 = b._41, b42 = b._42, b43 = b._43, b44 = b._44;
    for (int row = 0; row < 16; row += 4)
    {
        const float x = a.m[row], y = a.m[row + 1], z = a.m[row + 2], w = a.m[row + 3];
        out.m[row] = x * b11 + y * b21 + z * b31 + w * b41;
        out.m[row + 1] = x * b12 + y * b22 + z * b32 + w * b42;
        out.m[row + 2] = x * b13 + y * b23 + z * b33 + w * b43;
        out.m[row + 3] = x * b14 + y * b24 + z * b34 + w * b44;
    }
}

void kvMatrix::LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up)
{
    const kvVector3 z = Normalised(Difference(at, eye));
    const kvVector3 x = Normalised(Cross(up, z));
    const kvVector3 y = Cross(z, x);

    out = {{{
        x.x, y.x, z.x, 0.0f,                           //
        x.y, y.y, z.y, 0.0f,                           //
        x.z, y.z, z.z, 0.0f,                           //
        -Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1.0f //
    }}};
}

void kvMatrix::OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {{{
        2.0f / width, 0.0f, 0.0f, 0.0f,          //
        0.0f, 2.0f / height, 0.0f, 0.0f,         //
        0.0f, 0.0f, 1.0f / (zFar - zNear), 0.0f, //
        0.0f, 0.0f, zNear / (zNear - zFar), 1.0f //
    }}};
}

#endif

void kvMatrix::PerspectiveLH(kvMatrix& out, float width, float height, float zNear, float zFar)
{
    out = {};
    out._11 = 2.0f * zNear / width;
    out._22 = 2.0f * zNear / height;
    out._33 = zFar / (zFar - zNear);
    out._34 = 1.0f;
    out._43 = zNear * zFar / (zNear - zFar);
}
