#pragma once
// Packers of pictures: three bytes a pixel, bottom row first, without padding. Both store the same 3 * width * height
// bytes and read nothing past the last pixel. Everything here is local to who includes it.

#include "Platform/Compiler.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#include <smmintrin.h>
#define PIXEL_PACK_SHUFFLES __attribute__((target("sse4.1")))
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#define PIXEL_PACK_SHUFFLES
#endif

namespace PixelPack
{

constexpr ptrdiff_t STORED = 3;   // bytes of a pixel
constexpr ptrdiff_t SHUFFLED = 4; // bytes of a source pixel for which there is code with shuffles

struct Picture
{
    const unsigned char* pixels; // top row first, without padding
    int width;
    int height;
    int bytesPerPixel; // at least STORED
};

// Copies four bytes of each pixel, the fourth of which the next pixel overwrites; of the last pixel only three.
static inline void PackRow(unsigned char* out, const unsigned char* pixel, int count, ptrdiff_t distance)
{
    for (; count > 4; count -= 4, out += 4 * STORED, pixel += 4 * distance)
    {
        memcpy(out, pixel, STORED + 1);
        memcpy(out + STORED, pixel + distance, STORED + 1);
        memcpy(out + 2 * STORED, pixel + 2 * distance, STORED + 1);
        memcpy(out + 3 * STORED, pixel + 3 * distance, STORED + 1);
    }
    for (; count > 1; --count, out += STORED, pixel += distance)
        memcpy(out, pixel, STORED + 1);
    if (count == 1)
        memcpy(out, pixel, STORED);
}

// Write the last row first: the caller has just zeroed the block, so its end is still cached. The source is then read
// forwards, as prefetching expects.
template <void (*Row)(unsigned char* out, const unsigned char* pixel, int count, ptrdiff_t distance)>
static CAMERA_ALWAYS_INLINE void PackRows(unsigned char* out, Picture picture)
{
    const ptrdiff_t stored = picture.width * STORED;
    const int64_t rowBytes = int64_t{picture.width} * picture.bytesPerPixel;
    out += stored * picture.height;
    for (int y = 0; y < picture.height; ++y)
        Row(out -= stored, picture.pixels + y * rowBytes, picture.width, picture.bytesPerPixel);
}

// The packer for any processor.
static inline void PackPlain(unsigned char* out, Picture picture) { PackRows<PackRow>(out, picture); }

#if defined(PIXEL_PACK_SHUFFLES)

#if defined(__ARM_NEON)

static inline bool HasShuffles() { return true; }

// One load distributes the bytes of sixteen pixels over four registers; one store interleaves three of them.
static inline void PackSixteen(unsigned char* out, const unsigned char* pixel)
{
    const uint8x16x4_t bytes = vld4q_u8(pixel);
    vst3q_u8(out, {{bytes.val[0], bytes.val[1], bytes.val[2]}});
}

#else

static inline bool HasShuffles() { return __builtin_cpu_supports("sse4.1"); }

PIXEL_PACK_SHUFFLES static inline __m128 Shuffled(const unsigned char* pixel, __m128i order)
{
    return _mm_castsi128_ps(_mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(pixel)), order));
}

PIXEL_PACK_SHUFFLES static inline void Store(unsigned char* out, __m128 bytes)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_castps_si128(bytes));
}

// A shuffle packs the four pixels of a register into twelve bytes, rotated to where they will be stored; three blends
// of 4-byte words join the registers. Blends of floats move bytes unchanged, and unlike byte shifts they do not compete
// with the shuffles for one unit of the processor.
PIXEL_PACK_SHUFFLES static inline void PackSixteen(unsigned char* out, const unsigned char* pixel)
{
    const __m128 a = Shuffled(pixel, _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
    const __m128 b = Shuffled(pixel + 16, _mm_setr_epi8(5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4));
    const __m128 c = Shuffled(pixel + 32, _mm_setr_epi8(10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5, 6, 8, 9));
    const __m128 d = Shuffled(pixel + 48, _mm_setr_epi8(-1, -1, -1, -1, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14));
    Store(out, _mm_blend_ps(a, b, 0b1000));
    Store(out + 16, _mm_blend_ps(b, c, 0b1100));
    Store(out + 32, _mm_blend_ps(c, d, 0b1110));
}

#endif

PIXEL_PACK_SHUFFLES static inline void PackRowBySixteens(unsigned char* out, const unsigned char* pixel, int count,
                                                         ptrdiff_t distance)
{
    for (; count >= 16; count -= 16, out += 16 * STORED, pixel += 16 * SHUFFLED)
        PackSixteen(out, pixel);
    PackRow(out, pixel, count, distance);
}

// The packer for pixels of SHUFFLED bytes.
PIXEL_PACK_SHUFFLES static inline void PackShuffled(unsigned char* out, Picture picture)
{
    PackRows<PackRowBySixteens>(out, picture);
}

#endif

} // namespace PixelPack
