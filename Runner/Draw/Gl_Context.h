#pragma once

#include <string>

namespace Runner
{
// An OpenGL ES 2 context without a window, display or GPU. It draws into framebuffer objects only.
class GlContext
{
public:
    GlContext() = default;
    ~GlContext();
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    bool Open(std::string& error); // once; makes it current
    void MakeCurrent();            // costs nothing when it is current

private:
    void* m_display = nullptr;
    void* m_context = nullptr;
};
} // namespace Runner
