#pragma once

#include "Files/Graphics_API/Graphics_API.h"
#include "Platform/Matrix.h"

namespace CameraModule
{

// The projection to draw with: itself, or into a render target a copy turned upside down, because targets keep their
// first row at the top. turned is where the copy goes.
inline kvMatrix& ProjectionForTarget(kvMatrix& projection, kvMatrix& turned)
{
    static constexpr kvMatrix FLIP_Y = {{{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};
    if (g_RenderTargetActive == -1)
        return projection;
    kvMatrix::Multiply(turned, projection, FLIP_Y);
    return turned;
}

} // namespace CameraModule
