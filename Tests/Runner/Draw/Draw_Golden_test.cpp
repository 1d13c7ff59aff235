// Frames of the example games look as they did when somebody last looked at them: pixel for pixel under the driver that
// drew the golden pictures, and all but the same under another.
#include "Runner/Draw/Png_Reader.h"
#include "Runner/Draw/Screenshot.h"
#include "Tests/Runner/Support/Game_Support.h"
#include "Tests/Runner/Support/Golden_Runs.h"

#include <algorithm>
#include <cmath>

namespace
{
using Runner::Picture;

struct Shot
{
    const char* game;
    int frame;
};

constexpr Shot SHOTS[] = {{"canyon", 40}, {"canyon", 150}, {"canyon", 300}, {"shake", 120}, {"orbit", 60}};
constexpr double MEAN_DIFFERENCE_OF_DRIVERS = 2.0; // of 255: edges may fall on the neighbouring pixel

class GoldenPicture : public testing::TestWithParam<Shot>
{
protected:
    static std::string Name()
    {
        char number[16];
        std::snprintf(number, sizeof(number), "_%05d.png", GetParam().frame);
        return GetParam().game + std::string(number);
    }

    Picture Draw()
    {
        Runner::GameOptions options;
        options.file = RunnerTest::GameFile(GetParam().game);
        options.width = 640;
        options.height = 360;
        Runner::Game game(options, Runner::OpenApi);
        EXPECT_TRUE(game.Load()) << game.Failure();
        for (int frame = 0; frame <= GetParam().frame; ++frame)
            EXPECT_TRUE(game.Frame()) << game.Failure();
        m_driver = game.CurrentPainter()->Driver();
        return game.Screen();
    }

    // Writes the picture into the golden directory, and who drew it.
    void Keep(const Picture& picture) const
    {
        std::string why;
        Runner::SetSaveArea(RunnerTest::GoldenFile(""));
        ASSERT_TRUE(Runner::WriteScreenshot(picture, Name(), "png", why)) << why;
        std::ofstream(RunnerTest::GoldenFile("driver.txt")) << m_driver << "\n";
    }

    bool IsGoldenDriver() const
    {
        std::ifstream file(RunnerTest::GoldenFile("driver.txt"));
        std::string driver;
        std::getline(file, driver);
        return driver == m_driver;
    }

    std::string m_driver;
};

double MeanDifference(const Picture& a, const Picture& b)
{
    double sum = 0.0;
    for (size_t i = 0; i < a.rgba.size(); ++i)
        sum += std::abs(static_cast<int>(a.rgba[i]) - static_cast<int>(b.rgba[i]));
    return sum / static_cast<double>(a.rgba.size());
}

TEST_P(GoldenPicture, LooksTheSame)
{
    const Picture drawn = Draw();
    if (std::getenv("GOLDEN_UPDATE") != nullptr)
        Keep(drawn);
    Picture golden;
    std::string error;
    ASSERT_TRUE(Runner::ReadPng(RunnerTest::GoldenFile(Name()), golden, error)) << error;
    ASSERT_EQ(drawn.width, golden.width);
    ASSERT_EQ(drawn.height, golden.height);
    const double difference = MeanDifference(drawn, golden);
    if (IsGoldenDriver())
        EXPECT_EQ(difference, 0.0) << Name() << " drawn by " << m_driver;
    else
        EXPECT_LT(difference, MEAN_DIFFERENCE_OF_DRIVERS) << Name() << " drawn by " << m_driver;
}

INSTANTIATE_TEST_SUITE_P(Of, GoldenPicture, testing::ValuesIn(SHOTS),
                         [](const auto& each)
                         { return each.param.game + std::string("AtFrame") + std::to_string(each.param.frame); });
} // namespace
