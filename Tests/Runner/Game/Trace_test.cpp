#include "Runner/Game/Trace.h"

#include "Tests/Runner/Support/Game_Support.h"

#include "Files/Graphics_API/Graphics_API.h"
#include "Runner/Host/Graphics.h"

#include <cmath>

namespace
{
using RunnerTest::GameTest;

class TraceTest : public GameTest
{
protected:
    ~TraceTest() override { Runner::ResetGraphics(); }

    std::string PlayTraced(const std::string& text, int frames, const std::string& name)
    {
        options.trace = directory.Path(name);
        const std::string failure = Play(text, frames);
        EXPECT_TRUE(game->Finish());
        return failure;
    }
};

// FNV-1a over the 128 bytes of two identity matrices, worked out outside of this program.
std::string HashOfTwoIdentities()
{
    uint64_t hash = 0xCBF29CE484222325u;
    for (int i = 0; i < 32; ++i)
    {
        const bool one = i % 16 % 5 == 0;
        for (const unsigned byte : {0x00u, 0x00u, one ? 0x80u : 0x00u, one ? 0x3Fu : 0x00u})
            hash = (hash ^ byte) * 0x100000001B3u;
    }
    std::stringstream text;
    text << std::hex << hash;
    return std::string(16 - text.str().size(), '0') + text.str();
}

TEST_F(TraceTest, ALineNamesFrameViewCameraRectangleAreaAndMatrices)
{
    CCamera camera;
    camera.SetID(5);
    camera.m_viewX = 1.5f;
    camera.m_viewY = -2.0f;
    camera.m_viewWidth = 640.0f;
    camera.m_viewHeight = 480.0f;
    camera.m_viewAngle = 45.0f;
    SetViewExtents(1, 2, 3, 4, 5);
    g_ViewAreaX = 0.1f;
    g_ViewAreaY = 2.0f;
    g_ViewAreaW = 3.0f;
    g_ViewAreaH = 4.0f;
    g_ViewAreaA = 5.0f;
    EXPECT_EQ(Runner::TraceLine(7, 3, camera), "7 3 5 1.5 -2 640 480 45 0.100000001 2 3 4 5 " + HashOfTwoIdentities());
}

TEST_F(TraceTest, NotANumberIsAlwaysNan)
{
    CCamera camera;
    camera.m_viewX = -std::nanf("");
    camera.m_viewY = std::nanf("");
    const std::string line = Runner::TraceLine(0, 0, camera);
    EXPECT_EQ(line.find("0 0 -1 nan nan 0 "), 0u) << line;
}

TEST_F(TraceTest, EveryNanInAMatrixHashesAlike)
{
    CCamera one, other;
    one.m_viewMat.u[3] = 0x7FC00000u;
    other.m_viewMat.u[3] = 0xFFC12345u;
    EXPECT_EQ(Runner::TraceLine(0, 0, one), Runner::TraceLine(0, 0, other));
    other.m_viewMat.u[3] = 0;
    EXPECT_NE(Runner::TraceLine(0, 0, one), Runner::TraceLine(0, 0, other));
}

constexpr char TWO_VIEWS[] =
    "local o = object_add{ step = function(self) self.x = self.x + random_range(0, 9) end }\n"
    "room_add{ width = 3000, height = 3000, instances = { {o, 0, 0} },\n"
    "  views = { [0] = { w = 100, h = 100, hborder = 10, target = o }, [4] = { w = 50, h = 50 } },\n"
    "  step = function() camera_set_view_angle(view_get_camera(4), frame_number() * 3) end }";

TEST_F(TraceTest, HasALineForEachDrawnViewAndFrame)
{
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 3, "trace"), "");
    std::istringstream lines(directory.Read("trace"));
    std::string starts;
    for (std::string line; std::getline(lines, line);)
        starts += line.substr(0, 5) + "|";
    EXPECT_EQ(starts, "0 0 1|0 4 2|1 0 1|1 4 2|2 0 1|2 4 2|");
}

TEST_F(TraceTest, TheDefaultCameraIsViewMinusOne)
{
    ASSERT_EQ(PlayTraced("room_add{}", 1, "trace"), "");
    EXPECT_EQ(directory.Read("trace").find("0 -1 0 0 0 1280 720 0 "), 0u);
}

TEST_F(TraceTest, TheSameGameGivesTheSameTrace)
{
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 50, "first"), "");
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 50, "second"), "");
    EXPECT_EQ(directory.Read("first"), directory.Read("second"));
}

TEST_F(TraceTest, DrawingAndCollectingDoNotChangeTheTrace)
{
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 20, "first"), "");
    options.draw = true;
    options.gcStress = true;
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 20, "second"), "");
    EXPECT_EQ(directory.Read("first"), directory.Read("second"));
}

TEST_F(TraceTest, AnotherSeedGivesAnotherTrace)
{
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 50, "first"), "");
    options.seed = 2;
    ASSERT_EQ(PlayTraced(TWO_VIEWS, 50, "second"), "");
    EXPECT_NE(directory.Read("first"), directory.Read("second"));
}

TEST_F(TraceTest, AFileThatCannotBeWrittenIsAnError)
{
    options.trace = directory.Path("missing/trace");
    EXPECT_EQ(Play("room_add{}"), "cannot write the trace \"" + options.trace + "\": No such file or directory");
}

TEST_F(TraceTest, AFullDiskIsNoticed)
{
    options.trace = "/dev/full";
    ASSERT_EQ(Play("room_add{}", 1), "");
    EXPECT_FALSE(game->Finish());
    EXPECT_EQ(game->Failure(), "the trace \"/dev/full\" could not be written in full");
}
} // namespace
