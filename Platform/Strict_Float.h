#pragma once
// Float arithmetic exactly as written: one rounding per operation, on every target.
//
// Include first in every source that computes. Saved states and traces are compared bit for bit between devices,
// so a compiler that fuses a multiply with an add, reorders a sum or keeps extra precision breaks them silently.

#include <cfloat>

#if defined(__FAST_MATH__) || defined(_M_FP_FAST) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
#error "fast-math changes results: build without -ffast-math and -ffinite-math-only"
#endif
#if !defined(FLT_EVAL_METHOD) || FLT_EVAL_METHOD != 0
#error "float operations must round to float: build with SSE2 (x86) or VFP (ARM) arithmetic"
#endif

#if defined(__clang__)
#pragma clang fp contract(off)
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#elif defined(_MSC_VER)
#pragma fp_contract(off)
#endif
