// Replaces the Gl_* sources in a build without drawing.
#ifdef RUNNER_WITHOUT_DRAWING

#include "Runner/Draw/Device.h"

namespace Runner
{
std::unique_ptr<Device> OpenDevice(int, int, std::string& error)
{
    error = "this runner was built without drawing: run it with --no-draw";
    return nullptr;
}
} // namespace Runner

#endif
