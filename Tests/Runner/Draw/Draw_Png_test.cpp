#include "Tests/Runner/Draw/Draw_Support.h"

#include "Runner/Draw/Png_Reader.h"

#include <png.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>

namespace DrawTest
{
class PngReader : public ::testing::Test
{
protected:
    struct Form
    {
        int width, height, depth, colours;
        int interlace = PNG_INTERLACE_NONE;
    };
    using Rows = std::vector<std::vector<uint8_t>>;

    void SetUp() override
    {
        std::string pattern = ::testing::TempDir() + "png_reader_XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
    }
    void TearDown() override
    {
        remove(File().c_str());
        remove(m_folder.c_str());
    }

    std::string File() const { return m_folder + "/picture.png"; }

    void Write(const Form& form, const Rows& rows, const std::function<void(png_structp, png_infop)>& more = nullptr)
    {
        FILE* file = fopen(File().c_str(), "wb");
        ASSERT_NE(file, nullptr);
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        png_init_io(png, file);
        png_set_IHDR(png, info, static_cast<png_uint_32>(form.width), static_cast<png_uint_32>(form.height), form.depth,
                     form.colours, form.interlace, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        if (more)
            more(png, info);
        png_write_info(png, info);
        std::vector<png_bytep> pointers;
        for (const auto& row : rows)
            pointers.push_back(const_cast<png_bytep>(row.data()));
        png_write_image(png, pointers.data());
        png_write_end(png, info);
        png_destroy_write_struct(&png, &info);
        fclose(file);
    }

    std::string Bytes() const
    {
        std::ifstream in(File(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    void WriteBytes(const std::string& bytes) const { std::ofstream(File(), std::ios::binary) << bytes; }

    Runner::Picture Read()
    {
        Runner::Picture picture;
        std::string error;
        EXPECT_TRUE(Runner::ReadPng(File(), picture, error)) << error;
        return picture;
    }

    std::string ReadError()
    {
        Runner::Picture picture = Filled(1, 1, RED);
        std::string error;
        EXPECT_FALSE(Runner::ReadPng(File(), picture, error));
        EXPECT_EQ(picture.width, 0);
        EXPECT_TRUE(picture.rgba.empty());
        EXPECT_NE(error.find(File()), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        return error;
    }

    void WriteFourPixels() { Write({2, 2, 8, PNG_COLOR_TYPE_RGB}, {{255, 0, 0, 0, 255, 0}, {0, 0, 255, 255, 255, 0}}); }

private:
    std::string m_folder;
};

TEST_F(PngReader, ReadsRgbFromTheTopRowDown)
{
    WriteFourPixels();
    EXPECT_EQ(Read().rgba, FourCorners(2).rgba);
}

TEST_F(PngReader, ReadsRgba)
{
    Write({2, 1, 8, PNG_COLOR_TYPE_RGBA}, {{10, 20, 30, 40, 50, 60, 70, 80}});
    EXPECT_EQ(At(Read(), 0, 0), (Pixel{10, 20, 30, 40}));
    EXPECT_EQ(At(Read(), 1, 0), (Pixel{50, 60, 70, 80}));
}

TEST_F(PngReader, ReadsPalettesOfEveryDepthWithTheirAlpha)
{
    for (const int depth : {1, 2, 4, 8})
    {
        const auto row = std::vector<uint8_t>{static_cast<uint8_t>(depth == 8 ? 1 : 1 << (8 - depth))}; // entry 1 first
        Write({1, 1, depth, PNG_COLOR_TYPE_PALETTE}, {row},
              [](png_structp png, png_infop info)
              {
                  const png_color palette[] = {{1, 2, 3}, {200, 100, 50}};
                  png_byte alpha[] = {255, 77};
                  png_set_PLTE(png, info, palette, 2);
                  png_set_tRNS(png, info, alpha, 2, nullptr);
              });
        EXPECT_EQ(At(Read(), 0, 0), (Pixel{200, 100, 50, 77})) << depth;
    }
}

TEST_F(PngReader, SpreadsGreysOfEveryDepth)
{
    for (const int depth : {1, 2, 4, 8})
    {
        Write({1, 1, depth, PNG_COLOR_TYPE_GRAY}, {{0xFF}});
        EXPECT_EQ(At(Read(), 0, 0), WHITE) << depth;
    }
    Write({2, 1, 8, PNG_COLOR_TYPE_GRAY_ALPHA}, {{100, 50, 7, 255}});
    EXPECT_EQ(At(Read(), 0, 0), (Pixel{100, 100, 100, 50}));
    EXPECT_EQ(At(Read(), 1, 0), (Pixel{7, 7, 7, 255}));
}

TEST_F(PngReader, MakesATransparentColourTransparent)
{
    Write({2, 1, 8, PNG_COLOR_TYPE_GRAY}, {{9, 10}},
          [](png_structp png, png_infop info)
          {
              png_color_16 colour = {};
              colour.gray = 9;
              png_set_tRNS(png, info, nullptr, 0, &colour);
          });
    EXPECT_EQ(At(Read(), 0, 0).alpha, 0);
    EXPECT_EQ(At(Read(), 1, 0).alpha, 255);
}

TEST_F(PngReader, CutsSixteenBitsToTheNearestEight)
{
    Write({1, 1, 16, PNG_COLOR_TYPE_RGBA}, {{0xFF, 0xFF, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x10}});
    EXPECT_EQ(At(Read(), 0, 0), (Pixel{255, 128, 1, 0})); // 0x00FF is 0.992 of a step
}

TEST_F(PngReader, ReadsInterlacedPictures)
{
    Rows rows(9, std::vector<uint8_t>(27));
    for (size_t y = 0; y < 9; y++)
    {
        for (size_t x = 0; x < 9; x++)
        {
            rows[y][x * 3] = static_cast<uint8_t>(x * 20);
            rows[y][x * 3 + 1] = static_cast<uint8_t>(y * 20);
        }
    }
    Write({9, 9, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7}, rows);
    const Runner::Picture picture = Read();
    for (int i = 0; i < 81; i++)
        EXPECT_EQ(At(picture, i % 9, i / 9), (Pixel{i % 9 * 20, i / 9 * 20, 0, 255})) << i;
}

TEST_F(PngReader, NamesAMissingFile)
{
    EXPECT_EQ(ReadError(), "cannot read the picture \"" + File() + "\": No such file or directory");
}

TEST_F(PngReader, RefusesAFolder)
{
    Runner::Picture picture;
    std::string error;
    EXPECT_FALSE(Runner::ReadPng(::testing::TempDir(), picture, error));
    EXPECT_NE(error.find("it cannot be read"), std::string::npos) << error;
}

TEST_F(PngReader, RefusesWhatIsNoPng)
{
    WriteBytes("this is a text and not a picture at all");
    EXPECT_NE(ReadError().find("Not a PNG file"), std::string::npos);
    WriteBytes("");
    EXPECT_NE(ReadError().find("it ends too early"), std::string::npos);
}

TEST_F(PngReader, RefusesAFileThatIsCutShortAnywhere)
{
    WriteFourPixels();
    const std::string whole = Bytes();
    for (size_t length = 0; length < whole.size(); length++)
    {
        WriteBytes(whole.substr(0, length));
        ReadError();
    }
}

TEST_F(PngReader, SurvivesDamageAnywhere)
{
    WriteFourPixels();
    const std::string whole = Bytes();
    int refused = 0;
    for (size_t at = 0; at < whole.size(); at++)
    {
        for (const int flip : {0x01, 0x80, 0xFF})
        {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ flip);
            WriteBytes(damaged);
            Runner::Picture picture;
            std::string error;
            refused += Runner::ReadPng(File(), picture, error) ? 0 : 1;
        }
    }
    EXPECT_GT(refused, static_cast<int>(whole.size()) * 2); // most bytes are under a checksum
}

TEST_F(PngReader, RefusesAPictureThatIsTooLarge)
{
    Write({8193, 1, 1, PNG_COLOR_TYPE_GRAY}, {std::vector<uint8_t>(1025)});
    EXPECT_NE(ReadError().find("it is too large: a side can have 8192 pixels"), std::string::npos) << ReadError();
    Write({1, 8193, 1, PNG_COLOR_TYPE_GRAY}, Rows(8193, {0}));
    EXPECT_NE(ReadError().find("it is too large"), std::string::npos) << ReadError();
    Write({8192, 1, 1, PNG_COLOR_TYPE_GRAY}, {std::vector<uint8_t>(1024)});
    EXPECT_EQ(Read().width, 8192);
}

TEST_F(PngReader, SpritesComeFromFiles)
{
    Write({4, 2, 8, PNG_COLOR_TYPE_GRAY}, {{0, 0, 255, 255}, {0, 0, 255, 255}});
    std::string error;
    const auto painter = Runner::Painter::Open(8, 8, true, error);
    ASSERT_NE(painter, nullptr) << error;
    const int sprite = painter->LoadSprite(File(), 2);
    ASSERT_EQ(sprite, 0) << painter->TakeError();
    EXPECT_EQ(painter->FindSprite(sprite)->width, 2);
    painter->Sprite(sprite, 1, 3, 3);
    EXPECT_EQ(CountPixels(painter->ReadScreen(), WHITE, 3, 3, 5, 5), 4);
    const int sheet = painter->LoadSheet(File(), 2, 1);
    EXPECT_EQ(painter->FindSprite(sheet)->frames, 4);

    EXPECT_EQ(painter->LoadSprite(File(), 3), -1);
    EXPECT_EQ(painter->TakeError(), "\"" + File() + "\" is 4 pixels wide, which is not a multiple of 3 frames");
    EXPECT_EQ(painter->LoadSprite(File(), 0), -1);
    EXPECT_NE(painter->TakeError().find("at least 1"), std::string::npos);
    EXPECT_EQ(painter->LoadSheet(File(), 5, 1), -1);
    EXPECT_EQ(painter->TakeError(), "\"" + File() + "\" is 4 x 2 pixels and holds no frame of 5 x 1");
    EXPECT_EQ(painter->LoadSprite(File() + "x", 1), -1);
    EXPECT_NE(painter->TakeError().find("No such file"), std::string::npos);
}
} // namespace DrawTest
