#pragma once
// Four floats in one register, on x86, and by the same names in WebAssembly with vectors. An operation works lane by
// lane and rounds as the operation on one float does, so that code on lanes gives the bits of the code that it
// replaces. For sources that compute with matrices; no host needs it. Everything here is local to who includes it.

#if defined(__SSE2__)

#include <emmintrin.h>

namespace Lanes
{

// Lanes A, B, C, D of v, in this order.
template <int A, int B, int C, int D> static inline __m128 Pick(__m128 v)
{
    return _mm_castsi128_ps(_mm_shuffle_epi32(_mm_castps_si128(v), _MM_SHUFFLE(D, C, B, A)));
}

// Lanes A, B of v, then lanes C, D of w.
template <int A, int B, int C, int D> static inline __m128 Pick(__m128 v, __m128 w)
{
    return _mm_shuffle_ps(v, w, _MM_SHUFFLE(D, C, B, A));
}

// One lane of v in all four.
template <int Lane> static inline __m128 Spread(__m128 v) { return Pick<Lane, Lane, Lane, Lane>(v); }

// One lane of v where it is, +0 in the others.
template <int Lane> static inline __m128 Only(__m128 v)
{
    return _mm_and_ps(v, _mm_castsi128_ps(_mm_setr_epi32(-(Lane == 0), -(Lane == 1), -(Lane == 2), -(Lane == 3))));
}

static inline float First(__m128 v) { return _mm_cvtss_f32(v); }

// The absolute values; of a NaN, a NaN.
static inline __m128 Magnitudes(__m128 v) { return _mm_andnot_ps(_mm_set1_ps(-0.0f), v); }

// Whether a comparison holds in all four lanes.
static inline bool InAll(__m128 comparison) { return _mm_movemask_ps(comparison) == 0xF; }

} // namespace Lanes

#endif
