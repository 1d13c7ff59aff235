#include "Tests/Runner/Draw/Draw_Support.h"

#include "Runner/Draw/Font.h"

#include <set>

namespace DrawTest
{
class Text : public Screen
{
};

TEST(Font, EachCharacterLooksDifferentAndOnlySpaceIsEmpty)
{
    const Runner::Picture font = Runner::DrawFont();
    std::set<std::vector<bool>> looks;
    for (int frame = 0; frame < Runner::FONT_FRAMES; frame++)
    {
        std::vector<bool> look;
        for (int i = 0; i < Runner::FONT_CELL_WIDTH * Runner::FONT_CELL_HEIGHT; i++)
            look.push_back(At(font, frame * Runner::FONT_CELL_WIDTH + i % Runner::FONT_CELL_WIDTH,
                              i / Runner::FONT_CELL_WIDTH) == WHITE);
        const auto inked = std::count(look.begin(), look.end(), true);
        EXPECT_EQ(inked == 0, frame == 0) << frame;
        EXPECT_TRUE(looks.insert(look).second) << static_cast<char>(frame + Runner::FONT_FIRST);
    }
}

TEST(Font, CharactersDoNotTouchTheirNeighbours)
{
    const Runner::Picture font = Runner::DrawFont();
    for (int frame = 0; frame < Runner::FONT_FRAMES; frame++)
    {
        const int left = frame * Runner::FONT_CELL_WIDTH;
        EXPECT_EQ(CountPixels(font, NOTHING, left + 7, 0, left + 8, 12), 12) << frame;
        EXPECT_EQ(CountPixels(font, NOTHING, left, 11, left + 8, 12), 8) << frame;
    }
}

TEST_F(Text, AnUnscaledCharacterIsItsPictureInTheFont)
{
    const Runner::Picture font = Runner::DrawFont();
    Paint().SetColour(Colour(GREEN));
    Paint().Text(10, 20, "g");
    const Runner::Picture shown = Shown();
    for (int y = 0; y < 12; y++)
    {
        for (int x = 0; x < 8; x++)
            EXPECT_EQ(At(shown, 10 + x, 20 + y), At(font, ('g' - 32) * 8 + x, y) == WHITE ? GREEN : BLACK);
    }
    EXPECT_EQ(CountPixels(shown, BLACK, 10, 20, 18, 32) + CountPixels(shown, GREEN), 96);
}

TEST_F(Text, CharactersFollowEachOtherAndLinesToo)
{
    Paint().Text(0, 0, "II\nI");
    Runner::Picture shown = Shown();
    EXPECT_GT(CountPixels(shown, WHITE, 0, 0, 8, 12), 0);
    EXPECT_EQ(CountPixels(shown, WHITE, 0, 0, 8, 12), CountPixels(shown, WHITE, 8, 0, 16, 12));
    EXPECT_EQ(CountPixels(shown, WHITE, 0, 0, 8, 12), CountPixels(shown, WHITE, 0, 12, 8, 24));
    EXPECT_EQ(CountPixels(shown, WHITE, 8, 12, 64, 24), 0);
}

TEST_F(Text, ScalesByWholePixels)
{
    Paint().Text(0, 0, "A", 1);
    const int small = CountPixels(Shown(), WHITE);
    Paint().Clear(0);
    Paint().Text(0, 0, "A", 3);
    EXPECT_EQ(CountPixels(Shown(), WHITE), small * 9);
}

TEST_F(Text, CharactersBeyondAsciiShowAsOneQuestionMark)
{
    Paint().Text(0, 0, "?");
    const Runner::Picture mark = Shown();
    for (const char* text : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFF", "\t", "\x7F"})
    {
        Paint().Clear(0);
        Paint().Text(0, 0, text);
        EXPECT_EQ(Shown().rgba, mark.rgba) << text;
    }
}

TEST(TextSize, IsTheLongestLineByAllLines)
{
    EXPECT_EQ(Runner::Painter::TextWidth("abc"), 24.0f);
    EXPECT_EQ(Runner::Painter::TextWidth("ab\nabcd\na", 2), 64.0f);
    EXPECT_EQ(Runner::Painter::TextWidth("\xC3\xA4"), 8.0f);
    EXPECT_EQ(Runner::Painter::TextWidth(""), 0.0f);
    EXPECT_EQ(Runner::Painter::TextHeight(""), 0.0f);
    EXPECT_EQ(Runner::Painter::TextHeight("a"), 12.0f);
    EXPECT_EQ(Runner::Painter::TextHeight("a\n\nb", 2), 72.0f);
}
} // namespace DrawTest
