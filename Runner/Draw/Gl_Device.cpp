#include "Runner/Draw/Gl_Device.h"

#include "Runner/Base/Process_Memory.h"
#include "Runner/Draw/Gl_Texture.h"

#include <GLES2/gl2ext.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace Runner
{
namespace
{
GLsizeiptr ByteCount(size_t count, size_t size) { return static_cast<GLsizeiptr>(count * size); }

bool HasExtension(const char* name)
{
    const GLubyte* all = glGetString(GL_EXTENSIONS);
    return all != nullptr && strstr(reinterpret_cast<const char*>(all), name) != nullptr;
}

// An extension of version 2, and part of version 3, which need not name it.
bool HasFineDepth() { return IsGlVersion3() || HasExtension("GL_OES_depth24"); }

void FlipRows(uint8_t* rgba, size_t rowBytes, int height)
{
    for (int top = 0, bottom = height - 1; top < bottom; top++, bottom--)
    {
        uint8_t* upper = rgba + static_cast<size_t>(top) * rowBytes;
        std::swap_ranges(upper, upper + rowBytes, rgba + static_cast<size_t>(bottom) * rowBytes);
    }
}
} // namespace

bool GlDevice::Open(int width, int height, std::string& error)
{
    KeepFreedMemory();
    m_context->MakeCurrent();
    if (!m_flat.Build(GlPixels::Texture, error) || !m_solid.Build(GlPixels::SolidTexture, error))
        return false;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_largestTexture);
    if (HasFineDepth())
        m_depthFormat = GL_DEPTH_COMPONENT24_OES;
    glGenBuffers(1, &m_vertices);
    glGenBuffers(1, &m_indices);
    BuildQuadIndices();
    glDisable(GL_DITHER);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_SCISSOR_TEST);
    for (const GLuint input : {INPUT_POSITION, INPUT_TEXTURE, INPUT_COLOUR})
        glEnableVertexAttribArray(input);
    m_screen = MakeScreen(width, height);
    NoteError("start");
    if (m_screen != 0 && m_error.empty())
        return true;
    error = "cannot draw: the driver makes no screen of " + std::to_string(width) + " x " + std::to_string(height) +
            " pixels; ask for a smaller one";
    return false;
}

GlDevice::~GlDevice()
{
    m_context->MakeCurrent();
    while (!m_targets.empty())
        GlDevice::DeleteTarget(m_targets.begin()->first);
    const GLuint buffers[] = {m_vertices, m_indices, m_quadIndices};
    glDeleteBuffers(3, buffers);
}

// ---- textures and targets ----

unsigned GlDevice::CreateTexture(int width, int height, const uint8_t* rgba)
{
    m_context->MakeCurrent();
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    NearestAndClamped();
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    if (glGetError() == GL_NO_ERROR)
        return texture;
    glDeleteTextures(1, &texture);
    return 0;
}

void GlDevice::DeleteTexture(unsigned texture)
{
    m_context->MakeCurrent();
    glDeleteTextures(1, &texture);
}

unsigned GlDevice::MakeTarget(int width, int height)
{
    Target made;
    made.width = width;
    made.height = height;
    made.texture = CreateTexture(width, height, nullptr);
    if (made.texture == 0)
        return 0;
    GLuint framebuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, made.texture, 0);
    m_targets[framebuffer] = made;
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE)
    {
        DeleteTarget(framebuffer);
        return 0;
    }
    glScissor(0, 0, width, height);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    return framebuffer;
}

unsigned GlDevice::CreateTarget(int width, int height, unsigned& texture)
{
    m_context->MakeCurrent();
    const unsigned target = MakeTarget(width, height);
    texture = target == 0 ? 0 : m_targets[target].texture;
    return target;
}

void GlDevice::DeleteTarget(unsigned target)
{
    m_context->MakeCurrent();
    const auto found = m_targets.find(target);
    if (found == m_targets.end())
        return;
    glDeleteFramebuffers(1, &found->first);
    glDeleteTextures(1, &found->second.texture);
    glDeleteRenderbuffers(1, &found->second.depth);
    m_targets.erase(found);
}

GlDevice::Target& GlDevice::Bind(unsigned target)
{
    m_context->MakeCurrent();
    const GLuint framebuffer = target == 0 ? m_screen : target;
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    return m_targets[framebuffer];
}

void GlDevice::AddDepth(Target& target)
{
    glGenRenderbuffers(1, &target.depth);
    glBindRenderbuffer(GL_RENDERBUFFER, target.depth);
    glRenderbufferStorage(GL_RENDERBUFFER, m_depthFormat, target.width, target.height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, target.depth);
    glScissor(0, 0, target.width, target.height);
    glClear(GL_DEPTH_BUFFER_BIT);
}

// ---- meshes ----

unsigned GlDevice::CreateMesh()
{
    m_context->MakeCurrent();
    GLuint mesh = 0;
    glGenBuffers(1, &mesh);
    return mesh;
}

void GlDevice::SetMesh(unsigned mesh, const std::vector<Vertex>& vertices)
{
    m_context->MakeCurrent();
    glBindBuffer(GL_ARRAY_BUFFER, mesh);
    glBufferData(GL_ARRAY_BUFFER, ByteCount(vertices.size(), sizeof(Vertex)), vertices.data(), GL_STATIC_DRAW);
    NoteError("a mesh's upload");
}

void GlDevice::DeleteMesh(unsigned mesh)
{
    m_context->MakeCurrent();
    glDeleteBuffers(1, &mesh);
}

void GlDevice::BuildQuadIndices()
{
    std::vector<uint16_t> indices;
    indices.reserve(size_t{MESH_QUADS_LIMIT} * 6);
    for (unsigned first = 0; first < MESH_QUADS_LIMIT * 4; first += 4)
    {
        for (const unsigned corner : {0u, 1u, 2u, 0u, 2u, 3u})
            indices.push_back(static_cast<uint16_t>(first + corner));
    }
    glGenBuffers(1, &m_quadIndices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_quadIndices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, ByteCount(indices.size(), sizeof(uint16_t)), indices.data(), GL_STATIC_DRAW);
}

// ---- drawing ----

bool GlDevice::BindPort(const DrawState& state)
{
    Target& target = Bind(state.target);
    if (state.depthTest && target.depth == 0)
        AddDepth(target);
    const Port& port = state.port;
    const bool isBottomUp = state.target == 0 && !IsWindowsScreen(0);
    const int y = isBottomUp ? target.height - port.y - port.height : port.y;
    const int left = std::max(port.x, 0), right = std::min(port.x + port.width, target.width);
    const int low = std::max(y, 0), high = std::min(y + port.height, target.height);
    if (left >= right || low >= high)
        return false;
    glViewport(port.x, y, port.width, port.height);
    glScissor(left, low, right - left, high - low);
    return true;
}

void GlDevice::Clear(const DrawState& state, const float (&colour)[4])
{
    if (!BindPort(state))
        return;
    glClearColor(colour[0], colour[1], colour[2], colour[3]);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); // GL ignores the depth bit without a depth buffer
    NoteErrorInDebug("a clear");
}

void GlDevice::Draw(const DrawState& state, GLsizei indexCount)
{
    if (state.depthTest)
        glEnable(GL_DEPTH_TEST);
    else
        glDisable(GL_DEPTH_TEST);
    kvMatrix toClip = state.toClip;
    if (IsWindowsScreen(state.target)) // the program negates y
        for (int row = 0; row < 16; row += 4)
            toClip.m[row + 1] = -toClip.m[row + 1];
    (state.depthTest ? m_solid : m_flat).Use(toClip.m, state.tint);
    glBindTexture(GL_TEXTURE_2D, state.texture);
    DescribeVertices();
    glDrawElements(GL_TRIANGLES, indexCount, GL_UNSIGNED_SHORT, nullptr);
    NoteErrorInDebug("a draw");
}

void GlDevice::DrawTriangles(const DrawState& state, const std::vector<Vertex>& vertices,
                             const std::vector<uint16_t>& indices)
{
    if (!BindPort(state))
        return;
    glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    glBufferData(GL_ARRAY_BUFFER, ByteCount(vertices.size(), sizeof(Vertex)), vertices.data(), GL_STREAM_DRAW);
    if (indices.empty())
    {
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_quadIndices);
        Draw(state, static_cast<GLsizei>(vertices.size() / 4 * 6));
        return;
    }
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, ByteCount(indices.size(), sizeof(uint16_t)), indices.data(), GL_STREAM_DRAW);
    Draw(state, static_cast<GLsizei>(indices.size()));
}

void GlDevice::DrawMesh(const DrawState& state, unsigned mesh, int quads)
{
    if (!BindPort(state))
        return;
    glBindBuffer(GL_ARRAY_BUFFER, mesh);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_quadIndices);
    Draw(state, quads * 6);
}

void GlDevice::BeginScreen()
{
    m_context->MakeCurrent();
    if (m_otherScreen == 0 && !m_isRefused)
        m_otherScreen = MakeScreen(m_targets[m_screen].width, m_targets[m_screen].height);
    m_isRefused = m_otherScreen == 0;
    TakeBackScreen();
}

void GlDevice::TakeBackScreen()
{
    if (m_otherScreen != 0)
        std::swap(m_screen, m_otherScreen);
}

void GlDevice::Finish()
{
    m_context->MakeCurrent();
    m_context->EndFrame();
    NoteError("the frame");
}

void GlDevice::Read(unsigned target, int width, int height, uint8_t* rgba)
{
    Bind(target);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    if (target == 0 && !IsWindowsScreen(0))
        FlipRows(rgba, static_cast<size_t>(width) * 4, height);
    NoteError("a read-back");
}

// ---- errors ----

void GlDevice::NoteError(const char* during)
{
    const GLenum code = glGetError();
    if (code == GL_NO_ERROR || !m_error.empty())
        return;
    char text[120];
    snprintf(text, sizeof text, "the graphics driver reports error 0x%04X during %s%s", static_cast<unsigned>(code),
             during, code == GL_OUT_OF_MEMORY ? ": out of memory" : "");
    m_error = text;
}

void GlDevice::NoteErrorInDebug([[maybe_unused]] const char* during)
{
#ifndef NDEBUG
    NoteError(during); // glGetError makes the driver wait: release builds call it once a frame
#endif
}

std::string GlDevice::Driver() const
{
    const auto text = [](GLenum name)
    {
        const GLubyte* value = glGetString(name);
        return std::string(value != nullptr ? reinterpret_cast<const char*>(value) : "unknown");
    };
    return text(GL_RENDERER) + ", " + text(GL_VERSION);
}

std::string GlDevice::TakeError()
{
    std::string taken;
    taken.swap(m_error);
    return taken;
}
} // namespace Runner
