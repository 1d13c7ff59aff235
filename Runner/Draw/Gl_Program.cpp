#include "Runner/Draw/Gl_Program.h"

#include <cstring>
#include <initializer_list>

namespace Runner
{
namespace
{
// Words that versions 2 and 3 of the shading language spell apart. A polygon's colour is the same at all its corners:
// version 3 hands it to the pixels as it is (EVEN), where version 2 works it out for each of them.
const char VERTEX_WORDS_2[] = "#define IN attribute\n"
                              "#define OUT varying\n"
                              "#define EVEN_OUT varying\n";
const char VERTEX_WORDS_3[] = "#version 300 es\n"
                              "#define IN in\n"
                              "#define OUT out\n"
                              "#define EVEN_OUT flat out\n";
const char FRAGMENT_WORDS_2[] = "#define IN varying\n"
                                "#define EVEN_IN varying\n"
                                "#define TEXEL texture2D\n"
                                "#define RESULT gl_FragColor\n";
const char FRAGMENT_WORDS_3[] = "#version 300 es\n"
                                "#define IN in\n"
                                "#define EVEN_IN flat in\n"
                                "#define TEXEL texture\n"
                                "#define RESULT result\n";
const char DROP_TRANSPARENT[] = "#define DROP_TRANSPARENT\n";

// The vertex stage negates clip y: cameras map a room point further down, with a larger y, to a larger clip y. Surfaces
// have it negated too; their projection is flipped once more, so that their first row in memory is the top row.
// Depth is mapped from the cameras' 0..1 to the device's -1..1.
const char VERTEX_SOURCE[] = R"(
IN vec3 position;
IN vec2 texturePosition;
IN vec4 colour;
uniform mat4 toClip;
uniform vec4 tint;
OUT vec2 v_texturePosition;
EVEN_OUT vec4 v_colour;
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
#if __VERSION__ >= 300
out vec4 result;
#endif
uniform sampler2D picture;
IN vec2 v_texturePosition;
EVEN_IN vec4 v_colour;
void main()
{
    vec4 pixel = TEXEL(picture, v_texturePosition) * v_colour;
#ifdef DROP_TRANSPARENT
    if (pixel.a <= 0.0)
        discard;
#endif
    RESULT = pixel;
}
)";

GLuint Compile(GLenum kind, std::initializer_list<const char*> sources, std::string& error)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, static_cast<GLsizei>(sources.size()), sources.begin(), nullptr);
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

bool GlProgram::Build(bool dropTransparent, std::string& error)
{
    const bool is3 = IsGlVersion3();
    const GLuint vertex = Compile(GL_VERTEX_SHADER, {is3 ? VERTEX_WORDS_3 : VERTEX_WORDS_2, VERTEX_SOURCE}, error);
    const GLuint fragment = Compile(
        GL_FRAGMENT_SHADER,
        {is3 ? FRAGMENT_WORDS_3 : FRAGMENT_WORDS_2, dropTransparent ? DROP_TRANSPARENT : "", FRAGMENT_SOURCE}, error);
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
