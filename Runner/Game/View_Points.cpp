#include "Platform/Strict_Float.h"

#include "Runner/Game/View_Points.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Graphics.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Runner
{
namespace
{
// Column c of the product (x, y, z, 1) * matrix.
double Column(const kvMatrix& matrix, int c, double x, double y, double z)
{
    const float* const m = matrix.m + c;
    return x * static_cast<double>(m[0]) + y * static_cast<double>(m[4]) + z * static_cast<double>(m[8]) +
           static_cast<double>(m[12]);
}

// Whether the point lies in front of the eye, between the near and the far plane. Comparisons with NaN are false.
bool IsSeen(const kvMatrix& roomToClip, PlanePoint room, double z)
{
    const double w = Column(roomToClip, 3, room.x, room.y, z);
    const double depth = Column(roomToClip, 2, room.x, room.y, z);
    return w > 0.0 && depth >= 0.0 && depth <= w;
}

// One of the two equations a * x + b * y = c that say: the point's clip coordinate in that column is `clip`.
struct Equation
{
    double a, b, c;
};

Equation EquationOf(const kvMatrix& roomToClip, int column, double clip, double z)
{
    const auto entry = [&](int row) { return static_cast<double>(roomToClip.m[row * 4 + column]); };
    const auto last = [&](int row) { return static_cast<double>(roomToClip.m[row * 4 + 3]); };
    return {entry(0) - clip * last(0), entry(1) - clip * last(1),
            clip * (z * last(2) + last(3)) - (z * entry(2) + entry(3))};
}

// The port of a view, on the screen or as large as its surface.
struct ViewPort
{
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
};

ViewPort PortOf(const Game& game, const View& view)
{
    if (view.surface == SCREEN_SURFACE)
        return {static_cast<double>(view.xport), static_cast<double>(view.yport), static_cast<double>(view.wport),
                static_cast<double>(view.hport)};
    const Painter* const painter = game.CurrentPainter();
    const int width = painter == nullptr ? 0 : painter->SurfaceWidth(view.surface);
    const int height = painter == nullptr ? 0 : painter->SurfaceHeight(view.surface);
    return {0.0, 0.0, static_cast<double>(width), static_cast<double>(height)};
}

// A view that can show points: it has a camera that was drawn through, and a port.
bool FindShown(const Game& game, int number, kvMatrix& roomToClip, ViewPort& port)
{
    const RunningRoom* const room = game.rooms.Running();
    if (room == nullptr)
        return false;
    const View& view = room->views[static_cast<size_t>(number)];
    const CCamera* const camera = g_CM.GetCamera(view.cameraID);
    if (camera == nullptr)
        return false;
    roomToClip = camera->GetViewProjMat();
    port = PortOf(game, view);
    const kvMatrix untouched = IdentityMatrix();
    const bool isMade = !std::equal(std::begin(roomToClip.u), std::end(roomToClip.u), std::begin(untouched.u));
    return isMade && port.width > 0.0 && port.height > 0.0;
}
} // namespace

bool ClipToPlane(const kvMatrix& roomToClip, PlanePoint clip, double z, PlanePoint& room)
{
    const Equation first = EquationOf(roomToClip, 0, clip.x, z), second = EquationOf(roomToClip, 1, clip.y, z);
    const double determinant = first.a * second.b - first.b * second.a;
    if (determinant == 0.0)
        return false;
    room.x = (first.c * second.b - first.b * second.c) / determinant;
    room.y = (first.a * second.c - first.c * second.a) / determinant;
    return std::isfinite(room.x) && std::isfinite(room.y) && IsSeen(roomToClip, room, z);
}

bool PlaneToClip(const kvMatrix& roomToClip, PlanePoint room, double z, PlanePoint& clip)
{
    const double w = Column(roomToClip, 3, room.x, room.y, z);
    clip.x = Column(roomToClip, 0, room.x, room.y, z) / w;
    clip.y = Column(roomToClip, 1, room.x, room.y, z) / w;
    return IsSeen(roomToClip, room, z) && std::isfinite(clip.x) && std::isfinite(clip.y);
}

bool ViewToRoom(const Game& game, int view, PlanePoint screen, double z, PlanePoint& room)
{
    kvMatrix roomToClip;
    ViewPort port;
    if (!FindShown(game, view, roomToClip, port))
        return false;
    const PlanePoint clip = {2.0 * (screen.x - port.x) / port.width - 1.0,
                             2.0 * (screen.y - port.y) / port.height - 1.0};
    return ClipToPlane(roomToClip, clip, z, room);
}

bool RoomToView(const Game& game, int view, PlanePoint room, double z, PlanePoint& screen)
{
    kvMatrix roomToClip;
    ViewPort port;
    PlanePoint clip;
    if (!FindShown(game, view, roomToClip, port) || !PlaneToClip(roomToClip, room, z, clip))
        return false;
    screen = {port.x + (clip.x + 1.0) / 2.0 * port.width, port.y + (clip.y + 1.0) / 2.0 * port.height};
    return true;
}

// Views of higher numbers are drawn later.
int ViewAt(const Game& game, PlanePoint screen)
{
    const RunningRoom* const room = game.rooms.Running();
    for (int number = ROOM_VIEWS - 1; room != nullptr && number >= 0; --number)
    {
        const View& view = room->views[static_cast<size_t>(number)];
        const ViewPort port = PortOf(game, view);
        const bool isShown = view.visible && view.surface == SCREEN_SURFACE && g_CM.GetCamera(view.cameraID) != nullptr;
        if (isShown && screen.x >= port.x && screen.y >= port.y && screen.x < port.x + port.width &&
            screen.y < port.y + port.height)
            return number;
    }
    return NO_VIEW;
}
} // namespace Runner
