#pragma once

#include <GLES2/gl2.h>

namespace Runner
{
// A picture that is drawn once and shown over a window many times, by copies: it stands as windows do, its rows from
// the top on and blue first, so that a driver in software copies memory. A context must be current, in the destructor
// too.
class GlKeptPicture
{
public:
    GlKeptPicture() = default;
    ~GlKeptPicture() { Free(); }
    GlKeptPicture(const GlKeptPicture&) = delete;
    GlKeptPicture& operator=(const GlKeptPicture&) = delete;

    // Binds the framebuffer of a picture of this size. What is drawn into it must be turned upside down: GL counts rows
    // from below. False, and nothing is bound, where the driver has no such framebuffers or no copies between them, and
    // where the bound framebuffer has several samples for each pixel.
    bool Begin(int width, int height);
    void End(); // binds what was bound before

    // Copies the picture into the bound framebuffer, so high, with its top left corner at x, y.
    void Show(int x, int y, int height) const;

private:
    void Free();

    GLuint m_framebuffer = 0, m_texture = 0;
    GLint m_before = 0; // what was bound
    int m_width = 0, m_height = 0;
};
} // namespace Runner
