#pragma once
// Reads the matrix slots and the view area behind Files/Graphics_API: for the painter, the trace, and the culling of
// instances. Needs no painter.

#include "Files/Graphics_API/Graphics_API.h"
#include "Platform/Matrix.h"
#include "Runner/Base/Area.h"

namespace Runner
{
const kvMatrix& CurrentMatrix(eMatrix slot); // identity until set
kvMatrix RoomToClip();                       // the current world * view * projection

// A counter that every SetMatrix and reset increments: equal versions mean equal matrices.
unsigned MatrixVersion();

// The state at the start of a game: all three slots identity, the view area zeros, no render target.
void ResetGraphics();
void ResetWorldMatrix();

// Puts the matrices, the view area and the render target back as they were when it was made: for what is drawn beside
// a game, which must not see it.
class GraphicsKeeper
{
public:
    GraphicsKeeper();
    ~GraphicsKeeper();
    GraphicsKeeper(const GraphicsKeeper&) = delete;
    GraphicsKeeper& operator=(const GraphicsKeeper&) = delete;

private:
    kvMatrix m_slots[3];
    float m_area[5];
    int m_target;
};

// Sets view and projection for a flat, unrotated view of the rectangle, as a camera's 2D build makes them, flipped
// vertically while a render target is bound. Publishes the view area, too.
void SetFlatView(float x, float y, float width, float height);

kvMatrix IdentityMatrix();

// A world matrix: scales, then rotates about the z, the x and the y axis, then translates. Angles in degrees. A
// positive rotation about z is counter-clockwise on the screen of a flat view; those about x and y are the same formula
// with the axes exchanged cyclically.
kvMatrix BuildWorldMatrix(const kvVector3& position, const kvVector3& degrees, const kvVector3& scale);

// The part of the plane z = 0 that the current matrices show: the clip square carried back into the room. The entire
// plane where that is no parallelogram: for a perspective, for a view in which z moves a point across the screen, and
// for matrices that are singular or not finite. Nothing may be culled then.
RoomRegion VisibleRegion();
} // namespace Runner
