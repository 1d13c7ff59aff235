// The painter's life, its drawing state, where it draws, and what is read back.
#include "Platform/Strict_Float.h"

#include "Runner/Draw/Painter_Parts.h"

#include "Files/Graphics/Colour.h"
#include "Runner/Draw/Font.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
constexpr size_t DEEPEST_TARGET = 16;

// Clamps to a range far beyond every target, in which the sum of two does not overflow.
int ClampPixels(int pixels) { return std::clamp(pixels, -2 * PICTURE_SIDE_LIMIT, 2 * PICTURE_SIDE_LIMIT); }

bool IsFinite(const kvMatrix& matrix)
{
    return std::all_of(std::begin(matrix.m), std::end(matrix.m), [](float x) { return std::isfinite(x); });
}
} // namespace

Ink MixInk(unsigned colour, float alpha)
{
    const unsigned a = ConvertAlpha(alpha);
    return {{MultiplyByAlpha(colour & 255, a), MultiplyByAlpha(colour >> 8 & 255, a),
             MultiplyByAlpha(colour >> 16 & 255, a), static_cast<uint8_t>(a)}};
}

// ---- life ----

Painter::Parts::Parts(int screenWidth, int screenHeight, std::unique_ptr<Device> opened, DeviceOpener opener)
    : width(screenWidth), height(screenHeight), openDevice(std::move(opener)), device(std::move(opened)),
      batch(device.get()), port{0, 0, screenWidth, screenHeight}, font(DrawFont(), FONT_CELL_WIDTH, FONT_CELL_HEIGHT)
{
    if (device != nullptr)
        fontTexture = device->CreateTexture(font.Packed().width, font.Packed().height, font.Packed().rgba.data());
    DropPixels(font);
}

Painter::Parts::~Parts() = default;

std::unique_ptr<Painter> Painter::Open(int width, int height, bool draw, std::string& error,
                                       const DeviceOpener& openDevice)
{
    if (width < 1 || height < 1 || width > PICTURE_SIDE_LIMIT || height > PICTURE_SIDE_LIMIT)
    {
        error = "the screen cannot be " + SizeText(width, height) + " pixels: both sides must be 1 to " +
                std::to_string(PICTURE_SIDE_LIMIT);
        return nullptr;
    }
    std::unique_ptr<Device> device;
    const DeviceOpener& opener = openDevice != nullptr ? openDevice : OpenDevice;
    if (draw && (device = opener(width, height, error)) == nullptr)
        return nullptr;
    std::unique_ptr<Painter> painter(
        new Painter(std::make_unique<Parts>(width, height, std::move(device), openDevice)));
    painter->BeginFrame();
    painter->Clear(0);
    return painter;
}

Painter::Painter(std::unique_ptr<Parts> parts) : m_parts(std::move(parts)) {}

// Pops all targets: g_RenderTargetActive must not name a surface that no longer exists. The device frees the rest.
Painter::~Painter()
{
    while (!m_parts->saved.empty())
        PopTarget();
}

bool Painter::Draws() const { return m_parts->device != nullptr; }

void Painter::SetShown(bool shown)
{
    m_parts->batch.Flush();
    m_parts->isShown = shown;
}

void Painter::RenewDevice()
{
    if (m_parts->HasLostDevice())
        m_parts->Renew();
}

void Painter::AbandonDevice() { static_cast<void>(m_parts->device.release()); }

Device* Painter::CurrentDevice() { return m_parts->device.get(); }

std::string Painter::Driver() const { return Draws() ? m_parts->device->Driver() : "none"; }

int Painter::ScreenWidth() const { return m_parts->width; }

int Painter::ScreenHeight() const { return m_parts->height; }

bool Painter::Parts::Fail(std::string line)
{
    if (error.empty())
        error = std::move(line);
    return false;
}

bool Painter::HasError() const { return !m_parts->error.empty(); }

std::string Painter::TakeError()
{
    std::string taken;
    taken.swap(m_parts->error);
    return taken;
}

// ---- frame ----

void Painter::BeginFrame()
{
    while (!m_parts->saved.empty())
        PopTarget();
    m_parts->state = DrawingState();
    SetPort({0, 0, m_parts->width, m_parts->height});
    ResetWorldMatrix();
    SetFlatView(0.0f, 0.0f, static_cast<float>(m_parts->width), static_cast<float>(m_parts->height));
    m_parts->batch.Flush();
    m_parts->batch.ResetCounts();
    if (Draws() && m_parts->isShown)
        m_parts->device->BeginScreen();
}

void Painter::TakeBackFrame()
{
    m_parts->batch.Flush();
    if (Draws() && m_parts->isShown)
        m_parts->device->TakeBackScreen();
}

void Painter::EndFrame()
{
    while (!m_parts->saved.empty())
        PopTarget();
    m_parts->batch.Flush();
    if (m_parts->device == nullptr || !m_parts->isShown)
        return;
    m_parts->device->Finish();
    std::string problem = m_parts->device->TakeError();
    if (m_parts->HasLostDevice())
        m_parts->Renew();
    else if (!problem.empty())
        m_parts->Fail(std::move(problem));
}

void Painter::Show(const Showing& showing)
{
    if (Draws())
        m_parts->device->Show(showing);
}

FrameCounts Painter::Counts() const { return {m_parts->batch.Draws(), m_parts->batch.Vertices()}; }

// ---- drawing state ----

void Painter::SetColour(unsigned colour) { m_parts->state.colour = colour; }

void Painter::SetAlpha(float alpha) { m_parts->state.alpha = alpha > 0.0f ? std::min(alpha, 1.0f) : 0.0f; }

void Painter::SetDepth(float z) { m_parts->state.depth = z; }

void Painter::SetLineWidth(float width) { m_parts->state.lineWidth = width; }

void Painter::SetDepthTest(bool on) { m_parts->state.depthTest = on; }

unsigned Painter::Colour() const { return m_parts->state.colour; }

float Painter::Alpha() const { return m_parts->state.alpha; }

float Painter::Depth() const { return m_parts->state.depth; }

float Painter::LineWidth() const { return m_parts->state.lineWidth; }

bool Painter::DepthTest() const { return m_parts->state.depthTest; }

unsigned Painter::Parts::CurrentTarget() const { return surface < 0 ? 0 : surfaces.Get(surface).target; }

const DrawState* Painter::Parts::Prepare(unsigned texture)
{
    if (device == nullptr || !isShown || port.width <= 0 || port.height <= 0)
        return nullptr;
    if (preparedVersion != MatrixVersion())
    {
        prepared.toClip = RoomToClip();
        preparedVersion = MatrixVersion();
        preparedFinite = IsFinite(prepared.toClip);
    }
    prepared.target = CurrentTarget();
    prepared.texture = texture;
    prepared.port = port;
    prepared.depthTest = state.depthTest;
    return preparedFinite ? &prepared : nullptr;
}

// ---- where to draw ----

void Painter::SetPort(const Port& port)
{
    m_parts->port = {ClampPixels(port.x), ClampPixels(port.y), ClampPixels(port.width), ClampPixels(port.height)};
}

void Painter::Clear(unsigned colour, float alpha)
{
    Parts& parts = *m_parts;
    if (parts.device == nullptr || !parts.isShown)
        return;
    parts.batch.Flush();
    const Ink ink = MixInk(colour, parts.surface < 0 ? 1.0f : alpha);
    float channels[4];
    std::transform(std::begin(ink.bytes), std::end(ink.bytes), channels, ChannelToFloat);
    DrawState state;
    state.target = parts.CurrentTarget();
    state.port = parts.port;
    parts.device->Clear(state, channels);
}

bool Painter::PushTarget(int surface)
{
    Parts& parts = *m_parts;
    const SurfaceEntry* entry = parts.NeedSurface(surface);
    if (entry == nullptr)
        return false;
    if (parts.saved.size() == DEEPEST_TARGET)
        return parts.Fail("surfaces are bound " + std::to_string(DEEPEST_TARGET) +
                          " deep already: reset a target first");
    parts.saved.push_back({parts.surface, parts.port, CurrentMatrix(eM_View), CurrentMatrix(eM_Projection),
                           CurrentMatrix(eM_World), g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA});
    parts.surface = g_RenderTargetActive = surface;
    SetPort({0, 0, entry->width, entry->height});
    ResetWorldMatrix();
    SetFlatView(0.0f, 0.0f, static_cast<float>(entry->width), static_cast<float>(entry->height));
    return true;
}

bool Painter::PopTarget()
{
    Parts& parts = *m_parts;
    if (parts.saved.empty())
        return parts.Fail("no surface is bound: there is no target to reset");
    SavedTarget back = parts.saved.back();
    parts.saved.pop_back();
    parts.surface = g_RenderTargetActive = back.surface;
    parts.port = back.port;
    Graphics::SetMatrix(eM_View, back.view.m);
    Graphics::SetMatrix(eM_Projection, back.projection.m);
    Graphics::SetMatrix(eM_World, back.world.m);
    SetViewExtents(back.areaX, back.areaY, back.areaW, back.areaH, back.areaA);
    return true;
}

// ---- read back ----

Picture Painter::ReadScreen()
{
    Parts& parts = *m_parts;
    Picture screen = TransparentPicture(parts.width, parts.height);
    parts.batch.Flush();
    if (parts.device != nullptr)
        parts.device->Read(0, screen.width, screen.height, screen.rgba.data());
    for (size_t i = 3; i < screen.rgba.size(); i += 4)
        screen.rgba[i] = 255;
    return screen;
}

bool Painter::ReadSurface(int surface, Picture& out)
{
    Parts& parts = *m_parts;
    const SurfaceEntry* entry = parts.NeedSurface(surface);
    if (entry == nullptr)
        return false;
    out = TransparentPicture(entry->width, entry->height);
    parts.batch.Flush();
    if (parts.device != nullptr)
        parts.device->Read(entry->target, out.width, out.height, out.rgba.data());
    DivideByAlpha(out);
    return true;
}
} // namespace Runner
