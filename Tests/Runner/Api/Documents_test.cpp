// What the documents show is played.
#include "Tests/Runner/Support/Documents.h"
#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Room/Room.h"

namespace
{
class Documents : public RunnerTest::GameTest, public testing::WithParamInterface<const char*>
{
protected:
    // The first Lua block of a document; empty when it has none.
    static std::string FirstGame(const std::string& document)
    {
        const std::string text = RunnerTest::ReadText(std::string(SOURCE_DIR) + "/" + document);
        const std::string open = "```lua\n";
        const size_t begin = text.find(open);
        const size_t end = begin == std::string::npos ? begin : text.find("```", begin + open.size());
        return end == std::string::npos ? "" : text.substr(begin + open.size(), end - begin - open.size());
    }
};

TEST_P(Documents, TheFirstGameShownCanBePlayed)
{
    const std::string shown = FirstGame(GetParam());
    ASSERT_NE(shown, "");
    EXPECT_EQ(Play(shown, 300), "");
}

INSTANTIATE_TEST_SUITE_P(Of, Documents, testing::Values("README.md", "Docs/Script_API.md"));

// ---- Docs/Cameras.md ----

struct Example
{
    std::string name, text; // of the block, whose first line is "-- NAME.lua"
};

class CameraPage : public RunnerTest::GameTest
{
protected:
    static std::vector<Example> Examples(const std::string& page)
    {
        std::vector<Example> examples;
        const std::string open = "\n```lua\n-- ";
        for (size_t at = page.find(open); at != std::string::npos; at = page.find(open, at + 1))
        {
            const size_t name = at + open.size(), begin = at + 8;
            const std::string text = page.substr(begin, page.find("\n```", begin) - begin + 1);
            examples.push_back({page.substr(name, page.find(".lua", name) - name), text});
        }
        return examples;
    }

    // Plays on up to a frame that a line of the example speaks of, and holds the camera of view 0 against it.
    void ExpectLine(const std::string& line)
    {
        int frame = 0;
        float x = 0, y = 0, w = 0, h = 0;
        const int read =
            std::sscanf(line.c_str(), "-- frame %d: view at %f, %f, showing %f x %f", &frame, &x, &y, &w, &h);
        ASSERT_TRUE(read == 3 || read == 5) << line;
        while (m_played <= frame)
        {
            ASSERT_EQ(PlayOn(1), "") << line;
            ++m_played;
        }
        const CCamera* const camera = g_CM.GetCamera(Run_Room->r_view[0]->cameraID);
        ASSERT_NE(camera, nullptr);
        EXPECT_EQ(camera->GetViewX(), x) << line;
        EXPECT_EQ(camera->GetViewY(), y) << line;
        if (read == 5)
        {
            EXPECT_NEAR(2.0f / camera->GetProjMat()._11, w, 1e-3f) << line;
            EXPECT_NEAR(2.0f / camera->GetProjMat()._22, h, 1e-3f) << line;
        }
    }

    // The number of its lines about frames.
    int PlayExample(const Example& example)
    {
        EXPECT_EQ(Play(example.text, 0), "") << example.name;
        m_played = 0;
        int count = 0;
        std::istringstream lines(example.text);
        for (std::string line; std::getline(lines, line);)
            if (line.rfind("-- frame ", 0) == 0)
            {
                ExpectLine(line);
                ++count;
            }
        return count;
    }

private:
    int m_played = 0;
};

TEST_F(CameraPage, ViewsStandWhereItsExamplesSay)
{
    const std::vector<Example> examples = Examples(RunnerTest::Document("Cameras.md"));
    ASSERT_GE(examples.size(), 12u);
    ASSERT_EQ(examples[0].name, "scene");
    directory.Write("scene.lua", examples[0].text);
    for (size_t i = 1; i < examples.size(); ++i)
        EXPECT_GE(PlayExample(examples[i]), 1) << examples[i].name;
}

TEST_F(CameraPage, EveryExampleHasItsPictureOfAFewKilobytes)
{
    const std::string page = RunnerTest::Document("Cameras.md");
    for (const Example& example : Examples(page))
    {
        if (example.name == "scene")
            continue;
        const std::string picture = "Pictures/camera_" + example.name + ".png";
        EXPECT_NE(page.find("](" + picture + ")"), std::string::npos) << picture;
        const std::string path = std::string(SOURCE_DIR) + "/Docs/" + picture;
        ASSERT_TRUE(std::filesystem::exists(path)) << path;
        EXPECT_LE(std::filesystem::file_size(path), 40000u) << path;
    }
}

// Claims of the page that no picture shows.
TEST_F(CameraPage, WhatItSaysOfBuildsHolds)
{
    EXPECT_EQ(Play("room_add{ width = 800, height = 600, views = { [0] = { w = 320, h = 240 } }, create = function()\n"
                   "local camera = view_get_camera(0)\n"
                   "local mine = matrix_ortho(640, 480, 0, 32000)\n"
                   "local function width() return (camera_get_proj_mat(camera)[1] * 320 + 0.5) // 1 end -- 2 of the "
                   "module's, 1 of mine\n"
                   "camera_set_proj_mat(camera, mine) camera_set_view_speed(camera, 1, 1)\n"
                   "camera_set_view_border(camera, 1, 1) camera_set_view_target(camera, -1)\n"
                   "assert(width() == 1, 'speed, border or target have built')\n"
                   "camera_set_view_pos(camera, 0, 0) assert(width() == 2, 'a position has not built')\n"
                   "camera_set_view_pos(camera, 5, 0) camera_set_proj_mat(camera, mine)\n"
                   "assert(width() == 1, 'the build that was due came later')\n"
                   "camera_set_proj_mat(camera, matrix_perspective(9, 9, 1, 5)) camera_set_view_angle(camera, 0)\n"
                   "assert(camera_get_proj_mat(camera)[12] == 1 and camera_get_proj_mat(camera)[1] == 2, 'kept')\n"
                   "camera_set_proj_mat(camera, mine) camera_set_view_angle(camera, 0)\n"
                   "assert(camera_get_proj_mat(camera)[12] == 0, 'still perspective') end }"),
              "");
}

TEST_F(CameraPage, WhatItSaysOfApplyingHolds)
{
    EXPECT_EQ(Play("local calls = 0 local o = object_add{} room_add{ width = 800, height = 600,\n"
                   "instances = { {o, 700, 500} }, views = { [0] = { w = 320, h = 240 } }, draw = function()\n"
                   "local other = camera_create_view(0, 0, 50, 50, 0, o)\n"
                   "for _, part in ipairs{'begin', 'update', 'end'} do\n"
                   "  _G['camera_set_' .. part .. '_script'](other, function() calls = calls + 1 end) end\n"
                   "local active, port = camera_get_active(), view_get_wport(0)\n"
                   "camera_apply(other)\n"
                   "assert(calls == 0 and camera_get_active() == active and view_get_wport(0) == port)\n"
                   "assert(camera_get_view_x(other) == 0) end }",
                   2),
              "");
}

TEST_F(CameraPage, WhatItSaysOfRoomsHolds)
{
    EXPECT_EQ(Play("local made, own\n"
                   "room_add{ views = { [0] = {} }, create = function()\n"
                   "  made, own = camera_create(), view_get_camera(0) room_goto(1) end }\n"
                   "room_add{ create = function()\n"
                   "  camera_set_view_pos(made, 3, 0) assert(camera_get_view_x(made) == 3, 'gone')\n"
                   "  assert(camera_get_view_width(own) == -1, 'still there') end }",
                   3),
              "");
    EXPECT_EQ(game->rooms.Running()->index, 1);
}
} // namespace
