// Calls that make no sense: each is refused with one line that names the function and the entry, and changes nothing.

#include "Tests/Runner/Support/Game_Support.h"

#include <ostream>

namespace
{
using RunnerTest::GameTest;

struct Mistake
{
    const char* name;
    const char* statement;
    const char* complaint;
};

std::ostream& operator<<(std::ostream& out, const Mistake& mistake) { return out << mistake.statement; }

class ScriptMistakes : public GameTest, public ::testing::WithParamInterface<Mistake>
{
protected:
    // A sheet of 16 x 19 frames of 16 x 16 pixels, sprite 0.
    void SetUp() override
    {
        std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"));
    }

    std::string PlayStatement(const std::string& statement)
    {
        return Play("S = sprite_add_sheet('tiles.png', 16, 16)\nFRAMES = sprite_frames(S)\n" + statement +
                    "\nroom_add{}");
    }
};

TEST_P(ScriptMistakes, AreRefusedInOneLine)
{
    EXPECT_EQ(PlayStatement(GetParam().statement), std::string("main.lua:3: ") + GetParam().complaint);
}

INSTANTIATE_TEST_SUITE_P(
    TileMaps, ScriptMistakes,
    ::testing::Values(
        Mistake{"NotANumber", "tilemap_add{ sprite = S, columns = 2, rows = 1, data = {1, 'a'} }",
                "tilemap_add() - data[2] is a whole number, got the string \"a\""},
        Mistake{"AHole", "tilemap_add{ sprite = S, columns = 3, rows = 1, data = {1, nil, 3} }",
                "tilemap_add() - data[2] is a whole number, got nil"},
        Mistake{"AFraction", "tilemap_add{ sprite = S, columns = 2, rows = 1, data = {1.5, 1} }",
                "tilemap_add() - data[1] is a whole number of 32 bits, got the number 1.5"},
        Mistake{"NoSuchFrame", "tilemap_add{ sprite = S, columns = 2, rows = 1, data = {1, 100000} }",
                "tilemap_add() - data[2] is no tile of sprite 0: it must be 0 to 304, got 100000"},
        Mistake{"ANegativeTile", "tilemap_add{ sprite = S, columns = 2, rows = 1, data = {-1, 1} }",
                "tilemap_add() - data[1] is no tile of sprite 0: it must be 0 to 304, got -1"},
        Mistake{"TooShort", "tilemap_add{ sprite = S, columns = 3, rows = 2, data = {1, 2, 3, 4, 5} }",
                "tilemap_add() - data must have 6 entries, columns times rows, got 5"},
        Mistake{"TooLong", "tilemap_add{ sprite = S, columns = 1, rows = 1, data = {1, 2} }",
                "tilemap_add() - data must have 1 entry, columns times rows, got 2"},
        Mistake{"NoSprite", "tilemap_add{ columns = 1, rows = 1 }",
                "tilemap_add() - sprite must be a sprite, there is no sprite -1"},
        Mistake{"NoRows", "tilemap_add{ sprite = S, columns = 1, rows = 0 }",
                "tilemap_add() - rows is 1 to 2147483647, got 0"},
        Mistake{"TooMany", "tilemap_add{ sprite = S, columns = 65536, rows = 65536 }",
                "tilemap_add() - a tile map cannot have 65536 x 65536 tiles of this size: it needs at least one and at "
                "most 16777216"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Rooms, ScriptMistakes,
    ::testing::Values(
        Mistake{"ATargetBelowNone", "room_add{ views = { [3] = { target = -7 } } }",
                "room_add() - views[3].target must be an object, an instance or -1 for none, there is no object -7"},
        Mistake{"ATargetThatIsNoObject", "room_add{ views = { [0] = { target = 99999 } } }",
                "room_add() - views[0].target must be an object, an instance or -1 for none, there is no object 99999"},
        Mistake{"APlaceOfAnInstance", "object_add{} room_add{ instances = { {0, 1, 2}, {0, 1, 0/0} } }",
                "room_add() - instances[2][3] is a finite number, got the number nan"},
        Mistake{"AnObjectOfAnInstance", "object_add{} room_add{ instances = { {0.4, 1, 2} } }",
                "room_add() - instances[1][1] is a whole number of 32 bits, got the number 0.4"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Objects, ScriptMistakes,
    ::testing::Values(Mistake{"ASpriteThatIsNone", "object_add{ sprite = 99 }",
                              "object_add() - sprite must be a sprite or -1 for none, there is no sprite 99"},
                      Mistake{"ASpriteBelowNone", "object_add{ sprite = -2 }",
                              "object_add() - sprite must be a sprite or -1 for none, there is no sprite -2"},
                      Mistake{"AnEdgeOfABox", "object_add{ bbox = {1, 2, 1/0, 4} }",
                              "object_add() - bbox[3] is a finite number, got the number inf"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(RandomNumbers, ScriptMistakes,
                         ::testing::Values(Mistake{"Negative", "irandom(-1)",
                                                   "irandom: argument 1 (n) is 0 or more, got the number -1"}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(ScriptMistakes, ARefusedTileMapTakesNoNumber)
{
    EXPECT_EQ(PlayStatement("assert(not pcall(tilemap_add, { sprite = S, columns = 1, rows = 1, data = {1, 2} }))\n"
                            "assert(not pcall(tilemap_add, { sprite = S, columns = 1, rows = 1, color = 2 }))\n"
                            "assert(tilemap_add{ sprite = S, columns = 1, rows = 1, data = {32} } == 0)\n"
                            "assert(tilemap_get(0, 0, 0) == 32)"),
              "");
}

TEST_F(ScriptMistakes, ATargetMayBeAnInstanceThatDoesNotExistYet)
{
    EXPECT_EQ(PlayStatement("local o = object_add{} room_add{ views = { [0] = { target = o },\n"
                            "  [1] = { target = 100000 }, [2] = { target = -1 }, [3] = {} } }"),
              "");
}

TEST_F(ScriptMistakes, AnInstancesSpriteMustExist)
{
    const std::string failure =
        PlayStatement("local o = object_add{ sprite = S, create = function(self)\n"
                      "  self.sprite = -1 self.sprite = S assert(not pcall(function() self.sprite = -2 end))\n"
                      "  assert(self.sprite == S) self.sprite = 99 end } room_add{ instances = { {o, 1, 2} } }");
    EXPECT_EQ(failure, "main.lua:5: \"sprite\" of an instance must be a sprite or -1 for none, there is no sprite 99");
}

TEST_F(ScriptMistakes, IrandomOfZeroIsZero) { EXPECT_EQ(PlayStatement("assert(irandom(0) == 0)"), ""); }

// ---- drawing ----

class DrawingMistakes : public GameTest
{
protected:
    // Plays one frame with the statements in the room's draw, which stands on line 2.
    std::string Draw(const std::string& statements)
    {
        options.draw = true;
        options.width = options.height = 16;
        return Play("screen_set_size(16, 16) room_add{ draw = function()\n" + statements + "\nend }");
    }

    int RedPixels()
    {
        const Runner::Picture picture = game->Screen();
        int count = 0;
        for (size_t i = 0; i < picture.rgba.size(); i += 4)
            count += picture.rgba[i] == 255 && picture.rgba[i + 1] == 0 && picture.rgba[i + 2] == 0 ? 1 : 0;
        return count;
    }
};

// The width is also that of outlines: 4 x 4 pixels with an outline of 1 leave 2 x 2 free.
TEST_F(DrawingMistakes, ARefusedLineLeavesNoWidthBehind)
{
    ASSERT_EQ(Draw("draw_set_colour(colours.red) assert(not pcall(draw_line, 'x', 0, 5, 5, 9))\n"
                   "assert(not pcall(draw_line, 0, 0, 5, 0/0, 9)) draw_rectangle(2, 2, 6, 6, true)"),
              "");
    EXPECT_EQ(RedPixels(), 12);
}

TEST_F(DrawingMistakes, ALineHasItsWidthAndLeavesNoneBehind)
{
    ASSERT_EQ(Draw("draw_set_colour(colours.red) draw_line(0, 8, 16, 8, 2) draw_rectangle(2, 2, 6, 6, true)"), "");
    EXPECT_EQ(RedPixels(), 2 * 16 + 12);
}

TEST_F(DrawingMistakes, AQuadAndABoxThatAreRefusedLeaveTheDepthTestOff)
{
    ASSERT_EQ(Draw("assert(not pcall(draw_box, -1, 0, 0, 0, 0, 1, 1, 'x'))\n"
                   "assert(not pcall(draw_quad3d, 7, 0, 0, 0, 0, 5, 0, 0, 5, 5, 0, 0, 5, 0))\n"
                   "draw_set_colour(colours.blue) draw_rectangle(0, 0, 4, 4)\n"
                   "draw_set_depth(100) draw_set_colour(colours.red) draw_rectangle(0, 0, 4, 4)"),
              "");
    EXPECT_EQ(RedPixels(), 16) << "what is drawn later covers, though it is further away";
}

// The first bad argument is named, whatever the order in which a compiler evaluates them.
TEST_F(DrawingMistakes, TheFirstBadArgumentIsNamed)
{
    for (const char* call :
         {"draw_rectangle('a', 'b', 'c', 'd')", "draw_line('a', 'b', 'c', 'd')", "draw_circle('a', 'b', 'c')",
          "draw_triangle('a', 'b', 'c', 'd', 'e', 'f')", "draw_text('a', 'b', {})", "matrix_ortho('a', 'b', 'c', 'd')",
          "matrix_perspective('a', 'b', 'c', 'd')", "draw_surface('a', 'b', 'c')", "draw_sprite('a', 'b', 'c', 'd')",
          "draw_tilemap('a', 'b', 'c')", "draw_sprites('a', 'b', 'c', 'd')", "draw_clear('a', 'b')",
          "matrix_build('a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i')", "surface_create('a', 'b')",
          "tilemap_set('a', 'b', 'c', 'd')", "tilemap_get('a', 'b', 'c')", "matrix_multiply('a', 'b')",
          "random_range('a', 'b')"})
    {
        const std::string failure = Draw(call);
        EXPECT_NE(failure.find("argument 1 "), std::string::npos) << failure;
    }
}

TEST_F(DrawingMistakes, NumbersAreTextToo)
{
    ASSERT_EQ(Draw("draw_set_colour(colours.red) draw_text(0, 0, 5)"), "");
    const int five = RedPixels();
    ASSERT_EQ(Draw("draw_set_colour(colours.red) draw_text(0, 0, '5')"), "");
    EXPECT_EQ(RedPixels(), five);
    EXPECT_GT(five, 0);
    ASSERT_EQ(Draw("log(5) log(2.5) log(-0.0/0.0)"), "");
    EXPECT_EQ(Log(), "5\n2.5\nnan\n");
    EXPECT_EQ(Draw("draw_text(0, 0, {})"),
              "main.lua:2: draw_text: argument 3 (text) is a string or a number, got a table");
}

TEST_F(DrawingMistakes, AViewWhoseSurfaceDoesNotExistSaysSoOnce)
{
    options.draw = false;
    ASSERT_EQ(Play("room_add{ views = { [2] = {} }, step = function() local f = frame_number()\n"
                   "  if f == 1 then view_set_surface_id(2, 55) end\n"
                   "  if f == 5 then view_set_surface_id(2, surface_create(4, 4)) end\n"
                   "  if f == 6 then view_set_surface_id(2, 55) end end }",
                   8),
              "");
    const std::string line = "view 2 shows nothing: it draws into surface 55, which does not exist\n";
    EXPECT_EQ(Log(), line + line);
}
} // namespace
