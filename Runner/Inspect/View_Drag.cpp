#include "Runner/Inspect/View_Drag.h"

#include "Files/Graphics/Camera.h"
#include "Runner/Inspect/Overlay.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Runner/World/Running_Room.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
bool Holds(const Port& port, const Point& at)
{
    return at.x >= port.x && at.y >= port.y && at.x < port.x + port.width && at.y < port.y + port.height;
}

double Wide(float number) { return static_cast<double>(number); }

// How far the point is from the piece of a line between two pixels.
double Distance(const ViewGeometry::Segment& line, const Point& at)
{
    const double dx = line.to.x - line.from.x, dy = line.to.y - line.from.y;
    const double square = dx * dx + dy * dy;
    const double along = square > 0.0 ? ((at.x - line.from.x) * dx + (at.y - line.from.y) * dy) / square : 0.0;
    const double t = std::clamp(along, 0.0, 1.0);
    const double ox = line.from.x + dx * t - at.x, oy = line.from.y + dy * t - at.y;
    return std::sqrt(ox * ox + oy * oy);
}

// The margin of the dead zone within reach; the rectangle when there is none.
Grip GripAt(const ViewGeometry& geometry, const Port& port, const CCamera& camera, const Point& at)
{
    const DeadZone x = DeadZoneOf(AxisNoteX(camera)), y = DeadZoneOf(AxisNoteY(camera));
    if (x.empty || y.empty || HasUpdateScript(camera) || camera.FindTarget() == nullptr)
        return Grip::Rectangle;
    const Point corners[] = {{x.low, y.low}, {x.high, y.low}, {x.high, y.high}, {x.low, y.high}};
    constexpr Grip SIDES[] = {Grip::Top, Grip::Right, Grip::Bottom, Grip::Left};
    for (size_t i = 0; i < 4; ++i)
    {
        const auto side = geometry.ToScreen(corners[i], corners[(i + 1) % 4], port);
        if (side && Distance(*side, at) <= ViewDrag::REACH)
            return SIDES[i];
    }
    return Grip::Rectangle;
}
} // namespace

bool ViewDrag::RoomPoint(const Point& at, Point& point) const
{
    const double clipX = (at.x - m_port.x) / m_port.width * 2.0 - 1.0;
    const double clipY = (at.y - m_port.y) / m_port.height * 2.0 - 1.0;
    const auto found = ViewGeometry(m_view, m_projection).RoomPoint(clipX, clipY);
    point = found.value_or(Point());
    return found.has_value();
}

ViewDrag ViewDrag::Begin(const FrameNotes& notes, const Point& at)
{
    ViewDrag drag;
    const auto& views = notes.Views();
    const auto found =
        std::find_if(views.rbegin(), views.rend(),
                     [&at](const ViewNote& note) { return note.surface == SCREEN_SURFACE && Holds(note.port, at); });
    const CCamera* camera = found == views.rend() ? nullptr : PeekCamera(found->camera);
    if (camera == nullptr)
        return drag;
    drag.m_camera = found->camera;
    drag.m_port = found->port;
    drag.m_view = found->viewMatrix;
    drag.m_projection = found->projection;
    drag.m_x = camera->m_viewX;
    drag.m_y = camera->m_viewY;
    drag.m_width = camera->m_viewWidth;
    drag.m_height = camera->m_viewHeight;
    if (drag.RoomPoint(at, drag.m_start))
        drag.m_grip = GripAt(ViewGeometry(drag.m_view, drag.m_projection), drag.m_port, *camera, at);
    return drag;
}

// The picture follows the mouse, so the rectangle goes the other way. A border stays between nothing and half the size.
std::vector<CameraChange> ViewDrag::To(const Point& at, int frame) const
{
    Point to;
    if (m_grip == Grip::None || !RoomPoint(at, to))
        return {};
    const auto border = [&](const char* field, double wanted, float size)
    {
        const double limited = std::clamp(std::round(wanted), 0.0, std::max(0.0, std::ceil(Wide(size) * 0.5) - 1.0));
        return std::vector<CameraChange>{{frame, m_camera, field, static_cast<float>(limited)}};
    };
    switch (m_grip)
    {
    case Grip::Left: return border("border_x", to.x - Wide(m_x), m_width);
    case Grip::Right: return border("border_x", Wide(m_x) + Wide(m_width) - to.x, m_width);
    case Grip::Top: return border("border_y", to.y - Wide(m_y), m_height);
    case Grip::Bottom: return border("border_y", Wide(m_y) + Wide(m_height) - to.y, m_height);
    default: break;
    }
    return {{frame, m_camera, "x", static_cast<float>(Wide(m_x) + m_start.x - to.x)},
            {frame, m_camera, "y", static_cast<float>(Wide(m_y) + m_start.y - to.y)}};
}
} // namespace Runner
