#pragma once

#include "Files/Graphics_API/Graphics_API.h"
#include "Platform/Matrix.h"

// The projection to draw with: into a render target, upside down, because targets keep their first row at the top.
inline kvMatrix ProjectionForTarget(const kvMatrix& projection)
{
    constexpr kvMatrix FLIP_Y = {{{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};
    if (g_RenderTargetActive == -1)
        return projection;
    kvMatrix flipped;
    kvMatrix::Multiply(flipped, projection, FLIP_Y);
    return flipped;
}
