#include "Files/Graphics/Values.h"

__attribute__((weak)) RValue g_undefined = {{0}, 0, VALUE_UNDEFINED};
