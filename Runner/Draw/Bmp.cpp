#include "Runner/Draw/Bmp.h"

namespace Runner
{
namespace
{
constexpr size_t FILE_HEADER = 14, PICTURE_HEADER = 40, HEADERS = FILE_HEADER + PICTURE_HEADER;
constexpr size_t BYTES_PER_PIXEL = 3;
constexpr size_t PIXELS_PER_METRE = 2835; // 72 to the inch

// Little-endian.
void Append(std::vector<uint8_t>& file, size_t number, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        file.push_back(static_cast<uint8_t>(number >> (8 * i) & 0xFF));
}

void AppendHeaders(std::vector<uint8_t>& file, const Picture& picture, size_t pixelBytes)
{
    file.push_back('B');
    file.push_back('M');
    Append(file, HEADERS + pixelBytes, 4);
    Append(file, 0, 4); // reserved
    Append(file, HEADERS, 4);
    Append(file, PICTURE_HEADER, 4);
    Append(file, static_cast<size_t>(picture.width), 4);
    Append(file, static_cast<size_t>(picture.height), 4); // positive: from the bottom up
    Append(file, 1, 2);                                   // planes
    Append(file, 8 * BYTES_PER_PIXEL, 2);
    Append(file, 0, 4); // uncompressed
    Append(file, pixelBytes, 4);
    Append(file, PIXELS_PER_METRE, 4);
    Append(file, PIXELS_PER_METRE, 4);
    Append(file, 0, 4); // no palette
    Append(file, 0, 4);
}

void AppendRow(std::vector<uint8_t>& file, const Picture& picture, int y, size_t padding)
{
    const uint8_t* pixel = picture.rgba.data() + picture.Offset(0, y);
    for (int x = 0; x < picture.width; ++x, pixel += 4)
    {
        file.push_back(pixel[2]);
        file.push_back(pixel[1]);
        file.push_back(pixel[0]);
    }
    file.insert(file.end(), padding, uint8_t{0});
}
} // namespace

std::vector<uint8_t> EncodeBmp(const Picture& picture)
{
    const size_t rowBytes = static_cast<size_t>(picture.width) * BYTES_PER_PIXEL;
    const size_t padding = (4 - rowBytes % 4) % 4;
    const size_t pixelBytes = (rowBytes + padding) * static_cast<size_t>(picture.height);
    std::vector<uint8_t> file;
    file.reserve(HEADERS + pixelBytes);
    AppendHeaders(file, picture, pixelBytes);
    for (int y = picture.height - 1; y >= 0; --y)
        AppendRow(file, picture, y, padding);
    return file;
}
} // namespace Runner
