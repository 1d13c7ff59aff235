// The image writers.

#include "Benchmarks/Bench.h"
#include "Benchmarks/Png_Peers.h"
#include "Files/Graphics/Graphics_Support.h"
#include "Files/Graphics/Pixel_Pack.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Host/Files.h"

#include <libyuv/convert_from_argb.h>

#include <cstring>
#include <vector>

namespace
{
using namespace Bench;

constexpr size_t BMP_HEADER = 54;
constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;

// Something like a game's picture: a gradient under flat shapes and a little noise.
std::vector<uint8_t> Picture(int width, int height)
{
    Numbers numbers(3);
    std::vector<uint8_t> pixels;
    pixels.reserve(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
        {
            const bool inShape = (x / 96 + y / 96) % 3 == 0;
            const uint32_t noise = numbers.Below(8);
            pixels.push_back(static_cast<uint8_t>(inShape ? 200 : y * 180 / height));
            pixels.push_back(static_cast<uint8_t>(inShape ? 120 : x * 200 / width));
            pixels.push_back(static_cast<uint8_t>(64 + noise));
            pixels.push_back(255);
        }
    return pixels;
}

// ---- BMP ----

using BmpWriter = void* (*)(std::vector<uint8_t>& pixels, int width, int height);

void* BmpOurs(std::vector<uint8_t>& pixels, int width, int height)
{
    int size;
    return CreateBMP(pixels.data(), width, height, &size, 4);
}

// Everybody writes a header; who does not go through the module copies one that stands ready.
const uint8_t* Header(int width, int height)
{
    static uint8_t header[BMP_HEADER];
    static int headerWidth, headerHeight;
    if (width != headerWidth || height != headerHeight)
    {
        std::vector<uint8_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
        void* const image = BmpOurs(pixels, width, height);
        std::memcpy(header, image, BMP_HEADER);
        MemoryManager::Free(image);
        headerWidth = width;
        headerHeight = height;
    }
    return header;
}

uint8_t* NewBmp(int width, int height)
{
    const size_t size = BMP_HEADER + static_cast<size_t>(width) * static_cast<size_t>(height) * 3;
    uint8_t* const block = static_cast<uint8_t*>(MemoryManager::Alloc(size, "benchmark", __LINE__, true));
    std::memcpy(block, Header(width, height), BMP_HEADER);
    return block;
}

void* BmpLibyuv(std::vector<uint8_t>& pixels, int width, int height)
{
    uint8_t* const block = NewBmp(width, height);
    libyuv::ARGBToRGB24(pixels.data(), width * 4, block + BMP_HEADER, width * 3, width, -height);
    return block;
}

// What ours does on a processor without byte shuffles.
void* BmpPlain(std::vector<uint8_t>& pixels, int width, int height)
{
    uint8_t* const block = NewBmp(width, height);
    PixelPack::PackPlain(block + BMP_HEADER, {pixels.data(), width, height, 4});
    return block;
}

// One byte after another.
void* BmpNaive(std::vector<uint8_t>& pixels, int width, int height)
{
    uint8_t* const block = NewBmp(width, height);
    uint8_t* out = block + BMP_HEADER;
    for (int y = height - 1; y >= 0; --y)
        for (int x = 0; x < width; ++x)
        {
            const uint8_t* const pixel = &pixels[static_cast<size_t>((y * width + x) * 4)];
            *out++ = pixel[0];
            *out++ = pixel[1];
            *out++ = pixel[2];
        }
    return block;
}

void WriteBmp(benchmark::State& state, int width, int height, BmpWriter writer)
{
    std::vector<uint8_t> pixels = Picture(width, height);
    Header(width, height);
    for (auto _ : state)
    {
        void* const image = writer(pixels, width, height);
        benchmark::DoNotOptimize(image);
        benchmark::ClobberMemory();
        MemoryManager::Free(image);
    }
}

void CheckBmp(int width, int height, BmpWriter writer, const char* who)
{
    std::vector<uint8_t> pixels = Picture(width, height);
    void* const expected = BmpOurs(pixels, width, height);
    void* const actual = writer(pixels, width, height);
    const size_t size = BMP_HEADER + static_cast<size_t>(width) * static_cast<size_t>(height) * 3;
    Require(std::memcmp(actual, expected, size) == 0, std::string("BMP by ") + who);
    MemoryManager::Free(expected);
    MemoryManager::Free(actual);
}

// ---- PNG ----

bool PngOurs(const char* path, std::vector<uint8_t>& pixels, int width, int height)
{
    std::string name = path;
    return WritePNG32(name.data(), pixels.data(), width, height) == 1;
}

void WritePng(benchmark::State& state, bool (*writer)(const char*, std::vector<uint8_t>&, int, int), bool inSaveArea)
{
    std::vector<uint8_t> pixels = Picture(WIDTH, HEIGHT);
    const std::string path = inSaveArea ? "picture.png" : Runner::SaveArea() + "/peer.png";
    for (auto _ : state)
        if (!writer(path.c_str(), pixels, WIDTH, HEIGHT))
            state.SkipWithError("the file cannot be written");
}

void CheckPng(const PngPeer& peer)
{
    std::vector<uint8_t> pixels = Picture(320, 200);
    const std::string path = Runner::SaveArea() + "/check.png";
    std::vector<uint8_t> bytes;
    std::string why;
    Require(peer.write(path.c_str(), pixels, 320, 200), std::string("PNG by ") + peer.name);
    Require(Runner::ReadWholeFile(path, bytes, why), why);
    Require(DecodePng(bytes) == pixels, std::string("picture read back from the PNG by ") + peer.name);
    if (!peer.givesSameBytes)
        return;
    Require(PngOurs("check_ours.png", pixels, 320, 200), "PNG by us");
    std::vector<uint8_t> ours;
    Require(Runner::ReadWholeFile(Runner::SaveArea() + "/check_ours.png", ours, why), why);
    Require(bytes == ours, std::string("bytes of the PNG by ") + peer.name);
}

void Check()
{
    std::string why;
    Require(Runner::PrepareSaveArea(why), why);
    for (const int side : {1, 3, 64, 333})
    {
        CheckBmp(side, side, BmpLibyuv, "libyuv");
        CheckBmp(side, side, BmpPlain, "baseline instructions");
        CheckBmp(side, side, BmpNaive, "the naive loop");
    }
    for (const PngPeer& peer : PNG_PEERS)
        CheckPng(peer);
}

void AddRows()
{
    const auto add = [](const std::string& size, int width, int height)
    {
        const auto addRow = [=](const std::string& subject, const char* who, BmpWriter writer)
        { Row(subject, who, [=](benchmark::State& state) { WriteBmp(state, width, height, writer); }); };
        addRow(size, "ours", BmpOurs);
        addRow(size, "libyuv", BmpLibyuv);
        addRow(size, "naive", BmpNaive);
        addRow(size + ", baseline", "ours", BmpPlain);
        addRow(size + ", baseline", "naive", BmpNaive);
    };
    add("BMP of 1920 x 1080", WIDTH, HEIGHT);
    add("BMP of 64 x 64", 64, 64);
    Row("PNG of 1920 x 1080", "ours", [](benchmark::State& state) { WritePng(state, PngOurs, true); });
    for (const PngPeer& peer : PNG_PEERS)
        Row("PNG of 1920 x 1080", peer.name, [&peer](benchmark::State& state) { WritePng(state, peer.write, false); });
}
} // namespace

const Bench::Subject Bench::IMAGES = {Check, AddRows};
