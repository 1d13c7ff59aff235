#include "Runner/Draw/Gl_Lines.h"

#include <cmath>

namespace Runner
{
GlLines::~GlLines() { glDeleteBuffers(1, &m_buffer); } // 0 is ignored

bool GlLines::Open(std::string& error)
{
    glGenBuffers(1, &m_buffer);
    return m_program.Build(GlPixels::Colour, error);
}

void GlLines::Add(float fromX, float fromY, float toX, float toY, float width, const uint8_t (&colour)[3])
{
    const float x = toX - fromX, y = toY - fromY, length = std::sqrt(x * x + y * y);
    if (!(length > 0.0f && std::isfinite(length)))
        return;
    const float aside = 0.5f * width / length, sideX = -y * aside, sideY = x * aside;
    const float places[6][2] = {{fromX + sideX, fromY + sideY}, {toX + sideX, toY + sideY},
                                {toX - sideX, toY - sideY},     {fromX + sideX, fromY + sideY},
                                {toX - sideX, toY - sideY},     {fromX - sideX, fromY - sideY}};
    for (const float(&place)[2] : places)
        m_corners.push_back({place[0], place[1], 0.0f, 0.0f, 0.0f, {colour[0], colour[1], colour[2], 255}});
}

// The program negates clip y, and takes depths from 0 to 1: one half lies in the middle.
void GlLines::Draw(const Port& port, int height)
{
    if (m_corners.empty() || port.width <= 0 || port.height <= 0)
        return m_corners.clear();
    const float perPixelX = 2.0f / static_cast<float>(port.width), perPixelY = 2.0f / static_cast<float>(port.height);
    const float toClip[16] = {perPixelX,
                              0,
                              0,
                              0,
                              0,
                              perPixelY,
                              0,
                              0,
                              0,
                              0,
                              1,
                              0,
                              -1.0f - static_cast<float>(port.x) * perPixelX,
                              -1.0f - static_cast<float>(port.y) * perPixelY,
                              0.5f,
                              1};
    const float tint[4] = {1, 1, 1, 1};
    const int low = height - port.y - port.height;
    glViewport(port.x, low, port.width, port.height);
    glScissor(port.x, low, port.width, port.height);
    glDisable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    m_program.Use(toClip, tint);
    glBindBuffer(GL_ARRAY_BUFFER, m_buffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(m_corners.size() * sizeof(Vertex)), m_corners.data(),
                 GL_STREAM_DRAW);
    DescribeVertices();
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(m_corners.size()));
    glEnable(GL_BLEND);
    m_corners.clear();
}
} // namespace Runner
