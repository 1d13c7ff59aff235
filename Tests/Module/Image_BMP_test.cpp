#include "Tests/Support/Fixture.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <gmock/gmock.h>
#include <memory>
#include <utility>
#include <vector>

namespace
{
using namespace Recording;
using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr int HEADER = 54;

class CreateBMPImage : public ModuleTest
{
protected:
    void TearDown() override
    {
        MemoryManager::Free(m_block);
        ModuleTest::TearDown();
    }

    // Makes the image and keeps it until the next one. The pixels lie in a heap block of exactly their size, so that a
    // sanitizer sees each read past them.
    bool Create(const std::vector<uint8_t>& pixels, int width, int height, int bytesPerPixel)
    {
        const std::unique_ptr<uint8_t[]> source(new uint8_t[pixels.size()]);
        std::copy(pixels.begin(), pixels.end(), source.get());
        MemoryManager::Free(m_block);
        m_size = 12345;
        m_block = CreateBMP(source.get(), width, height, &m_size, bytesPerPixel);
        return m_block != nullptr;
    }

    uint8_t Byte(size_t offset) const { return static_cast<const uint8_t*>(m_block)[offset]; }
    unsigned Half(size_t offset) const { return Byte(offset) | static_cast<unsigned>(Byte(offset + 1)) << 8; }
    int32_t Word(size_t offset) const
    {
        return static_cast<int32_t>(Half(offset) | static_cast<uint32_t>(Half(offset + 2)) << 16);
    }
    std::vector<uint8_t> Pixels() const
    {
        const uint8_t* bytes = static_cast<const uint8_t*>(m_block);
        return {bytes + HEADER, bytes + m_size};
    }

    // The whole header, field by field.
    void ExpectHeader(int width, int height, int imageSize) const
    {
        EXPECT_EQ(Byte(0), 'B');
        EXPECT_EQ(Byte(1), 'M');
        EXPECT_EQ(Word(2), HEADER + imageSize) << "file size";
        EXPECT_EQ(Half(6), 0u);
        EXPECT_EQ(Half(8), 0u);
        EXPECT_EQ(Word(10), HEADER) << "where the pixels start";
        EXPECT_EQ(Word(14), 40) << "size of the second header";
        EXPECT_EQ(Word(18), width);
        EXPECT_EQ(Word(22), height);
        EXPECT_EQ(Half(26), 1u) << "planes";
        EXPECT_EQ(Half(28), 24u) << "bits per pixel";
        EXPECT_EQ(Word(30), 0) << "compression";
        EXPECT_EQ(Word(34), imageSize);
        for (size_t offset : {38u, 42u, 46u, 50u})
            EXPECT_EQ(Word(offset), 0) << offset;
    }

    void* m_block = nullptr;
    int m_size = 0;
};

std::vector<uint8_t> Counting(size_t count)
{
    std::vector<uint8_t> bytes(count);
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<uint8_t>(i + 1);
    return bytes;
}

TEST_F(CreateBMPImage, OnePixelStoresItsThreeLowBytesLowestFirst)
{
    ASSERT_TRUE(Create({0x11, 0x22, 0x33, 0x80}, 1, 1, 4));
    EXPECT_EQ(m_size, 57);
    ExpectHeader(1, 1, 3);
    EXPECT_THAT(Pixels(), ElementsAre(0x11, 0x22, 0x33));
}

TEST_F(CreateBMPImage, RowsAreStoredBottomUpWithoutPadding)
{
    ASSERT_TRUE(Create(Counting(16), 2, 2, 4));
    EXPECT_EQ(m_size, 66);
    ExpectHeader(2, 2, 12);
    EXPECT_THAT(Pixels(), ElementsAre(9, 10, 11, 13, 14, 15, 1, 2, 3, 5, 6, 7));
}

TEST_F(CreateBMPImage, EveryWidthIsStoredWithoutPadding)
{
    for (int width = 1; width <= 9; ++width)
    {
        const size_t row = static_cast<size_t>(width) * 4;
        const std::vector<uint8_t> source = Counting(3 * row);
        std::vector<uint8_t> expected;
        for (size_t y = 3; y-- > 0;)
            for (size_t at = y * row; at < (y + 1) * row; at += 4)
                expected.insert(expected.end(), {source[at], source[at + 1], source[at + 2]});
        ASSERT_TRUE(Create(source, width, 3, 4));
        EXPECT_EQ(m_size, HEADER + 9 * width);
        ExpectHeader(width, 3, 9 * width);
        EXPECT_THAT(Pixels(), ElementsAreArray(expected)) << width;
    }
}

TEST_F(CreateBMPImage, LargeImagesHaveLargeFields)
{
    ASSERT_TRUE(Create(std::vector<uint8_t>(300 * 257 * 4, 0xAB), 300, 257, 4));
    EXPECT_EQ(m_size, HEADER + 3 * 300 * 257);
    ExpectHeader(300, 257, 3 * 300 * 257);
    EXPECT_EQ(Pixels(), std::vector<uint8_t>(3 * 300 * 257, 0xAB));
}

// ---- the distance between pixels ----

TEST_F(CreateBMPImage, ThreeBytesAPixelReadsNothingPastTheLast)
{
    ASSERT_TRUE(Create(Counting(12), 2, 2, 3));
    EXPECT_THAT(Pixels(), ElementsAre(7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6));
}

TEST_F(CreateBMPImage, WidePixelsAreSkippedThrough)
{
    ASSERT_TRUE(Create(Counting(14), 2, 1, 7));
    EXPECT_THAT(Pixels(), ElementsAre(1, 2, 3, 8, 9, 10));
}

TEST_F(CreateBMPImage, NarrowPixelsOverlapAndEndInZeros)
{
    ASSERT_TRUE(Create(Counting(4), 2, 2, 1));
    EXPECT_THAT(Pixels(), ElementsAre(3, 4, 0, 4, 0, 0, 1, 2, 3, 2, 3, 4));
    ASSERT_TRUE(Create(Counting(6), 3, 2, 1)); // rows are as long as the picture is wide
    EXPECT_THAT(Pixels(), ElementsAre(4, 5, 6, 5, 6, 0, 6, 0, 0, 1, 2, 3, 2, 3, 4, 3, 4, 5));
    ASSERT_TRUE(Create(Counting(4), 2, 1, 2));
    EXPECT_THAT(Pixels(), ElementsAre(1, 2, 3, 3, 4, 0));
}

TEST_F(CreateBMPImage, WhatStandsBehindTheSourceIsNotStored)
{
    ASSERT_TRUE(Create({0x11, 0x22, 0x99}, 1, 1, 2)); // a pixel, and a byte that is none of its
    EXPECT_THAT(Pixels(), ElementsAre(0x11, 0x22, 0));
}

TEST_F(CreateBMPImage, PixelsWithoutSizeReadNothing)
{
    for (int bytesPerPixel : {0, -1, -4, INT_MIN})
    {
        ASSERT_TRUE(Create({}, 2, 2, bytesPerPixel));
        ExpectHeader(2, 2, 12);
        EXPECT_EQ(Pixels(), std::vector<uint8_t>(12, 0)) << bytesPerPixel;
    }
}

// ---- no pixels ----

TEST_F(CreateBMPImage, WithoutASourceEveryPixelIsBlack)
{
    for (int bytesPerPixel : {4, 3, 1, 0})
    {
        MemoryManager::Free(m_block);
        m_block = CreateBMP(nullptr, 3, 2, &m_size, bytesPerPixel);
        ASSERT_NE(m_block, nullptr);
        ExpectHeader(3, 2, 3 * 3 * 2);
        EXPECT_EQ(Pixels(), std::vector<uint8_t>(3 * 3 * 2, 0)) << bytesPerPixel;
    }
}

TEST_F(CreateBMPImage, AZeroSizeGivesTheHeaderAlone)
{
    for (const auto& [width, height] : {std::pair{0, 0}, {0, 5}, {5, 0}, {0, -5}})
    {
        ASSERT_TRUE(Create({}, width, height, 4));
        EXPECT_EQ(m_size, HEADER);
        ExpectHeader(width, height, 0);
    }
}

TEST_F(CreateBMPImage, ANegativeSizeGivesAHeaderThatSaysSo)
{
    ASSERT_TRUE(Create({}, -1, 5, 4));
    EXPECT_EQ(m_size, 39); // 54 - 15: as computed, though the block holds a whole header
    ExpectHeader(-1, 5, -15);
    ASSERT_TRUE(Create({}, 1000, -1000, 4));
    EXPECT_EQ(m_size, HEADER - 3000000);
    ExpectHeader(1000, -1000, -3000000);
}

TEST_F(CreateBMPImage, TwoNegativeSizesGiveAHeaderWithRoomBehindIt)
{
    ASSERT_TRUE(Create({}, -2, -3, 4));
    EXPECT_EQ(m_size, HEADER + 18);
    ExpectHeader(-2, -3, 18);
    EXPECT_EQ(Pixels(), std::vector<uint8_t>(18, 0));
}

TEST_F(CreateBMPImage, NoPixelsNeedNoSource)
{
    m_block = CreateBMP(nullptr, 0, 3, &m_size, 4);
    ASSERT_NE(m_block, nullptr);
    ExpectHeader(0, 3, 0);
}

// ---- sizes that an int cannot hold ----

struct Size
{
    int width, height;
};

class ImpossibleBMP : public CreateBMPImage, public testing::WithParamInterface<Size>
{
};

TEST_P(ImpossibleBMP, IsRefusedWithASizeOfZero)
{
    EXPECT_FALSE(Create({}, GetParam().width, GetParam().height, 4));
    EXPECT_EQ(m_size, 0);
    EXPECT_EQ(RequestCount(), 0);
}

// 3 * 715827864 + 54 is the largest int that a size can be, less one; 715827865 is one pixel too many.
INSTANTIATE_TEST_SUITE_P(Sizes, ImpossibleBMP,
                         testing::Values(Size{715827865, 1}, Size{1, 715827865}, Size{INT_MAX, 1}, Size{1, INT_MAX},
                                         Size{65536, 65536}, Size{INT_MAX, INT_MAX}, Size{INT_MIN, INT_MIN},
                                         Size{INT_MIN, 1}, Size{INT_MIN, INT_MAX}, Size{-715827901, 1},
                                         Size{46341, 46341}, Size{32768, 32768}));

TEST_F(CreateBMPImage, TheLargestPossibleSizeIsAskedForAndReportedThoughRefused)
{
    RefuseAbove(1 << 20);
    Listen(Topic_Memory);
    EXPECT_FALSE(Create({}, 715827864, 1, 4));
    EXPECT_EQ(m_size, 2147483646);
    ASSERT_EQ(Requests().size(), 1u);
    EXPECT_EQ(Requests()[0].size, 2147483646u);
}

TEST_F(CreateBMPImage, TheSmallestPossibleSizeIsAHeader)
{
    ASSERT_TRUE(Create({}, -715827882, 1, 4));
    EXPECT_EQ(m_size, -2147483592);
    ExpectHeader(-715827882, 1, -2147483646);
}

// ---- memory ----

TEST_F(CreateBMPImage, TakesOneClearBlockWithItsTag)
{
    Listen(Topic_Memory);
    ASSERT_TRUE(Create(Counting(16), 2, 2, 4));
    ASSERT_EQ(Requests().size(), 1u);
    EXPECT_EQ(Requests()[0].file, "Files/Graphics/Graphics_Support");
    EXPECT_EQ(Requests()[0].line, 189);
    EXPECT_EQ(Requests()[0].size, 66u);
    EXPECT_TRUE(Requests()[0].clear);
}

TEST_F(CreateBMPImage, ARefusedBlockGivesNothingButTheSize)
{
    RefuseRequest(1);
    EXPECT_FALSE(Create(Counting(16), 2, 2, 4));
    EXPECT_EQ(m_size, 66);
}
} // namespace
