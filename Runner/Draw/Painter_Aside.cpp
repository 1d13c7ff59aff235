// Pictures besides the game's own: the painter is afterwards as it was.
#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include <utility>

namespace Runner
{
namespace
{
constexpr TextureArea WHOLE = {0.0f, 0.0f, 1.0f, 1.0f};
} // namespace

// A surface for the time of the drawing: pushing and popping it keeps port, matrices and view area. Nobody else can see
// its number, since it is freed again before a script runs.
Picture Painter::DrawAside(int width, int height, const std::function<void()>& draw, std::string& error)
{
    Parts& parts = *m_parts;
    if (parts.device == nullptr)
        return Picture();
    parts.batch.Flush();
    Batch batch(parts.device.get());
    std::swap(parts.batch, batch);
    const DrawingState state = std::exchange(parts.state, DrawingState());
    std::string problem = std::exchange(parts.error, "");
    Picture picture;
    const int surface = CreateSurface(width, height);
    if (surface >= 0 && PushTarget(surface))
    {
        Clear(0);
        draw();
        PopTarget();
        ReadSurface(surface, picture);
    }
    if (surface >= 0)
        FreeSurface(surface);
    std::swap(parts.error, problem);
    error = problem;
    parts.state = state;
    std::swap(parts.batch, batch);
    return picture;
}

void Painter::MakeCurrent()
{
    if (Draws())
        m_parts->device->Finish();
}

unsigned Painter::SurfaceTexture(int surface) const
{
    const SurfaceEntry* entry = m_parts->surfaces.Find(surface);
    return entry == nullptr ? 0 : entry->texture;
}

void Painter::Pixels(const Picture& picture, float x, float y)
{
    Parts& parts = *m_parts;
    const unsigned texture = parts.device == nullptr || picture.rgba.empty()
                                 ? 0
                                 : parts.device->CreateTexture(picture.width, picture.height, picture.rgba.data());
    if (texture == 0)
        return;
    const float right = x + static_cast<float>(picture.width), bottom = y + static_cast<float>(picture.height);
    const float points[4][2] = {{x, y}, {right, y}, {right, bottom}, {x, bottom}};
    parts.DrawPicture(texture, WHOLE, points, MixInk(0xFFFFFF, 1.0f));
    parts.batch.Flush();
    parts.device->DeleteTexture(texture);
}
} // namespace Runner
