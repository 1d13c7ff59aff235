#pragma once
// What the inspector's panel says, as data: whoever shows it, a window or a picture, shows the same.

#include "Runner/Inspect/Camera_Fields.h"
#include "Runner/Inspect/Frame_Notes.h"

#include <string>
#include <vector>

namespace Runner
{
struct PanelRow
{
    std::string name;
    std::string value;
    const char* unit; // empty for none, as the next three
    const char* range;
    std::string meaning;
    std::string setBy;
    const CameraField* field; // to change it by; null for what cannot be changed by hand
};

struct PanelSection
{
    const char* title;
    std::vector<PanelRow> rows;
};

// One camera of the list.
struct PanelCamera
{
    int id;
    int slot;
    std::string text; // "3: view 0, follows player"
};

// Changes by hand that the game does not have any more, since it was started anew: whoever shows them offers to make
// them again and to copy the lines.
struct PanelAside
{
    std::vector<CameraChange> changes; // the last of each camera and property
    std::vector<std::string> texts;    // of each: "camera 2: border_x = 60"
    std::string lua;                   // the lines that make them
};

struct PanelContent
{
    std::vector<PanelCamera> cameras;   // all, by slot
    int selected = -1;                  // its identifier; -1 for none
    std::vector<PanelSection> sections; // of the selected camera
    std::vector<std::string> reason;    // why it moved in the last frame
    std::string lua;                    // the lines that make it
    PanelAside aside;                   // empty but after a reload
};

PanelAside DescribeAside(const std::vector<CameraChange>& changes);

// selected: an identifier. One that names no camera selects the first camera that drew, or else the first of all.
PanelContent DescribePanel(const Game& game, const FrameNotes& notes, int selected);

// Which camera such a wish selects; -1 when there is none at all.
int SelectCamera(const FrameNotes& notes, int wanted);

// The registered camera of that identifier; null for none. It asks no cache, which a look-up of the game would change.
const CCamera* PeekCamera(int id);

// Gives built, a camera that is not registered, all that a build of matrices reads: it builds what the next step of the
// other camera would, and that one's record stays as it is.
void CopyForBuilding(const CCamera& camera, CCamera& built);
} // namespace Runner
