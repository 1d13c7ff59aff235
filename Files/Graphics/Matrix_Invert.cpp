#include "Platform/Strict_Float.h"

#include "Files/Graphics/Matrix_Adjugate.h"
#include "Platform/Matrix.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#if defined(__SSE2__)

namespace
{

// Four entries of the adjugate at once: row i, columns j = 0..3. Lane j leaves out row j of the matrix, so the factors
// of the definition come from the matrix's columns, with the rows that remain in each lane:
//   low = rows 1 0 0 0, mid = rows 2 2 1 1, high = rows 3 3 3 2.
// Each lane does the definition's operations in the definition's order. Where a term's sign is turned, that of its
// first factor is turned instead, or a sum becomes a difference: the same bits, since negation is exact.
struct Column
{
    __m128 low, mid, high;

    explicit Column(__m128 c)
        : low(_mm_shuffle_ps(c, c, _MM_SHUFFLE(0, 0, 0, 1))),
          mid(_mm_shuffle_ps(c, c, _MM_SHUFFLE(1, 1, 2, 2))),
          high(_mm_shuffle_ps(c, c, _MM_SHUFFLE(2, 3, 3, 3)))
    {
    }
    Column(__m128 lowRows, __m128 midRows, __m128 highRows) : low(lowRows), mid(midRows), high(highRows) {}

    Column Turned(__m128 signs) const
    {
        return {_mm_xor_ps(low, signs), _mm_xor_ps(mid, signs), _mm_xor_ps(high, signs)};
    }
};

// The products of the first two factors; a is the leftmost column that remains.
struct Pair
{
    __m128 lowMid, midLow, highLow;

    Pair(const Column& a, const Column& b)
        : lowMid(_mm_mul_ps(a.low, b.mid)), midLow(_mm_mul_ps(a.mid, b.low)), highLow(_mm_mul_ps(a.high, b.low))
    {
    }
};

// a, b: the second and third column that remain; pa, pb pair the first with them.
inline __m128 Row(const Pair& pa, const Pair& pb, const Column& a, const Column& b)
{
    __m128 sum = _mm_sub_ps(_mm_mul_ps(pa.lowMid, b.high), _mm_mul_ps(pb.lowMid, a.high));
    sum = _mm_sub_ps(sum, _mm_mul_ps(pa.midLow, b.high));
    sum = _mm_add_ps(sum, _mm_mul_ps(pb.midLow, a.high));
    sum = _mm_add_ps(sum, _mm_mul_ps(pa.highLow, b.mid));
    return _mm_sub_ps(sum, _mm_mul_ps(pb.highLow, a.mid));
}

// The same from pairs of the other sign.
inline __m128 RowTurned(const Pair& pa, const Pair& pb, const Column& a, const Column& b)
{
    __m128 sum = _mm_sub_ps(_mm_mul_ps(pb.lowMid, a.high), _mm_mul_ps(pa.lowMid, b.high));
    sum = _mm_add_ps(sum, _mm_mul_ps(pa.midLow, b.high));
    sum = _mm_sub_ps(sum, _mm_mul_ps(pb.midLow, a.high));
    sum = _mm_sub_ps(sum, _mm_mul_ps(pa.highLow, b.mid));
    return _mm_add_ps(sum, _mm_mul_ps(pb.highLow, a.mid));
}

} // namespace

bool kvMatrix::Invert()
{
    __m128 column0 = _mm_loadu_ps(m);
    __m128 column1 = _mm_loadu_ps(m + 4);
    __m128 column2 = _mm_loadu_ps(m + 8);
    __m128 column3 = _mm_loadu_ps(m + 12);
    _MM_TRANSPOSE4_PS(column0, column1, column2, column3);
    const __m128 evenRow = _mm_setr_ps(0.0f, -0.0f, 0.0f, -0.0f);
    const __m128 oddRow = _mm_setr_ps(-0.0f, 0.0f, -0.0f, 0.0f);
    const Column c0(column0), c1(column1), c2(column2), c3(column3);

    const Column c1Even = c1.Turned(evenRow);
    const __m128 row0 = Row(Pair(c1Even, c2), Pair(c1Even, c3), c2, c3);

    const Column c0Odd = c0.Turned(oddRow);
    const Pair p01(c0Odd, c1), p02(c0Odd, c2), p03(c0Odd, c3);
    const __m128 row1 = Row(p02, p03, c2, c3);
    const __m128 row2 = RowTurned(p01, p03, c1, c3);
    const __m128 row3 = Row(p01, p02, c1, c2);

    const float det = m[0] * _mm_cvtss_f32(row0) + m[1] * _mm_cvtss_f32(row1) + m[2] * _mm_cvtss_f32(row2) +
                      m[3] * _mm_cvtss_f32(row3);
    if (det == 0.0f)
        return false;

    const __m128 s = _mm_set1_ps(1.0f / det);
    _mm_storeu_ps(m, _mm_mul_ps(row0, s));
    _mm_storeu_ps(m + 4, _mm_mul_ps(row1, s));
    _mm_storeu_ps(m + 8, _mm_mul_ps(row2, s));
    _mm_storeu_ps(m + 12, _mm_mul_ps(row3, s));
    return true;
}

#else

bool kvMatrix::Invert() { return InvertByDefinition(m); }

#endif
