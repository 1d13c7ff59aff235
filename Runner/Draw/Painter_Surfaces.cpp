// Surfaces: creating, freeing and drawing them.
#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr TextureArea WHOLE = {0.0f, 0.0f, 1.0f, 1.0f};
} // namespace

SurfaceEntry* Painter::Parts::NeedSurface(int number)
{
    SurfaceEntry* entry = surfaces.Find(number);
    if (entry == nullptr)
        Fail("there is no surface " + std::to_string(number));
    return entry;
}

bool Painter::Parts::MakeSurface(int surfaceWidth, int surfaceHeight, SurfaceEntry& entry)
{
    const std::string size = SizeText(surfaceWidth, surfaceHeight);
    if (surfaceWidth < 1 || surfaceHeight < 1 || std::max(surfaceWidth, surfaceHeight) > PICTURE_SIDE_LIMIT)
        return Fail("a surface cannot be " + size + " pixels: both sides must be 1 to " +
                    std::to_string(PICTURE_SIDE_LIMIT));
    const int64_t pixels = static_cast<int64_t>(surfaceWidth) * surfaceHeight;
    const bool fits = surfacePixels + pixels <= SURFACE_PIXELS_LIMIT;
    entry = {surfaceWidth, surfaceHeight, 0, 0};
    if (fits && device != nullptr)
        entry.target = device->CreateTarget(surfaceWidth, surfaceHeight, entry.texture);
    if (!fits || (device != nullptr && entry.target == 0))
        return Fail("there is no memory for a surface of " + size + " pixels: free other surfaces first");
    surfacePixels += pixels;
    return true;
}

int Painter::CreateSurface(int width, int height)
{
    Parts& parts = *m_parts;
    const int number = parts.surfaces.LowestFree();
    if (number < SURFACE_NUMBERS_LIMIT)
        return CreateSurfaceAt(number, width, height) ? number : -1;
    parts.Fail("there are " + std::to_string(SURFACE_NUMBERS_LIMIT) + " surfaces already: free some first");
    return -1;
}

bool Painter::CreateSurfaceAt(int surface, int width, int height)
{
    SurfaceEntry entry;
    if (surface < 0 || surface >= SURFACE_NUMBERS_LIMIT || SurfaceExists(surface))
        return m_parts->Fail("a new surface cannot have the number " + std::to_string(surface));
    const bool isMade = m_parts->MakeSurface(width, height, entry);
    if (isMade)
        m_parts->surfaces.AddAt(surface, entry);
    return isMade;
}

bool Painter::FreeSurface(int surface)
{
    Parts& parts = *m_parts;
    const SurfaceEntry* entry = parts.NeedSurface(surface);
    if (entry == nullptr)
        return false;
    const bool waits = std::any_of(parts.saved.begin(), parts.saved.end(),
                                   [surface](const SavedTarget& target) { return target.surface == surface; });
    if (waits || parts.surface == surface)
        return parts.Fail("surface " + std::to_string(surface) + " cannot be freed: it is drawn into");
    parts.batch.Flush();
    if (parts.device != nullptr)
        parts.device->DeleteTarget(entry->target);
    parts.surfacePixels -= static_cast<int64_t>(entry->width) * entry->height;
    parts.surfaces.Remove(surface);
    return true;
}

bool Painter::SurfaceExists(int surface) const { return m_parts->surfaces.Find(surface) != nullptr; }

int Painter::SurfaceWidth(int surface) const
{
    const SurfaceEntry* entry = m_parts->surfaces.Find(surface);
    return entry == nullptr ? 0 : entry->width;
}

int Painter::SurfaceHeight(int surface) const
{
    const SurfaceEntry* entry = m_parts->surfaces.Find(surface);
    return entry == nullptr ? 0 : entry->height;
}

int Painter::SurfaceNumbers() const { return static_cast<int>(m_parts->surfaces.All().size()); }

SurfaceEntry* Painter::Parts::NeedShownSurface(int number)
{
    SurfaceEntry* entry = NeedSurface(number);
    if (entry == nullptr || surface != number)
        return entry;
    Fail("surface " + std::to_string(number) + " cannot be drawn into itself");
    return nullptr;
}

void Painter::Surface(int surface, float x, float y)
{
    Placement placement;
    placement.x = x;
    placement.y = y;
    placement.alpha = m_parts->state.alpha;
    Surface(surface, placement);
}

void Painter::Surface(int surface, const Placement& placement)
{
    if (const SurfaceEntry* entry = m_parts->NeedShownSurface(surface))
        m_parts->DrawPlaced(entry->texture, WHOLE, static_cast<float>(entry->width), static_cast<float>(entry->height),
                            0.0f, 0.0f, placement);
}

void Painter::SurfaceStretched(int surface, float left, float top, float right, float bottom)
{
    const float points[4][2] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    if (const SurfaceEntry* entry = m_parts->NeedShownSurface(surface))
        m_parts->DrawPicture(entry->texture, WHOLE, points, m_parts->CurrentInk());
}
} // namespace Runner
