// Dragging in a view, worked out in pixels by hand.
#include "Runner/Inspect/View_Drag.h"
#include "Tests/Runner/Inspect/Inspect_Support.h"

namespace
{
using namespace Runner;

// After its step the view starts at 536, 0 and shows 320 x 180 units on 640 x 360 pixels. The dead zone's margins lie
// at the pixels 160 and 482 across, 80 and 282 down.
class Drag : public RunnerTest::InspectTest
{
protected:
    Drag() { EXPECT_EQ(Watch(RunnerTest::FOLLOWING_GAME), ""); }

    static std::string Text(const std::vector<CameraChange>& changes)
    {
        std::string text;
        for (const CameraChange& change : changes)
            text += std::to_string(change.frame) + ": camera " + std::to_string(change.camera) + " " + change.field +
                    " = " + std::to_string(static_cast<int>(change.value)) + "\n";
        return text;
    }
};

TEST_F(Drag, AMarginOfTheDeadZoneChangesTheBorder)
{
    const ViewDrag left = ViewDrag::Begin(notes, {163.0, 200.0});
    EXPECT_EQ(left.What(), Grip::Left);
    EXPECT_EQ(Text(left.To({200.0, 10.0}, 7)), "7: camera 1 border_x = 100\n")
        << "200 pixels are 100 units from the edge";
    const ViewDrag right = ViewDrag::Begin(notes, {480.0, 200.0});
    EXPECT_EQ(right.What(), Grip::Right);
    EXPECT_EQ(Text(right.To({600.0, 200.0}, 7)), "7: camera 1 border_x = 20\n") << "40 pixels from the right edge";
    const ViewDrag top = ViewDrag::Begin(notes, {300.0, 84.0});
    EXPECT_EQ(top.What(), Grip::Top);
    EXPECT_EQ(Text(top.To({300.0, 50.0}, 7)), "7: camera 1 border_y = 25\n");
    const ViewDrag bottom = ViewDrag::Begin(notes, {300.0, 280.0});
    EXPECT_EQ(bottom.What(), Grip::Bottom);
    EXPECT_EQ(Text(bottom.To({300.0, 320.0}, 7)), "7: camera 1 border_y = 20\n");
}

TEST_F(Drag, ABorderStaysBetweenNothingAndHalfTheView)
{
    const ViewDrag left = ViewDrag::Begin(notes, {160.0, 200.0});
    EXPECT_EQ(Text(left.To({-500.0, 200.0}, 0)), "0: camera 1 border_x = 0\n");
    EXPECT_EQ(Text(left.To({630.0, 200.0}, 0)), "0: camera 1 border_x = 159\n") << "160 would leave no zone to grip";
}

TEST_F(Drag, AnywhereElseThePictureFollowsTheMouse)
{
    const ViewDrag drag = ViewDrag::Begin(notes, {300.0, 180.0});
    EXPECT_EQ(drag.What(), Grip::Rectangle);
    EXPECT_EQ(Text(drag.To({320.0, 170.0}, 3)), "3: camera 1 x = 526\n3: camera 1 y = 5\n");
}

TEST_F(Drag, OutsideOfEveryViewThereIsNothingToGrip)
{
    for (const Point& at : {Point{700.0, 100.0}, Point{-1.0, 100.0}, Point{100.0, -1.0}, Point{100.0, 360.0}})
        EXPECT_EQ(ViewDrag::Begin(notes, at).What(), Grip::None) << at.x << ", " << at.y;
    EXPECT_TRUE(ViewDrag::Begin(notes, {700.0, 100.0}).To({0.0, 0.0}, 0).empty());
}

TEST_F(Drag, WithoutATargetThereIsNoZoneToGrip)
{
    ASSERT_TRUE(Apply({1, 1, "target", -1.0f}));
    EXPECT_EQ(ViewDrag::Begin(notes, {160.0, 200.0}).What(), Grip::Rectangle);
}

// Half of 320 is 160, half of 180 is 90: with such a border the target stays in the middle.
TEST_F(Drag, WithoutAZoneAlongOneAxisThereIsNoneToGrip)
{
    for (const auto& [field, value] : {std::pair("border_x", 160.0f), std::pair("border_y", 90.0f)})
    {
        ASSERT_EQ(Watch(RunnerTest::FOLLOWING_GAME), "");
        ASSERT_TRUE(Apply({1, 1, field, value}));
        EXPECT_EQ(ViewDrag::Begin(notes, {160.0, 200.0}).What(), Grip::Rectangle) << field;
        EXPECT_EQ(ViewDrag::Begin(notes, {300.0, 80.0}).What(), Grip::Rectangle) << field;
    }
}

TEST_F(Drag, OnTheScreenThereIsNothingToGripOfAViewThatDrawsIntoASurface)
{
    ASSERT_EQ(Watch("room_add{ views = { [0] = { w = 64, h = 48, wport = 64, hport = 48 } }, "
                    "create = function() view_set_surface_id(0, surface_create(64, 48)) end }"),
              "");
    EXPECT_EQ(ViewDrag::Begin(notes, {10.0, 10.0}).What(), Grip::None);
}

TEST_F(Drag, WithAnUpdateCallbackThereIsNoZoneToGrip)
{
    std::string text = RunnerTest::FOLLOWING_GAME;
    text.replace(text.find("instances = "), 0,
                 "create = function() camera_set_update_script(view_get_camera(0), function() end) end,\n");
    ASSERT_EQ(Watch(text), "");
    EXPECT_EQ(ViewDrag::Begin(notes, {163.0, 200.0}).What(), Grip::Rectangle);
}
} // namespace
