#pragma once
// The device on OpenGL ES 2. The screen is a framebuffer object of its own. Its first row in memory is the bottom one;
// in a window it is the top one, and the entries stand in the window's own order, so that showing it unscaled copies
// memory: a software rasteriser then draws no second picture of the window's size.

#include "Runner/Draw/Device.h"
#include "Runner/Draw/Gl_Context.h"
#include "Runner/Draw/Gl_Program.h"

#include <GLES2/gl2.h>

#include <map>

namespace Runner
{
class GlDevice : public Device
{
public:
    explicit GlDevice(std::unique_ptr<GlContext> context) : m_context(std::move(context)) {} // an open one
    ~GlDevice() override;

    bool Open(int width, int height, std::string& error); // once, first

    int LargestTexture() const override { return m_largestTexture; }
    unsigned CreateTexture(int width, int height, const uint8_t* rgba) override;
    void DeleteTexture(unsigned texture) override;
    unsigned CreateTarget(int width, int height, unsigned& texture) override;
    void DeleteTarget(unsigned target) override;
    unsigned CreateMesh() override;
    void SetMesh(unsigned mesh, const std::vector<Vertex>& vertices) override;
    void DeleteMesh(unsigned mesh) override;
    void Clear(const DrawState& state, const float (&colour)[4]) override;
    void DrawTriangles(const DrawState& state, const std::vector<Vertex>& vertices,
                       const std::vector<uint16_t>& indices) override;
    void DrawMesh(const DrawState& state, unsigned mesh, int quads) override;
    void BeginScreen() override;
    void TakeBackScreen() override;
    void Finish() override;
    void Show(const Showing& showing) override;
    void Read(unsigned target, int width, int height, uint8_t* rgba) override;
    bool IsLost() override { return m_context->IsLost(); }
    std::string Driver() const override;
    std::string TakeError() override;

private:
    struct Target
    {
        GLuint texture = 0;
        GLuint depth = 0; // created when the depth test is first used
        int width = 0, height = 0;
    };

    unsigned MakeTarget(int width, int height); // a framebuffer, bound; 0 when refused
    unsigned MakeScreen(int width, int height); // the same, with the entries that suit the window
    bool IsWindowsScreen(unsigned target) const { return target == 0 && m_context->HasWindow(); }
    bool TakesCopy(const Showing& showing); // by the bound framebuffer: unscaled, and by version 3
    void CopyScreen(const Port& where, int windowHeight);
    void DrawScreen(const Showing& showing);
    Target& Bind(unsigned target);
    void AddDepth(Target& target);         // of the bound framebuffer
    bool BindPort(const DrawState& state); // binds the target too; false when the port holds no pixel of it
    void Draw(const DrawState& state, GLsizei indexCount); // from the bound buffers, into the bound port
    void BuildQuadIndices();
    void NoteError(const char* during);
    void NoteErrorInDebug(const char* during);

    const std::unique_ptr<GlContext> m_context; // declared first, so that it is destroyed last
    GlProgram m_flat;
    GlProgram m_solid; // discards transparent pixels: for the depth test
    GLuint m_screen = 0;
    GLuint m_otherScreen = 0; // of the frame before; 0 before the second frame, and when the driver refuses it
    bool m_isRefused = false; // the other screen
    GLuint m_vertices = 0;
    GLuint m_indices = 0;
    GLuint m_quadIndices = 0;
    GLenum m_depthFormat = GL_DEPTH_COMPONENT16;
    int m_largestTexture = 0;
    std::map<GLuint, Target> m_targets; // by framebuffer, the screen among them
    std::string m_error;
};
} // namespace Runner
