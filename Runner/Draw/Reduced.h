#pragma once

#include "Runner/Draw/Picture.h"

namespace Runner
{
// The picture at its largest size within so many pixels that keeps its shape, each pixel the mean of what it covers;
// the picture itself when it fits. Opaque pictures only: alpha is not weighed.
Picture Reduced(const Picture& picture, int width, int height);
} // namespace Runner
