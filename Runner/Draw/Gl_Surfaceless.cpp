#include "Runner/Draw/Gl_Surfaceless.h"

#include "Runner/Draw/Gl_Device.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GLES2/gl2.h>

#include <cstdio>
#include <cstring>

namespace Runner
{
namespace
{
std::string WithCode(const char* what)
{
    char text[120];
    snprintf(text, sizeof text, "%s (EGL error 0x%04X)", what, static_cast<unsigned>(eglGetError()));
    return text;
}

EGLDisplay FindDisplay()
{
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (extensions == nullptr || strstr(extensions, "EGL_MESA_platform_surfaceless") == nullptr)
        return EGL_NO_DISPLAY;
    const auto getDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    return getDisplay == nullptr ? EGL_NO_DISPLAY
                                 : getDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
}
} // namespace

bool SurfacelessContext::Open(std::string& error)
{
    const EGLDisplay display = FindDisplay();
    if (display == EGL_NO_DISPLAY)
    {
        error =
            "cannot draw: EGL offers no surfaceless display; install Mesa (libegl1, libgl1-mesa-dri), or use --no-draw";
        return false;
    }
    if (!eglInitialize(display, nullptr, nullptr))
    {
        error = WithCode("cannot draw: EGL does not start; check the Mesa drivers, or use --no-draw");
        return false;
    }
    m_display = display; // never terminated: the driver leaks each time that it is loaded again

    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT, EGL_SURFACE_TYPE, 0, EGL_NONE};
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglBindAPI(EGL_OPENGL_ES_API) || !eglChooseConfig(display, wanted, &config, 1, &count) || count < 1 ||
        (m_context = eglCreateContext(display, config, EGL_NO_CONTEXT, version)) == EGL_NO_CONTEXT ||
        !eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context))
    {
        error = WithCode("cannot draw: no OpenGL ES 2 context; check the Mesa drivers, or use --no-draw");
        return false;
    }
    MakeCurrent();
    return true;
}

void SurfacelessContext::Activate() { eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context); }

void SurfacelessContext::EndFrame() { glFinish(); }

SurfacelessContext::~SurfacelessContext()
{
    if (m_display == nullptr)
        return;
    if (IsCurrent())
        eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    Forget();
    if (m_context != EGL_NO_CONTEXT)
        eglDestroyContext(m_display, m_context);
}

std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error)
{
    auto context = std::make_unique<SurfacelessContext>();
    if (!context->Open(error))
        return nullptr;
    auto device = std::make_unique<GlDevice>(std::move(context));
    if (!device->Open(width, height, error))
        return nullptr;
    return device;
}
} // namespace Runner
