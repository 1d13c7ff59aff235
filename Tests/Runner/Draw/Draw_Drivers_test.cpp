// Other drivers than this machine's: what a run draws with OpenGL ES 2, and the one line where nothing can be drawn.
#include "Tests/Runner/Save/Save_Support.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace
{
using testing::HasSubstr;

// A variable of the environment as long as it lives.
class Variable
{
public:
    Variable(const char* name, const char* value) : m_name(name) { setenv(name, value, 1); }
    ~Variable() { unsetenv(m_name); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* m_name;
};

class DrawDrivers : public testing::Test
{
protected:
    // Draws two frames of a game with turned tiles and a surface. The program's status.
    int Draw(const char* name)
    {
        return RunnerTest::StartProgram(game + " --frames 2 --quiet --size 64x48 --out " + directory.Path(name),
                                        directory.Path("said"));
    }

    std::string PictureOf(const char* name) const { return directory.Read(std::string(name) + "/last_frame.png"); }
    std::string Said() const { return directory.Read("said"); }

    RunnerTest::TestDirectory directory;
    const std::string game = directory.Write(
        "main.lua",
        "room_add{ width = 64, height = 48, background = colours.red, views = { [0] = { w = 64, h = 48 } },\n"
        "create = function() seen = surface_create(16, 16) "
        "camera_set_view_angle(view_get_camera(0), 30) end,\n"
        "draw = function() draw_circle(20, 20, 9) draw_text(5, 5, 'text') end }");
};

TEST_F(DrawDrivers, OpenGlEs2DrawsTheSamePicture)
{
    ASSERT_EQ(Draw("three"), 0) << Said();
    const Variable older("MESA_GLES_VERSION_OVERRIDE", "2.0");
    ASSERT_EQ(Draw("two"), 0) << Said();
    EXPECT_GT(PictureOf("two").size(), 100u);
    EXPECT_TRUE(PictureOf("two") == PictureOf("three"));
}

// No library of a vendor: nobody offers a display.
TEST_F(DrawDrivers, WithoutADisplayThereIsOneLineWithAWayOut)
{
    const Variable none("__EGL_VENDOR_LIBRARY_DIRS", "/nonexistent");
    EXPECT_EQ(Draw("none"), 1);
    EXPECT_THAT(Said(), HasSubstr("runner: cannot draw: EGL offers no surfaceless display; install Mesa "));
    EXPECT_THAT(Said(), HasSubstr("or use --no-draw\n"));
}

// The library warns before that in its own words.
TEST_F(DrawDrivers, WithoutADriverThereIsOneLineWithAWayOut)
{
    const Variable none("LIBGL_DRIVERS_PATH", "/nonexistent");
    EXPECT_EQ(Draw("none"), 1);
    EXPECT_THAT(Said(), HasSubstr("runner: cannot draw: EGL does not start; check the Mesa drivers, or use --no-draw"));
}
} // namespace
