#pragma once
// The matrix slots and the view area behind Files/Graphics_API, for those who read them: the painter, the trace, the
// culling of instances. Works without any painter.

#include "Files/Graphics_API/Graphics_API.h"
#include "Platform/Matrix.h"
#include "Runner/Base/Area.h"

namespace Runner
{
const kvMatrix& CurrentMatrix(eMatrix slot); // identity until set
kvMatrix RoomToClip();                       // world * view * projection, as they stand

// Grows with every SetMatrix and reset; equal versions mean equal matrices.
unsigned MatrixVersion();

// All three slots to identity, the view area to zeros, no render target: as a game finds them at its start.
void ResetGraphics();
void ResetWorldMatrix();

// View and projection of a flat, unrotated view of the rectangle, as a camera's 2D build makes them, with the flip that
// a render target needs while one is bound. Publishes the view area too.
void SetFlatView(float x, float y, float width, float height);

kvMatrix IdentityMatrix();

// Scales, then turns about the z, the x and the y axis, then moves. Angles in degrees. A positive turn about z is
// counter-clockwise on the screen of a flat view; about x and y it is the same formula with the axes exchanged in turn.
kvMatrix BuildWorldMatrix(const kvVector3& position, const kvVector3& degrees, const kvVector3& scale);

// The part of the plane z = 0 that the current matrices show: the clip square carried back into the room. The entire
// plane where that is no parallelogram: for a perspective, for a view in which z moves a point across the screen, and
// for matrices that are singular or not finite. Nothing may be culled then.
RoomRegion VisibleRegion();
} // namespace Runner
