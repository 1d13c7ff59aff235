#include "Files/Graphics/Version.h"

int CameraModule::Version() { return CAMERA_MODULE_VERSION; }
