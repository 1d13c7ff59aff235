#pragma once
// What compilers spell differently, one macro each. Tested with GCC and clang on Linux; the spellings for Microsoft's
// compiler and what clang makes of these on macOS have not been tried.

// Before "inline" and the type: the function is inlined at every level of optimisation.
// The printf check takes the numbers of two parameters, the format and the first that it formats, counted from 1.
// A weak definition yields to a host's own. Microsoft's compiler has none for functions: a host that brings its own
// there leaves the module's out of its build.
#if defined(_MSC_VER) && !defined(__clang__)
#define CAMERA_ALWAYS_INLINE __forceinline
#define CAMERA_PRINTF(text, first)
#define CAMERA_WEAK_DATA __declspec(selectany)
#define CAMERA_WEAK_FUNCTION
#else
#define CAMERA_ALWAYS_INLINE inline __attribute__((always_inline))
#define CAMERA_PRINTF(text, first) __attribute__((format(printf, text, first)))
#define CAMERA_WEAK_DATA __attribute__((weak))
#define CAMERA_WEAK_FUNCTION __attribute__((weak))
#endif
