#pragma once
// Dragging in a view: a margin of the dead zone changes the camera's border, anything else moves its rectangle.

#include "Runner/Inspect/Camera_Fields.h"
#include "Runner/Inspect/Frame_Notes.h"
#include "Runner/Inspect/View_Geometry.h"

#include <vector>

namespace Runner
{
enum class Grip
{
    None,
    Rectangle,
    Left, // margins of the dead zone
    Right,
    Top,
    Bottom,
};

class ViewDrag
{
public:
    static constexpr double REACH = 6.0; // pixels from a margin at which it is gripped

    // at: pixels of the game's screen, as those of the views' ports. The view that was drawn last wins. A view into a
    // surface, and one whose picture has no point of the room there, cannot be gripped.
    static ViewDrag Begin(const FrameNotes& notes, const Point& at);

    Grip What() const { return m_grip; }
    int Camera() const { return m_camera; }

    // What the camera must become for the mouse at that place: two changes for the rectangle, one for a margin, none
    // without a grip. frame: of the changes.
    std::vector<CameraChange> To(const Point& at, int frame) const;

private:
    // The point of the room under a pixel, by the view as it was when the drag began.
    bool RoomPoint(const Point& at, Point& point) const;

    Grip m_grip = Grip::None;
    int m_camera = -1;
    Port m_port;
    kvMatrix m_view = {}, m_projection = {};
    Point m_start;                // in the room
    float m_x = 0.0f, m_y = 0.0f; // the rectangle then
    float m_width = 0.0f, m_height = 0.0f;
};
} // namespace Runner
