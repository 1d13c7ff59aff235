// The inverse of a matrix: adjugate divided by determinant, as Matrix_Adjugate.h defines it. Two shorter ways give the
// same bits (NaN payloads aside): one for the matrices of flat cameras, one for any matrix, with a row of cofactors in
// a register. GCC and Clang define the operators + - * for __m128.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Matrix_Invert.h"

#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Matrix_Adjugate.h"
#include "Platform/Lanes.h"
#include "Platform/Matrix.h"

#include <cmath>

using namespace CameraModule;

namespace
{

// ---- flat matrices: the view of a camera that looks straight along z, its parallel projection, their product ----
//
//   a b 0 0      A term with a factor zero is zero: no entry is infinite, and below 2^40 no product of three overflows.
//   c d 0 0      Leaving zero terms out of a sum of six changes no bit, unless all six are zeros. Their sum is +0: for
//   0 0 e 0      -0 all six would have to enter as -0, but the three that are added and the three that are subtracted
//   x y z 1      are products of the same nine factors. So each shortened sum gets "+ zero", which makes a -0 a +0.

constexpr uint32_t ONE = 0x3F800000;
[[maybe_unused]] constexpr float SMALL = 1099511627776.0f; // 2^40; only processors with vectors take the short ways
[[maybe_unused]] constexpr float BELOW_2 = 1.99999988f;    // the last one

#if defined(__SSE2__)

using Lanes::First;
using Lanes::InAll;
using Lanes::Magnitudes;
using Lanes::Only;
using Lanes::Pick;
using Lanes::Spread;

// A matrix in registers.
struct Rows
{
    __m128 r0, r1, r2, r3;

    explicit Rows(const float* m)
        : r0(_mm_loadu_ps(m)), r1(_mm_loadu_ps(m + 4)), r2(_mm_loadu_ps(m + 8)), r3(_mm_loadu_ps(m + 12))
    {
    }
    Rows(__m128 row0, __m128 row1, __m128 row2, __m128 row3) : r0(row0), r1(row1), r2(row2), r3(row3) {}

    void Store(float* m) const
    {
        _mm_storeu_ps(m, r0);
        _mm_storeu_ps(m + 4, r1);
        _mm_storeu_ps(m + 8, r2);
        _mm_storeu_ps(m + 12, r3);
    }

    // Stores every entry, multiplied by 1 / determinant.
    void StoreDivided(float* m, float determinant) const
    {
        const __m128 s = _mm_set1_ps(1.0f / determinant);
        Rows(r0 * s, r1 * s, r2 * s, r3 * s).Store(m);
    }
};

// Test |row0| + |row1| at once: a lane that is non-zero, too large or NaN in either row makes the sum fail.
inline bool HasFlatShape(const kvMatrix& matrix, const Rows& m)
{
    if (matrix.u[15] != ONE)
        return false;
    const __m128 rows01 = _mm_add_ps(Magnitudes(m.r0), Magnitudes(m.r1));
    const __m128 rows01Fit = _mm_cmple_ps(rows01, _mm_setr_ps(SMALL, SMALL, 0.0f, 0.0f));
    const __m128 row2Fits = _mm_cmple_ps(Magnitudes(m.r2), _mm_setr_ps(0.0f, 0.0f, SMALL, 0.0f));
    const __m128 row3Fits = _mm_cmple_ps(Magnitudes(m.r3), _mm_setr_ps(SMALL, SMALL, SMALL, 1.0f));
    return InAll(_mm_and_ps(_mm_and_ps(rows01Fit, row2Fits), row3Fits));
}

// Whether a determinant is neither zero nor NaN, by one comparison. No flat shape has a determinant that is NaN.
inline bool IsNonZero(float determinant) { return std::islessgreater(determinant, 0.0f); }

inline bool InvertFlat(float* inverse, const Rows& m)
{
    const __m128 negate12 = _mm_setr_ps(0.0f, -0.0f, -0.0f, 0.0f);
    const __m128 zero = _mm_setzero_ps();
    const __m128 acbd = _mm_unpacklo_ps(m.r0, m.r1);
    const __m128 ze = _mm_unpackhi_ps(m.r3, m.r2); // z e 1 0
    const __m128 eeee = Spread<2>(m.r2);

    // de ce, then ade bce
    const __m128 terms = m.r0 * (Pick<1, 0, 2, 3>(m.r1) * eeee);
    const float determinant = First(terms) - First(Spread<1>(terms));
    if (!IsNonZero(determinant))
        return false;

    const __m128 block = _mm_xor_ps(Pick<3, 2, 1, 0>(acbd) * eeee, negate12); // de -be -ce ae
    // ce ae ad ad, then cey aey adz ade; xd xb cb cb, then xde xbe cbz cbe
    const __m128 u = Pick<1, 0, 0, 0>(acbd) * Pick<0, 0, 1, 1>(eeee, m.r1);
    const __m128 v = Pick<0, 0, 0, 0>(m.r3, m.r1) * Pick<3, 2, 2, 2>(acbd);
    const __m128 row3 = u * Pick<1, 1, 0, 1>(m.r3, ze) - v * Pick<0, 0, 0, 1>(eeee, ze);

    const __m128 s = _mm_set1_ps(1.0f / determinant);
    const __m128 divided = (block + zero) * s;
    const __m128 row2 = (Only<2>(u - v) + zero) * s; // its first two lanes are what the rows above end with
    Rows(Pick<0, 1, 0, 1>(divided, row2), Pick<2, 3, 0, 1>(divided, row2), row2,
         (_mm_xor_ps(row3, negate12) + zero) * s)
        .Store(inverse);
    return true;
}

// Without rotation: b and c are zeros, too.
inline bool InvertUpright(float* inverse, const Rows& m)
{
    const __m128 negate012 = _mm_setr_ps(-0.0f, -0.0f, -0.0f, 0.0f);
    const __m128 zero = _mm_setzero_ps();
    const __m128 ddee = Pick<1, 1, 2, 2>(m.r1, m.r2);
    const __m128 eeee = Spread<2>(m.r2);
    const __m128 de = _mm_mul_ss(ddee, eeee);
    const float determinant = First(_mm_mul_ss(m.r0, de));
    if (!IsNonZero(determinant))
        return false;

    // xd ae ad ad, then xde aey adz ade
    const __m128 u = Pick<0, 1, 1, 1>(_mm_unpacklo_ps(m.r3, m.r0)) * Pick<0, 2, 0, 0>(ddee);
    const __m128 eyze = _mm_move_ss(Pick<1, 1, 0, 1>(m.r3, _mm_unpackhi_ps(m.r3, m.r2)), eeee);

    const __m128 diagonal = _mm_move_ss(u, de) + zero;
    Rows(Only<0>(diagonal), Only<1>(diagonal), Only<2>(diagonal), _mm_xor_ps(u * eyze, negate012) + zero)
        .StoreDivided(inverse, determinant);
    return true;
}

// HasFlatShape of several matrices at once, by a stricter test: entries of the rows 0 to 2 below 2, as those of a view
// larger than one unit are. The bits of numbers, laid over each other, are those of a number no smaller than each,
// which a NaN or an infinity makes one, too. The last rows hold places; their magnitudes are added.
struct ShapesTogether
{
    __m128 rows01, rows2, rows3;
    uint32_t lastEntries;

    ShapesTogether(const kvMatrix& matrix, const Rows& m)
        : rows01(_mm_or_ps(m.r0, m.r1)), rows2(m.r2), rows3(Magnitudes(m.r3)), lastEntries(matrix.u[15] ^ ONE)
    {
    }

    void Add(const kvMatrix& matrix, const Rows& m)
    {
        rows01 = _mm_or_ps(_mm_or_ps(rows01, m.r0), m.r1);
        rows2 = _mm_or_ps(rows2, m.r2);
        rows3 = rows3 + Magnitudes(m.r3);
        lastEntries |= matrix.u[15] ^ ONE;
    }

    bool AreFlat() const
    {
        const __m128 rows01Fit = _mm_cmple_ps(Magnitudes(rows01), _mm_setr_ps(BELOW_2, BELOW_2, 0.0f, 0.0f));
        const __m128 rows2Fit = _mm_cmple_ps(Magnitudes(rows2), _mm_setr_ps(0.0f, 0.0f, BELOW_2, 0.0f));
        const __m128 rows3Fit = _mm_cmple_ps(rows3, _mm_setr_ps(SMALL, SMALL, SMALL, SMALL));
        return InAll(_mm_and_ps(_mm_and_ps(rows01Fit, rows2Fit), rows3Fit)) && lastEntries == 0;
    }
};

inline bool IsUnturned(const kvMatrix& matrix) { return (matrix.u[1] | matrix.u[4]) << 1 == 0; }

// ---- any matrix: one row of the adjugate (four cofactors) at once, in the definition's order ----

// The factors of the cofactors. Lane i omits matrix row i; low/mid/high[c] hold column c of the first, second and third
// remaining row. The signs of cofactors alternate along a row: lanes 1 and 3 get one factor negated, which is exact.
// They alternate from row to row, too: AdjugateOf starts its sums with a plus or with a minus.
struct Columns
{
    __m128 low[4], mid[4], high[4];

    explicit Columns(const Rows& m)
    {
        const __m128 sign = _mm_set1_ps(-0.0f);
        const __m128 negated0 = _mm_xor_ps(m.r0, sign), negated2 = _mm_xor_ps(m.r2, sign);
        const __m128 low01 = _mm_unpacklo_ps(m.r1, negated0), low23 = _mm_unpackhi_ps(m.r1, negated0);
        const __m128 high01 = _mm_unpacklo_ps(m.r3, negated2), high23 = _mm_unpackhi_ps(m.r3, negated2);
        Set<0>(Pick<0, 1, 0, 0>(low01, m.r0), m, Pick<0, 0, 0, 1>(high01));
        Set<1>(Pick<2, 3, 1, 1>(low01, m.r0), m, Pick<2, 2, 2, 3>(high01));
        Set<2>(Pick<0, 1, 2, 2>(low23, m.r0), m, Pick<0, 0, 0, 1>(high23));
        Set<3>(Pick<2, 3, 3, 3>(low23, m.r0), m, Pick<2, 2, 2, 3>(high23));
    }

private:
    template <int C> void Set(__m128 lowRows, const Rows& m, __m128 highRows)
    {
        low[C] = lowRows;
        mid[C] = Pick<C, C, C, C>(m.r2, m.r1);
        high[C] = highRows;
    }
};

// Two of the six terms of each cofactor. Row r of the adjugate omits column r; of the remaining columns c0 < c1 < c2,
// straight[r] is first[c0] second[c1] third[c2], and crossed[r] has c1 and c2 exchanged. Rows share products of two.
struct Terms
{
    __m128 straight[4], crossed[4];

    Terms(const __m128 (&first)[4], const __m128 (&second)[4], const __m128 (&third)[4])
    {
        const __m128 p01 = first[0] * second[1], p02 = first[0] * second[2], p03 = first[0] * second[3];
        const __m128 p12 = first[1] * second[2], p13 = first[1] * second[3];
        straight[0] = p12 * third[3];
        straight[1] = p02 * third[3];
        straight[2] = p01 * third[3];
        straight[3] = p01 * third[2];
        crossed[0] = p13 * third[2];
        crossed[1] = p03 * third[2];
        crossed[2] = p03 * third[1];
        crossed[3] = p02 * third[1];
    }
};

// All rows take two terms, then the next two: the registers do not hold all six.
inline Rows AdjugateOf(const Rows& m)
{
    const Columns of(m);
    const Terms one(of.low, of.mid, of.high);
    __m128 row0 = one.straight[0] - one.crossed[0];
    __m128 row1 = one.crossed[1] - one.straight[1];
    __m128 row2 = one.straight[2] - one.crossed[2];
    __m128 row3 = one.crossed[3] - one.straight[3];
    const Terms two(of.mid, of.low, of.high);
    row0 = row0 - two.straight[0] + two.crossed[0];
    row1 = row1 + two.straight[1] - two.crossed[1];
    row2 = row2 - two.straight[2] + two.crossed[2];
    row3 = row3 + two.straight[3] - two.crossed[3];
    const Terms three(of.high, of.low, of.mid);
    row0 = row0 + three.straight[0] - three.crossed[0];
    row1 = row1 - three.straight[1] + three.crossed[1];
    row2 = row2 + three.straight[2] - three.crossed[2];
    row3 = row3 - three.straight[3] + three.crossed[3];
    return {row0, row1, row2, row3};
}

inline bool InvertAny(float* inverse, const Rows& m, const float* firstRow)
{
    const Rows inv = AdjugateOf(m);
    const float determinant = firstRow[0] * First(inv.r0) + firstRow[1] * First(inv.r1) + firstRow[2] * First(inv.r2) +
                              firstRow[3] * First(inv.r3);
    if (determinant == 0.0f)
        return false;
    inv.StoreDivided(inverse, determinant);
    return true;
}

} // namespace

bool CameraModule::InvertTo(kvMatrix& inverse, const kvMatrix& matrix)
{
    const Rows m(matrix.m);
    if (!HasFlatShape(matrix, m))
        return InvertAny(inverse.m, m, matrix.m);
    return IsUnturned(matrix) ? InvertUpright(inverse.m, m) : InvertFlat(inverse.m, m);
}

// The three inverses of a camera that is taken for flat, as most are, and whether it was: one look at the shapes after
// the work takes less than three before it. The product is not looked at. The product of two flat matrices is flat,
// because the sums that make its zeros have terms of zero only, and its entries are a few times larger at most. Where
// neither factor is turned, it is not either.
bool CCamera::InvertFlatCamera()
{
    const Rows projection(m_projMat.m);
    if (!IsUnturned(m_projMat) || !InvertUpright(m_invProjMat.m, projection))
        return false;
    ShapesTogether shapes(m_projMat, projection);
    const bool unturned = IsUnturned(m_viewMat);
    const Rows product(m_viewProjMat.m);
    bool inverted = unturned ? InvertUpright(m_invViewProjMat.m, product) : InvertFlat(m_invViewProjMat.m, product);
    const Rows view(m_viewMat.m);
    shapes.Add(m_viewMat, view);
    inverted &= unturned ? InvertUpright(m_invViewMat.m, view) : InvertFlat(m_invViewMat.m, view);
    return inverted && shapes.AreFlat();
}

#else

inline bool HasFlatShape(const kvMatrix& matrix)
{
    constexpr uint32_t SMALL_TWICE = 0xA7000000; // the bits of SMALL, moved up by one: without the sign
    const auto isSmall = [](uint32_t bits) { return bits << 1 <= SMALL_TWICE; };
    const uint32_t* const m = matrix.u;
    return (m[2] | m[3] | m[6] | m[7] | m[8] | m[9] | m[11]) << 1 == 0 && m[15] == ONE && isSmall(m[0]) &&
           isSmall(m[1]) && isSmall(m[4]) && isSmall(m[5]) && isSmall(m[10]) && isSmall(m[12]) && isSmall(m[13]) &&
           isSmall(m[14]);
}

inline bool InvertFlat(kvMatrix& inverse, const kvMatrix& m)
{
    constexpr float zero = 0.0f;
    const float a = m._11, b = m._12, c = m._21, d = m._22, e = m._33, x = m._41, y = m._42, z = m._43;
    const float ad = a * d, cb = c * b, ae = a * e, ce = c * e, de = d * e;
    const float determinant = a * de + b * -ce;
    if (determinant == 0.0f)
        return false;

    const float s = 1.0f / determinant;
    const float none = zero * s;
    inverse = {{{
        (de + zero) * s, (zero - b * e) * s, none, none, //
        (zero - ce) * s, (ae + zero) * s, none, none,    //
        none, none, (ad - cb + zero) * s, none,          //
        (ce * y - x * d * e + zero) * s, (x * b * e - ae * y + zero) * s, (cb * z - ad * z + zero) * s,
        (ad * e - cb * e + zero) * s //
    }}};
    return true;
}

} // namespace

bool CameraModule::InvertTo(kvMatrix& inverse, const kvMatrix& matrix)
{
    return HasFlatShape(matrix) ? InvertFlat(inverse, matrix) : InvertByDefinition(inverse.m, matrix.m);
}

bool CCamera::InvertFlatCamera() { return false; } // one after the other is as quick

#endif

void CCamera::UpdateEachInverse()
{
    StoreInverse(m_invProjMat, m_projMat);
    StoreInverse(m_invViewProjMat, m_viewProjMat);
    StoreInverse(m_invViewMat, m_viewMat);
}

bool kvMatrix::Invert() { return InvertTo(*this, *this); }
