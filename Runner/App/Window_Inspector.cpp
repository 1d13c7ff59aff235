#include "Runner/App/Window_Inspector.h"

#include "Runner/Host/Console.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Window/Panel_Events.h"

#include <algorithm>
#include <utility>

namespace Runner
{
namespace
{
constexpr float NANOSECONDS_OF_A_SECOND = 1e9f;

bool IsAnyDown(const std::array<bool, 3>& buttons)
{
    return std::any_of(buttons.begin(), buttons.end(), [](bool isDown) { return isDown; });
}
} // namespace

// The view frees what it made in the game's context.
WindowInspector::~WindowInspector()
{
    m_window.observer = nullptr;
    if (m_view != nullptr && m_game.CurrentPainter() != nullptr)
        m_game.CurrentPainter()->MakeCurrent();
}

void WindowInspector::Open()
{
    m_inspector.Open();
    m_window.observer = [this](const void* event) { return Keeps(event); };
}

void WindowInspector::Close()
{
    m_inspector.Close();
    m_window.observer = nullptr;
    m_input = PanelInput();
    m_isWanted = false;
}

// A drag that began in the inspector stays its own, wherever it leads.
bool WindowInspector::Keeps(const void* event)
{
    const bool isDragging = IsAnyDown(m_input.buttons);
    const PanelEvent kind = TakePanelEvent(event, m_window, m_input);
    if (kind == PanelEvent::Mouse && !isDragging && isElsewhere != nullptr &&
        isElsewhere(m_input.mouseX, m_input.mouseY, IsAnyDown(m_input.buttons)))
    {
        m_input.buttons = m_input.clicked = {};
        return false;
    }
    return kind == PanelEvent::Mouse || (kind == PanelEvent::Keyboard && m_view != nullptr && m_view->WantsKeyboard());
}

void WindowInspector::Draw(const Port& game)
{
    if (m_isWanted != m_inspector.IsOpen())
        m_isWanted ? Open() : Close();
    const Painter* painter = m_game.CurrentPainter();
    if (!m_inspector.IsOpen() || painter == nullptr || game.width <= 0 || game.height <= 0)
        return;
    if (m_view == nullptr && (m_view = InspectorView::Open()) == nullptr)
    {
        PrintLine(
            "this runner was built without the inspector's panel; --inspect without --window draws it in pictures");
        return Close();
    }
    m_view->copy = CopyToClipboard;
    const GraphicsKeeper keeper;
    const int64_t now = m_window.Now();
    m_input.seconds = static_cast<float>(now - std::exchange(m_lastDraw, now)) / NANOSECONDS_OF_A_SECOND;
    const PixelSize pixels = m_window.Pixels();
    const InspectorCanvas canvas = {pixels.width,           pixels.height,           game,
                                    painter->ScreenWidth(), painter->ScreenHeight(), m_window.PixelsPerPoint()};
    for (const CameraChange& change :
         m_view->Draw(m_inspector.Content(), m_game, &m_inspector.Times(), canvas, m_input))
        m_inspector.Take(change);
    m_input.Look();
}
} // namespace Runner
