// A changed camera is shown while the game stands, and the game does not notice.
#include "Runner/Inspect/Camera_Fields.h"
#include "Runner/Inspect/Preview.h"
#include "Runner/Inspect/View_Drag.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using namespace Runner;

// A scene of shapes with a world matrix, a tile map and a line of text on the screen. view: fields of its one view.
std::string Scene(const std::string& view, const std::string& create = "")
{
    return "screen_set_size(160, 90)\n"
           "room_add{ width = 400, height = 300, background = colours.blue,\n"
           "views = { [0] = { w = 160, h = 90, wport = 160, hport = 90, " +
           view + " } },\ncreate = function() frames = 0 " + create +
           " end,\n"
           "step = function() frames = frames + 1 end,\n"
           "draw = function() draw_set_colour(colours.red) draw_rectangle(40, 30, 90, 70)\n"
           "matrix_set_world(matrix_build(100, 40, 0, 0, 0, 0, 2, 2, 1)) draw_rectangle(0, 0, 10, 10)\n"
           "matrix_reset_world() end,\n"
           "draw_gui = function() draw_set_colour(colours.white) draw_rectangle(2, 2, 12, 6) end }";
}

class DrawPreview : public RunnerTest::GameTest
{
protected:
    DrawPreview()
    {
        options.draw = true;
        options.openDevice = [this](int width, int height, std::string& error) -> std::unique_ptr<Device>
        {
            auto inner = OpenDevice(width, height, error);
            if (inner == nullptr)
                return nullptr;
            auto keeping = std::make_unique<KeepingDevice>(std::move(inner));
            device = keeping.get();
            return keeping;
        };
    }

    // Plays the scene for a frame whose calls are kept.
    void Keep(const std::string& text)
    {
        ASSERT_EQ(Play(text), "");
        preview = std::make_unique<Preview>(*device, notes);
        game->observer = &notes;
        ASSERT_EQ(PlayOn(1), "");
    }

    // The picture of a game in which the camera was there from the start.
    std::vector<uint8_t> PictureOf(const std::string& text)
    {
        preview.reset();
        EXPECT_EQ(Play(text), "");
        return game->Screen().rgba;
    }

    void Change(const char* field, float value)
    {
        ASSERT_TRUE(Apply({0, 1, field, value}));
        preview->Show(1, 160, 90);
    }

    ~DrawPreview() override { preview.reset(); }

    KeepingDevice* device = nullptr;
    FrameNotes notes;
    std::unique_ptr<Preview> preview;
};

TEST_F(DrawPreview, ShowsWhatTheNextFrameWillShow)
{
    Keep(Scene("x = 10, y = 5"));
    Change("x", 30.0f);
    Change("y", 20.0f);
    const std::vector<uint8_t> shown = game->Screen().rgba;
    EXPECT_EQ(shown, PictureOf(Scene("x = 30, y = 20")));
}

TEST_F(DrawPreview, TheScreensOwnDrawingStaysWhereItIs)
{
    Keep(Scene("x = 10, y = 5"));
    Change("x", 200.0f); // nothing of the scene is left in the view
    const Picture shown = game->Screen();
    EXPECT_EQ(shown.rgba[shown.Offset(4, 4)], 255) << "white, drawn by draw_gui";
    EXPECT_EQ(shown.rgba[shown.Offset(80, 45)], 0) << "blue, the background";
}

TEST_F(DrawPreview, ATurnedAndWidenedCameraShowsTheSameSceneTurnedAndWidened)
{
    Keep(Scene("x = 10, y = 5"));
    Change("width", 320.0f);
    Change("height", 180.0f);
    Change("angle", 90.0f);
    const std::vector<uint8_t> shown = game->Screen().rgba;
    EXPECT_EQ(shown, PictureOf(Scene("x = 10, y = 5", "local c = view_get_camera(0) camera_set_view_size(c, 320, 180) "
                                                      "camera_set_view_angle(c, 90)")));
}

TEST_F(DrawPreview, NothingOfTheGameRuns)
{
    Keep(Scene("x = 10, y = 5", "log('created')"));
    const std::string log = Log();
    const int frames = game->FrameNumber();
    Change("x", 30.0f);
    EXPECT_EQ(game->FrameNumber(), frames);
    EXPECT_EQ(Log(), log);
}

TEST_F(DrawPreview, TheGamesOwnPictureIsBackBeforeItsNextFrame)
{
    Keep(Scene("x = 10, y = 5"));
    const std::vector<uint8_t> before = game->Screen().rgba;
    Change("x", 30.0f);
    ASSERT_NE(game->Screen().rgba, before);
    preview->BeginFrame();
    EXPECT_EQ(game->Screen().rgba, before);
}

// As when the driver was reset. Sanitizers see what would touch the device.
TEST_F(DrawPreview, OneThatIsAbandonedOutlivesItsDevice)
{
    Keep(Scene("x = 10, y = 5"));
    Change("x", 30.0f);
    preview->Abandon();
    game.reset();
    preview.reset();
    EXPECT_EQ(Play(Scene("x = 10, y = 5")), "") << "a new device draws";
}

// The view shows 160 units on 160 pixels: what was under the mouse stays under it.
TEST_F(DrawPreview, ADragStartsFromWhatIsShown)
{
    Keep(Scene("x = 10, y = 5"));
    Change("x", 30.0f);
    const ViewDrag drag = ViewDrag::Begin(notes, {50.0, 50.0});
    const std::vector<CameraChange> changes = drag.To({60.0, 50.0}, 0);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_FLOAT_EQ(changes[0].value, 20.0f);
}
} // namespace
