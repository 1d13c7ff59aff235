#pragma once
// What a game's last frame did, noted while it ran: the steps of its cameras and the views that it drew. It holds
// copies, since events may destroy what they were made from.

#include "Files/Graphics/Camera_Follow.h"
#include "Files/Graphics/Camera_Handle.h"
#include "Platform/Matrix.h"
#include "Runner/Base/Area.h"
#include "Runner/Game/Frame_Observer.h"

#include <vector>

namespace Runner
{
// One axis of an update of a camera.
struct AxisNote
{
    float edge, size, border, speed; // before the update
    bool hasRoom;
    int roomSize;         // without meaning where there is no room
    CFollowStages stages; // without meaning where nothing was followed
    float after;          // the edge that the update left
};

enum class UpdateKind
{
    Unseen,   // nobody watched
    Callback, // the update callback ran instead of following
    NoTarget, // nothing to follow was asked for
    Missing,  // what is to be followed does not exist, or is not active
    Followed,
};

struct StepNote
{
    int camera = -1;
    UpdateKind kind = UpdateKind::NoTarget;
    int target = -1;       // the camera's word
    int instance = -1;     // the one that was followed
    bool hasEnded = false; // false: the camera was gone after the update
    AxisNote x = {}, y = {};
};

struct InstanceNote
{
    int id;
    RoomArea area; // what culling tests
    bool isDrawn;  // false: culled
    bool hasArea;  // false: its size is unknown, so that every view draws it
    float x, y;
};

struct ViewNote
{
    int view, camera, surface;
    Port port;
    kvMatrix drawnView, drawnProjection;     // as the room's draw event left them: what culling uses
    kvMatrix viewMatrix, projection;         // through which it shows now: the same, unless it was drawn once more
    float areaX, areaY, areaW, areaH, areaA; // published for culling
    std::vector<InstanceNote> instances;     // the drawn ones first; visible and active ones only
    int drawn = 0, culled = 0;               // of all, noted or not
};

class FrameNotes : public FrameObserver
{
public:
    static constexpr size_t INSTANCES_LIMIT = 4000; // noted a view, so that the notes of a crowded room cost little

    // Notes the views of a game whose last frame nobody watched, as they show it now, without its instances. Nothing of
    // the game runs or changes.
    void Look(const Game& game);

    void FrameBegins(const Game& game) override;
    void UpdateBegins(const CCamera& camera) override;
    void UpdateEnded(const CCamera& camera) override;
    void ViewIsDrawn(const Game& game, const DrawnView& view) override;

    int Frame() const { return m_frame; }                          // of the notes, from 0; -1 before the first
    const std::vector<StepNote>& Steps() const { return m_steps; } // in the order of the updates
    const std::vector<ViewNote>& Views() const { return m_views; } // in the order of drawing
    const StepNote* StepOf(int camera) const;                      // its last one of the frame; null for none

    // By surface, the view that was drawn into it last: what another one drew there has been covered.
    std::vector<const ViewNote*> SurfaceViews() const;

    // The camera's views on the screen have been drawn once more through these matrices.
    void ShowThrough(int camera, const kvMatrix& view, const kvMatrix& projection);

private:
    int m_frame = -1;
    std::vector<StepNote> m_steps;
    std::vector<ViewNote> m_views;
};

// The axes of the camera's present record, for the next step.
AxisNote AxisNoteX(const CCamera& camera);
AxisNote AxisNoteY(const CCamera& camera);

// The stages of a step along the noted axis.
CFollowStages StagesOf(const AxisNote& axis, float target);

// Whether an update would run a callback instead of following.
bool HasUpdateScript(const CCamera& camera);
} // namespace Runner
