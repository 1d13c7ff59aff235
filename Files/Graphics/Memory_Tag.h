#pragma once

namespace CameraModule
{

// The name under which the host's allocation tracking knows the module's blocks.
constexpr char MEMORY_TAG[] = "Files/Graphics/Graphics_Support";

} // namespace CameraModule
