// Surfaces and tile maps under the numbers that a save gives them: the time follows the file's size, whatever the
// numbers are.

#include "Tests/Runner/Save/Save_Support.h"

#include <ctime>

namespace
{
using RunnerTest::SaveTest;

constexpr double SECONDS_ALLOWED = 3.0; // of the processor; some hundredths are enough without sanitizers

class SaveNumbers : public SaveTest
{
protected:
    void SetUp() override { ASSERT_EQ(Play("room_add{}"), ""); }

    Runner::SavedState Saved()
    {
        EXPECT_EQ(Save(), "");
        Runner::SavedState state;
        std::string why;
        EXPECT_TRUE(Runner::DecodeState(Bytes(), state, why)) << why;
        return state;
    }

    // Writes the state as a file, and loads that. The seconds of the load.
    double LoadAsFile(const Runner::SavedState& state)
    {
        std::vector<uint8_t> file;
        std::string why;
        EXPECT_TRUE(Runner::EncodeState(state, file, why)) << why;
        directory.Write("state.sav", std::string(file.begin(), file.end()));
        const std::clock_t start = std::clock();
        EXPECT_EQ(Load(), "");
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }

    Runner::Painter& Paint() { return *game->CurrentPainter(); }
};

TEST_F(SaveNumbers, OneSurfaceOfTheLargestNumberLoadsAtOnceAndAlone)
{
    Runner::SavedState state = Saved();
    state.surfaces = {{0xFFFF, 12, 34}};
    EXPECT_LT(LoadAsFile(state), SECONDS_ALLOWED);
    EXPECT_EQ(Paint().SurfaceWidth(0xFFFF), 12);
    EXPECT_EQ(Paint().SurfaceHeight(0xFFFF), 34);
    EXPECT_FALSE(Paint().SurfaceExists(0xFFFE));
    EXPECT_EQ(Paint().CreateSurface(1, 1), 0) << "the lowest free number comes first";
}

TEST_F(SaveNumbers, AllSurfacesThatThereCanBeLoadAtOnce)
{
    Runner::SavedState state = Saved();
    for (int number = 0; number <= 0xFFFF; ++number)
        state.surfaces.push_back({number, 1, 1});
    EXPECT_LT(LoadAsFile(state), SECONDS_ALLOWED);
    EXPECT_EQ(Paint().CreateSurface(1, 1), -1) << "a save with it could not be loaded";
    EXPECT_EQ(Paint().TakeError(), "there are 65536 surfaces already: free some first");
}

// Small ones: a save of two megabytes.
TEST_F(SaveNumbers, ManyTileMapsLoadAtOnce)
{
    Runner::Picture picture{8, 8, std::vector<uint8_t>(8 * 8 * 4)};
    const int sprite = Paint().AddSheet(picture, 8, 8, 0, 0);
    Runner::SavedState state = Saved();
    for (int number = 0; number < 60000; ++number)
        state.tileMaps.push_back({number, sprite, 1, 1, 8.0f, 8.0f, {0}});
    EXPECT_LT(LoadAsFile(state), SECONDS_ALLOWED);
    EXPECT_EQ(Paint().TileMapNumbers(), 60000);
}

TEST_F(SaveNumbers, SurfacesReplaceThoseOfTheRunningGame)
{
    Runner::SavedState state = Saved();
    state.surfaces = {{1, 5, 6}, {3, 7, 8}};
    for (int i = 0; i < 5; ++i)
        Paint().CreateSurface(2, 2);
    LoadAsFile(state);
    for (const int number : {0, 2, 4})
        EXPECT_FALSE(Paint().SurfaceExists(number)) << number;
    EXPECT_EQ(Paint().SurfaceWidth(1), 5);
    EXPECT_EQ(Paint().SurfaceHeight(3), 8);
    EXPECT_EQ(Paint().CreateSurface(1, 1), 0);
    EXPECT_EQ(Paint().CreateSurface(1, 1), 2);
    EXPECT_EQ(Paint().CreateSurface(1, 1), 4);
}

// What surfaces take is given back when they go: loading again and again never runs out.
TEST_F(SaveNumbers, TheLimitOfPixelsCountsTheSurfacesThatAreThere)
{
    Runner::SavedState state = Saved();
    state.surfaces = {{7, 8192, 8192}};
    for (int times = 0; times < 3; ++times)
    {
        LoadAsFile(state);
        EXPECT_TRUE(Paint().SurfaceExists(7)) << times;
        EXPECT_EQ(Paint().CreateSurface(1, 1), -1) << "all 67,108,864 pixels are taken";
        Paint().TakeError();
    }
}
} // namespace
