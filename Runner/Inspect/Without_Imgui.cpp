// In the place of the view by Dear ImGui, in a build without it.
#ifdef RUNNER_WITHOUT_IMGUI
#include "Runner/Inspect/Inspector_View.h"

namespace Runner
{
std::unique_ptr<InspectorView> InspectorView::Open() { return nullptr; }
} // namespace Runner
#endif
