#include "Web/runner/Canvas_Device.h"

#include "Runner/Draw/Gl_Device.h"

namespace Runner
{
namespace
{
int s_losses = 0; // of the canvas' context so far

// All devices of a page's program share the canvas' one context: it is current, and stays so.
class CanvasContext : public GlContext
{
public:
    CanvasContext() { MakeCurrent(); }
    void EndFrame() override {} // the browser takes the commands when the page's turn is over
    bool IsLost() override { return m_losses != s_losses; }

private:
    void Activate() override {}

    const int m_losses = s_losses;
};
} // namespace

std::unique_ptr<Device> OpenCanvasDevice(int width, int height, std::string& error)
{
    auto device = std::make_unique<GlDevice>(std::make_unique<CanvasContext>());
    if (!device->Open(width, height, error))
        return nullptr;
    return device;
}

// The driver's word about the loss itself is taken here: it is no error of what is drawn next.
void LoseCanvasDevices()
{
    ++s_losses;
    while (glGetError() != GL_NO_ERROR)
        continue;
}

std::unique_ptr<Device> OpenDevice(int, int, std::string& error)
{
    error = "this runner draws into a page's canvas: give it one, or --no-draw";
    return nullptr;
}
} // namespace Runner
