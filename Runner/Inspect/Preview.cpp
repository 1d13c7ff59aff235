#include "Runner/Inspect/Preview.h"

#include "Files/Graphics/Camera.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Runner/Inspect/View_Geometry.h"
#include "Runner/World/Running_Room.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
bool AreSame(const kvMatrix& a, const kvMatrix& b) { return std::equal(a.u, a.u + 16, b.u); }

// What the device gets for the matrices without a world matrix: the same steps, so the same bits.
kvMatrix ClipOf(const kvMatrix& view, const kvMatrix& projection)
{
    kvMatrix product;
    kvMatrix::Multiply(product, IdentityMatrix(), view);
    kvMatrix::Multiply(product, product, projection);
    return product;
}

kvMatrix FlatClip(int width, int height)
{
    CCamera camera; // not registered: only its arithmetic is used
    camera.m_viewWidth = static_cast<float>(width);
    camera.m_viewHeight = static_cast<float>(height);
    camera.BuildView();
    return ClipOf(camera.m_viewMat, camera.m_projMat);
}

// A call through a view, with any world matrix, goes through the view's new matrices.
void Replace(const kvMatrix& drawn, const kvMatrix& shown, DrawState& state)
{
    if (AreSame(state.toClip, drawn))
        state.toClip = shown;
    else if (const auto world = WorldOf(state.toClip, drawn))
        state.toClip = ClipThrough(*world, shown);
}
} // namespace

Preview::Preview(KeepingDevice& device, FrameNotes& notes) : m_device(&device), m_notes(notes) { m_device->Keep(true); }

Preview::~Preview()
{
    if (m_device != nullptr)
        m_device->Keep(false);
}

void Preview::Show(int camera, int screenWidth, int screenHeight)
{
    const CCamera* changed = PeekCamera(camera);
    if (changed == nullptr)
        return;
    CCamera built;
    CopyForBuilding(*changed, built);
    built.BuildViewIfDirty();
    m_notes.ShowThrough(camera, built.m_viewMat, built.m_projMat);
    const kvMatrix gui = FlatClip(screenWidth, screenHeight);
    m_device->Redraw(
        [&](DrawState& state)
        {
            for (const ViewNote& note : m_notes.Views())
                if (note.surface == SCREEN_SURFACE && note.port == state.port && !AreSame(state.toClip, gui))
                    return Replace(ClipOf(note.drawnView, note.drawnProjection),
                                   ClipOf(note.viewMatrix, note.projection), state);
        });
    m_isShown = true;
}

void Preview::BeginFrame()
{
    if (m_isShown)
        m_device->Redraw([](DrawState&) {});
    m_isShown = false;
    m_device->BeginFrame();
}
} // namespace Runner
