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

// The view is 40 units wide and shows a white stripe at 0 to 10; with a width of 20 the stripe takes half the picture.
TEST_F(ComparisonPictures, TheSameGameWithOtherValues)
{
    const std::string game =
        directory.Write("stripe.lua", "screen_set_size(40, 30) room_add{ width = 40, height = 30, "
                                      "draw = function() draw_rectangle(0, 0, 10, 30) end, "
                                      "views = { [0] = { w = 40, h = 30, wport = 40, hport = 30 } }, "
                                      "create = function() print('camera ' .. view_get_camera(0)) end }");
    const std::string record = directory.Path("run.rec"), area = directory.Path("out");
    ASSERT_EQ(Run({game, "--no-draw", "--frames", "6", "--record", record, "--out", area}), 0) << err;
    const std::string camera = out.substr(out.find("camera ") + 7, out.find('\n') - out.find("camera ") - 7);
    ASSERT_EQ(Run({game, "--replay", record, "--compare-values", camera + ".width=20", "--out", area}), 0) << err;
    Runner::Picture strip;
    std::string why;
    ASSERT_TRUE(Runner::ReadPng(area + "/comparison.png", strip, why)) << why;
    EXPECT_EQ(PixelAt(strip, 8 + 8, 8 + 15), 0xFFFFFFu);
    EXPECT_EQ(PixelAt(strip, 8 + 15, 8 + 15), 0u);
    EXPECT_EQ(PixelAt(strip, 8 + 15, 46 + 8 + 15), 0xFFFFFFu);
    EXPECT_EQ(PixelAt(strip, 8 + 25, 46 + 8 + 15), 0u);
    EXPECT_EQ(Run({game, "--replay", record, "--compare-values", "77.width=20", "--out", area}), 1);
    EXPECT_NE(err.find("the recording has no frame with a camera 77"), std::string::npos) << err;
}

// Of six frames the camera is made in the step of frame 2; the values are there before the next frame.
TEST_F(ComparisonPictures, ValuesOfACameraThatIsMadeLaterTakeEffectInTheFrameAfter)
{
    const std::string game =
        directory.Write("later.lua", "screen_set_size(40, 30) room_add{ width = 40, height = 30, "
                                     "draw = function() draw_rectangle(0, 0, 10, 30) end, "
                                     "views = { [0] = { w = 40, h = 30, wport = 40, hport = 30 } }, step = function() "
                                     "if frame_number() == 2 then local made = camera_create_view(0, 0, 40, 30) "
                                     "view_set_camera(0, made) print('camera ' .. made) end end }");
    const std::string record = directory.Path("run.rec"), area = directory.Path("out");
    ASSERT_EQ(Run({game, "--no-draw", "--frames", "6", "--record", record, "--out", area}), 0) << err;
    const std::string camera = out.substr(out.find("camera ") + 7, out.find('\n') - out.find("camera ") - 7);
    ASSERT_EQ(Run({game, "--replay", record, "--compare-values", camera + ".width=20", "--out", area}), 0) << err;
    EXPECT_EQ(out, "camera " + camera + "\ncamera " + camera + "\n") << "each game logs once";
    Runner::Picture strip;
    std::string why;
    ASSERT_TRUE(Runner::ReadPng(area + "/comparison.png", strip, why)) << why;
    for (int column = 0; column < 6; ++column)
    {
        const int x = 8 + column * 48;
        EXPECT_EQ(PixelAt(strip, x + 15, 8 + 15), 0u) << column;
        EXPECT_EQ(PixelAt(strip, x + 15, 46 + 8 + 15), column < 3 ? 0u : 0xFFFFFFu) << column;
    }
}

TEST_F(ComparisonPictures, ValuesThatMakeNoSenseAreWrongUsage)
{
    for (const char* const values : {"", "width=20", "0.width", "0.size=3", "x.width=3", "0.width=3x", "-1.width=3",
                                     "0.width=3,", "0.width=inf", "0.width=nan"})
        EXPECT_EQ(Run({"game.lua", "--replay", "run.rec", "--compare-values", values}), 2) << values << err;
    EXPECT_EQ(Run({"game.lua", "--compare-values", "0.width=3"}), 2) << "without a recording";
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
