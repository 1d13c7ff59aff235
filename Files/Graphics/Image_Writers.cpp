#include "Files/Graphics/Image_Writers.h"

#include "Files/Graphics/Memory_Tag.h"
#include "Files/IO/Debug_Console.h"
#include "Files/IO/Load_Save.h"
#include "Platform/Memory_Manager.h"

#include <algorithm>
#include <climits>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <png.h>

#if defined(__x86_64__) || defined(__i386__)
#include <tmmintrin.h>
#endif

namespace
{

// ---- BMP ----

constexpr int BMP_LINE = 189; // the line under which hosts track BMP blocks
constexpr int BMP_HEADER = 54;
constexpr int BMP_PIXEL = 3;

unsigned char* PutWord(unsigned char* out, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        *out++ = static_cast<unsigned char>(value >> (8 * i));
    return out;
}

void PutHeader(unsigned char* out, int fileSize, int width, int height)
{
    const auto word = [&](int value) { out = PutWord(out, static_cast<uint32_t>(value), 4); };
    const auto half = [&](uint32_t value) { out = PutWord(out, value, 2); };
    *out++ = 'B';
    *out++ = 'M';
    word(fileSize);
    half(0);
    half(0);
    word(BMP_HEADER); // ImageOffset
    word(40);         // SizeofImageHeader
    word(width);
    word(height);                // positive: rows bottom-up
    half(1);                     // Planes
    half(24);                    // BitsPerPixel
    word(0);                     // Compression
    word(fileSize - BMP_HEADER); // CompressedImageSize
    word(0);
    word(0);
    word(0);
    word(0);
}

// The source's bytes; what lies past them reads as 0.
struct PixelSource
{
    const unsigned char* bytes;
    int64_t size;
    int64_t rowBytes;
    int bytesPerPixel;

    unsigned char At(int64_t offset) const { return offset < size ? bytes[offset] : 0; }
};

PixelSource SourceOf(const void* buffer, int width, int height, int bytesPerPixel)
{
    const int64_t rowBytes = buffer != nullptr ? int64_t{width} * std::max(bytesPerPixel, 0) : 0;
    return {static_cast<const unsigned char*>(buffer), rowBytes * height, rowBytes, std::max(bytesPerPixel, 0)};
}

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "pixels are taken out of words by their place in memory");

// Sixteen bytes of four pixels become twelve, in words of eight: each holds two pixels, the later one above the
// earlier. Answers how many pixels of the row it did: all but the last few.
int PutFours(unsigned char* out, const unsigned char* pixel, int width)
{
    constexpr uint64_t FIRST = 0xFFFFFF;
    constexpr uint64_t SECOND = FIRST << 24;
    int x = 0;
    for (; x + 4 <= width; x += 4, out += 12, pixel += 16)
    {
        uint64_t words[2];
        memcpy(words, pixel, sizeof words);
        const uint64_t low = (words[0] & FIRST) | (words[0] >> 8 & SECOND);
        const uint64_t high = (words[1] & FIRST) | (words[1] >> 8 & SECOND);
        const uint64_t first = low | high << 48;
        const uint32_t second = static_cast<uint32_t>(high >> 16);
        memcpy(out, &first, sizeof first);
        memcpy(out + sizeof first, &second, sizeof second);
    }
    return x;
}

#if defined(__x86_64__) || defined(__i386__)

// The same for sixteen pixels at a time: four registers are packed to twelve bytes each, and three stored.
__attribute__((target("ssse3"))) int ShuffleSixteens(unsigned char* out, const unsigned char* pixel, int width)
{
    const __m128i pack = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
    int x = 0;
    for (; x + 16 <= width; x += 16, out += 48, pixel += 64)
    {
        const __m128i* const from = reinterpret_cast<const __m128i*>(pixel);
        __m128i* const to = reinterpret_cast<__m128i*>(out);
        const __m128i a = _mm_shuffle_epi8(_mm_loadu_si128(from), pack);
        const __m128i b = _mm_shuffle_epi8(_mm_loadu_si128(from + 1), pack);
        const __m128i c = _mm_shuffle_epi8(_mm_loadu_si128(from + 2), pack);
        const __m128i d = _mm_shuffle_epi8(_mm_loadu_si128(from + 3), pack);
        _mm_storeu_si128(to, _mm_or_si128(a, _mm_slli_si128(b, 12)));
        _mm_storeu_si128(to + 1, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
        _mm_storeu_si128(to + 2, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
    }
    return x;
}

int PutMany(unsigned char* out, const unsigned char* pixel, int width)
{
    return __builtin_cpu_supports("ssse3") ? ShuffleSixteens(out, pixel, width) : PutFours(out, pixel, width);
}

#else

int PutMany(unsigned char* out, const unsigned char* pixel, int width) { return PutFours(out, pixel, width); }

#endif

void PutRow(unsigned char* out, const unsigned char* pixel, int width, int bytesPerPixel)
{
    const int done = bytesPerPixel == 4 ? PutMany(out, pixel, width) : 0;
    out += static_cast<ptrdiff_t>(done) * BMP_PIXEL;
    pixel += static_cast<ptrdiff_t>(done) * bytesPerPixel;
    for (int x = done; x < width; ++x, out += BMP_PIXEL, pixel += bytesPerPixel)
        memcpy(out, pixel, BMP_PIXEL);
}

// For pixels narrower than what is stored of them: the last ones reach past the source.
void PutNarrowRow(unsigned char* out, const PixelSource& source, int row, int width)
{
    for (int x = 0; x < width; ++x)
    {
        const int64_t pixel = row * source.rowBytes + int64_t{x} * source.bytesPerPixel;
        for (int byte = 0; byte < BMP_PIXEL; ++byte)
            *out++ = source.At(pixel + byte);
    }
}

void PutPixels(unsigned char* out, const PixelSource& source, int width, int height)
{
    const bool narrow = source.bytesPerPixel < BMP_PIXEL || source.size == 0;
    for (int row = height - 1; row >= 0; --row, out += static_cast<ptrdiff_t>(width) * BMP_PIXEL)
    {
        if (narrow)
            PutNarrowRow(out, source, row, width);
        else
            PutRow(out, source.bytes + row * source.rowBytes, width, source.bytesPerPixel);
    }
}

// ---- PNG ----

constexpr int PATH_SIZE = 2048;

void PNGAPI pngWriteFn(png_structp png_ptr, png_bytep inBytes, png_size_t byteCountToWrite)
{
    _KvFILE* const file = static_cast<_KvFILE*>(png_get_io_ptr(png_ptr));
    if (file != nullptr)
        LoadSave::fwrite(inBytes, 1, static_cast<unsigned>(byteCountToWrite), file);
}

void PNGAPI pngFlushFn(png_structp) {}

bool Report(const char* message)
{
    if (dbg_csol != nullptr)
        dbg_csol->Output(message);
    return false;
}

// The stages of a PNG. libpng reports an error by jumping back into the stage that armed the jump last; each stage arms
// its own, holds nothing that a jump could lose, and has not returned when libpng jumps.

bool InitIO(png_structp png, _KvFILE* file)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during init_io\n");
    png_set_write_fn(png, file, pngWriteFn, pngFlushFn);
    return true;
}

bool WriteHeader(png_structp png, png_infop info, int width, int height)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during writing header\n");
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, PNG_COLOR_TYPE_RGBA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    return true;
}

// Leaves the row table to the caller, who frees it whether libpng jumped or not.
bool WriteRows(png_structp png, void* pixels, int width, int height, png_bytep** rowTable)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during writing bytes");
    png_bytep* const rows = static_cast<png_bytep*>(malloc(static_cast<size_t>(height) * sizeof(png_bytep)));
    *rowTable = rows;
    if (rows == nullptr)
        png_error(png, "out of memory for the row table");
    for (int y = 0; y < height; ++y)
        rows[y] = static_cast<png_bytep>(pixels) + static_cast<size_t>(y) * static_cast<size_t>(width) * 4;
    png_write_image(png, rows);
    return true;
}

bool WriteEnd(png_structp png, png_infop info)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during end of write");
    png_write_end(png, info);
    return true;
}

bool WriteImage(png_structp png, png_infop info, void* pixels, int width, int height, _KvFILE* file)
{
    png_bytep* rowTable = nullptr;
    const bool written = InitIO(png, file) && WriteHeader(png, info, width, height) &&
                         WriteRows(png, pixels, width, height, &rowTable) && WriteEnd(png, info);
    free(rowTable);
    return written;
}

bool WriteFile(_KvFILE* file, void* pixels, int width, int height)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool written = false;
    if (png == nullptr)
        Report("[write_png_file] png_create_write_struct failed\n");
    else if (info == nullptr)
        Report("[write_png_file] png_create_info_struct failed\n");
    else
        written = WriteImage(png, info, pixels, width, height, file);
    png_destroy_write_struct(&png, &info);
    return written;
}

} // namespace

void* CreateBMP(void* _pBuffer, int _width, int _height, int* out_pFileSize, int _bytesPerPixel)
{
    const int64_t pixels = int64_t{_width} * _height;
    const bool fits = pixels <= (INT_MAX - BMP_HEADER) / BMP_PIXEL && pixels >= INT_MIN / BMP_PIXEL;
    *out_pFileSize = fits ? static_cast<int>(BMP_HEADER + BMP_PIXEL * pixels) : 0;
    if (!fits)
        return nullptr;

    const size_t blockSize = static_cast<size_t>(std::max(*out_pFileSize, BMP_HEADER));
    unsigned char* const block =
        static_cast<unsigned char*>(MemoryManager::Alloc(blockSize, MEMORY_TAG, BMP_LINE, true));
    if (block == nullptr)
        return nullptr;
    PutHeader(block, *out_pFileSize, _width, _height);
    if (_width >= 1 && _height >= 1)
        PutPixels(block + BMP_HEADER, SourceOf(_pBuffer, _width, _height, _bytesPerPixel), _width, _height);
    return block;
}

int WritePNG32(char* _pFilename, void* _pBuffer, int _width, int _height)
{
    char path[PATH_SIZE] = {};
    LoadSave::_GetSaveFileName(path, PATH_SIZE, _pFilename);
    EnsureDirectoryIsCreated(path);
    _KvFILE* const file = LoadSave::fopen(path, "wb");
    if (file == nullptr)
        return 0;
    const bool written = WriteFile(file, _pBuffer, _width, _height);
    LoadSave::fclose(file);
    return written ? 1 : 0;
}
