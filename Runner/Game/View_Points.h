#pragma once
// From points of the screen to points of the room and back, through the matrices with which a view was last drawn.

#include "Platform/Matrix.h"

namespace Runner
{
class Game;

struct PlanePoint
{
    double x = 0.0, y = 0.0;
};

// Where a clip space point x, y (-1 to 1; y grows as the room's does) shows the plane z, and the other way. False:
// there is no such point, because the plane is seen from its edge, or the point is behind the eye or not between the
// near and the far plane.
bool ClipToPlane(const kvMatrix& roomToClip, PlanePoint clip, double z, PlanePoint& room);
bool PlaneToClip(const kvMatrix& roomToClip, PlanePoint room, double z, PlanePoint& clip);

// The same for a view of the running room (0 to 7). screen: units of the game's screen; for a view that draws into a
// surface, pixels of the surface. False also for a view without a camera, and for a camera whose matrices were never
// made.
bool ViewToRoom(const Game& game, int view, PlanePoint screen, double z, PlanePoint& room);
bool RoomToView(const Game& game, int view, PlanePoint room, double z, PlanePoint& screen);

// The visible view whose port lies on top at a point of the screen; NO_VIEW when there is none.
int ViewAt(const Game& game, PlanePoint screen);
} // namespace Runner
