#include "Runner/Inspect/Inspector.h"

#include "Runner/Game/Game.h"
#include "Runner/Host/Graphics.h"

#include <algorithm>

namespace Runner
{
namespace
{
void PaintSurfaces(const SurfacePlaces& places, const Port& picture, Painter& painter)
{
    painter.SetPort(picture);
    SetFlatView(0.0f, 0.0f, static_cast<float>(picture.width), static_cast<float>(picture.height));
    for (const auto& [surface, place] : places)
        if (painter.SurfaceExists(surface))
            painter.SurfaceStretched(surface, static_cast<float>(place.x), static_cast<float>(place.y),
                                     static_cast<float>(place.x + place.width),
                                     static_cast<float>(place.y + place.height));
}
} // namespace

PanelContent Inspector::Content() const
{
    PanelContent content = DescribePanel(m_game, m_notes, m_selected);
    content.aside = DescribeAside(aside);
    return content;
}

SurfacePlaces PlaceSurfaces(const FrameNotes& notes, int width, int top, int& height)
{
    constexpr int GAP = 8, LARGEST = 4;
    SurfacePlaces places;
    int left = 0, rowTop = top + GAP;
    height = top;
    for (const ViewNote* note : notes.SurfaceViews())
    {
        const Port& whole = note->port;
        if (whole.width <= 0 || whole.height <= 0)
            continue;
        const int times = std::clamp(width / whole.width, 1, LARGEST);
        const int shownWidth = std::min(whole.width * times, width);
        const int shownHeight = std::max(1, whole.height * shownWidth / whole.width);
        if (left > 0 && left + shownWidth > width)
        {
            left = 0;
            rowTop = height + GAP;
        }
        places[note->surface] = {left, rowTop, shownWidth, shownHeight};
        left += shownWidth + GAP;
        height = std::max(height, rowTop + shownHeight);
    }
    return places;
}

Picture Inspector::Show(std::string& why)
{
    Painter* painter = m_game.CurrentPainter();
    if (painter == nullptr || !painter->Draws())
        return Picture();
    const Picture screen = m_game.Screen();
    const PanelContent content = Content();
    int lowest = 0;
    const SurfacePlaces places = PlaceSurfaces(m_notes, screen.width, screen.height, lowest);
    const std::vector<ViewOverlay> overlays = MakeOverlays(m_notes, places);
    const int height = std::min(std::max(lowest, PanelHeight(content)), PICTURE_SIDE_LIMIT);
    const int width = std::min(screen.width + PANEL_WIDTH, PICTURE_SIDE_LIMIT);
    return painter->DrawAside(
        width, height,
        [&]
        {
            painter->Pixels(screen, 0.0f, 0.0f);
            PaintSurfaces(places, {0, 0, width, height}, *painter);
            PaintOverlays(overlays, *painter);
            PaintPanel(content, static_cast<float>(screen.width), static_cast<float>(height), *painter);
        },
        why);
}
} // namespace Runner
