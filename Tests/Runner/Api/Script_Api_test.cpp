// The functions that scripts call, against their page in the documentation, and each drawing function once.

#include "Tests/Runner/Support/Documents.h"
#include "Tests/Runner/Support/Game_Support.h"

#include "Runner/Api/Api.h"
#include "Runner/Lua/Bridge.h"

#include <set>

namespace
{
using RunnerTest::GameTest;

class ScriptApi : public GameTest
{
protected:
    static std::string Page() { return RunnerTest::Document("Script_API.md"); }

    // Plays one frame with the statements as the room's draw event.
    std::string Draw(const std::string& statements)
    {
        options.draw = true;
        options.width = options.height = 32;
        return Play("room_add{ draw = function()\n" + statements +
                    "\nend, create = function() S = surface_create(8, 8)\n" + "end }");
    }
};

std::string FirstCell(const std::string& line)
{
    return line.rfind("| ", 0) == 0 ? line.substr(2, line.find(" |", 2) - 2) : "";
}

// In the first column of the page's tables: what stands in backticks and has brackets, up to its result.
std::set<std::string> DocumentedSignatures(const std::string& page)
{
    std::set<std::string> signatures;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);)
    {
        std::istringstream spans(FirstCell(line));
        int number = 0;
        for (std::string span; std::getline(spans, span, '`'); ++number)
            if (number % 2 == 1 && span.find_first_of("({") != std::string::npos)
                signatures.insert(span.substr(0, span.find(" -> ")));
    }
    return signatures;
}

TEST_F(ScriptApi, ThePageShowsEveryFunctionWithTheArgumentsOfItsTable)
{
    std::set<std::string> signatures = {"print(...)"}; // Lua's own
    for (const auto& table : {Runner::BuiltinSignatures(), Runner::ApiSignatures()})
        for (const Runner::Signature& signature : table)
            EXPECT_TRUE(signatures.insert(signature.Text()).second) << signature.Text();
    EXPECT_EQ(signatures.size(), 1u + 47u + 113u);
    EXPECT_EQ(DocumentedSignatures(Page()), signatures);
}

TEST_F(ScriptApi, EveryGlobalFunctionStandsOnThePage)
{
    ASSERT_EQ(Run("for name, v in pairs(_G) do if type(v) == 'function' then print(name) end end"), "");
    const std::string page = Page();
    std::istringstream names(Log());
    for (std::string name; std::getline(names, name);)
        EXPECT_NE(page.find(name), std::string::npos) << name;
}

TEST_F(ScriptApi, TheErrorsOfThePageComeAsShown)
{
    const std::pair<int, const char*> statements[] = {
        {1, "camera_set_view_pos(0, 'left', 2)"},
        {3, "camera_set_view_pos(0, 2)"},
        {7, "local m = matrix_identity() m[7] = nil m[16] = 1 camera_set_view_mat(0, m)"},
    };
    const std::string page = Page();
    for (const auto& [line, statement] : statements)
    {
        const std::string failure = Play(std::string(static_cast<size_t>(line) - 1, '\n') + statement);
        ASSERT_EQ(failure.rfind("main.lua:", 0), 0u) << failure;
        EXPECT_NE(page.find("\ngame" + failure.substr(4) + "\n"), std::string::npos) << failure;
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

TEST_F(ScriptApi, MatrixBuildScalesThenRotatesAboutZThenXThenYThenMoves)
{
    EXPECT_EQ(Run("local parts = matrix_build\n"
                  "local expected = matrix_build(0, 0, 0, 0, 0, 0, 2, 3, 4)\n"
                  "for _, part in ipairs{ parts(0, 0, 0, 0, 0, 40, 1, 1, 1), parts(0, 0, 0, 20, 0, 0, 1, 1, 1),\n"
                  "    parts(0, 0, 0, 0, 30, 0, 1, 1, 1), parts(5, 6, 7, 0, 0, 0, 1, 1, 1) } do\n"
                  "  expected = matrix_multiply(expected, part) end\n"
                  "local built = matrix_build(5, 6, 7, 20, 30, 40, 2, 3, 4)\n"
                  "for i = 1, 16 do assert(math.abs(built[i] - expected[i]) < 1e-5, i) end"),
              "");
}

// Half of the room's plane is red: the half that lies in the direction which the view calls down.
TEST_F(ScriptApi, TheLastDirectionOfMatrixLookAtIsDownOnTheScreen)
{
    options.draw = true;
    options.width = options.height = 32;
    for (const int down : {1, -1})
    {
        ASSERT_EQ(Play("room_add{ views = { [0] = {} }, draw = function()\n"
                       "draw_set_colour(colours.red) draw_rectangle(-10, 0, 10, 10) end, create = function()\n"
                       "local c = view_get_camera(0)\n"
                       "camera_set_view_mat(c, matrix_look_at(0, 0, -10, 0, 0, 0, 0, " +
                       std::to_string(down) + ", 0))\ncamera_set_proj_mat(c, matrix_ortho(20, 20, 1, 100)) end }"),
                  "");
        const Runner::Picture screen = game->Screen();
        const auto redAt = [&](int row) { return screen.rgba[screen.Offset(16, row)]; };
        EXPECT_EQ(redAt(8), down > 0 ? 0 : 255) << down;
        EXPECT_EQ(redAt(24), down > 0 ? 255 : 0) << down;
    }
}

TEST_F(ScriptApi, ColoursHaveRedInTheLowestByte)
{
    EXPECT_EQ(Run("assert(colour_rgb(1, 2, 3) == 0x030201 and colours.red == 255)\n"
                  "assert(not pcall(colour_rgb, 256, 0, 0) and not pcall(colour_rgb, 0, -1, 0))"),
              "");
}

TEST_F(ScriptApi, AScriptThatExistsIsRunByItsNumber)
{
    EXPECT_EQ(Run("local ran = 0 local s = script_add(function() ran = ran + 1 end) script_call(s)\n"
                  "assert(ran == 1 and script_exists(s) and not script_exists(s + 1) and not script_exists(-1))\n"
                  "assert(not pcall(script_call, s + 1))"),
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
