// --compare: one recording, two versions of a game, one picture.

#include "Runner/Draw/Png_Reader.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"

namespace
{
class ComparisonPictures : public RunnerTest::CommandLine
{
protected:
    // A game of 40 x 30 pixels whose room has that colour, and turns white in frame 30.
    std::string Version(const std::string& name, const std::string& colour)
    {
        return directory.Write(
            name, "screen_set_size(40, 30) room_add{ width = 40, height = 30, background = colours." + colour +
                      ", draw_gui = function() if frame_number() >= 30 then "
                      "draw_rectangle(0, 0, 40, 30) end end }");
    }

    uint32_t PixelAt(const Runner::Picture& picture, int x, int y)
    {
        const uint8_t* bytes = &picture.rgba[picture.Offset(x, y)];
        return static_cast<uint32_t>(bytes[0] << 16 | bytes[1] << 8 | bytes[2]);
    }
};

// Six frames of sixty: 0, 10, 20 are coloured, 30, 40, 50 white. A strip has gaps of 8 pixels around each picture.
TEST_F(ComparisonPictures, ShowTheGameAboveAndTheOtherVersionBelow)
{
    const std::string red = Version("red.lua", "red"), blue = Version("blue.lua", "blue");
    const std::string record = directory.Path("run.rec"), area = directory.Path("out");
    ASSERT_EQ(Run({red, "--no-draw", "--frames", "60", "--record", record, "--out", area}), 0) << err;
    ASSERT_EQ(Run({red, "--replay", record, "--compare", blue, "--out", area}), 0) << err;
    Runner::Picture strip;
    std::string why;
    ASSERT_TRUE(Runner::ReadPng(area + "/comparison.png", strip, why)) << why;
    EXPECT_EQ(std::pair(strip.width, strip.height), std::pair(6 * 48 + 8, 2 * 46));
    for (int column = 0; column < 6; ++column)
    {
        const int x = 8 + column * 48 + 20;
        EXPECT_EQ(PixelAt(strip, x, 8 + 15), column < 3 ? 0xFF0000u : 0xFFFFFFu) << column;
        EXPECT_EQ(PixelAt(strip, x, 46 + 8 + 15), column < 3 ? 0x0000FFu : 0xFFFFFFu) << column;
    }
}

TEST_F(ComparisonPictures, AVersionThatFailsIsToldAndTheOtherOneShown)
{
    const std::string red = Version("red.lua", "red"), broken = directory.Write("broken.lua", "room_add{");
    const std::string record = directory.Path("run.rec"), area = directory.Path("out");
    ASSERT_EQ(Run({red, "--no-draw", "--frames", "6", "--record", record, "--out", area}), 0) << err;
    EXPECT_EQ(Run({red, "--replay", record, "--compare", broken, "--out", area}), 1);
    EXPECT_NE(err.find("runner: broken.lua:1:"), std::string::npos) << err;
    EXPECT_EQ(Pictures(), "comparison.png ");
}
} // namespace
