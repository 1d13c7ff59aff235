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
} // namespace

// The view frees what it made in the game's context.
WindowInspector::~WindowInspector()
{
    m_window.observer = nullptr;
    m_game.observer = nullptr;
    if (m_view != nullptr && m_game.CurrentPainter() != nullptr)
        m_game.CurrentPainter()->MakeCurrent();
}

// Called while no context is current: what the view made has gone with its own.
void WindowInspector::LoseDevice()
{
    if (m_preview != nullptr)
        m_preview->Abandon();
    m_preview.reset();
    m_view.reset();
    m_device = nullptr;
}

void WindowInspector::SetDevice(KeepingDevice& device)
{
    m_device = &device;
    if (m_isOpen)
        m_preview = std::make_unique<Preview>(device, m_inspector.Notes());
}

void WindowInspector::Open()
{
    m_watchers = Watchers();
    m_before = m_game.observer;
    if (m_before != nullptr)
        m_watchers.Add(*m_before);
    m_watchers.Add(*this); // first: it still needs the notes of the frame before
    m_watchers.Add(m_inspector.Observer());
    m_watchers.Add(m_profile);
    m_game.observer = &m_watchers;
    m_window.observer = [this](const void* event) { return Keeps(event); };
    if (m_device != nullptr)
        m_preview = std::make_unique<Preview>(*m_device, m_inspector.Notes());
    m_isOpen = true;
    if (m_game.FrameNumber() > 0)
        m_inspector.Notes().Look(m_game);
}

void WindowInspector::Close()
{
    if (m_preview != nullptr)
        m_preview->BeginFrame();
    m_preview.reset();
    m_game.observer = m_before;
    m_window.observer = nullptr;
    m_input = PanelInput();
    m_isWanted = m_isOpen = false;
}

bool WindowInspector::Keeps(const void* event)
{
    const PanelEvent kind = TakePanelEvent(event, m_window, m_input);
    return kind == PanelEvent::Mouse || (kind == PanelEvent::Keyboard && m_view != nullptr && m_view->WantsKeyboard());
}

void WindowInspector::FrameBegins(const Game& /*game*/)
{
    if (m_preview != nullptr)
        m_preview->BeginFrame();
}

void WindowInspector::Take(const CameraChange& change)
{
    const Painter* painter = m_game.CurrentPainter();
    if (!Apply(change))
        return;
    if (onChange != nullptr)
        onChange(change);
    if (m_preview != nullptr)
        m_preview->Show(change.camera, painter->ScreenWidth(), painter->ScreenHeight());
}

void WindowInspector::Draw(const Port& game)
{
    if (m_isWanted != m_isOpen)
        m_isWanted ? Open() : Close();
    const Painter* painter = m_game.CurrentPainter();
    if (!m_isOpen || painter == nullptr || game.width <= 0 || game.height <= 0)
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
                                    painter->ScreenWidth(), painter->ScreenHeight(), 1.0f};
    for (const CameraChange& change : m_view->Draw(m_inspector, m_game, &m_profile, canvas, m_input))
        Take(change);
    m_input.Look();
}

std::unique_ptr<Device> OpenWatchedDevice(Window& window, WindowInspector* inspector, int width, int height,
                                          std::string& error)
{
    if (inspector != nullptr)
        inspector->LoseDevice();
    std::unique_ptr<Device> device = window.OpenDevice(width, height, error);
    if (device == nullptr)
        return nullptr;
    auto keeping = std::make_unique<KeepingDevice>(std::move(device));
    if (inspector != nullptr)
        inspector->SetDevice(*keeping);
    return keeping;
}
} // namespace Runner
