#pragma once

namespace Runner
{
// An OpenGL ES 2 context. Destroying it frees everything that was made in it.
class GlContext
{
public:
    virtual ~GlContext() { Forget(); }

    // Costs nothing when it is current.
    void MakeCurrent()
    {
        if (s_current == this)
            return;
        Activate();
        s_current = this;
    }

    virtual bool HasWindow() const { return false; } // framebuffer 0 is a window's

    virtual void EndFrame() = 0;            // hands the frame's commands to the driver
    virtual bool IsLost() { return false; } // whether the driver was reset, and took what was made in the context

protected:
    GlContext() = default;
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    virtual void Activate() = 0;

    bool IsCurrent() const { return s_current == this; }
    void Forget() // before the context is destroyed
    {
        if (s_current == this)
            s_current = nullptr;
    }

private:
    inline static const GlContext* s_current = nullptr;
};
} // namespace Runner
