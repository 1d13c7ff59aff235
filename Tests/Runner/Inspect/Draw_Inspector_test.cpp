// The inspector changes nothing: not the game that it watches, and not the painter that draws it.
#include "Runner/Host/Graphics.h"
#include "Runner/Inspect/Inspector.h"
#include "Runner/Save/Save_File.h"
#include "Tests/Runner/App/Command_Line_Fixture.h"
#include "Tests/Runner/Support/Golden_Runs.h"

namespace
{
class InspectedRun : public RunnerTest::CommandLine, public testing::WithParamInterface<const char*>
{
protected:
    // Plays the example game, with a trace and a saved game at the end.
    void PlayExample(const std::string& name, std::vector<std::string> more)
    {
        more.insert(more.begin(), {RunnerTest::GameFile(GetParam()), "--quiet", "--frames", "60", "--size", "320x180",
                                   "--every", "20", "--out", directory.Path(name), "--trace",
                                   directory.Path(name + ".trace"), "--save-at", "60", directory.Path(name + ".save")});
        ASSERT_EQ(Run(more), 0) << err;
    }

    static std::vector<uint8_t> WithoutThumbnail(const std::string& save)
    {
        std::vector<uint8_t> comparable;
        std::string why;
        EXPECT_TRUE(Runner::ComparableSave({save.begin(), save.end()}, comparable, why)) << why;
        return comparable;
    }
};

TEST_P(InspectedRun, HasTheSameTraceLineByLineAndTheSameSave)
{
    PlayExample("plain", {});
    PlayExample("inspected", {"--inspect"});
    EXPECT_GT(directory.Read("plain.trace").size(), 1000u);
    EXPECT_EQ(directory.Read("plain.trace"), directory.Read("inspected.trace"));
    EXPECT_EQ(WithoutThumbnail(directory.Read("plain.save")), WithoutThumbnail(directory.Read("inspected.save")));
    EXPECT_NE(directory.Read("plain/frame_00040.png"), directory.Read("inspected/frame_00040.png"));
}

INSTANTIATE_TEST_SUITE_P(All, InspectedRun, testing::ValuesIn(RunnerTest::EXAMPLE_GAMES));

class InspectOption : public RunnerTest::CommandLine
{
};

TEST_F(InspectOption, WithoutPicturesIsWrong)
{
    EXPECT_EQ(Play("room_add{}", {"--inspect", "--no-draw"}), 2);
    RunnerTest::ExpectOneLine(err);
}

class DrawInspector : public RunnerTest::GameTest
{
protected:
    DrawInspector() { options.draw = true; }
};

// What a script reads from the screen in its next step is the game's own picture.
TEST_F(DrawInspector, ShowsTheGameAndLeavesItsScreenAlone)
{
    ASSERT_EQ(Play("screen_set_size(64, 48) room_add{ background = colours.red }"), "");
    const Runner::Picture before = game->Screen();
    Runner::Inspector inspector(*game);
    game->observer = &inspector.Observer();
    ASSERT_EQ(PlayOn(1), "");
    std::string why;
    const Runner::Picture shown = inspector.Show(why);
    EXPECT_EQ(why, "");
    EXPECT_EQ(shown.width, 64 + Runner::PANEL_WIDTH);
    EXPECT_GE(shown.height, 48);
    EXPECT_EQ(shown.rgba[shown.Offset(40, 40)], 255) << "the room's background";
    EXPECT_EQ(game->Screen().rgba, before.rgba);
}

// The screen is black and 64 x 48; the surface, of 32 x 24, stands 8 pixels below it, twice as large.
TEST_F(DrawInspector, ShowsSurfacesThatViewsDrewIntoBelowTheScreen)
{
    ASSERT_EQ(
        Play("screen_set_size(64, 48) room_add{ background = colours.blue, views = { [1] = { w = 32, h = 24 } },\n"
             "draw = function() draw_set_colour(colours.red) draw_rectangle(0, 0, 32, 4) end,\n"
             "create = function() view_set_surface_id(1, surface_create(32, 24)) end }"),
        "");
    Runner::Inspector inspector(*game);
    game->observer = &inspector.Observer();
    ASSERT_EQ(PlayOn(1), "");
    std::string why;
    const Runner::Picture shown = inspector.Show(why);
    EXPECT_EQ(why, "");
    const auto pixel = [&shown](int x, int y)
    {
        const uint8_t* rgba = &shown.rgba[shown.Offset(x, y)];
        return (rgba[0] << 16) + (rgba[1] << 8) + rgba[2];
    };
    EXPECT_EQ(pixel(20, 20), 0) << "no view is on the screen";
    EXPECT_EQ(pixel(56, 48 + 8 + 6), 0xFF0000) << "what is on top in the room is on top";
    EXPECT_EQ(pixel(8, 48 + 8 + 12), 0x0000FF);
    EXPECT_EQ(pixel(20, 48 + 8 + 48 + 4), 0) << "below it";
}

TEST_F(DrawInspector, DrawingAsideLeavesThePainterAsItWas)
{
    ASSERT_EQ(Play("screen_set_size(64, 48) room_add{ create = function() surface_create(8, 8) end }"), "");
    Runner::Painter& painter = *game->CurrentPainter();
    painter.SetColour(0x123456);
    painter.SetAlpha(0.25f);
    painter.SetDepth(7.0f);
    const kvMatrix before = Runner::RoomToClip();
    const float area = g_ViewAreaW;
    const Runner::FrameCounts counts = painter.Counts();
    std::string why;
    const Runner::Picture picture = painter.DrawAside(
        16, 8, [&painter] { painter.Rectangle(0.0f, 0.0f, 4.0f, 2.0f); }, why);
    EXPECT_EQ(why, "");
    EXPECT_EQ(picture.rgba[picture.Offset(1, 1)], 255) << "white at first, whatever the game's colour is";
    EXPECT_EQ(picture.rgba[picture.Offset(1, 4)], 0) << "first row on top";
    EXPECT_EQ(painter.Colour(), 0x123456u);
    EXPECT_EQ(painter.Alpha(), 0.25f);
    EXPECT_EQ(painter.Depth(), 7.0f);
    EXPECT_EQ(std::memcmp(Runner::RoomToClip().m, before.m, sizeof before.m), 0);
    EXPECT_EQ(g_ViewAreaW, area);
    EXPECT_EQ(g_RenderTargetActive, -1);
    EXPECT_EQ(painter.Counts().vertices, counts.vertices);
    EXPECT_EQ(painter.CreateSurface(4, 4), 1) << "the next free number, as if nothing had been drawn aside";
}

TEST_F(DrawInspector, APictureThatCannotBeDrawnIsAnErrorOfItsOwn)
{
    ASSERT_EQ(Play("room_add{}"), "");
    std::string why;
    const Runner::Picture picture = game->CurrentPainter()->DrawAside(
        0, 8, [] {}, why);
    EXPECT_TRUE(picture.rgba.empty());
    EXPECT_NE(why, "");
    EXPECT_EQ(game->CurrentPainter()->TakeError(), "") << "not the game's";
}
} // namespace
