#pragma once

#include <cstdio>
#include <cstdlib>

namespace CameraModule
{

// Ends the program with one line. For the few places that have no caller to tell: without a slot or a table nothing
// can go on, and exit handlers would only find the same ruins.
[[noreturn]] inline void Fatal(const char* what)
{
    fprintf(stderr, "camera: %s\n", what);
    std::_Exit(EXIT_FAILURE);
}

} // namespace CameraModule
