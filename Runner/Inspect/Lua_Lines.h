#pragma once

#include "Files/Graphics/Camera.h"

#include <string>

namespace Runner
{
// The lines of Lua that make this camera: run in a fresh game, they make one with the same view, target, matrices and
// need of a build. A callback that is a script's number is set; of a function, a comment tells where it stands. What
// scripts cannot set (clone, persistent) is a comment, too.
std::string LuaLines(const CCamera& camera);
} // namespace Runner
