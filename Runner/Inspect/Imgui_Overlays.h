#pragma once
// The overlays of the inspector's view, by Dear ImGui and straight lines.

#include "Runner/Draw/Gl_Lines.h"
#include "Runner/Inspect/Inspector_View.h"
#include "Runner/Inspect/Overlay.h"

#include <imgui.h>

#include <vector>

namespace Runner
{
class Painter;

ImVec2 OnCanvas(const Point& point, const InspectorCanvas& canvas); // of a point of the game's screen
Point OnScreen(const ImVec2& at, const InspectorCanvas& canvas);    // of a place on the canvas

// When a window takes its first place: once, after which the user moves it, and again whenever the canvas gets another
// size, where its title might be out of reach.
ImGuiCond PlacingOf(bool isResized);

// Where the surfaces that views were drawn into are shown: each in a window of its own, in its own pixels.
SurfacePlaces SurfacePlacesOf(const FrameNotes& notes, const Painter& painter);

// A context must be current, in the destructor too.
class ImguiOverlays
{
public:
    ImguiOverlays();

    // A window for each surface, with its picture and overlay. Within a frame of the library.
    void DrawSurfaces(std::vector<ViewOverlay>& overlays, const Painter& painter, const InspectorCanvas& canvas,
                      bool isResized);

    // The overlays of the screen, into the bound framebuffer: in each frame that shows, also while the library makes
    // none, but not before its first. seen: the part of the canvas that they show in.
    void DrawScreen(std::vector<ViewOverlay>& overlays, const InspectorCanvas& canvas, const Port& seen);

private:
    void DrawLines(const ViewOverlay& overlay, const InspectorCanvas& canvas, const Port& seen);

    GlLines m_lines;
};
} // namespace Runner
