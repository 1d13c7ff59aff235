#include "Runner/Draw/Gl_Kept_Picture.h"

#include "Runner/Draw/Gl_Program.h"
#include "Runner/Draw/Gl_Texture.h"

#include <GLES3/gl3.h>

namespace Runner
{
bool GlKeptPicture::Begin(int width, int height)
{
    GLint samples = 0; // of what is bound: several cannot take a copy
    glGetIntegerv(GL_SAMPLES, &samples);
    if (!IsGlVersion3() || samples > 0 || width <= 0 || height <= 0)
        return false;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &m_before);
    if (width != m_width || height != m_height)
    {
        Free();
        glGenTextures(1, &m_texture);
        glBindTexture(GL_TEXTURE_2D, m_texture);
        NearestAndClamped();
        glGenFramebuffers(1, &m_framebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_texture, 0);
        AllotInWindowsOrder(m_texture, width, height);
        m_width = width;
        m_height = height;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE)
        return true;
    End();
    return false;
}

void GlKeptPicture::End() { glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(m_before)); }

void GlKeptPicture::Show(int x, int y, int height) const
{
    GLint shown = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &shown);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_framebuffer);
    const int low = height - y - m_height;
    glDisable(GL_SCISSOR_TEST);
    glBlitFramebuffer(0, m_height, m_width, 0, x, low, x + m_width, low + m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glEnable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(shown));
}

void GlKeptPicture::Free()
{
    glDeleteFramebuffers(1, &m_framebuffer);
    glDeleteTextures(1, &m_texture);
    m_framebuffer = m_texture = 0;
    m_width = m_height = 0;
}
} // namespace Runner
