#include "Files/Graphics/Image_Writers.h"

#include "Files/Graphics/Memory_Tag.h"
#include "Files/Graphics/Pixel_Pack.h"
#include "Platform/Memory_Manager.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <type_traits>

using namespace CameraModule;

namespace
{

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
