#include "Files/Graphics/Values.h"

#include "Platform/Compiler.h"

CAMERA_WEAK_DATA RValue g_undefined = {{0}, 0, VALUE_UNDEFINED};
