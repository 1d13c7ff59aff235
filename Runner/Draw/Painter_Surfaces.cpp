// Surfaces: made, freed, drawn.
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

int Painter::CreateSurface(int width, int height)
{
    Parts& parts = *m_parts;
    if (width < 1 || height < 1 || width > PICTURE_SIDE_LIMIT || height > PICTURE_SIDE_LIMIT)
    {
        parts.Fail("a surface cannot be " + SizeText(width, height) + " pixels: both sides must be 1 to " +
                   std::to_string(PICTURE_SIDE_LIMIT));
        return -1;
    }
    int64_t pixels = static_cast<int64_t>(width) * height;
    for (const auto& other : parts.surfaces.All())
        pixels += other == nullptr ? 0 : static_cast<int64_t>(other->width) * other->height;
    SurfaceEntry entry;
    entry.width = width;
    entry.height = height;
    if (pixels <= SURFACE_PIXELS_LIMIT && parts.device != nullptr)
        entry.target = parts.device->CreateTarget(width, height, entry.texture);
    if (pixels > SURFACE_PIXELS_LIMIT || (parts.device != nullptr && entry.target == 0))
    {
        parts.Fail("there is no memory for a surface of " + SizeText(width, height) +
                   " pixels: free other surfaces first");
        return -1;
    }
    return parts.surfaces.Add(entry);
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
        m_parts->Place(entry->texture, WHOLE, static_cast<float>(entry->width), static_cast<float>(entry->height), 0.0f,
                       0.0f, placement);
}

void Painter::SurfaceStretched(int surface, float left, float top, float right, float bottom)
{
    const float places[4][2] = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    if (const SurfaceEntry* entry = m_parts->NeedShownSurface(surface))
        m_parts->DrawPicture(entry->texture, WHOLE, places, m_parts->CurrentInk());
}
} // namespace Runner
