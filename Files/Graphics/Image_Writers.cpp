#include "Files/Graphics/Image_Writers.h"

#include "Files/Graphics/Memory_Tag.h"
#include "Files/Graphics/Pixel_Pack.h"
#include "Files/IO/Debug_Console.h"
#include "Files/IO/Load_Save.h"
#include "Platform/Memory_Manager.h"

#include <algorithm>
#include <climits>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include <png.h>

using namespace CameraModule;

namespace
{

// ---- BMP ----

constexpr int BMP_LINE = 189; // fixed by the hosts' tracking of allocations, which knows BMP blocks by this number
constexpr int BMP_HEADER = 54;
constexpr int BMP_PIXEL = PixelPack::STORED;

// The lowest byte first, whatever the processor's own order is.
template <typename Number> unsigned char* PutNumber(unsigned char* out, Number value)
{
    const std::make_unsigned_t<Number> bits = static_cast<std::make_unsigned_t<Number>>(value);
    for (size_t byte = 0; byte < sizeof value; ++byte)
        *out++ = static_cast<unsigned char>(bits >> (CHAR_BIT * byte));
    return out;
}

void PutHeader(unsigned char* out, int fileSize, int width, int height)
{
    const auto word = [&](int32_t value) { out = PutNumber(out, value); };
    const auto half = [&](uint16_t value) { out = PutNumber(out, value); };
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

// The source's bytes. Bytes past its end read as 0.
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

void PutWidePixels(unsigned char* out, const PixelPack::Picture& picture)
{
#if defined(PIXEL_PACK_SHUFFLES)
    if (picture.bytesPerPixel == PixelPack::SHUFFLED && PixelPack::HasShuffles())
        return PixelPack::PackShuffled(out, picture);
#endif
    PixelPack::PackPlain(out, picture);
}

// Pixels of fewer than three bytes: the last bytes to be stored lie past the end of the source.
void PutNarrowPixels(unsigned char* out, const PixelSource& source, int width, int height)
{
    for (int row = height - 1; row >= 0; --row)
    {
        for (int x = 0; x < width; ++x)
        {
            const int64_t pixel = row * source.rowBytes + int64_t{x} * source.bytesPerPixel;
            for (int byte = 0; byte < BMP_PIXEL; ++byte)
                *out++ = source.At(pixel + byte);
        }
    }
}

void PutPixels(unsigned char* out, const void* buffer, int width, int height, int bytesPerPixel)
{
    if (buffer == nullptr || bytesPerPixel < BMP_PIXEL)
        PutNarrowPixels(out, SourceOf(buffer, width, height, bytesPerPixel), width, height);
    else
        PutWidePixels(out, {static_cast<const unsigned char*>(buffer), width, height, bytesPerPixel});
}

// ---- PNG ----

constexpr int PATH_SIZE = 2048;
constexpr char ROWS_FAILED[] = "[write_png_file] Error during writing bytes";

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

// The stages of writing a PNG. libpng reports an error by a longjmp to the last setjmp: each stage has its own, keeps
// no local that the jump could lose, and has not returned when libpng jumps.

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

// Leaves the row table to the caller, who frees it whether libpng jumped or not. A refused table is reported here and
// not through png_error, which would print on the standard error stream, too.
bool WriteRows(png_structp png, void* pixels, int width, int height, png_bytep** rowTable)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report(ROWS_FAILED);
    png_bytep* const rows = static_cast<png_bytep*>(malloc(static_cast<size_t>(height) * sizeof(png_bytep)));
    *rowTable = rows;
    if (rows == nullptr)
        return Report(ROWS_FAILED);
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
        PutPixels(block + BMP_HEADER, _pBuffer, _width, _height, _bytesPerPixel);
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
