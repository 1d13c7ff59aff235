// Whole pixels as the camera kit makes them, in pictures: while a camera goes along with a walker at a fractional
// speed, each picture of the wall behind is the one before, shifted by whole pixels, and the walker stands still in it.
#include "Runner/Draw/Picture.h"
#include "Tests/Runner/Draw/Draw_Support.h"
#include "Tests/Runner/Support/Game_Support.h"

#include <cmath>

namespace
{
using DrawTest::At;
using DrawTest::WHITE;
using Runner::Picture;

constexpr int FRAMES = 24;

// A wall of tiles of one unit, dark colours in no order, and a white walker. SPEED_X and SPEED_Y are units a frame,
// ASIDE is how far the camera keeps beside the walker, SCALE the pixels for a unit, PIXELS and ZOOM the camera's
// fields. Without PIXELS the walker is drawn at rounded places all the same, as games do.
constexpr char GAME[] = R"lua(
local kit = include("kit/camera_kit.lua")
screen_set_size(60, 32)
local walker = object_add{ bbox = {-3, -3, 3, 3},
    step = function(self) self.x, self.y = self.x + SPEED_X, self.y + SPEED_Y end,
    draw = function(self)
        local x, y = kit.camera(0):snap(self.x, self.y)
        if not PIXELS then
            x, y = math.floor(self.x + 0.5), math.floor(self.y + 0.5)
        end
        draw_set_colour(colours.white)
        draw_rectangle(x - 2, y - 2, x + 2, y + 2)
    end }
local follower = object_add{ step = function() kit.step() end }
local function draw_tile(column, row)
    local shade = (column * 7919 + row * 104729 + 5) * 2654435761 % 4294967296 >> 9 & 63
    draw_set_colour(colour_rgb(shade, 2 * shade, 127 - shade))
    draw_rectangle(column, row, column + 1, row + 1)
end
room_add{ width = 400, height = 400, views = { [0] = { w = 60 // SCALE, h = 32 // SCALE } },
    instances = { {walker, 80.3, 60.7}, {follower, 0, 0} },
    create = function()
        kit.camera{ view = 0, follow = walker, style = "lock", limits = false, offset = {x = ASIDE, y = -0.3},
                    zoom = ZOOM, pixels = PIXELS }
    end,
    draw = function()
        local camera = view_get_camera(0)
        local left, top = math.floor(camera_get_view_x(camera)), math.floor(camera_get_view_y(camera))
        for column = left - 1, left + 60 // SCALE + 1 do
            for row = top - 1, top + 32 // SCALE + 1 do
                draw_tile(column, row)
            end
        end
    end }
)lua";

struct Scroll
{
    const char* name;
    double x, y; // units a frame
    double aside;
    int scale;
    double zoom;
    const char* pixels;
    int step;      // pixels by whose multiples the wall moves
    bool isSteady; // what is expected
};

void PrintTo(const Scroll& scroll, std::ostream* out) { *out << scroll.name; }

constexpr char ART[] = "{ grid = 'art' }", SCREEN[] = "{ grid = 'screen' }";
constexpr char WHOLE_ZOOM[] = "{ grid = 'screen', integer_zoom = true }";
constexpr Scroll SCROLLS[] = {
    {"SlowlyAtOnePixelAUnit", 0.3, 0.1, 0.5, 1, 1.0, ART, 1, true},
    {"FastAtOnePixelAUnit", 2.718281828, -1.61, 7.77, 1, 1.0, ART, 1, true},
    {"ByUnitsOfFourPixels", 0.37, 0.5, 0.25, 4, 1.0, ART, 4, true},
    {"ByPixelsOfTheScreen", 0.37, 0.5, 0.25, 4, 1.0, SCREEN, 1, true},
    {"FastByPixelsOfTheScreen", 1.01, -0.99, 1.0 / 3.0, 4, 1.0, SCREEN, 1, true},
    {"WithAZoomMadeWhole", 0.37, 0.21, 0.25, 2, 1.4, WHOLE_ZOOM, 1, true},
    {"EvenlyWithAZoomThatIsNotWhole", 0.37, 0.21, 0.25, 2, 1.4, SCREEN, 1, true},
    // what the kit is there for: without it the walker trembles, and a wall of 2.8 pixels a tile shimmers
    {"WithoutSnappingTheWalkerTrembles", 0.37, 0.5, 0.4, 1, 1.0, "false", 1, false},
    {"WithoutSnappingTheWallShimmers", 0.37, 0.21, 0.25, 2, 1.4, "false", 1, false},
};

// Whether the wall of a picture is that of the one before, moved by dx, dy. White is the walker.
bool IsShifted(const Picture& before, const Picture& now, int dx, int dy)
{
    for (int y = std::max(0, dy); y < std::min(now.height, now.height + dy); ++y)
        for (int x = std::max(0, dx); x < std::min(now.width, now.width + dx); ++x)
            if (At(now, x, y) != At(before, x - dx, y - dy) && At(now, x, y) != WHITE &&
                At(before, x - dx, y - dy) != WHITE)
                return false;
    return true;
}

// In multiples of the step, about as far as the camera goes in a frame.
bool IsShiftedByWholePixels(const Picture& before, const Picture& now, const Scroll& scroll)
{
    const double perUnit = scroll.scale * scroll.zoom;
    const int expectedX = static_cast<int>(std::lround(-scroll.x * perUnit / scroll.step));
    const int expectedY = static_cast<int>(std::lround(-scroll.y * perUnit / scroll.step));
    for (int dy = expectedY - 1; dy <= expectedY + 1; ++dy)
        for (int dx = expectedX - 1; dx <= expectedX + 1; ++dx)
            if (IsShifted(before, now, dx * scroll.step, dy * scroll.step))
                return true;
    return false;
}

bool HasTheSameWalker(const Picture& before, const Picture& now)
{
    for (int y = 0; y < now.height; ++y)
        for (int x = 0; x < now.width; ++x)
            if ((At(now, x, y) == WHITE) != (At(before, x, y) == WHITE))
                return false;
    return true;
}

class KitPixels : public RunnerTest::GameTest, public testing::WithParamInterface<Scroll>
{
protected:
    void Start()
    {
        const Scroll& scroll = GetParam();
        char head[400];
        std::snprintf(head, sizeof(head),
                      "SPEED_X, SPEED_Y, ASIDE, SCALE, ZOOM = %.9f, %.9f, %.9f, %d, %.9f PIXELS = %s\n", scroll.x,
                      scroll.y, scroll.aside, scroll.scale, scroll.zoom, scroll.pixels);
        options.draw = true;
        options.kit = SOURCE_DIR "/kit";
        ASSERT_EQ(Play(head + std::string(GAME), 2), "");
    }

    Picture Next()
    {
        EXPECT_EQ(PlayOn(1), "");
        return game->Screen();
    }
};

TEST_P(KitPixels, PicturesAreShiftedByWholePixels)
{
    Start();
    Picture before = Next();
    ASSERT_GT(DrawTest::CountPixels(before, WHITE), 0) << "the walker is not seen";
    int unsteady = 0;
    for (int frame = 0; frame < FRAMES; ++frame)
    {
        const Picture now = Next();
        unsteady += IsShiftedByWholePixels(before, now, GetParam()) && HasTheSameWalker(before, now) ? 0 : 1;
        before = now;
    }
    if (GetParam().isSteady)
        EXPECT_EQ(unsteady, 0) << "of " << FRAMES << " frames";
    else
        EXPECT_GT(unsteady, 0) << "the test sees nothing";
}

INSTANTIATE_TEST_SUITE_P(Of, KitPixels, testing::ValuesIn(SCROLLS),
                         [](const auto& test) { return std::string(test.param.name); });
} // namespace
