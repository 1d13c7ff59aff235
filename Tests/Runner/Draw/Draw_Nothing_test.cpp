// A painter that draws nothing answers as one that draws.
#include "Tests/Runner/Draw/Draw_Support.h"

namespace DrawTest
{
namespace
{
std::unique_ptr<Runner::Painter> OpenOrFail(int width, int height, bool draw)
{
    std::string error;
    auto painter = Runner::Painter::Open(width, height, draw, error);
    EXPECT_NE(painter, nullptr) << error;
    return painter;
}
} // namespace

TEST(PainterOfNothing, KeepsNumbersAndSizes)
{
    const auto painter = OpenOrFail(64, 48, false);
    EXPECT_FALSE(painter->Draws());
    EXPECT_EQ(painter->ScreenWidth(), 64);
    EXPECT_EQ(painter->ScreenHeight(), 48);
    const int sprite = painter->AddSheet(FourCorners(8), 4, 4, 2, 2);
    EXPECT_EQ(painter->FindSprite(sprite)->frames, 4);
    const int surface = painter->CreateSurface(10, 20);
    EXPECT_EQ(painter->SurfaceHeight(surface), 20);
    EXPECT_EQ(painter->CreateSurface(0, 20), -1);
    EXPECT_NE(painter->TakeError(), "");
    const int map = painter->CreateTileMap(sprite, 5, 5, 8, 8);
    EXPECT_TRUE(painter->SetTile(map, 4, 4, 3));
    EXPECT_EQ(painter->GetTile(map, 4, 4), 3);
    EXPECT_TRUE(painter->FreeTileMap(map));
    EXPECT_TRUE(painter->FreeSprite(sprite));
    EXPECT_TRUE(painter->FreeSurface(surface));
}

TEST(PainterOfNothing, BindsSurfacesWithTheSameMatrices)
{
    kvMatrix products[2];
    for (const bool draws : {false, true})
    {
        Runner::ResetGraphics();
        const auto painter = OpenOrFail(64, 48, draws);
        ASSERT_TRUE(painter->PushTarget(painter->CreateSurface(10, 20)));
        EXPECT_EQ(g_RenderTargetActive, 0);
        products[draws ? 1 : 0] = Runner::RoomToClip();
    }
    EXPECT_EQ(g_RenderTargetActive, -1) << "a painter that goes leaves no target behind";
    EXPECT_TRUE(std::equal(products[0].u, products[0].u + 16, products[1].u));
}

TEST(PainterOfNothing, DrawsNothing)
{
    const auto painter = OpenOrFail(64, 48, false);
    const int sprite = painter->AddSheet(FourCorners(8), 8, 8), surface = painter->CreateSurface(4, 4);
    const int map = painter->CreateTileMap(sprite, 5, 5, 8, 8);
    painter->SetTile(map, 0, 0, 0);
    painter->Clear(Colour(RED));
    painter->Rectangle(0, 0, 9, 9);
    painter->Sprite(sprite, 0, 0, 0);
    painter->Surface(surface, 0, 0);
    painter->TileMap(map, 0, 0);
    painter->Text(0, 0, "text");
    painter->Box(sprite, 0, {0, 0, 0}, {1, 1, 1});
    painter->EndFrame();
    EXPECT_EQ(painter->Counts().batches, 0);
    EXPECT_EQ(painter->TakeError(), "");
    EXPECT_EQ(CountPixels(painter->ReadScreen(), BLACK), 64 * 48);
    Runner::Picture picture;
    EXPECT_TRUE(painter->ReadSurface(surface, picture));
    EXPECT_EQ(CountPixels(picture, NOTHING), 16);
    painter->Sprite(9, 0, 0, 0);
    EXPECT_EQ(painter->TakeError(), "there is no sprite 9");
}

TEST(PainterSize, MustBePossible)
{
    for (const auto& [width, height] : {std::pair(0, 64), {64, 0}, {-1, 64}, {8193, 1}, {64, 100000}})
    {
        std::string error;
        EXPECT_EQ(Runner::Painter::Open(width, height, true, error), nullptr);
        EXPECT_EQ(error, "the screen cannot be " + std::to_string(width) + " x " + std::to_string(height) +
                             " pixels: both sides must be 1 to 8192");
    }
    EXPECT_EQ(CountPixels(OpenOrFail(1, 1, true)->ReadScreen(), BLACK), 1);
    EXPECT_EQ(CountPixels(OpenOrFail(8192, 1, true)->ReadScreen(), BLACK), 8192);
}

TEST(PainterLife, PaintersFollowEachOtherAndEvenOverlap)
{
    const auto first = OpenOrFail(16, 16, true);
    first->Clear(Colour(RED));
    {
        const auto second = OpenOrFail(8, 8, true);
        second->Clear(Colour(GREEN));
        EXPECT_EQ(CountPixels(first->ReadScreen(), RED), 16 * 16);
        EXPECT_EQ(CountPixels(second->ReadScreen(), GREEN), 64);
    }
    EXPECT_EQ(CountPixels(first->ReadScreen(), RED), 16 * 16);
    for (int i = 0; i < 5; i++)
        EXPECT_EQ(CountPixels(OpenOrFail(4, 4, true)->ReadScreen(), BLACK), 16);
}

TEST(PainterLife, TheSamePixelsFromTwoPainters)
{
    Runner::Picture pictures[2];
    for (Runner::Picture& picture : pictures)
    {
        const auto painter = OpenOrFail(100, 80, true);
        LookAt(1.7f, 2.9f, 77.7f, 55.5f, 12.3f);
        painter->SetAlpha(0.7f);
        painter->Circle(40, 30, 21.3f);
        painter->Sprite(painter->AddSheet(FourCorners(16), 16, 16), 0, Runner::Placement{30, 20, 1.3f, 0.7f, 77});
        picture = painter->ReadScreen();
    }
    EXPECT_EQ(pictures[0].rgba, pictures[1].rgba);
}
} // namespace DrawTest
