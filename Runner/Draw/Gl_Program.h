#pragma once

#include <GLES2/gl2.h>

#include <string>

namespace Runner
{
// Attribute locations, the same in every program.
enum VertexInput : GLuint
{
    INPUT_POSITION,
    INPUT_TEXTURE,
    INPUT_COLOUR,
};

bool IsGlVersion3(); // whether the current context's version is OpenGL ES 3

void DescribeVertices(); // the inputs are those of Vertex, from the bound buffer

// What a pixel is made of. SolidTexture: as Texture, but pixels of alpha 0 are discarded and write no depth.
enum class GlPixels
{
    Texture,
    SolidTexture,
    Colour, // of the corners alone
};

// The shader program for tinted triangles. A context must be current, in the destructor too.
class GlProgram
{
public:
    GlProgram() = default;
    ~GlProgram();
    GlProgram(const GlProgram&) = delete;
    GlProgram& operator=(const GlProgram&) = delete;

    bool Build(GlPixels pixels, std::string& error);
    void Use(const float* toClip, const float* tint) const; // 16 and 4 floats

private:
    GLuint m_program = 0;
    GLint m_toClip = -1;
    GLint m_tint = -1;
};
} // namespace Runner
