#include "Runner/Draw/Gl_Program.h"

#include "Runner/Draw/Device.h"

#include <cstddef>
#include <cstring>

namespace Runner
{
namespace
{
// The vertex stage negates clip y: cameras map a room point further down, with a larger y, to a larger clip y. Surfaces
// have it negated too; their projection is flipped once more, so that their first row in memory is the top row.
// Depth is mapped from the cameras' 0..1 to the device's -1..1.
const char VERTEX_SOURCE[] = R"(
attribute vec3 position;
attribute vec2 texturePosition;
attribute vec4 colour;
uniform mat4 toClip;
uniform vec4 tint;
varying vec2 v_texturePosition;
varying vec4 v_colour;
void main()
{
    vec4 clip = toClip * vec4(position, 1.0);
    gl_Position = vec4(clip.x, -clip.y, 2.0 * clip.z - clip.w, clip.w);
    v_texturePosition = texturePosition;
    v_colour = colour * tint;
}
)";

// Texture coordinates need more than the 10 bits of medium precision.
const char FRAGMENT_SOURCE[] = R"(
#ifdef GL_FRAGMENT_PRECISION_HIGH
precision highp float;
#else
precision mediump float;
#endif
uniform sampler2D picture;
varying vec2 v_texturePosition;
varying vec4 v_colour;
void main()
{
#ifdef NO_TEXTURE
    vec4 pixel = v_colour;
#else
    vec4 pixel = texture2D(picture, v_texturePosition) * v_colour;
#endif
#ifdef DROP_TRANSPARENT
    if (pixel.a <= 0.0)
        discard;
#endif
    gl_FragColor = pixel;
}
)";

// An offset into the bound buffer, in the pointer type that the GL functions have for it.
const void* BufferOffset(size_t offset)
{
    return reinterpret_cast<const void*>(offset); // NOLINT(performance-no-int-to-ptr)
}

const char* DefinitionsOf(GlPixels pixels)
{
    switch (pixels)
    {
    case GlPixels::SolidTexture: return "#define DROP_TRANSPARENT\n";
    case GlPixels::Colour: return "#define NO_TEXTURE\n";
    default: return "";
    }
}

GLuint Compile(GLenum kind, const char* head, const char* source, std::string& error)
{
    const GLuint shader = glCreateShader(kind);
    const char* const sources[] = {head, source};
    glShaderSource(shader, 2, sources, nullptr);
    glCompileShader(shader);
    GLint done = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &done);
    if (done == GL_TRUE)
        return shader;
    char log[400] = "";
    glGetShaderInfoLog(shader, sizeof log, nullptr, log);
    error = std::string("cannot draw: the driver refuses a shader: ") + log;
    glDeleteShader(shader);
    return 0;
}
} // namespace

bool IsGlVersion3()
{
    const GLubyte* const version = glGetString(GL_VERSION);
    return version != nullptr && strncmp(reinterpret_cast<const char*>(version), "OpenGL ES 3", 11) == 0;
}

void DescribeVertices()
{
    constexpr GLsizei stride = sizeof(Vertex);
    glVertexAttribPointer(INPUT_POSITION, 3, GL_FLOAT, GL_FALSE, stride, BufferOffset(offsetof(Vertex, x)));
    glVertexAttribPointer(INPUT_TEXTURE, 2, GL_FLOAT, GL_FALSE, stride, BufferOffset(offsetof(Vertex, u)));
    glVertexAttribPointer(INPUT_COLOUR, 4, GL_UNSIGNED_BYTE, GL_TRUE, stride, BufferOffset(offsetof(Vertex, colour)));
}

bool GlProgram::Build(GlPixels pixels, std::string& error)
{
    const GLuint vertex = Compile(GL_VERTEX_SHADER, "", VERTEX_SOURCE, error);
    const GLuint fragment = Compile(GL_FRAGMENT_SHADER, DefinitionsOf(pixels), FRAGMENT_SOURCE, error);
    GLint done = GL_FALSE;
    if (vertex != 0 && fragment != 0)
    {
        m_program = glCreateProgram();
        glAttachShader(m_program, vertex);
        glAttachShader(m_program, fragment);
        glBindAttribLocation(m_program, INPUT_POSITION, "position");
        glBindAttribLocation(m_program, INPUT_TEXTURE, "texturePosition");
        glBindAttribLocation(m_program, INPUT_COLOUR, "colour");
        glLinkProgram(m_program);
        glGetProgramiv(m_program, GL_LINK_STATUS, &done);
        if (done != GL_TRUE)
            error = "cannot draw: the driver does not link the drawing program";
    }
    glDeleteShader(vertex); // the program keeps its shaders alive; 0 is ignored
    glDeleteShader(fragment);
    if (done != GL_TRUE)
        return false;
    m_toClip = glGetUniformLocation(m_program, "toClip");
    m_tint = glGetUniformLocation(m_program, "tint");
    return true;
}

void GlProgram::Use(const float* toClip, const float* tint) const
{
    glUseProgram(m_program);
    // Not transposed: a row-major matrix for row vectors and GL's column-major one for column vectors are the same
    // sixteen floats.
    glUniformMatrix4fv(m_toClip, 1, GL_FALSE, toClip);
    glUniform4fv(m_tint, 1, tint);
}

GlProgram::~GlProgram() { glDeleteProgram(m_program); }
} // namespace Runner
