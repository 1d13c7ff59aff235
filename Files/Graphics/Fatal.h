#pragma once

#include <cstdio>
#include <cstdlib>

namespace CameraModule
{

// Ends the program with one line, where no caller could be told: without a table or a slot nothing can go on.
// _Exit: static destructors would run into the same missing table.
[[noreturn]] inline void Fatal(const char* what)
{
    fprintf(stderr, "camera: %s\n", what);
    std::_Exit(EXIT_FAILURE);
}

} // namespace CameraModule
