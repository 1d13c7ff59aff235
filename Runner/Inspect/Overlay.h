#pragma once
// What the inspector draws over a view: lines and words in pixels of the screen, worked out by the functions that move
// the camera and by the matrices that drew the view. No drawing happens here.

#include "Runner/Inspect/Frame_Notes.h"
#include "Runner/Inspect/View_Geometry.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Runner
{
enum class OverlayKind
{
    Room,        // the room's edge
    Stop,        // where the room stops the view: its centre stays inside
    Area,        // published for culling
    DeadZone,    // the target moves in it without moving the view
    Reach,       // of the next step by the speed limit: the centre stays inside
    Target,      // a cross, and one at its place after flooring
    Drawn,       // an instance
    Culled,      // an instance
    Up,          // the room's upward direction
    OtherCamera, // what it shows of the plane z = 0, with an arrow to the top of its picture
};
constexpr int OVERLAY_KINDS = 10;

struct OverlayStyle
{
    const char* name; // in the legend
    int red, green, blue;
    float width; // pixels
};
const OverlayStyle& StyleOf(OverlayKind kind);

struct OverlayLine
{
    OverlayKind kind;
    Point from, to;
};

// Whether a part of the line may show in the port. Of a thousand frames of other cameras, most do not.
bool MayShow(const OverlayLine& line, const Port& port);

struct OverlayText
{
    OverlayKind kind;
    Point at; // its top left corner
    std::string text;
};

struct ViewOverlay
{
    int view, camera, surface; // surface: SCREEN_SURFACE, or where the view was drawn
    Port port;                 // nothing shows outside of it
    std::vector<OverlayLine> lines;
    std::vector<OverlayText> texts;
};

// Where the words stand that tell whose view it is: low on the left, since games have their own words in the upper
// corners, and a window has the bar of the time along its lower edge.
Point LabelPlace(const ViewOverlay& overlay);
std::string LabelOf(const ViewOverlay& overlay); // "view 0, camera 1"

// Moves each text below those before it that it would cover: the target often stands where the angle is told. Among
// very many, names of other cameras stay. Sizes are those of a letter and of a line, in pixels of the overlay.
void SpreadTexts(ViewOverlay& overlay, double letterWidth, double lineHeight);

// The positions of a target, each taken down to a whole unit, between which the next step leaves the edge alone: from
// low up to, but without, high. empty: every position moves the view.
struct DeadZone
{
    bool empty = true;
    double low = 0.0, high = 0.0;
};
DeadZone DeadZoneOf(const AxisNote& axis);

// The edges that a step can reach, and those at which the room alone would stop it. Infinite where nothing stops it.
struct EdgeRange
{
    float low, high;
};
EdgeRange ReachOf(const AxisNote& axis);
EdgeRange StopsOf(const AxisNote& axis);

// Where the pictures of surfaces are shown beside the screen, by surface, in the pixels of their overlays.
using SurfacePlaces = std::map<int, Port>;

// What a camera shows of the plane z = 0, worked out from its matrices.
struct CameraArea
{
    bool isKnown = false;
    kvMatrix view, projection;
    std::vector<Point> seen;
    std::optional<Point> centre, top; // of its picture
};
using CameraAreas = std::vector<CameraArea>; // by slot

// For each view of the frame that was drawn on the screen, in the order of drawing; then for each surface that has a
// place, of the view that was drawn into it last.
std::vector<ViewOverlay> MakeOverlays(const FrameNotes& notes, const SurfacePlaces& places = {});

// The same for who asks in every frame: areas keeps those of cameras whose matrices stay as they are.
std::vector<ViewOverlay> MakeOverlays(const FrameNotes& notes, const SurfacePlaces& places, CameraAreas& areas);
} // namespace Runner
