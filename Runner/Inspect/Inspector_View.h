#pragma once
// The inspector as windows over the game, by Dear ImGui, with OpenGL ES in whatever context and framebuffer is bound.

#include "Runner/Draw/Port.h"
#include "Runner/Input/Panel_Input.h"
#include "Runner/Inspect/Inspector.h"
#include "Runner/Inspect/Profile.h"

#include <functional>
#include <memory>
#include <vector>

namespace Runner
{
// What the view is drawn into.
struct InspectorCanvas
{
    int width = 0, height = 0;             // pixels
    Port game;                             // where the game's screen stands in it
    int screenWidth = 1, screenHeight = 1; // of the game's picture, pixels: those of the overlays
    float scale = 1.0f;                    // of the text
};

class InspectorView
{
public:
    // One at a time, in the context that is current at its first Draw; destroy it while that is current again. Null in
    // a build without Dear ImGui.
    static std::unique_ptr<InspectorView> Open();
    virtual ~InspectorView() = default;

    // Draws panel and overlays, and answers the changes that the user made since the last time. They have not been
    // applied. profile: null for no second page.
    virtual std::vector<CameraChange> Draw(Inspector& inspector, const Game& game, const Profile* profile,
                                           const InspectorCanvas& canvas, const PanelInput& input) = 0;

    virtual bool WantsMouse() const = 0; // the mouse is over the panel or drags in a view
    virtual bool WantsKeyboard() const = 0;

    std::function<void(const std::string&)> copy; // takes a text for the clipboard; null for nobody

    // Every change so far, in order, for who offers them again or records them.
    std::vector<CameraChange> changes;
};
} // namespace Runner
