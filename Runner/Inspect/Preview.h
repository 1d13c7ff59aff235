#pragma once
// A change by hand, shown while the game stands: what the last frame drew, once more, through the camera's new
// matrices. Nothing of the game runs.

#include "Runner/Draw/Keeping_Device.h"
#include "Runner/Inspect/Frame_Notes.h"

namespace Runner
{
class Preview
{
public:
    // device: draws the game, and keeps its frames from now on. Both must live as long, or else be abandoned.
    Preview(KeepingDevice& device, FrameNotes& notes);
    ~Preview();
    Preview(const Preview&) = delete;
    Preview& operator=(const Preview&) = delete;

    // Draws the screen through the present record of the camera: as its next build would show it. Calls that were drawn
    // into its view's port count as the view's, but for the screen's own flat view, in which draw_gui draws.
    void Show(int camera, int screenWidth, int screenHeight);

    void Abandon() { m_device = nullptr; } // the device is gone. Nothing but the destructor may follow

    // Before the game's next frame: the screen becomes what the game drew, and the list of that frame is forgotten.
    void BeginFrame();

private:
    KeepingDevice* m_device;
    FrameNotes& m_notes;
    bool m_isShown = false;
};
} // namespace Runner
