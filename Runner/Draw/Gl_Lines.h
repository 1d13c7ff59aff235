#pragma once

#include "Runner/Draw/Device.h"
#include "Runner/Draw/Gl_Program.h"
#include "Runner/Draw/Port.h"

#include <vector>

namespace Runner
{
// Opaque straight lines over a picture that is done, in whatever framebuffer is bound. Neither texture nor blending: a
// driver in software works out a whole block of pixels for each one that a line touches. A context must be current, in
// the destructor too.
class GlLines
{
public:
    GlLines() = default;
    ~GlLines();
    GlLines(const GlLines&) = delete;
    GlLines& operator=(const GlLines&) = delete;

    bool Open(std::string& error); // once, first

    // Pixels from the framebuffer's top left corner. A line without length shows nothing.
    void Add(float fromX, float fromY, float toX, float toY, float width, const uint8_t (&colour)[3]);

    // Draws what was added since the last time. Nothing shows outside of the port. height: of the framebuffer.
    void Draw(const Port& port, int height);

private:
    GlProgram m_program;
    GLuint m_buffer = 0;
    std::vector<Vertex> m_corners; // six for each line
};
} // namespace Runner
