// What a picture file may claim: a few bytes must not take hundreds of megabytes.

#include "Runner/Draw/Png_Reader.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <sys/resource.h>

namespace
{
std::string BigEndian(uint32_t number)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

// A picture of one grey pixel up to its first chunk of text, of which only the length and the name are there.
std::string PictureWithText(uint32_t length)
{
    const std::string head = BigEndian(1) + BigEndian(1) + std::string("\x08\0\0\0\0", 5);
    return "\x89PNG\r\n\x1A\n" + BigEndian(13) + "IHDR" + head + BigEndian(0x3A7E9B55) + BigEndian(length) + "tEXt";
}

std::string ErrorOf(const std::string& content)
{
    const RunnerTest::TestDirectory directory;
    Runner::Picture picture;
    std::string error;
    EXPECT_FALSE(Runner::ReadPng(directory.Write("picture.png", content), picture, error));
    EXPECT_TRUE(picture.rgba.empty());
    return error;
}

long PeakKilobytes()
{
    rusage use = {};
    getrusage(RUSAGE_SELF, &use);
    return use.ru_maxrss;
}

// Memory of that length used to be taken and cleared before the file turned out to be short.
TEST(PngLimits, AChunkThatOnlyClaimsToBeLongTakesNoMemory)
{
    const long before = PeakKilobytes();
    EXPECT_NE(ErrorOf(PictureWithText(654311424)).find("it ends too early"), std::string::npos);
    EXPECT_LT(PeakKilobytes() - before, 64 * 1024);
}
} // namespace
