// The inverse of a matrix. Matrix_Adjugate.h defines it, and two faster ways give the same bits (NaN payloads aside):
// one for the matrices of flat cameras, and on x86 one for any matrix.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Matrix_Invert.h"

#include "Files/Graphics/Matrix_Adjugate.h"
#include "Platform/Matrix.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace
{

// ---- flat matrices: the view of a camera that looks straight along z, its parallel projection, their product ----
//
//   a b 0 0      Where a factor is zero, so is the term: nothing is infinite, and below 2^40 no product of three
//   c d 0 0      overflows. Leaving such terms out of a sum changes no bit unless all six are zeros. That sum is +0:
//   0 0 e 0      for -0 all six signs would have to be minus, but the three terms that enter with a plus and the three
//   x y z 1      that enter with a minus are products of the same nine factors. Adding +0 gives just that.

constexpr uint32_t ABSOLUTE = 0x7FFFFFFF;
constexpr uint32_t SMALL = 0x53800000; // 2^40
constexpr uint32_t ZERO = 1;
constexpr uint32_t ONE = 0x3F800000;

// What the magnitudes of a flat matrix lie below, compared as bits; NaN and infinity are above.
alignas(16) constexpr uint32_t FLAT_LIMITS[16] = {SMALL, SMALL, ZERO,  ZERO, SMALL, SMALL, ZERO,  ZERO, //
                                                  ZERO,  ZERO,  SMALL, ZERO, SMALL, SMALL, SMALL, ONE + 1};

#if defined(__SSE2__)

inline __m128i BelowLimits(__m128 row, const uint32_t* limits)
{
    const __m128i magnitudes = _mm_and_si128(_mm_castps_si128(row), _mm_set1_epi32(ABSOLUTE));
    return _mm_cmpgt_epi32(_mm_load_si128(reinterpret_cast<const __m128i*>(limits)), magnitudes);
}

template <int Index> inline float Lane(__m128 v) { return _mm_cvtss_f32(_mm_shuffle_ps(v, v, Index)); }

// A row without column i in lane i: the low, mid and high column of what remains.
struct Row
{
    __m128 low, mid, high;

    // Where row + column of an entry is odd, its terms turn their signs: half of the lanes do so here, with the first
    // factor, and the other half through Minors or MinorsTurned. The same bits, since negation is exact.
    explicit Row(__m128 r)
        : low(_mm_xor_ps(_mm_shuffle_ps(r, r, _MM_SHUFFLE(0, 0, 0, 1)), _mm_setr_ps(0.0f, -0.0f, 0.0f, -0.0f))),
          mid(_mm_shuffle_ps(r, r, _MM_SHUFFLE(1, 1, 2, 2))), high(_mm_shuffle_ps(r, r, _MM_SHUFFLE(2, 3, 3, 3)))
    {
    }
};

inline __m128 Term(__m128 first, __m128 second, __m128 third) { return _mm_mul_ps(_mm_mul_ps(first, second), third); }

// Four entries of the adjugate at once, a column of it, from the three rows that remain; in the definition's order.
inline __m128 Minors(const Row& a, const Row& b, const Row& c)
{
    __m128 sum = _mm_sub_ps(Term(a.low, b.mid, c.high), Term(a.low, b.high, c.mid));
    sum = _mm_sub_ps(sum, Term(b.low, a.mid, c.high));
    sum = _mm_add_ps(sum, Term(b.low, a.high, c.mid));
    sum = _mm_add_ps(sum, Term(c.low, a.mid, b.high));
    return _mm_sub_ps(sum, Term(c.low, a.high, b.mid));
}

// The same with all six signs turned.
inline __m128 MinorsTurned(const Row& a, const Row& b, const Row& c)
{
    __m128 sum = _mm_sub_ps(Term(a.low, b.high, c.mid), Term(a.low, b.mid, c.high));
    sum = _mm_add_ps(sum, Term(b.low, a.mid, c.high));
    sum = _mm_sub_ps(sum, Term(b.low, a.high, c.mid));
    sum = _mm_sub_ps(sum, Term(c.low, a.mid, b.high));
    return _mm_add_ps(sum, Term(c.low, a.high, b.mid));
}

// A matrix in registers.
struct Rows
{
    __m128 r0, r1, r2, r3;

    explicit Rows(const float* m)
        : r0(_mm_loadu_ps(m)), r1(_mm_loadu_ps(m + 4)), r2(_mm_loadu_ps(m + 8)), r3(_mm_loadu_ps(m + 12))
    {
    }
    Rows(__m128 row0, __m128 row1, __m128 row2, __m128 row3) : r0(row0), r1(row1), r2(row2), r3(row3) {}

    // Each entry times 1 / determinant.
    void StoreDivided(float* m, float determinant) const
    {
        const __m128 s = _mm_set1_ps(1.0f / determinant);
        _mm_storeu_ps(m, _mm_mul_ps(r0, s));
        _mm_storeu_ps(m + 4, _mm_mul_ps(r1, s));
        _mm_storeu_ps(m + 8, _mm_mul_ps(r2, s));
        _mm_storeu_ps(m + 12, _mm_mul_ps(r3, s));
    }

    bool IsBelowFlatLimits() const
    {
        const __m128i below =
            _mm_and_si128(_mm_and_si128(BelowLimits(r0, FLAT_LIMITS), BelowLimits(r1, FLAT_LIMITS + 4)),
                          _mm_and_si128(BelowLimits(r2, FLAT_LIMITS + 8), BelowLimits(r3, FLAT_LIMITS + 12)));
        return _mm_movemask_epi8(below) == 0xFFFF;
    }
};

inline bool InvertFlat(float* inverse, const Rows& m)
{
    const __m128 turn12 = _mm_setr_ps(0.0f, -0.0f, -0.0f, 0.0f);
    const __m128 zero = _mm_setzero_ps();
    const __m128 acbd = _mm_unpacklo_ps(m.r0, m.r1);
    const __m128 ze = _mm_unpackhi_ps(m.r3, m.r2); // z e 1 0
    const __m128 eeee = _mm_shuffle_ps(m.r2, m.r2, _MM_SHUFFLE(2, 2, 2, 2));

    // de -be -ce ae
    const __m128 dbca = _mm_shuffle_ps(acbd, acbd, _MM_SHUFFLE(0, 1, 2, 3));
    const __m128 block = _mm_xor_ps(_mm_mul_ps(dbca, eeee), turn12);
    const __m128 terms = _mm_mul_ps(m.r0, _mm_shuffle_ps(block, block, _MM_SHUFFLE(2, 2, 2, 0)));
    const float determinant = Lane<0>(terms) + Lane<1>(terms);
    if (determinant == 0.0f)
        return false;

    // ce ae ad ad, then cey aey adz ade; xd xb cb cb, then xde xbe cbz cbe
    const __m128 u = _mm_mul_ps(_mm_shuffle_ps(acbd, acbd, _MM_SHUFFLE(0, 0, 0, 1)),
                                _mm_shuffle_ps(eeee, m.r1, _MM_SHUFFLE(1, 1, 0, 0)));
    const __m128 v = _mm_mul_ps(_mm_shuffle_ps(m.r3, m.r1, _MM_SHUFFLE(0, 0, 0, 0)),
                                _mm_shuffle_ps(acbd, acbd, _MM_SHUFFLE(2, 2, 2, 3)));
    const __m128 place = _mm_sub_ps(_mm_mul_ps(u, _mm_shuffle_ps(m.r3, ze, _MM_SHUFFLE(1, 0, 1, 1))),
                                    _mm_mul_ps(v, _mm_shuffle_ps(eeee, ze, _MM_SHUFFLE(1, 0, 0, 0))));
    const __m128 depth = _mm_and_ps(_mm_sub_ps(u, v), _mm_castsi128_ps(_mm_setr_epi32(0, 0, -1, 0)));

    Rows(_mm_add_ps(_mm_movelh_ps(block, zero), zero), _mm_add_ps(_mm_movehl_ps(zero, block), zero),
         _mm_add_ps(depth, zero), _mm_add_ps(_mm_xor_ps(place, turn12), zero))
        .StoreDivided(inverse, determinant);
    return true;
}

inline bool InvertAny(float* inverse, const Rows& m)
{
    const Row r0(m.r0), r1(m.r1), r2(m.r2), r3(m.r3);
    __m128 column0 = Minors(r1, r2, r3);
    const __m128 terms = _mm_mul_ps(m.r0, column0);
    const float determinant = Lane<0>(terms) + Lane<1>(terms) + Lane<2>(terms) + Lane<3>(terms);
    if (determinant == 0.0f)
        return false;
    __m128 column1 = MinorsTurned(r0, r2, r3);
    __m128 column2 = Minors(r0, r1, r3);
    __m128 column3 = MinorsTurned(r0, r1, r2);
    _MM_TRANSPOSE4_PS(column0, column1, column2, column3);
    Rows(column0, column1, column2, column3).StoreDivided(inverse, determinant);
    return true;
}

} // namespace

bool InvertTo(kvMatrix& inverse, const kvMatrix& matrix)
{
    const Rows m(matrix.m);
    return matrix.u[15] == ONE && m.IsBelowFlatLimits() ? InvertFlat(inverse.m, m) : InvertAny(inverse.m, m);
}

#else

inline bool IsFlat(const kvMatrix& matrix)
{
    for (int i = 0; i < 16; ++i)
    {
        if ((matrix.u[i] & ABSOLUTE) >= FLAT_LIMITS[i])
            return false;
    }
    return matrix.u[15] == ONE;
}

inline bool InvertFlat(kvMatrix& inverse, const kvMatrix& m)
{
    constexpr float zero = 0.0f;
    const float a = m._11, b = m._12, c = m._21, d = m._22, e = m._33, x = m._41, y = m._42, z = m._43;
    const float ad = a * d, cb = c * b, ae = a * e, ce = c * e, de = d * e;
    const float determinant = a * de + b * -ce;
    if (determinant == 0.0f)
        return false;
    inverse = {{{
        de + zero, -(b * e) + zero, zero, zero,                                                                    //
        -ce + zero, ae + zero, zero, zero,                                                                         //
        zero, zero, ad - cb + zero, zero,                                                                          //
        ce * y - x * d * e + zero, -(ae * y) + x * b * e + zero, -(ad * z) + cb * z + zero, ad * e - cb * e + zero //
    }}};
    const float s = 1.0f / determinant;
    for (float& entry : inverse.m)
        entry *= s;
    return true;
}

} // namespace

bool InvertTo(kvMatrix& inverse, const kvMatrix& matrix)
{
    if (IsFlat(matrix))
        return InvertFlat(inverse, matrix);
    kvMatrix m = matrix;
    const bool regular = InvertByDefinition(m.m);
    if (regular)
        inverse = m;
    return regular;
}

#endif

bool kvMatrix::Invert() { return InvertTo(*this, *this); }
