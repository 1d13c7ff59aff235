// The functions that scripts call, against their page in the documentation, and each drawing function once.

#include "Tests/Runner/Support/Game_Support.h"

#include <set>

namespace
{
using RunnerTest::GameTest;

class ScriptApi : public GameTest
{
protected:
    static std::string Page()
    {
        std::ifstream file(std::string(TESTS_DIR) + "/../Docs/Script_API.md");
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

    // Plays one frame with the statements as the room's draw event.
    std::string Draw(const std::string& statements)
    {
        options.draw = true;
        options.width = options.height = 32;
        return Play("room_add{ draw = function()\n" + statements +
                    "\nend, create = function() S = surface_create(8, 8)\n" + "end }");
    }
};

bool IsOfName(char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_'; }

// In the tables' rows: the names before an opening bracket. Those after dots are abbreviations of others.
std::set<std::string> DocumentedFunctions(const std::string& page)
{
    std::set<std::string> names;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);)
    {
        for (size_t end = line.find_first_of("({"); line[0] == '|' && end != std::string::npos;
             end = line.find_first_of("({", end + 1))
        {
            size_t start = end;
            while (start > 0 && IsOfName(line[start - 1]))
                --start;
            if (start < end && line[start - 1] != '.')
                names.insert(line.substr(start, end - start));
        }
    }
    for (const char* event : {"step", "draw", "draw_gui", "create", "destroy"})
        names.erase(event);
    return names;
}

TEST_F(ScriptApi, EveryDocumentedFunctionExists)
{
    const std::set<std::string> names = DocumentedFunctions(Page());
    ASSERT_GT(names.size(), 60u);
    for (const std::string& name : names)
        EXPECT_EQ(Run("assert(type(" + name + ") == 'function')"), "") << name;
}

TEST_F(ScriptApi, EveryFunctionOfTheRunnerIsDocumented)
{
    ASSERT_EQ(Run("for name, v in pairs(_G) do if type(v) == 'function' then print(name) end end"), "");
    const std::string page = Page();
    std::istringstream names(Log());
    for (std::string name; std::getline(names, name);)
    {
        const bool abbreviated = name.rfind("camera_", 0) == 0 || name.rfind("view_", 0) == 0;
        EXPECT_TRUE(abbreviated || page.find(name) != std::string::npos) << name;
    }
}

// The example that opens the page is a game that plays.
TEST_F(ScriptApi, TheFirstExampleOfThePagePlays)
{
    const std::string page = Page();
    const size_t start = page.find("```lua\n") + 7;
    ASSERT_EQ(Play(page.substr(start, page.find("```", start) - start), 200), "");
    EXPECT_EQ(game->world.Find(100000)->x, 700.0f); // 100, and 200 steps of 3
}

TEST_F(ScriptApi, EveryDrawingFunctionDraws)
{
    EXPECT_EQ(Draw("draw_set_colour(colours.red) draw_set_alpha(0.5) draw_set_depth(3) draw_set_depth_test(true)\n"
                   "draw_set_depth_test(false) draw_clear(colours.blue) draw_clear(0, 0.5)\n"
                   "draw_rectangle(1, 2, 3, 4) draw_rectangle(1, 2, 3, 4, true)\n"
                   "draw_line(1, 2, 3, 4) draw_line(1, 2, 3, 4, 2) draw_circle(5, 5, 3) draw_circle(5, 5, 3, true)\n"
                   "draw_triangle(0, 0, 5, 0, 0, 5) draw_triangle(0, 0, 5, 0, 0, 5, true)\n"
                   "draw_text(0, 0, 'text') draw_text(0, 0, 'a\\nb', 2)\n"
                   "surface_set_target(S) draw_clear(0, 0) draw_circle(4, 4, 4) surface_reset_target()\n"
                   "draw_surface(S, 1, 2) draw_surface(S, 1, 2, 2, 2, 45, colours.red, 0.5)\n"
                   "matrix_set_world(matrix_build(1, 2, 3, 10, 20, 30, 1, 1, 1)) matrix_reset_world()\n"
                   "draw_quad3d(-1, 0, 0, 0, 0, 5, 0, 0, 5, 5, 0, 0, 5, 0) draw_box(-1, 0, 0, 0, 0, 5, 5, 5)"),
              "");
}

TEST_F(ScriptApi, MatricesMultiplyAsTheirPageSays)
{
    EXPECT_EQ(
        Run("local function same(a, b) for i = 1, 16 do if math.abs(a[i] - b[i]) > 1e-5 then return false end end\n"
            "  return true end\n"
            "local move = matrix_build(1, 2, 3, 0, 0, 0, 1, 1, 1)\n"
            "local scale = matrix_build(0, 0, 0, 0, 0, 0, 2, 2, 2)\n"
            "assert(same(matrix_multiply(matrix_identity(), move), move))\n"
            "local m = matrix_multiply(move, scale) assert(m[13] == 2 and m[14] == 4 and m[15] == 6)\n"
            "local n = matrix_multiply(scale, move) assert(n[13] == 1 and n[14] == 2 and n[15] == 3)\n"
            "local v = matrix_look_at(0, 0, -5, 0, 0, 0, 0, 1, 0) assert(v[15] == 5)\n"
            "local o = matrix_ortho(4, 2, 0, 10) assert(o[1] == 0.5 and o[6] == 1)\n"
            "assert(same(matrix_perspective_fov(90, 2, 1, 10), matrix_perspective(4, 2, 1, 10)))"),
        "");
}

TEST_F(ScriptApi, ColoursHaveRedInTheLowestByte)
{
    EXPECT_EQ(Run("assert(colour_rgb(1, 2, 3) == 0x030201 and colours.red == 255)\n"
                  "assert(not pcall(colour_rgb, 256, 0, 0) and not pcall(colour_rgb, 0, -1, 0))"),
              "");
}

TEST_F(ScriptApi, SurfacesComeAndGo)
{
    EXPECT_EQ(Run("local s = surface_create(4, 4) assert(surface_exists(s)) surface_free(s)\n"
                  "assert(not surface_exists(s) and not pcall(surface_create, 0, 4))"),
              "");
}

TEST_F(ScriptApi, ATargetWithoutASetIsAnError)
{
    EXPECT_EQ(Draw("surface_reset_target()"), "main.lua:2: surface_reset_target() - there was no surface_set_target");
}

TEST_F(ScriptApi, TheScreenSizeCannotChangeOnceItIsUsed)
{
    EXPECT_EQ(Play("room_add{}\nscreen_set_size(5, 5)"),
              "main.lua:2: screen_set_size() - must come before the first sprite, surface, tile map and room");
}
} // namespace
