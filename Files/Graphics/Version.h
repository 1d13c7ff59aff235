#pragma once
// The module's version. The build reads it here. Semantic: a host written for MAJOR.n builds against MAJOR.m, m >= n.

#define CAMERA_MODULE_VERSION_MAJOR 1
#define CAMERA_MODULE_VERSION_MINOR 1
#define CAMERA_MODULE_VERSION_PATCH 0
#define CAMERA_MODULE_VERSION_TEXT "1.1.0"

// One number to compare with: 10203 is 1.2.3.
#define CAMERA_MODULE_VERSION                                                                                          \
    (CAMERA_MODULE_VERSION_MAJOR * 10000 + CAMERA_MODULE_VERSION_MINOR * 100 + CAMERA_MODULE_VERSION_PATCH)

namespace CameraModule
{
// CAMERA_MODULE_VERSION of the archive. Headers of another version are a mistake of the host's build.
int Version();
} // namespace CameraModule
