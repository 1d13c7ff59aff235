#pragma once

#include "Runner/Draw/Gl_Context.h"

#include <memory>
#include <string>

namespace Runner
{
// A context without a window, display or GPU. It draws into framebuffer objects only.
class SurfacelessContext : public GlContext
{
public:
    ~SurfacelessContext() override;

    bool Open(std::string& error); // once; makes it current
    void EndFrame() override;      // waits: nobody swaps buffers, which would keep the commands from piling up

private:
    void Activate() override;

    void* m_display = nullptr;
    void* m_context = nullptr;
};
} // namespace Runner
