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

// The shader program for textured, tinted triangles. A context must be current, in the destructor too.
class GlProgram
{
public:
    GlProgram() = default;
    ~GlProgram();
    GlProgram(const GlProgram&) = delete;
    GlProgram& operator=(const GlProgram&) = delete;

    // dropTransparent: pixels of alpha 0 are discarded and write no depth.
    bool Build(bool dropTransparent, std::string& error);
    void Use(const float* toClip, const float* tint) const; // 16 and 4 floats

private:
    GLuint m_program = 0;
    GLint m_toClip = -1;
    GLint m_tint = -1;
};
} // namespace Runner
