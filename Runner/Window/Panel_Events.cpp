// In the place of Sdl_Panel_Events.cpp in a build without a window: nobody calls these.
#ifdef RUNNER_WITHOUT_WINDOW
#include "Runner/Window/Panel_Events.h"

namespace Runner
{
PanelEvent TakePanelEvent(const void* /*event*/, Window& /*window*/, PanelInput& /*input*/) { return PanelEvent::None; }

void CopyToClipboard(const std::string& /*text*/) {}
} // namespace Runner
#endif
