// Which instances of a room are drawn: those that the current matrices show, whatever a script has put into them.

#include "Tests/Runner/Support/Game_Support.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>
#include <vector>

namespace
{
using RunnerTest::GameTest;

// 192 instances, 16 x 12, 40 units apart, each a square of 10 units about its position. The view is 320 x 240 units in
// the middle of the room.
constexpr int COLUMNS = 16, ROWS = 12, SPACING = 40, HALF_SIDE = 5;
constexpr int FIRST_ID = 100000;
constexpr double CENTRE_X = 320, CENTRE_Y = 240;

// The affine part of a projection, and the camera's angle. right.x is _11, right.y _12, down.x _21, down.y _22,
// offset.x _41, offset.y _42.
struct Pair
{
    double x, y;
};

struct Lens
{
    const char* name;
    Pair right, down, offset;
    double angle = 0.0;
    double scale = 1.0; // _44
};

constexpr Pair RIGHT = {2.0 / 320, 0}, DOWN = {0, 2.0 / 240}, CENTRED = {0, 0};

const Lens LENSES[] = {
    {"Plain", RIGHT, DOWN, CENTRED},
    {"OffCentreX", RIGHT, DOWN, {0.9, 0}},
    {"OffCentreY", RIGHT, DOWN, {0, -0.7}},
    {"FarOffCentre", RIGHT, DOWN, {-1.8, 1.5}},
    {"ShearedAlongX", RIGHT, {0.008, 2.0 / 240}, CENTRED},
    {"ShearedAlongY", {2.0 / 320, -0.006}, DOWN, CENTRED},
    {"ShearedAndOffCentre", {2.0 / 320, 0.004}, {-0.005, 2.0 / 240}, {0.5, 0.25}},
    {"Mirrored", {-2.0 / 320, 0}, DOWN, {0.6, 0}},
    {"Turned", RIGHT, DOWN, CENTRED, 37},
    {"TurnedAndOffCentre", RIGHT, DOWN, {-0.8, 0.4}, 200},
    {"ScaledByW", {4.0 / 320, 0}, {0, 4.0 / 240}, {1.0, 0}, 0, 2},
    {"Narrow", {0.05, 0}, {0, 0.0045}, CENTRED, 45},
};

std::ostream& operator<<(std::ostream& out, const Lens& lens) { return out << lens.name; }

// Where a room point lies in the clip square, from -1 to 1. The camera's second axis is the room's down direction,
// turned by the negated angle; its first is perpendicular to that.
Pair ToClip(const Lens& lens, Pair room)
{
    const double angle = -lens.angle * 3.14159265358979323846 / 180;
    const double dx = room.x - CENTRE_X, dy = room.y - CENTRE_Y;
    const double right = dx * std::cos(angle) - dy * std::sin(angle);
    const double down = dx * std::sin(angle) + dy * std::cos(angle);
    return {(right * lens.right.x + down * lens.down.x + lens.offset.x) / lens.scale,
            (right * lens.right.y + down * lens.down.y + lens.offset.y) / lens.scale};
}

// One step of clipping a polygon: what lies on the side sign * coordinate <= limit.
std::vector<Pair> ClipSide(const std::vector<Pair>& polygon, double Pair::*coordinate, double sign, double limit)
{
    std::vector<Pair> kept;
    for (size_t i = 0; i < polygon.size(); ++i)
    {
        const Pair a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        const double beyondA = sign * a.*coordinate - limit, beyondB = sign * b.*coordinate - limit;
        if (beyondA <= 0)
            kept.push_back(a);
        if ((beyondA < 0 && beyondB > 0) || (beyondA > 0 && beyondB < 0))
        {
            const double t = beyondA / (beyondA - beyondB);
            kept.push_back({a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t});
        }
    }
    return kept;
}

// Whether a square about the point, this many units to each side of it, shows in a clip square of that half side.
bool Shows(const Lens& lens, double x, double y, double halfSide, double limit)
{
    std::vector<Pair> polygon;
    for (const Pair corner : {Pair{-1, -1}, Pair{1, -1}, Pair{1, 1}, Pair{-1, 1}})
        polygon.push_back(ToClip(lens, {x + corner.x * halfSide, y + corner.y * halfSide}));
    for (const double sign : {-1.0, 1.0})
        for (double Pair::*coordinate : {&Pair::x, &Pair::y})
            polygon = ClipSide(polygon, coordinate, sign, limit);
    return !polygon.empty();
}

std::string Number(double number)
{
    char text[40];
    std::snprintf(text, sizeof(text), "%.17g", number);
    return text;
}

std::string ProjectionOf(const Lens& lens)
{
    return "{" + Number(lens.right.x) + "," + Number(lens.right.y) + ",0,0, " + Number(lens.down.x) + "," +
           Number(lens.down.y) + ",0,0, 0,0,1/32000,0, " + Number(lens.offset.x) + "," + Number(lens.offset.y) + ",0," +
           Number(lens.scale) + "}";
}

class Culling : public GameTest
{
protected:
    // Plays the game of the 192 instances for one frame, with this update script of the camera C and room draw event.
    // The identifiers of the instances that were drawn.
    std::set<int> Drawn(const std::string& update, const std::string& draw = "")
    {
        EXPECT_EQ(
            Play("local o = object_add{ bbox = {-5, -5, 5, 5}, draw = function(self) print(self.id) end }\n"
                 "room_add{ width = 640, height = 480, views = { [0] = { x = 160, y = 120, w = 320, h = 240 } },\n"
                 "  create = function() C = view_get_camera(0)\n"
                 "    for row = 0, 11 do for column = 0, 15 do\n"
                 "      instance_create(20 + column * 40, 20 + row * 40, o) end end\n"
                 "    camera_set_update_script(C, function()\n" +
                 update + "\n  end) end,\n  draw = function()\n" + draw + "\n end }"),
            "");
        std::set<int> ids;
        std::istringstream lines(Log());
        for (int id = 0; lines >> id;)
            ids.insert(id);
        return ids;
    }

    // Every instance in whole or in part on the screen is among those drawn, and none that lies well outside: the
    // margin is a thousandth of a unit, and of the clip square.
    static void Compare(const Lens& lens, const std::set<int>& drawn)
    {
        int expected = 0;
        for (int i = 0; i < COLUMNS * ROWS; ++i)
        {
            const double x = SPACING / 2 + i % COLUMNS * SPACING, y = SPACING / 2 + i / COLUMNS * SPACING;
            const bool isDrawn = drawn.count(FIRST_ID + i) != 0;
            const bool shows = Shows(lens, x, y, HALF_SIDE - 0.001, 0.999);
            const bool mayShow = Shows(lens, x, y, HALF_SIDE + 0.001, 1.001);
            EXPECT_TRUE(isDrawn || !shows) << "missing at " << x << ", " << y;
            EXPECT_TRUE(!isDrawn || mayShow) << "outside at " << x << ", " << y;
            expected += shows ? 1 : 0;
        }
        EXPECT_GT(expected, 0) << "nothing to see: the test shows nothing";
        EXPECT_LT(expected, COLUMNS * ROWS) << "all to see: the test shows nothing";
    }
};

class CullingThrough : public Culling, public ::testing::WithParamInterface<Lens>
{
};

TEST_P(CullingThrough, WhatShowsIsDrawnAndNothingElse)
{
    const Lens& lens = GetParam();
    Compare(lens, Drawn("camera_set_view_angle(C, " + Number(lens.angle) + ") camera_apply(C) camera_set_proj_mat(C, " +
                        ProjectionOf(lens) + ")"));
}

// The room's own draw may look through something else, and the instances are drawn through it, too.
TEST_P(CullingThrough, MatricesThatTheRoomsDrawLeavesBehindCount)
{
    const Lens& lens = GetParam();
    Compare(lens,
            Drawn("", "local d = camera_create_view(160, 120, 320, 240, " + Number(lens.angle) +
                          ") camera_apply(d) camera_set_proj_mat(d, " + ProjectionOf(lens) + ") camera_apply(d)"));
}

INSTANTIATE_TEST_SUITE_P(A, CullingThrough, ::testing::ValuesIn(LENSES),
                         [](const auto& each) { return std::string(each.param.name); });

// The lens moves every point by a view's width to the right: what shows lies to the left of the view.
TEST_F(Culling, AWorldMatrixThatTheRoomsDrawLeavesBehindCounts)
{
    const Lens lens = {"", RIGHT, DOWN, {0.75, 0}};
    Compare(lens, Drawn("", "matrix_set_world(matrix_build(120, 0, 0, 0, 0, 0, 1, 1, 1))")); // 120 of 160 to the edge
}

struct Hopeless
{
    const char* name;
    const char* projection;
};

std::ostream& operator<<(std::ostream& out, const Hopeless& hopeless) { return out << hopeless.name; }

class CullingNothing : public Culling, public ::testing::WithParamInterface<Hopeless>
{
};

TEST_P(CullingNothing, EverythingIsDrawn)
{
    const std::string projection = GetParam().projection;
    EXPECT_EQ(Drawn("camera_set_proj_mat(C, " + projection + ")").size(), static_cast<size_t>(COLUMNS * ROWS));
}

INSTANTIATE_TEST_SUITE_P(
    Through, CullingNothing,
    ::testing::Values(Hopeless{"AMatrixOfZeros", "{0,0,0,0, 0,0,0,0, 0,0,0,0, 0,0,0,0}"},
                      Hopeless{"ALine", "{0.01,0.01,0,0, 0.01,0.01,0,0, 0,0,1,0, 0,0,0,1}"},
                      Hopeless{"Infinity", "{0.01,0,0,0, 0,0.01,0,0, 0,0,1,0, 1/0,0,0,1}"},
                      Hopeless{"NoW", "{0.01,0,0,0, 0,0.01,0,0, 0,0,1,0, 0,0,0,0}"},
                      Hopeless{"ANegativeW", "{0.01,0,0,0, 0,0.01,0,0, 0,0,1,0, 0,0,0,-1}"},
                      Hopeless{"ASlantByDepth", "{0.01,0,0,0, 0,0.01,0,0, 0.01,0.01,1,0, 0,0,0,1}"},
                      Hopeless{"APerspective", "{1,0,0,0, 0,1,0,0, 0,0,1,1, 0,0,-1,0}"},
                      Hopeless{"APerspectiveFromTheSide", "{0.01,0,0,0.001, 0,0.01,0,0, 0,0,1,0, 0,0,0,1}"}),
    [](const auto& each) { return std::string(each.param.name); });
} // namespace
