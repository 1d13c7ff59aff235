#pragma once
// The adjugate of a 4x4 matrix: the definition that every faster path must equal bit for bit.

#include "Platform/Strict_Float.h"

#include "Platform/Compiler.h"

namespace CameraModule
{

// Entry (Row, Column) of the adjugate: the cofactor of m's entry (Column, Row), which is the determinant of m without
// that row and that column, negated where Row + Column is odd. r0 < r1 < r2 and c0 < c1 < c2 are the remaining rows and
// columns. The order of the six products, of their factors and of the sum is fixed: saved states hold the bits it
// gives.
template <int Row, int Column> inline float AdjugateEntry(const float (&m)[16])
{
    constexpr int r0 = 4 * (Column == 0 ? 1 : 0);
    constexpr int r1 = 4 * (Column <= 1 ? 2 : 1);
    constexpr int r2 = 4 * (Column <= 2 ? 3 : 2);
    constexpr int c0 = Row == 0 ? 1 : 0;
    constexpr int c1 = Row <= 1 ? 2 : 1;
    constexpr int c2 = Row <= 2 ? 3 : 2;

    if constexpr ((Row + Column) % 2 == 0)
        return m[r0 + c0] * m[r1 + c1] * m[r2 + c2] - m[r0 + c0] * m[r1 + c2] * m[r2 + c1] -
               m[r1 + c0] * m[r0 + c1] * m[r2 + c2] + m[r1 + c0] * m[r0 + c2] * m[r2 + c1] +
               m[r2 + c0] * m[r0 + c1] * m[r1 + c2] - m[r2 + c0] * m[r0 + c2] * m[r1 + c1];
    else
        return -m[r0 + c0] * m[r1 + c1] * m[r2 + c2] + m[r0 + c0] * m[r1 + c2] * m[r2 + c1] +
               m[r1 + c0] * m[r0 + c1] * m[r2 + c2] - m[r1 + c0] * m[r0 + c2] * m[r2 + c1] -
               m[r2 + c0] * m[r0 + c1] * m[r1 + c2] + m[r2 + c0] * m[r0 + c2] * m[r1 + c1];
}

// Always inlined, so that the cofactors share their products of two factors.
template <int Row> CAMERA_ALWAYS_INLINE void AdjugateRow(const float (&m)[16], float* inv)
{
    inv[0] = AdjugateEntry<Row, 0>(m);
    inv[1] = AdjugateEntry<Row, 1>(m);
    inv[2] = AdjugateEntry<Row, 2>(m);
    inv[3] = AdjugateEntry<Row, 3>(m);
}

inline void StoreScaled(float* row, const float* inv, float s)
{
    row[0] = inv[0] * s;
    row[1] = inv[1] * s;
    row[2] = inv[2] * s;
    row[3] = inv[3] * s;
}

// The whole inverse by the definition. False, and nothing stored, when the determinant is exactly zero. inverse may be
// the matrix itself.
inline bool InvertByDefinition(float (&inverse)[16], const float (&m)[16])
{
    float inv[16];
    AdjugateRow<0>(m, inv);
    AdjugateRow<1>(m, inv + 4);
    AdjugateRow<2>(m, inv + 8);
    AdjugateRow<3>(m, inv + 12);

    const float det = m[0] * inv[0] + m[1] * inv[4] + m[2] * inv[8] + m[3] * inv[12];
    if (det == 0.0f)
        return false;

    const float s = 1.0f / det;
    StoreScaled(inverse, inv, s);
    StoreScaled(inverse + 4, inv + 4, s);
    StoreScaled(inverse + 8, inv + 8, s);
    StoreScaled(inverse + 12, inv + 12, s);
    return true;
}

} // namespace CameraModule
