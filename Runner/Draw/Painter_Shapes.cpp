// Untextured shapes, flat and in space. They use the font's white frame as their texture, so that shapes and text can
// share a draw call.
#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include "Files/Graphics/Trigonometry.h"
#include "Runner/Draw/Font.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
constexpr int MOST_CORNERS = 96;

// Brightness of a box's faces, whose outward normals are -z, +z, -y, +y, -x, +x.
constexpr float FACE_LIGHT[6] = {1.0f, 0.5f, 0.85f, 0.6f, 0.75f, 0.7f};

// Corners of each face, clockwise from the top left as seen from outside. Bit 0 of a corner takes the larger x, bit 1
// the larger y, bit 2 the larger z.
constexpr int FACE_CORNERS[6][4] = {{0, 1, 3, 2}, {5, 4, 6, 7}, {4, 5, 1, 0}, {2, 3, 7, 6}, {4, 0, 2, 6}, {1, 5, 7, 3}};

Corner BlockCorner(const Sheet& font, float x, float y, float z)
{
    const TextureArea block = font.Area(FONT_BLOCK);
    return {x, y, z, (block.left + block.right) * 0.5f, (block.top + block.bottom) * 0.5f};
}

// Number of a circle's corners: grows with the radius, and is a multiple of four so that the circle touches all sides
// of its bounding square.
int CircleCorners(float radius) { return static_cast<int>(std::clamp(radius, 16.0f, 96.0f)) & ~3; }

unsigned Darken(unsigned colour, float light)
{
    unsigned darkened = 0;
    for (unsigned shift = 0; shift < 24; shift += 8)
        darkened |= static_cast<unsigned>(static_cast<float>(colour >> shift & 255) * light) << shift;
    return darkened;
}
} // namespace

void Painter::Parts::DrawPolygon(const Corner* corners, int count, Ink ink, unsigned texture)
{
    if (const DrawState* drawing = Prepare(texture))
        batch.Add(*drawing, corners, count, ink.bytes);
}

void Painter::Parts::DrawPlain(const float (*points)[2], int count)
{
    Corner corners[MOST_CORNERS];
    for (int i = 0; i < count; i++)
        corners[i] = BlockCorner(font, points[i][0], points[i][1], state.depth);
    DrawPolygon(corners, count, CurrentInk(), fontTexture);
}

void Painter::Parts::DrawLine(float x1, float y1, float x2, float y2, float lineWidth)
{
    const float dx = x2 - x1, dy = y2 - y1;
    const float length = sqrtf(dx * dx + dy * dy);
    if (!(length > 0.0f))
        return;
    const float halfX = dx / length * lineWidth * 0.5f, halfY = dy / length * lineWidth * 0.5f;
    const float points[4][2] = {
        {x1 + halfY, y1 - halfX}, {x2 + halfY, y2 - halfX}, {x2 - halfY, y2 + halfX}, {x1 - halfY, y1 + halfX}};
    DrawPlain(points, 4);
}

void Painter::Line(float x1, float y1, float x2, float y2) { Line(x1, y1, x2, y2, LineWidth()); }

void Painter::Line(float x1, float y1, float x2, float y2, float width) { m_parts->DrawLine(x1, y1, x2, y2, width); }

void Painter::Rectangle(float left, float top, float right, float bottom, bool outline)
{
    const auto fill = [this](float l, float t, float r, float b)
    {
        const float points[4][2] = {{l, t}, {r, t}, {r, b}, {l, b}};
        m_parts->DrawPlain(points, 4);
    };
    const float w = m_parts->state.lineWidth;
    if (!outline || w * 2.0f >= std::abs(right - left) || w * 2.0f >= std::abs(bottom - top))
        return fill(left, top, right, bottom);
    if (left > right)
        std::swap(left, right);
    if (top > bottom)
        std::swap(top, bottom);
    fill(left, top, right, top + w);
    fill(left, bottom - w, right, bottom);
    fill(left, top + w, left + w, bottom - w); // the strips do not overlap: alpha stays even
    fill(right - w, top + w, right, bottom - w);
}

void Painter::Circle(float x, float y, float radius, bool outline)
{
    if (!std::isfinite(radius) || radius <= 0.0f)
        return;
    const int count = CircleCorners(radius);
    const float inner = std::max(radius - m_parts->state.lineWidth, 0.0f);
    float outside[MOST_CORNERS + 1][2], inside[MOST_CORNERS + 1][2];
    for (int i = 0; i <= count; i++)
    {
        const float turn = static_cast<float>(i % count) * (6.2831853f / static_cast<float>(count));
        outside[i][0] = x + GR_Cos(turn) * radius;
        outside[i][1] = y + GR_Sin(turn) * radius;
        inside[i][0] = x + GR_Cos(turn) * inner;
        inside[i][1] = y + GR_Sin(turn) * inner;
    }
    if (!outline)
        return m_parts->DrawPlain(outside, count);
    for (int i = 0; i < count; i++)
    {
        const float points[4][2] = {{outside[i][0], outside[i][1]},
                                    {outside[i + 1][0], outside[i + 1][1]},
                                    {inside[i + 1][0], inside[i + 1][1]},
                                    {inside[i][0], inside[i][1]}};
        m_parts->DrawPlain(points, 4);
    }
}

void Painter::Triangle(float x1, float y1, float x2, float y2, float x3, float y3, bool outline)
{
    const float points[3][2] = {{x1, y1}, {x2, y2}, {x3, y3}};
    if (!outline)
        return m_parts->DrawPlain(points, 3);
    Line(x1, y1, x2, y2);
    Line(x2, y2, x3, y3);
    Line(x3, y3, x1, y1);
}

// ---- 3D ----

void Painter::Parts::DrawFace(const SpriteEntry* sprite, int frame, const kvVector3 (&points)[4], Ink ink)
{
    Corner corners[4];
    for (int i = 0; i < 4; i++)
        corners[i] = BlockCorner(font, points[i].x, points[i].y, points[i].z);
    if (sprite == nullptr)
        return DrawPolygon(corners, 4, ink, fontTexture);
    const TextureArea area = sprite->sheet.Area(WrapFrame(frame, sprite->info.frames));
    const float u[4] = {area.left, area.right, area.right, area.left};
    const float v[4] = {area.top, area.top, area.bottom, area.bottom};
    for (int i = 0; i < 4; i++)
    {
        corners[i].u = u[i];
        corners[i].v = v[i];
    }
    DrawPolygon(corners, 4, ink, sprite->texture);
}

void Painter::Quad(int sprite, int frame, const kvVector3 (&corners)[4])
{
    const SpriteEntry* entry = sprite == -1 ? nullptr : m_parts->NeedSprite(sprite);
    if (sprite == -1 || entry != nullptr)
        m_parts->DrawFace(entry, frame, corners, m_parts->CurrentInk());
}

void Painter::Box(int sprite, int frame, const kvVector3& low, const kvVector3& high)
{
    const SpriteEntry* entry = sprite == -1 ? nullptr : m_parts->NeedSprite(sprite);
    if (sprite != -1 && entry == nullptr)
        return;
    for (int face = 0; face < 6; face++)
    {
        kvVector3 corners[4];
        for (int i = 0; i < 4; i++)
        {
            const int corner = FACE_CORNERS[face][i];
            corners[i] = {corner & 1 ? high.x : low.x, corner & 2 ? high.y : low.y, corner & 4 ? high.z : low.z};
        }
        const DrawingState& state = m_parts->state;
        m_parts->DrawFace(entry, frame, corners, MixInk(Darken(state.colour, FACE_LIGHT[face]), state.alpha));
    }
}
} // namespace Runner
