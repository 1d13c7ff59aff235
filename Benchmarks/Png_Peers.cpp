#include "Benchmarks/Png_Peers.h"

#include <lodepng.h>
#include <png.h>
#include <spng.h>
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

#include <cstdio>
#include <memory>

namespace
{
struct Close
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

// As the library's manual shows it.
bool WriteLibpng(const char* path, std::vector<uint8_t>& pixels, int width, int height)
{
    const File file(std::fopen(path, "wb"));
    if (file == nullptr)
        return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file.get());
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, PNG_COLOR_TYPE_RGBA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    std::vector<png_bytep> rows(static_cast<size_t>(height));
    for (size_t y = 0; y < rows.size(); ++y)
        rows[y] = pixels.data() + y * static_cast<size_t>(width) * 4;
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

bool WriteSpng(const char* path, std::vector<uint8_t>& pixels, int width, int height)
{
    const File file(std::fopen(path, "wb"));
    const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free);
    if (file == nullptr || context == nullptr)
        return false;
    spng_ihdr header = {};
    header.width = static_cast<uint32_t>(width);
    header.height = static_cast<uint32_t>(height);
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
    header.bit_depth = 8;
    return spng_set_png_file(context.get(), file.get()) == 0 && spng_set_ihdr(context.get(), &header) == 0 &&
           spng_encode_image(context.get(), pixels.data(), pixels.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE) == 0;
}

bool WriteLodepng(const char* path, std::vector<uint8_t>& pixels, int width, int height)
{
    return lodepng::encode(path, pixels, static_cast<unsigned>(width), static_cast<unsigned>(height)) == 0;
}

bool WriteStb(const char* path, std::vector<uint8_t>& pixels, int width, int height)
{
    return stbi_write_png(path, width, height, 4, pixels.data(), width * 4) != 0;
}
} // namespace

const Bench::PngPeer Bench::PNG_PEERS[PNG_PEER_COUNT] = {{"libpng", WriteLibpng, true},
                                                         {"libspng", WriteSpng, false},
                                                         {"lodepng", WriteLodepng, false},
                                                         {"stb", WriteStb, false}};

std::vector<uint8_t> Bench::DecodePng(const std::vector<uint8_t>& file)
{
    std::vector<uint8_t> pixels;
    unsigned width, height;
    if (lodepng::decode(pixels, width, height, file) != 0)
        pixels.clear();
    return pixels;
}
