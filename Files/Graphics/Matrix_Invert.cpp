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
        : low(_mm_shuffle_ps(c, c, _MM_SHUFFLE(0, 0, 0, 1))), mid(_mm_shuffle_ps(c, c, _MM_SHUFFLE(1, 1, 2, 2))),
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

const __m128 EVEN_ROW = {0.0f, -0.0f, 0.0f, -0.0f}; // where an entry's sign is turned
const __m128 ODD_ROW = {-0.0f, 0.0f, -0.0f, 0.0f};

// Rows of the adjugate times 1 / determinant, which is m's first row times the adjugate's first column.
inline bool StoreInverse(float (&m)[16], __m128 row0, __m128 row1, __m128 row2, __m128 row3)
{
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

// True for a last column of 0, 0, 0, 1 under entries so small that no product of three overflows.
inline bool IsTameAffine(__m128 column0, __m128 column1, __m128 column2, __m128 column3)
{
    const __m128 sign = _mm_set1_ps(-0.0f);
    const __m128 limit = _mm_set1_ps(1099511627776.0f); // 2^40; false for NaN
    const __m128i unit = _mm_castps_si128(_mm_setr_ps(0.0f, 0.0f, 0.0f, 1.0f));
    const __m128 last = _mm_castsi128_ps(_mm_cmpeq_epi32(_mm_castps_si128(column3), unit));
    const __m128 small = _mm_and_ps(_mm_cmplt_ps(_mm_andnot_ps(sign, column0), limit),
                                    _mm_and_ps(_mm_cmplt_ps(_mm_andnot_ps(sign, column1), limit),
                                               _mm_cmplt_ps(_mm_andnot_ps(sign, column2), limit)));
    return _mm_movemask_ps(_mm_and_ps(last, small)) == 0xF;
}

// A minor of two products that stand alone, in lanes 0 to 2. The definition adds four terms with a factor 0 to them:
// nothing is infinite, so these are zeros and change nothing but the sign of a zero sum. That is never minus: with
// A, B over C, D over P, Q the signs of the minor's entries, all six terms are minus zero only if AQ, PD, CB are
// positive and CQ, PB, AD negative, and then PQ would be both. The sum with +0 makes it so; lane 3, all zeros, is +0
// likewise.
inline __m128 SmallRow(__m128 first, __m128 second)
{
    const __m128 lanes012 = _mm_castsi128_ps(_mm_setr_epi32(-1, -1, -1, 0));
    return _mm_and_ps(_mm_add_ps(_mm_sub_ps(first, second), _mm_setzero_ps()), lanes012);
}

inline bool InvertTameAffine(float (&m)[16], __m128 column0, __m128 column1, __m128 column2)
{
    const Column c1(column1), c2(column2);
    const Column c1Even = c1.Turned(EVEN_ROW);
    const __m128 row0 = SmallRow(_mm_mul_ps(c1Even.low, c2.mid), _mm_mul_ps(c1Even.mid, c2.low));

    const Column c0Odd = Column(column0).Turned(ODD_ROW);
    const Pair p02(c0Odd, c2);
    const __m128 row1 = SmallRow(p02.lowMid, p02.midLow);
    const Pair p01(c0Odd, c1);
    const __m128 row2 = SmallRow(p01.midLow, p01.lowMid);
    return StoreInverse(m, row0, row1, row2, Row(p01, p02, c1, c2));
}

inline bool InvertAny(float (&m)[16], __m128 column0, __m128 column1, __m128 column2, __m128 column3)
{
    const Column c1(column1), c2(column2), c3(column3);
    const Column c1Even = c1.Turned(EVEN_ROW);
    const __m128 row0 = Row(Pair(c1Even, c2), Pair(c1Even, c3), c2, c3);

    const Column c0Odd = Column(column0).Turned(ODD_ROW);
    const Pair p01(c0Odd, c1), p02(c0Odd, c2), p03(c0Odd, c3);
    return StoreInverse(m, row0, Row(p02, p03, c2, c3), RowTurned(p01, p03, c1, c3), Row(p01, p02, c1, c2));
}

} // namespace

bool kvMatrix::Invert()
{
    __m128 column0 = _mm_loadu_ps(m);
    __m128 column1 = _mm_loadu_ps(m + 4);
    __m128 column2 = _mm_loadu_ps(m + 8);
    __m128 column3 = _mm_loadu_ps(m + 12);
    _MM_TRANSPOSE4_PS(column0, column1, column2, column3);
    return IsTameAffine(column0, column1, column2, column3) ? InvertTameAffine(m, column0, column1, column2)
                                                            : InvertAny(m, column0, column1, column2, column3);
}

#else

bool kvMatrix::Invert() { return InvertByDefinition(m); }

#endif
