// The inspector's panel over a game: its picture is kept while nobody uses it, and is what would be drawn anew.
#include "Runner/App/Window_Inspector.h"
#include "Runner/Draw/Gl_Kept_Picture.h"
#include "Runner/Draw/Gl_Program.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Inspect/Inspector_View.h"
#include "Runner/Inspect/Overlay.h"
#include "Tests/Runner/Support/Game_Support.h"
#include "Tests/Runner/Support/Scripted_Window.h"

#include <GLES3/gl3.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace
{
using namespace Runner;

constexpr int WIDTH = 900, HEIGHT = 500;
constexpr int SETTLED = 4;                  // draws, after which a picture may be kept
constexpr float SOON = 0.01f, LATER = 0.1f; // seconds: a picture is kept for a fifteenth of one
constexpr float FAR_AWAY = -1e6f;

// Whether two pictures show the same. The kept picture is blended over the game in a pass of its own, which rounds
// anew: on some processors a driver in software comes to the next of 256 steps for a few pixels.
bool IsAlike(const std::vector<uint8_t>& one, const std::vector<uint8_t>& other)
{
    const auto isNear = [](uint8_t a, uint8_t b) { return std::abs(a - b) <= 1; };
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), isNear);
}

class InspectorPanel : public RunnerTest::GameTest
{
protected:
    void SetUp() override
    {
        options.draw = true;
        ASSERT_EQ(Play("screen_set_size(400, 300) room_add{ width = 800, height = 600, views = { [0] = {} } }"), "");
        live = std::make_unique<LiveInspector>(*game);
        live->Open();
        ASSERT_EQ(PlayOn(1), "");
        game->CurrentPainter()->MakeCurrent();
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, WIDTH, HEIGHT, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
        glGenFramebuffers(1, &m_framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
        ASSERT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
        if ((view = InspectorView::Open()) == nullptr)
            GTEST_SKIP() << "this runner was built without the inspector's panel";
    }

    void TearDown() override
    {
        view.reset();
        live.reset();
    }

    // What shows after a draw, so many seconds after the one before.
    std::vector<uint8_t> Draw(float seconds, float mouseX = FAR_AWAY, float mouseY = FAR_AWAY)
    {
        return DrawOn({WIDTH, HEIGHT, {0, 0, WIDTH, HEIGHT}, 400, 300, 1.0f}, seconds, mouseX, mouseY);
    }

    // In a window of another size the canvas is the lower left part of the same pixels.
    std::vector<uint8_t> DrawOn(const InspectorCanvas& canvas, float seconds, float mouseX = FAR_AWAY,
                                float mouseY = FAR_AWAY)
    {
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        glScissor(0, 0, WIDTH, HEIGHT);
        glClearColor(0.0f, 0.2f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        PanelInput input;
        input.seconds = seconds;
        input.mouseX = mouseX;
        input.mouseY = mouseY;
        EXPECT_TRUE(view->Draw(live->Content(), *game, nullptr, canvas, input).empty());
        std::vector<uint8_t> pixels(size_t{WIDTH} * HEIGHT * 4);
        glReadPixels(0, 0, WIDTH, HEIGHT, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

    std::vector<uint8_t> DrawSettled()
    {
        std::vector<uint8_t> pixels;
        for (int i = 0; i < SETTLED; ++i)
            pixels = Draw(LATER);
        return pixels;
    }

    void MoveCamera(float x)
    {
        const int camera = live->Content().Content().selected;
        ASSERT_TRUE(live->Take({game->FrameNumber(), camera, "x", x})) << camera;
    }

    std::unique_ptr<LiveInspector> live;
    std::unique_ptr<InspectorView> view;

private:
    GLuint m_framebuffer = 0; // the context that has it goes with the game
};

// Pixels of a colour among those from `left` and `low` on, so many across and up.
int Count(const std::vector<uint8_t>& pixels, const std::array<int, 3>& colour, int left, int low, int across, int up)
{
    int count = 0;
    for (int y = low; y < low + up; ++y)
        for (int x = left; x < left + across; ++x)
        {
            const uint8_t* const at = &pixels[(size_t{WIDTH} * static_cast<size_t>(y) + static_cast<size_t>(x)) * 4];
            count += std::equal(colour.begin(), colour.end(), at) ? 1 : 0;
        }
    return count;
}

// The view of 400 x 300 lies over the whole canvas, left of the panel with a frame of the area's colour, and an arrow
// upwards from its middle, 450 x 250. Its name stands at the left, at 0.88 of the height: a box 60 pixels above the
// foot.
TEST_F(InspectorPanel, HasLinesAndNamesOverTheViews)
{
    const std::array<int, 3> white = {255, 255, 255};
    const auto colourOf = [](OverlayKind kind) {
        return std::array<int, 3>{StyleOf(kind).red, StyleOf(kind).green, StyleOf(kind).blue};
    };
    for (const std::vector<uint8_t>& pixels : {DrawSettled(), Draw(SOON)})
    {
        EXPECT_EQ(Count(pixels, colourOf(OverlayKind::Area), 100, HEIGHT - 1, 300, 1), 300) << "the upper edge";
        EXPECT_EQ(Count(pixels, colourOf(OverlayKind::Area), 100, 0, 300, 1), 300) << "the lower edge";
        EXPECT_EQ(Count(pixels, colourOf(OverlayKind::Area), 0, 100, 1, 300), 300) << "the left edge";
        EXPECT_GE(Count(pixels, colourOf(OverlayKind::Up), 448, 260, 5, 50), 100) << "the arrow, two pixels wide";
        EXPECT_EQ(Count(pixels, colourOf(OverlayKind::Area), 100, 100, 300, 300), 0);
        EXPECT_GT(Count(pixels, white, 10, 40, 120, 30), 100) << "the letters of \"view 0, camera 1\"";
        EXPECT_EQ(Count(pixels, white, 10, 80, 120, 400), 0);
    }
}

TEST_F(InspectorPanel, IsTheSameFromItsPictureAsDrawnAnew)
{
    const std::vector<uint8_t> anew = DrawSettled();
    EXPECT_TRUE(IsAlike(Draw(LATER), anew)) << "the picture is made";
    EXPECT_TRUE(IsAlike(Draw(SOON), anew)) << "it shows again";
}

TEST_F(InspectorPanel, TellsWhatHasChangedAtTheNextPicture)
{
    DrawSettled();
    const std::vector<uint8_t> before = Draw(LATER);
    MoveCamera(123.0f);
    EXPECT_TRUE(IsAlike(Draw(SOON), before));
    EXPECT_FALSE(IsAlike(Draw(LATER), before));
}

// The first field of the panel lies in its right half. That it lights up under the mouse is not what differs: the mouse
// has been there before.
TEST_F(InspectorPanel, TellsAtOnceWhatHasChangedWhileTheMouseIsOverIt)
{
    const float x = WIDTH - 20.0f, y = HEIGHT - 20.0f;
    DrawSettled();
    Draw(LATER, x, y);
    const std::vector<uint8_t> before = Draw(SOON, x, y);
    EXPECT_TRUE(IsAlike(Draw(SOON, x, y), before));
    MoveCamera(123.0f);
    EXPECT_FALSE(IsAlike(Draw(SOON, x, y), before));
}

// A window that was shrunk must not leave the panel where nobody reaches its title.
TEST_F(InspectorPanel, StandsAtTheRightAgainAfterTheWindowWasOnePixel)
{
    const std::vector<uint8_t> before = DrawSettled();
    DrawOn({1, 1, {0, 0, 1, 1}, 400, 300, 1.0f}, LATER);
    DrawOn({1, 1, {0, 0, 1, 1}, 400, 300, 1.0f}, LATER);
    EXPECT_TRUE(IsAlike(DrawSettled(), before));
}

class FineWindow : public RunnerTest::ScriptedWindow
{
public:
    FineWindow(float pixelsPerPoint, RunnerTest::WindowLog& log) : ScriptedWindow({}, log), m_fineness(pixelsPerPoint)
    {
    }
    PixelSize Pixels() const override { return {WIDTH, HEIGHT}; }
    float PixelsPerPoint() const override { return m_fineness; }

private:
    const float m_fineness;
};

// The title is one line of 13 pixels with 3 above and below: 19 rows, and 32 with letters twice as large.
TEST_F(InspectorPanel, HasLargerLettersOnAFineDisplay)
{
    for (const int fineness : {1, 2})
    {
        view.reset();
        RunnerTest::WindowLog log;
        FineWindow window(static_cast<float>(fineness), log);
        WindowInspector inspector(window, *game, *live);
        inspector.Toggle();
        for (int i = 0; i < SETTLED; ++i)
            inspector.Draw({0, 0, WIDTH, HEIGHT});
        uint32_t title = 0, below = 0;
        glReadPixels(WIDTH - 40, HEIGHT - 11, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &title);
        glReadPixels(WIDTH - 40, HEIGHT - 26, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &below);
        EXPECT_EQ(title == below, fineness == 2) << fineness << ": " << title << ", " << below;
    }
}

TEST_F(InspectorPanel, IsNotKeptForAWindowOfSeveralSamples)
{
    if (!IsGlVersion3())
        GTEST_SKIP() << "this driver has no framebuffers of several samples";
    GLuint framebuffer = 0, pixels = 0;
    glGenRenderbuffers(1, &pixels);
    glBindRenderbuffer(GL_RENDERBUFFER, pixels);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, GL_RGBA8, WIDTH, HEIGHT);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, pixels);
    ASSERT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    GlKeptPicture picture;
    EXPECT_FALSE(picture.Begin(10, 10)) << "nothing can be copied into them";
    GLint bound = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, static_cast<GLint>(framebuffer));
}
} // namespace
