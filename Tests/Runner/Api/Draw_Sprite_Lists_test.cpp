// draw_sprites: the same pictures as one draw_sprite for each entry of its lists.
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
class SpriteLists : public RunnerTest::GameTest
{
protected:
    // Plays one frame with the statements in the room's draw, which stands on line 3. S: 16 x 19 frames of 16 x 16.
    std::string Draw(const std::string& statements)
    {
        std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"),
                                   std::filesystem::copy_options::overwrite_existing);
        options.draw = true;
        options.width = options.height = 64;
        return Play("screen_set_size(64, 64) S = sprite_add_sheet('tiles.png', 16, 16, 8, 8)\nroom_add{ draw = "
                    "function()\n" +
                    statements + "\nend }");
    }

    std::vector<uint8_t> Pixels() { return game->Screen().rgba; }
};

TEST_F(SpriteLists, DrawWhatOneCallForEachEntryDraws)
{
    const std::string lists =
        "local f, x, y = {20, 21.4, -1, 305 + 20, 40}, {8, 20.5, 30, -4, 60}, {8, 9, 40.25, 60, 7}\n"
        "draw_set_alpha(0.75)\n";
    ASSERT_EQ(Draw(lists + "for i = 1, #f do draw_sprite(S, f[i], x[i], y[i]) end"), "");
    const std::vector<uint8_t> one = Pixels();
    ASSERT_EQ(Draw(lists + "draw_sprites(S, f, x, y)"), "");
    EXPECT_TRUE(Pixels() == one);
    ASSERT_EQ(Draw("draw_sprites(S, {}, {}, {})"), "");
    EXPECT_FALSE(Pixels() == one) << "the tiles leave the picture as it was";
}

TEST_F(SpriteLists, AWrongEntryIsNamedAndNothingIsDrawn)
{
    EXPECT_EQ(Draw("draw_sprites(S, {1, 2}, {8, 'a'}, {8, 8})"),
              "main.lua:3: draw_sprites: argument 3 (x_list), entry 2 is a number, got the string \"a\"");
    EXPECT_EQ(Draw("draw_sprites(S, {1, 2}, {8, 8}, {8, 1/0})"),
              "main.lua:3: draw_sprites: argument 4 (y_list), entry 2 is a finite number, got the number inf");
    EXPECT_EQ(Draw("draw_sprites(S, {true}, {8}, {8})"),
              "main.lua:3: draw_sprites: argument 2 (frame_list), entry 1 is a number, got true");
    ASSERT_EQ(Draw(""), "");
    const std::vector<uint8_t> nothing = Pixels();
    ASSERT_EQ(Draw("assert(not pcall(draw_sprites, S, {20, 20}, {8, {}}, {8, 40}))"), "");
    EXPECT_TRUE(Pixels() == nothing);
}

TEST_F(SpriteLists, ListsOfDifferentLengthsAreRefused)
{
    EXPECT_EQ(Draw("draw_sprites(S, {1, 2}, {8}, {8, 8})"),
              "main.lua:3: draw_sprites: argument 3 (x_list) has as many entries as frame_list, 2, got a table of 1");
    EXPECT_EQ(Draw("draw_sprites(S, {1, 2}, {8, 8}, {8, 8, 8})"),
              "main.lua:3: draw_sprites: argument 4 (y_list) has as many entries as frame_list, 2, got a table of 3");
    EXPECT_EQ(Draw("draw_sprites(S, 1, {8}, {8})"),
              "main.lua:3: draw_sprites: argument 2 (frame_list) is a table of numbers, got the number 1");
    EXPECT_EQ(Draw("draw_sprites(7, {1}, {8}, {8})"), "main.lua:3: draw_sprites() - there is no sprite 7");
}

// The length of such a list is 2^30 or 2^62 by Lua's rules: memory for as many entries is not there, and the second
// does not fit into an int.
TEST_F(SpriteLists, AHoleIsRefusedHoweverLongTheListSaysThatItIs)
{
    for (const char* const power : {"30", "62"})
        EXPECT_EQ(Draw(std::string("local l = {} for i = ") + power + ", 0, -1 do l[1 << i] = 8 end\n" +
                       "assert(rawlen(l) == 1 << " + power + ") draw_sprites(S, l, l, l)"),
                  "main.lua:4: draw_sprites: argument 2 (frame_list), entry 3 is a number, got nil");
}

TEST_F(SpriteLists, NoMetamethodRuns)
{
    ASSERT_EQ(Draw("local lists = setmetatable({}, { __len = function() error('len') end, __index = error })\n"
                   "draw_sprites(S, lists, lists, lists)"),
              "");
}

// 50,000 entries are more work than the script may do; one call for each list is not.
TEST_F(SpriteLists, CountAsWorkOfTheScript)
{
    options.limits.instructions = 200000;
    const std::string lists = "local l = {} for i = 1, 1000 do l[i] = 8 end ";
    EXPECT_EQ(Draw(lists + "draw_sprites(S, l, l, l)"), "");
    EXPECT_NE(Draw(lists + "for i = 1, 50 do draw_sprites(S, l, l, l) end").find("instructions"), std::string::npos);
}
} // namespace
