#include "Runner/App/Live_Inspector.h"

namespace Runner
{
LiveInspector::~LiveInspector() { m_game.observer = nullptr; }

void LiveInspector::Open()
{
    if (m_isOpen)
        return;
    m_watchers = Watchers();
    m_before = m_game.observer;
    if (m_before != nullptr)
        m_watchers.Add(*m_before);
    m_watchers.Add(*this); // first: it still needs the notes of the frame before
    m_watchers.Add(m_inspector.Observer());
    m_watchers.Add(m_profile);
    m_game.observer = &m_watchers;
    m_isOpen = true;
    if (m_device != nullptr)
        m_preview = std::make_unique<Preview>(*m_device, m_inspector.Notes());
    const bool isKnown = m_inspector.Notes().Frame() == m_game.FrameNumber() - 1; // somebody watched the last frame
    if (m_game.FrameNumber() > 0 && !isKnown)
        m_inspector.Notes().Look(m_game);
}

void LiveInspector::Close()
{
    if (!m_isOpen)
        return;
    if (m_preview != nullptr)
        m_preview->BeginFrame();
    m_preview.reset();
    m_game.observer = m_before;
    m_isOpen = false;
}

// Called while no context is current: what was made with the device has gone with it.
void LiveInspector::LoseDevice()
{
    if (m_preview != nullptr)
        m_preview->Abandon();
    m_preview.reset();
    m_device = nullptr;
}

void LiveInspector::SetDevice(KeepingDevice& device)
{
    m_device = &device;
    if (m_isOpen)
        m_preview = std::make_unique<Preview>(device, m_inspector.Notes());
}

void LiveInspector::FrameBegins(const Game& /*game*/)
{
    if (m_preview != nullptr)
        m_preview->BeginFrame();
}

bool LiveInspector::Take(const CameraChange& change)
{
    if (!Apply(change))
        return false;
    if (onChange != nullptr)
        onChange(change);
    const Painter* painter = m_game.CurrentPainter();
    if (m_preview != nullptr && painter != nullptr)
        m_preview->Show(change.camera, painter->ScreenWidth(), painter->ScreenHeight());
    return true;
}

std::unique_ptr<Device> OpenWatchedDevice(const DeviceOpener& open, LiveInspector* inspector, int width, int height,
                                          std::string& error)
{
    if (inspector != nullptr)
        inspector->LoseDevice();
    std::unique_ptr<Device> device = open(width, height, error);
    if (device == nullptr)
        return nullptr;
    auto keeping = std::make_unique<KeepingDevice>(std::move(device));
    if (inspector != nullptr)
        inspector->SetDevice(*keeping);
    return keeping;
}
} // namespace Runner
