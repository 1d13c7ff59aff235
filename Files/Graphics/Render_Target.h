#pragma once

#include "Files/Graphics_API/Graphics_API.h"
#include "Platform/Matrix.h"

namespace CameraModule
{

// The projection to draw with: the camera's own on the screen; in a render target a copy that flips y, because targets
// keep their first row at the top. The copy is stored in flipped.
inline kvMatrix& ProjectionForTarget(kvMatrix& projection, kvMatrix& flipped)
{
    static constexpr kvMatrix FLIP_Y = {{{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};
    if (g_RenderTargetActive == -1)
        return projection;
    kvMatrix::Multiply(flipped, projection, FLIP_Y);
    return flipped;
}

} // namespace CameraModule
