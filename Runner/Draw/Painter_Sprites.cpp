// Sprites, and drawing a rectangle of a texture.
#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include "Files/Graphics/Trigonometry.h"
#include "Platform/Matrix.h"
#include "Runner/Draw/Png_Reader.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
void Painter::Parts::DrawPicture(unsigned texture, const TextureArea& area, const float (&points)[4][2], Ink ink)
{
    const Corner corners[4] = {{points[0][0], points[0][1], state.depth, area.left, area.top},
                               {points[1][0], points[1][1], state.depth, area.right, area.top},
                               {points[2][0], points[2][1], state.depth, area.right, area.bottom},
                               {points[3][0], points[3][1], state.depth, area.left, area.bottom}};
    DrawPolygon(corners, 4, ink, texture);
}

void Painter::Parts::DrawPlaced(unsigned texture, const TextureArea& area, float pictureWidth, float pictureHeight,
                                float originX, float originY, const Placement& placement)
{
    const float sine = GR_Sin(placement.angle * RADIANS_PER_DEGREE),
                cosine = GR_Cos(placement.angle * RADIANS_PER_DEGREE);
    const float left = -originX * placement.scaleX, right = (pictureWidth - originX) * placement.scaleX;
    const float top = -originY * placement.scaleY, bottom = (pictureHeight - originY) * placement.scaleY;
    float points[4][2] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    for (float(&point)[2] : points)
    {
        const float x = point[0], y = point[1];
        point[0] = placement.x + x * cosine + y * sine;
        point[1] = placement.y - x * sine + y * cosine;
    }
    DrawPicture(texture, area, points, MixInk(placement.colour, placement.alpha));
}

// ---- sprites ----

SpriteEntry* Painter::Parts::NeedSprite(int sprite)
{
    SpriteEntry* entry = sprites.Find(sprite);
    if (entry == nullptr)
        Fail("there is no sprite " + std::to_string(sprite));
    return entry;
}

int Painter::LoadSprite(const std::string& file, int frames, float originX, float originY)
{
    Picture picture;
    std::string problem;
    if (frames < 1)
        problem = "cannot load \"" + file + "\" with " + std::to_string(frames) + " frames: at least 1 is needed";
    else if (ReadPng(file, picture, problem) && picture.width % frames != 0)
        problem = "\"" + file + "\" is " + std::to_string(picture.width) + " pixels wide, which is not a multiple of " +
                  std::to_string(frames) + " frames";
    if (problem.empty())
        return AddSheet(picture, picture.width / frames, picture.height, originX, originY);
    m_parts->Fail(std::move(problem));
    return -1;
}

int Painter::LoadSheet(const std::string& file, int frameWidth, int frameHeight, float originX, float originY)
{
    Picture picture;
    std::string problem;
    if (ReadPng(file, picture, problem) &&
        (frameWidth < 1 || frameHeight < 1 || frameWidth > picture.width || frameHeight > picture.height))
        problem = "\"" + file + "\" is " + SizeText(picture.width, picture.height) + " pixels and holds no frame of " +
                  SizeText(frameWidth, frameHeight);
    if (problem.empty())
        return AddSheet(picture, frameWidth, frameHeight, originX, originY);
    m_parts->Fail(std::move(problem));
    return -1;
}

int Painter::AddSheet(const Picture& picture, int frameWidth, int frameHeight, float originX, float originY)
{
    Parts& parts = *m_parts;
    if (frameWidth < 1 || frameHeight < 1 || frameWidth > picture.width || frameHeight > picture.height)
    {
        parts.Fail("a picture of " + SizeText(picture.width, picture.height) + " pixels holds no frame of " +
                   SizeText(frameWidth, frameHeight));
        return -1;
    }
    SpriteEntry entry;
    entry.sheet = Sheet(picture, frameWidth, frameHeight);
    entry.info = {frameWidth, frameHeight, entry.sheet.Frames(), originX, originY};
    if (parts.device != nullptr)
    {
        const Picture& packed = entry.sheet.Packed();
        if (std::max(packed.width, packed.height) <= parts.device->LargestTexture())
            entry.texture = parts.device->CreateTexture(packed.width, packed.height, packed.rgba.data());
        if (entry.texture == 0)
        {
            parts.Fail("the graphics driver takes no picture of " + SizeText(packed.width, packed.height) + " pixels");
            return -1;
        }
    }
    parts.DropPixels(entry.sheet);
    return parts.sprites.Add(std::move(entry));
}

bool Painter::FreeSprite(int sprite)
{
    Parts& parts = *m_parts;
    const SpriteEntry* entry = parts.NeedSprite(sprite);
    if (entry == nullptr)
        return false;
    const auto& maps = parts.tileMaps.All();
    if (std::any_of(maps.begin(), maps.end(),
                    [sprite](const auto& m) { return m != nullptr && m->Sprite() == sprite; }))
        return parts.Fail("sprite " + std::to_string(sprite) + " cannot be freed: a tile map shows it");
    if (parts.MapShows(sprite))
        return parts.Fail("sprite " + std::to_string(sprite) + " cannot be freed: a map shows it");
    parts.batch.Flush();
    if (parts.device != nullptr)
        parts.device->DeleteTexture(entry->texture);
    parts.sprites.Remove(sprite);
    return true;
}

const SpriteInfo* Painter::FindSprite(int sprite) const
{
    const SpriteEntry* entry = m_parts->sprites.Find(sprite);
    return entry == nullptr ? nullptr : &entry->info;
}

void Painter::Sprite(int sprite, int frame, float x, float y)
{
    Placement placement;
    placement.x = x;
    placement.y = y;
    placement.alpha = m_parts->state.alpha;
    Sprite(sprite, frame, placement);
}

// What a placement without turning and scaling comes to: the same floats, because a corner's offset times 0 adds
// nothing.
void Painter::Sprites(int sprite, const std::vector<SpritePlace>& places)
{
    const SpriteEntry* entry = m_parts->NeedSprite(sprite);
    if (entry == nullptr)
        return;
    const SpriteInfo& info = entry->info;
    const Ink ink = MixInk(Placement().colour, m_parts->state.alpha);
    const float left = -info.originX, right = static_cast<float>(info.width) - info.originX;
    const float top = -info.originY, bottom = static_cast<float>(info.height) - info.originY;
    for (const SpritePlace& place : places)
    {
        const float points[4][2] = {{place.x + left, place.y + top},
                                    {place.x + right, place.y + top},
                                    {place.x + right, place.y + bottom},
                                    {place.x + left, place.y + bottom}};
        m_parts->DrawPicture(entry->texture, entry->sheet.Area(WrapFrame(place.frame, info.frames)), points, ink);
    }
}

void Painter::Sprite(int sprite, int frame, const Placement& placement)
{
    const SpriteEntry* entry = m_parts->NeedSprite(sprite);
    if (entry == nullptr)
        return;
    const SpriteInfo& info = entry->info;
    m_parts->DrawPlaced(entry->texture, entry->sheet.Area(WrapFrame(frame, info.frames)),
                        static_cast<float>(info.width), static_cast<float>(info.height), info.originX, info.originY,
                        placement);
}

void Painter::SpriteStretched(int sprite, int frame, float left, float top, float right, float bottom)
{
    const SpriteEntry* entry = m_parts->NeedSprite(sprite);
    if (entry == nullptr)
        return;
    const float points[4][2] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    m_parts->DrawPicture(entry->texture, entry->sheet.Area(WrapFrame(frame, entry->info.frames)), points,
                         m_parts->CurrentInk());
}
} // namespace Runner
