#pragma once

#include "Files/Graphics/Camera.h"
#include "Runner/Inspect/Camera_Fields.h"

#include <string>
#include <vector>

namespace Runner
{
// The lines of Lua that make this camera: run in a fresh game, they make one with the same view, target, matrices and
// need of a build. A callback that is a script's number is set; of a function, a comment tells where it stands. What
// scripts cannot set (clone, persistent) is a comment, too.
std::string LuaLines(const CCamera& camera);

// The lines that make these changes, one for each camera and function. What a function sets besides is what the camera
// has now; a camera that is not there any more gives a comment.
std::string LuaLines(const std::vector<CameraChange>& changes);
} // namespace Runner
