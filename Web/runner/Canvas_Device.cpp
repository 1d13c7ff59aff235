#include "Web/runner/Canvas_Device.h"

#include "Runner/Draw/Gl_Device.h"

#include <emscripten.h>

// clang-format off
// Frees every object of the canvas' context, or only forgets them: the browser has freed those of a lost one, and says of
// each use of them on the console that it is wrong.
EM_JS(void, release_canvas_objects, (int isLost), {
    [["deleteProgram", GL.programs], ["deleteShader", GL.shaders], ["deleteFramebuffer", GL.framebuffers],
     ["deleteRenderbuffer", GL.renderbuffers], ["deleteTexture", GL.textures], ["deleteBuffer", GL.buffers]
    ].forEach(function(kind) {
        kind[1].forEach(function(object, name) {
            if (object && !isLost) GLctx[kind[0]](object);
            kind[1][name] = null;
        });
    });
})
// clang-format on

namespace Runner
{
namespace
{
int s_losses = 0; // of the canvas' context so far

// The driver's words that nobody has asked for yet.
void TakeErrors()
{
    while (glGetError() != GL_NO_ERROR)
        continue;
}

// The devices of a page's program, one after the other, share the canvas' one context: it is current, and stays so. It
// outlives each of them, so what a device has made in it is released here.
class CanvasContext : public GlContext
{
public:
    CanvasContext() { MakeCurrent(); }
    ~CanvasContext() override
    {
        release_canvas_objects(IsLost() ? 1 : 0);
        TakeErrors(); // a lost device's programs were forgotten before it freed them, which counts as an error
    }
    CanvasContext(const CanvasContext&) = delete;
    CanvasContext& operator=(const CanvasContext&) = delete;
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
    release_canvas_objects(1);
    TakeErrors();
}

std::unique_ptr<Device> OpenDevice(int, int, std::string& error)
{
    error = "this runner draws into a page's canvas: give it one, or --no-draw";
    return nullptr;
}
} // namespace Runner
