// The screen in a window.
#include "Runner/Draw/Gl_Device.h"
#include "Runner/Draw/Gl_Texture.h"

#include <GLES3/gl3.h>

namespace Runner
{
unsigned GlDevice::MakeScreen(int width, int height)
{
    const unsigned screen = MakeTarget(width, height);
    if (screen == 0 || !m_context->HasWindow())
        return screen;
    AllotInWindowsOrder(m_targets[screen].texture, width, height);
    glClear(GL_COLOR_BUFFER_BIT);
    return screen;
}

void GlDevice::Show(const Showing& showing)
{
    m_context->MakeCurrent();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_BLEND);
    if (showing.isAlone)
    {
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    if (TakesCopy(showing))
        CopyScreen(showing.where, showing.windowHeight);
    else
        DrawScreen(showing);
    glEnable(GL_BLEND);
    glEnable(GL_SCISSOR_TEST);
    NoteError("showing the screen");
}

bool GlDevice::TakesCopy(const Showing& showing)
{
    const Target& screen = m_targets[m_screen];
    GLint samples = 0;
    glGetIntegerv(GL_SAMPLES, &samples);
    return showing.where.width == screen.width && showing.where.height == screen.height && samples == 0 &&
           IsGlVersion3();
}

// The copy turns the rows round, and the driver turns a window's round once more: memory is copied as it stands.
void GlDevice::CopyScreen(const Port& where, int windowHeight)
{
    const Target& screen = m_targets[m_screen];
    const int low = windowHeight - where.y - where.height;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_screen);
    glBlitFramebuffer(0, screen.height, screen.width, 0, where.x, low, where.x + where.width, low + where.height,
                      GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

// The screen's texture on two triangles that fill the viewport. The program negates clip y: a corner with clip y -1
// stands at the top, where the texture's first row is.
void GlDevice::DrawScreen(const Showing& showing)
{
    const Port& where = showing.where;
    glViewport(where.x, showing.windowHeight - where.y - where.height, where.width, where.height);
    DrawState state;
    state.target = m_screen; // for the y of surfaces
    state.texture = m_targets[m_screen].texture;
    state.toClip = {{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};
    const Vertex corners[] = {{-1, -1, 0, 0, 0, {255, 255, 255, 255}},
                              {1, -1, 0, 1, 0, {255, 255, 255, 255}},
                              {1, 1, 0, 1, 1, {255, 255, 255, 255}},
                              {-1, 1, 0, 0, 1, {255, 255, 255, 255}}};
    glBindTexture(GL_TEXTURE_2D, state.texture);
    const GLint filter = showing.smooth ? GL_LINEAR : GL_NEAREST;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STREAM_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_quadIndices);
    Draw(state, 6);
}
} // namespace Runner
