#include "Tests/Support/Fixture.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <png.h>
#include <random>

// ---- the library's calls: noted, and failing where a test says so ----
// The test program defines the functions that the module calls and passes them on to the library.
namespace
{
using namespace Recording;

const char* g_failing = ""; // name of the call that fails
bool g_noting = false;
int g_taken = 0, g_returned = 0; // blocks of malloc, while noting

// Holds no object when it is left by a jump.
bool Fails(const char* name)
{
    if (g_noting)
        Note(name);
    return std::strcmp(name, g_failing) == 0;
}

void FailByJump(png_structrp png, const char* name)
{
    if (Fails(name))
        png_error(png, "injected");
}

template <typename Call> Call Library(const char* name) { return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name)); }

std::string g_version;
bool g_ownErrorHandling = false;
} // namespace

extern "C"
{
    png_structp png_create_write_struct(png_const_charp version, png_voidp pointer, png_error_ptr error,
                                        png_error_ptr warning)
    {
        g_version = version;
        g_ownErrorHandling = pointer != nullptr || error != nullptr || warning != nullptr;
        if (Fails("png_create_write_struct"))
            return nullptr;
        return Library<decltype(&png_create_write_struct)>("png_create_write_struct")(version, pointer, error, warning);
    }

    png_infop png_create_info_struct(png_const_structrp png)
    {
        if (Fails("png_create_info_struct"))
            return nullptr;
        return Library<decltype(&png_create_info_struct)>("png_create_info_struct")(png);
    }

    void png_set_write_fn(png_structrp png, png_voidp io, png_rw_ptr write, png_flush_ptr flush)
    {
        if (write != nullptr) // the library calls it, too
            FailByJump(png, "png_set_write_fn");
        Library<decltype(&png_set_write_fn)>("png_set_write_fn")(png, io, write, flush);
    }

    void png_set_IHDR(png_const_structrp png, png_inforp info, png_uint_32 width, png_uint_32 height, int depth,
                      int colour, int interlace, int compression, int filter)
    {
        FailByJump(const_cast<png_structrp>(png), "png_set_IHDR");
        Library<decltype(&png_set_IHDR)>("png_set_IHDR")(png, info, width, height, depth, colour, interlace,
                                                         compression, filter);
    }

    void png_write_info(png_structrp png, png_const_inforp info)
    {
        FailByJump(png, "png_write_info");
        Library<decltype(&png_write_info)>("png_write_info")(png, info);
    }

    void png_write_image(png_structrp png, png_bytepp rows)
    {
        FailByJump(png, "png_write_image");
        Library<decltype(&png_write_image)>("png_write_image")(png, rows);
    }

    void png_write_end(png_structrp png, png_inforp info)
    {
        FailByJump(png, info == nullptr ? "png_write_end without info" : "png_write_end");
        Library<decltype(&png_write_end)>("png_write_end")(png, info);
    }

    void png_destroy_write_struct(png_structpp png, png_infopp info)
    {
        Fails("png_destroy_write_struct");
        Library<decltype(&png_destroy_write_struct)>("png_destroy_write_struct")(png, info);
    }

    // The linker sends every malloc and free of the program's own objects here (CMakeLists.txt).
    void* __real_malloc(size_t size);
    void* __wrap_malloc(size_t size);
    void* __wrap_malloc(size_t size)
    {
        if (std::strcmp(g_failing, "malloc") == 0)
            return nullptr;
        g_taken += g_noting;
        return __real_malloc(size);
    }
    void __real_free(void* block);
    void __wrap_free(void* block);
    void __wrap_free(void* block)
    {
        g_returned += g_noting && block != nullptr;
        __real_free(block);
    }
}

namespace
{
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

class WritePNG : public ModuleTest
{
protected:
    void TearDown() override
    {
        g_failing = "";
        g_noting = false;
        ModuleTest::TearDown();
    }

    static int Write(std::string name, Bytes pixels, int width, int height)
    {
        return WritePNG32(name.data(), pixels.data(), width, height);
    }

    static Bytes FileBytes(const std::string& name)
    {
        std::ifstream file(SaveArea() + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    struct Picture
    {
        unsigned width = 0, height = 0;
        Bytes pixels;
    };

    static Picture ReadBack(const std::string& name)
    {
        Picture picture;
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        const Bytes file = FileBytes(name);
        EXPECT_NE(png_image_begin_read_from_memory(&image, file.data(), file.size()), 0) << image.message;
        image.format = PNG_FORMAT_RGBA;
        picture.width = image.width;
        picture.height = image.height;
        picture.pixels.resize(PNG_IMAGE_SIZE(image));
        EXPECT_NE(png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr), 0) << image.message;
        return picture;
    }

    static Bytes RandomPixels(int width, int height)
    {
        std::mt19937 random(static_cast<unsigned>(width * 4096 + height));
        Bytes pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
        std::generate(pixels.begin(), pixels.end(), [&] { return static_cast<uint8_t>(random()); });
        return pixels;
    }
};

uint32_t BigEndian(const Bytes& bytes, size_t at)
{
    return static_cast<uint32_t>(bytes[at]) << 24 | static_cast<uint32_t>(bytes[at + 1]) << 16 |
           static_cast<uint32_t>(bytes[at + 2]) << 8 | bytes[at + 3];
}

// The chunks' names in order; every byte of the file belongs to the signature or to a chunk.
Lines ChunkNames(const Bytes& file)
{
    Lines names;
    size_t at = 8;
    while (at + 12 <= file.size())
    {
        names.emplace_back(file.begin() + static_cast<ptrdiff_t>(at) + 4,
                           file.begin() + static_cast<ptrdiff_t>(at) + 8);
        at += 12 + BigEndian(file, at);
    }
    EXPECT_EQ(at, file.size());
    return names;
}

// ---- what is written ----

TEST_F(WritePNG, OnePixelReadsBack)
{
    EXPECT_EQ(Write("one.png", {10, 20, 30, 40}, 1, 1), 1);
    const Picture picture = ReadBack("one.png");
    EXPECT_EQ(picture.width, 1u);
    EXPECT_EQ(picture.height, 1u);
    EXPECT_THAT(picture.pixels, ElementsAre(10, 20, 30, 40));
    EXPECT_THAT(ConsoleTexts(), IsEmpty());
}

TEST_F(WritePNG, EverySizeReadsBackTopRowFirst)
{
    for (const auto& [width, height] : {std::pair{1, 7}, {7, 1}, {2, 2}, {33, 17}, {256, 256}, {1, 5000}, {5000, 1}})
    {
        const Bytes pixels = RandomPixels(width, height);
        ASSERT_EQ(Write("sizes.png", pixels, width, height), 1);
        const Picture picture = ReadBack("sizes.png");
        EXPECT_EQ(picture.width, static_cast<unsigned>(width));
        EXPECT_EQ(picture.height, static_cast<unsigned>(height));
        EXPECT_TRUE(picture.pixels == pixels) << width << " x " << height;
    }
}

TEST_F(WritePNG, HeaderSaysEightBitRgbaWithoutInterlace)
{
    ASSERT_EQ(Write("header.png", RandomPixels(258, 3), 258, 3), 1);
    const Bytes file = FileBytes("header.png");
    const Bytes expected = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D',
                            'R',  0,   0,   1,   2,    0,    0,    0,    3, 8, 6, 0,  0,   0};
    ASSERT_GE(file.size(), expected.size());
    EXPECT_THAT(Bytes(file.begin(), file.begin() + static_cast<ptrdiff_t>(expected.size())),
                ElementsAreArray(expected));
}

TEST_F(WritePNG, FileHoldsNoChunkBeyondTheImage)
{
    ASSERT_EQ(Write("chunks.png", RandomPixels(100, 100), 100, 100), 1);
    Lines names = ChunkNames(FileBytes("chunks.png"));
    EXPECT_EQ(names.front(), "IHDR");
    EXPECT_EQ(names.back(), "IEND");
    names.erase(std::unique(names.begin(), names.end()), names.end());
    EXPECT_THAT(names, ElementsAre("IHDR", "IDAT", "IEND"));
}

TEST_F(WritePNG, ReplacesAnOlderFile)
{
    ASSERT_EQ(Write("again.png", RandomPixels(64, 64), 64, 64), 1);
    ASSERT_EQ(Write("again.png", {1, 2, 3, 4}, 1, 1), 1);
    EXPECT_THAT(ReadBack("again.png").pixels, ElementsAre(1, 2, 3, 4));
}

TEST_F(WritePNG, DoesNotChangeTheSource)
{
    const Bytes before = RandomPixels(9, 9);
    Bytes pixels = before;
    char name[] = "source.png";
    ASSERT_EQ(WritePNG32(name, pixels.data(), 9, 9), 1);
    EXPECT_EQ(pixels, before);
    EXPECT_STREQ(name, "source.png");
}

// ---- the road ----

TEST_F(WritePNG, AsksTheHostInItsOrder)
{
    Write("road.png", {1, 2, 3, 4}, 1, 1);
    Lines log = TakeLog();
    const bool bytes = std::all_of(log.begin() + 3, log.end() - 1,
                                   [](const std::string& line) { return line.rfind("fwrite(1,", 0) == 0; });
    EXPECT_TRUE(bytes);
    log.erase(log.begin() + 3, log.end() - 1);
    EXPECT_THAT(log, ElementsAre("_GetSaveFileName(2048,road.png)", "EnsureDirectoryIsCreated(<save>/road.png)",
                                 "fopen(<save>/road.png,wb)", "fclose()"));
}

TEST_F(WritePNG, DrivesTheLibraryInItsOrder)
{
    g_noting = true;
    Write("road.png", {1, 2, 3, 4}, 1, 1);
    Lines log = TakeLog();
    const auto isWrite = [](const std::string& line) { return line.rfind("fwrite(", 0) == 0; };
    log.erase(std::remove_if(log.begin() + 3, log.end(), isWrite), log.end());
    EXPECT_THAT(Lines(log.begin() + 3, log.end()),
                ElementsAre("png_create_write_struct", "png_create_info_struct", "png_set_write_fn", "png_set_IHDR",
                            "png_write_info", "png_write_image", "png_write_end", "png_destroy_write_struct",
                            "fclose()"));
}

TEST_F(WritePNG, NamesTheLibraryOfItsHeadersAndInstallsNoHandlers)
{
    Write("road.png", {1, 2, 3, 4}, 1, 1);
    EXPECT_EQ(g_version, PNG_LIBPNG_VER_STRING);
    EXPECT_FALSE(g_ownErrorHandling);
}

TEST_F(WritePNG, MakesTheDirectoriesThatTheNameNeeds)
{
    EXPECT_EQ(Write("shots/level one/first.png", {1, 2, 3, 4}, 1, 1), 1);
    EXPECT_THAT(ReadBack("shots/level one/first.png").pixels, ElementsAre(1, 2, 3, 4));
}

TEST_F(WritePNG, GivesItsRowTableBackWhetherTheLibraryJumpsOrNot)
{
    for (const char* failing : {"", "png_write_image", "png_write_end"})
    {
        g_taken = g_returned = 0;
        g_failing = failing;
        g_noting = true;
        Write("save.png", Bytes(2 * 3 * 4), 2, 3);
        g_noting = false;
        EXPECT_EQ(g_taken, 1) << failing;
        EXPECT_EQ(g_returned, 1) << failing;
    }
}

TEST_F(WritePNG, TakesNothingFromTheMemoryManager)
{
    const int before = RequestCount();
    Write("memory.png", RandomPixels(50, 50), 50, 50);
    EXPECT_EQ(RequestCount(), before);
}

// ---- failures ----

TEST_F(WritePNG, AFileThatCannotBeOpenedIsSilentlyZero)
{
    RefuseOpen(true);
    g_noting = true;
    EXPECT_EQ(Write("closed.png", {1, 2, 3, 4}, 1, 1), 0);
    EXPECT_THAT(ConsoleTexts(), IsEmpty());
    EXPECT_THAT(TakeLog(), ElementsAre("_GetSaveFileName(2048,closed.png)",
                                       "EnsureDirectoryIsCreated(<save>/closed.png)", "fopen(<save>/closed.png,wb)"));
}

TEST_F(WritePNG, ANameThatTheHostRefusesIsZero)
{
    EXPECT_EQ(Write("../outside.png", {1, 2, 3, 4}, 1, 1), 0);
    EXPECT_EQ(Write(std::string(3000, 'a') + ".png", {1, 2, 3, 4}, 1, 1), 0);
    EXPECT_THAT(ConsoleTexts(), IsEmpty());
}

struct Failure
{
    const char* call;
    const char* message;
};

void PrintTo(const Failure& failure, std::ostream* out) { *out << failure.call; }

class FailingPNG : public WritePNG, public testing::WithParamInterface<Failure>
{
};

TEST_P(FailingPNG, IsZeroWithItsMessageAndClosesTheFile)
{
    g_failing = GetParam().call;
    g_noting = true;
    EXPECT_EQ(Write("failing.png", RandomPixels(20, 20), 20, 20), 0);
    EXPECT_THAT(ConsoleTexts(), ElementsAre(GetParam().message));
    const Lines log = TakeLog();
    ASSERT_GE(log.size(), 3u);
    EXPECT_THAT(Lines(log.end() - 3, log.end()),
                ElementsAre("Output(" + std::string(GetParam().message) + ")", "png_destroy_write_struct", "fclose()"));
    EXPECT_EQ(OpenFiles(), 0);
}

TEST_P(FailingPNG, LeavesThePartlyWrittenFile)
{
    g_failing = GetParam().call;
    Write("failing.png", RandomPixels(20, 20), 20, 20);
    EXPECT_TRUE(std::ifstream(SaveArea() + "/failing.png").good());
}

TEST_P(FailingPNG, NeedsNoConsole)
{
    g_failing = GetParam().call;
    dbg_csol = nullptr;
    EXPECT_EQ(Write("failing.png", RandomPixels(20, 20), 20, 20), 0);
}

TEST_P(FailingPNG, DoesNotSpoilTheNextImage)
{
    g_failing = GetParam().call;
    Write("failing.png", RandomPixels(20, 20), 20, 20);
    g_failing = "";
    EXPECT_EQ(Write("next.png", {5, 6, 7, 8}, 1, 1), 1);
    EXPECT_THAT(ReadBack("next.png").pixels, ElementsAre(5, 6, 7, 8));
}

INSTANTIATE_TEST_SUITE_P(
    Calls, FailingPNG,
    testing::Values(Failure{"png_create_write_struct", "[write_png_file] png_create_write_struct failed\n"},
                    Failure{"png_create_info_struct", "[write_png_file] png_create_info_struct failed\n"},
                    Failure{"png_set_write_fn", "[write_png_file] Error during init_io\n"},
                    Failure{"png_set_IHDR", "[write_png_file] Error during writing header\n"},
                    Failure{"png_write_info", "[write_png_file] Error during writing header\n"},
                    Failure{"malloc", "[write_png_file] Error during writing bytes"},
                    Failure{"png_write_image", "[write_png_file] Error during writing bytes"},
                    Failure{"png_write_end", "[write_png_file] Error during end of write"}),
    [](const testing::TestParamInfo<Failure>& row) { return row.param.call; });

TEST_F(WritePNG, ARefusedRowTableIsToldOnTheConsoleAlone)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    g_failing = "malloc";
    const int result = Write("rows.png", RandomPixels(20, 20), 20, 20);
    g_failing = "";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(result, 0);
    EXPECT_THAT(ConsoleTexts(), ElementsAre("[write_png_file] Error during writing bytes"));
}

TEST_F(WritePNG, SizesThatTheFormatCannotHoldFailAtTheHeader)
{
    for (const auto& [width, height] :
         {std::pair{0, 1}, {1, 0}, {0, 0}, {-1, 1}, {1, -1}, {INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MAX}})
    {
        ConsoleTexts().clear();
        EXPECT_EQ(Write("size.png", {1, 2, 3, 4}, width, height), 0) << width << " x " << height;
        EXPECT_THAT(ConsoleTexts(), ElementsAre("[write_png_file] Error during writing header\n"));
        EXPECT_EQ(OpenFiles(), 0);
    }
}

TEST_F(WritePNG, ShortWritesGoUnnoticed)
{
    OnWrite([](unsigned) { return false; });
    EXPECT_EQ(Write("short.png", RandomPixels(20, 20), 20, 20), 1);
    EXPECT_THAT(ConsoleTexts(), IsEmpty());
    EXPECT_TRUE(FileBytes("short.png").empty());
}

TEST_F(WritePNG, AFailedCloseGoesUnnoticed)
{
    FailClose(true);
    EXPECT_EQ(Write("close.png", {1, 2, 3, 4}, 1, 1), 1);
    EXPECT_THAT(ConsoleTexts(), IsEmpty());
}
} // namespace
