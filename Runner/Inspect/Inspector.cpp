#include "Runner/Inspect/Inspector.h"

#include "Runner/Game/Game.h"

#include <algorithm>

namespace Runner
{
PanelContent Inspector::Content() const
{
    PanelContent content = DescribePanel(m_game, m_notes, m_selected);
    content.aside = DescribeAside(aside);
    return content;
}

Picture Inspector::Show(std::string& why)
{
    Painter* painter = m_game.CurrentPainter();
    if (painter == nullptr || !painter->Draws())
        return Picture();
    const Picture screen = m_game.Screen();
    const PanelContent content = Content();
    const std::vector<ViewOverlay> overlays = MakeOverlays(m_notes);
    const int height = std::min(std::max(screen.height, PanelHeight(content)), PICTURE_SIDE_LIMIT);
    const int width = std::min(screen.width + PANEL_WIDTH, PICTURE_SIDE_LIMIT);
    return painter->DrawAside(
        width, height,
        [&]
        {
            painter->Pixels(screen, 0.0f, 0.0f);
            PaintOverlays(overlays, *painter);
            PaintPanel(content, static_cast<float>(screen.width), static_cast<float>(height), *painter);
        },
        why);
}
} // namespace Runner
