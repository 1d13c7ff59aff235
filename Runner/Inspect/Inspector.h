#pragma once
// The camera inspector as pictures: the game's screen with what is drawn over its views, and the panel beside it.

#include "Runner/Draw/Picture.h"
#include "Runner/Inspect/Frame_Notes.h"
#include "Runner/Inspect/Overlay.h"
#include "Runner/Inspect/Panel_Content.h"

#include <string>

namespace Runner
{
class Painter;

// Draws the lines and words over the views, into the current target at the pixels of their ports. One room unit is a
// pixel.
void PaintOverlays(const std::vector<ViewOverlay>& overlays, Painter& painter);

// Where the surfaces that views of the frame were drawn into are shown: in rows below top, small ones up to four times
// as large and none wider than the width. height: where the lowest ends; top when there is none.
SurfacePlaces PlaceSurfaces(const FrameNotes& notes, int width, int top, int& height);

// The panel as text, a column of PANEL_WIDTH pixels from left on.
constexpr int PANEL_WIDTH = 850;
void PaintPanel(const PanelContent& content, float left, float height, Painter& painter);
int PanelHeight(const PanelContent& content); // pixels that it takes

// Of a game, which must live as long and be watched by the inspector's observer.
class Inspector
{
public:
    explicit Inspector(Game& game) : m_game(game) {}
    Inspector(const Inspector&) = delete;
    Inspector& operator=(const Inspector&) = delete;

    FrameObserver& Observer() { return m_notes; }
    void Select(int camera) { m_selected = camera; } // as for DescribePanel
    int Selected() const { return m_selected; }
    PanelContent Content() const;
    const FrameNotes& Notes() const { return m_notes; }
    FrameNotes& Notes() { return m_notes; }

    // Changes by hand that a reload has left out, until they are made again.
    std::vector<CameraChange> aside;

    // The last frame with overlays and panel. Empty before there is a screen and without drawing; why: what failed.
    Picture Show(std::string& why);

private:
    Game& m_game;
    FrameNotes m_notes;
    int m_selected = -1;
};
} // namespace Runner
