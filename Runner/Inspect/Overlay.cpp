#include "Runner/Inspect/Overlay.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Trigonometry.h"
#include "Files/Instance/Instance.h"
#include "Runner/Inspect/Number_Text.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Runner/World/Running_Room.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace Runner
{
namespace
{
constexpr float FAR_AWAY = 1e30f;          // a target beyond every room
constexpr double CROSS = 6.0;              // half the length of a cross's arms, pixels
constexpr double ARROW = 48.0, BARB = 9.0; // pixels
constexpr size_t DETAILED_LIMIT = 64;      // frames of other cameras that have names and arrows
constexpr size_t SPREAD_LIMIT = 64;        // texts that are held against each other
constexpr double LARGEST_UNIT = 1e9;       // beyond it whole units are no longer told apart

constexpr OverlayStyle STYLES[OVERLAY_KINDS] = {
    {"room's edge", 255, 255, 255, 2.0f},
    {"room stops the centre", 190, 190, 190, 1.0f},
    {"area for culling", 255, 235, 60, 3.0f},
    {"dead zone", 80, 220, 255, 2.0f},
    {"reach of a step (centre)", 255, 120, 255, 2.0f},
    {"target, floored", 255, 80, 60, 2.0f},
    {"drawn instance", 110, 230, 110, 1.0f},
    {"culled instance", 170, 120, 110, 1.0f},
    {"the room's up", 255, 170, 40, 2.0f},
    {"other camera", 150, 150, 255, 2.0f},
};

double Wide(float number) { return static_cast<double>(number); }

struct Box
{
    double left, top, right, bottom;
};

// Collects one view's lines. Positions are the room's unless a name says otherwise.
class Sketch
{
public:
    Sketch(const ViewNote& note, const Port& port) : m_geometry(note.viewMatrix, note.projection), m_port(port) {}

    void Line(OverlayKind kind, const Point& from, const Point& to)
    {
        if (const auto segment = m_geometry.ToScreen(from, to, m_port))
            lines.push_back({kind, segment->from, segment->to});
    }

    void Polygon(OverlayKind kind, const std::vector<Point>& points)
    {
        for (size_t i = 0; i < points.size(); ++i)
            Line(kind, points[i], points[(i + 1) % points.size()]);
    }

    // Its lines that may show; answers whether there are any.
    bool VisiblePolygon(OverlayKind kind, const std::vector<Point>& points)
    {
        const size_t before = lines.size();
        Polygon(kind, points);
        const auto hidden = std::remove_if(lines.begin() + static_cast<std::ptrdiff_t>(before), lines.end(),
                                           [this](const OverlayLine& line) { return !MayShow(line, m_port); });
        lines.erase(hidden, lines.end());
        return lines.size() > before;
    }

    void Rectangle(OverlayKind kind, const Box& box)
    {
        Polygon(kind, {{box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}});
    }

    void CrossAt(OverlayKind kind, const Point& point, double arm)
    {
        if (const auto on = m_geometry.ToScreen(point, point, m_port))
        {
            lines.push_back({kind, {on->from.x - arm, on->from.y}, {on->from.x + arm, on->from.y}});
            lines.push_back({kind, {on->from.x, on->from.y - arm}, {on->from.x, on->from.y + arm}});
        }
    }

    void Text(OverlayKind kind, const Point& point, const std::string& text)
    {
        if (const auto on = m_geometry.ToScreen(point, point, m_port))
            texts.push_back({kind, {on->from.x + 4.0, on->from.y + 4.0}, text});
    }

    // From one point towards another, as long on the screen as every arrow.
    void Arrow(OverlayKind kind, const Point& from, const Point& towards)
    {
        const auto on = m_geometry.ToScreen(from, towards, m_port);
        if (!on)
            return;
        const double dx = on->to.x - on->from.x, dy = on->to.y - on->from.y;
        const double length = std::sqrt(dx * dx + dy * dy);
        if (!(length > 0.0))
            return;
        const double ux = dx / length, uy = dy / length;
        const Point tip = {on->from.x + ux * ARROW, on->from.y + uy * ARROW};
        lines.push_back({kind, on->from, tip});
        lines.push_back({kind, tip, {tip.x - (ux - uy * 0.6) * BARB, tip.y - (uy + ux * 0.6) * BARB}});
        lines.push_back({kind, tip, {tip.x - (ux + uy * 0.6) * BARB, tip.y - (uy - ux * 0.6) * BARB}});
    }

    const ViewGeometry& Geometry() const { return m_geometry; }

    std::vector<OverlayLine> lines;
    std::vector<OverlayText> texts;

private:
    const ViewGeometry m_geometry;
    const Port m_port;
};

// ---- what is drawn and culled ----

void AddInstances(const ViewNote& note, Sketch& sketch)
{
    for (const InstanceNote& instance : note.instances)
    {
        const OverlayKind kind = instance.isDrawn ? OverlayKind::Drawn : OverlayKind::Culled;
        const RoomArea& area = instance.area;
        if (instance.hasArea)
            sketch.Rectangle(kind, {area.left, area.top, area.right, area.bottom});
        else
            sketch.CrossAt(kind, {instance.x, instance.y}, CROSS);
    }
}

// The area's height runs in the direction (sin A, cos A) of the room, its width in (cos A, -sin A).
void AddArea(const ViewNote& note, Sketch& sketch)
{
    const double sine = GR_Sin(note.areaA * 0.017453292f), cosine = GR_Cos(note.areaA * 0.017453292f);
    const double halfW = note.areaW * 0.5f, halfH = note.areaH * 0.5f;
    const Point middle = {Wide(note.areaX) + halfW, Wide(note.areaY) + halfH};
    std::vector<Point> corners;
    for (const auto& [across, down] : {std::pair{-halfW, -halfH}, {halfW, -halfH}, {halfW, halfH}, {-halfW, halfH}})
        corners.push_back({middle.x + across * cosine + down * sine, middle.y - across * sine + down * cosine});
    sketch.Polygon(OverlayKind::Area, corners);
}

// ---- the camera's next step ----

struct Axes
{
    AxisNote x, y;
};

// Where the centre may come to lie when the edges do within the two ranges. False where one is infinite.
bool CentreBox(const EdgeRange& x, const EdgeRange& y, const Axes& axes, Box& box)
{
    const double halfW = axes.x.size * 0.5f, halfH = axes.y.size * 0.5f;
    box = {Wide(x.low) + halfW, Wide(y.low) + halfH, Wide(x.high) + halfW, Wide(y.high) + halfH};
    return std::max({std::abs(x.low), std::abs(y.low), std::abs(x.high), std::abs(y.high)}) < FAR_AWAY * 0.5f;
}

void AddRoom(const Axes& axes, Sketch& sketch)
{
    if (!axes.x.hasRoom || !axes.y.hasRoom)
        return;
    sketch.Rectangle(OverlayKind::Room,
                     {0.0, 0.0, static_cast<double>(axes.x.roomSize), static_cast<double>(axes.y.roomSize)});
    Box box;
    if (CentreBox(StopsOf(axes.x), StopsOf(axes.y), axes, box))
        sketch.Rectangle(OverlayKind::Stop, box);
}

void AddDeadZone(const Axes& axes, Sketch& sketch)
{
    const DeadZone x = DeadZoneOf(axes.x), y = DeadZoneOf(axes.y);
    const double left = axes.x.edge, right = left + Wide(axes.x.size);
    const double top = axes.y.edge, bottom = top + Wide(axes.y.size);
    if (!x.empty && !y.empty)
        return sketch.Rectangle(OverlayKind::DeadZone, {x.low, y.low, x.high, y.high});
    for (const double edge : {x.low, x.high}) // one axis has a zone: its two margins, across the whole view
        if (!x.empty)
            sketch.Line(OverlayKind::DeadZone, {edge, top}, {edge, bottom});
    for (const double edge : {y.low, y.high})
        if (!y.empty)
            sketch.Line(OverlayKind::DeadZone, {left, edge}, {right, edge});
}

void AddReach(const Axes& axes, Sketch& sketch)
{
    Box box;
    const bool isLimited = axes.x.speed >= 0.0f || axes.y.speed >= 0.0f;
    if (isLimited && CentreBox(ReachOf(axes.x), ReachOf(axes.y), axes, box))
        sketch.Rectangle(OverlayKind::Reach, box);
}

void AddTarget(const CInstance& target, Sketch& sketch)
{
    const Point place = {target.x, target.y};
    const Point floored = {std::floor(place.x), std::floor(place.y)};
    sketch.CrossAt(OverlayKind::Target, place, CROSS * 1.5);
    sketch.CrossAt(OverlayKind::Target, floored, CROSS * 0.5);
    sketch.Line(OverlayKind::Target, floored, place);
    sketch.Text(OverlayKind::Target, place, "target " + NumberText(target.x) + ", " + NumberText(target.y));
    const std::string flooredText =
        NumberText(static_cast<float>(floored.x)) + ", " + NumberText(static_cast<float>(floored.y));
    sketch.Text(OverlayKind::Target, place, "floored " + flooredText);
}

void AddFollowing(const CCamera& camera, Sketch& sketch)
{
    const Axes axes = {AxisNoteX(camera), AxisNoteY(camera)};
    AddRoom(axes, sketch);
    const CInstance* target = HasUpdateScript(camera) ? nullptr : camera.FindTarget();
    if (target == nullptr)
        return;
    AddDeadZone(axes, sketch);
    AddReach(axes, sketch);
    AddTarget(*target, sketch);
}

// ---- directions, other cameras ----

void AddUp(const CCamera& camera, Sketch& sketch)
{
    const auto centre = sketch.Geometry().RoomPoint(0.0, 0.0);
    if (!centre)
        return;
    sketch.Arrow(OverlayKind::Up, *centre, {centre->x, centre->y - 1.0});
    sketch.Text(OverlayKind::Up, *centre, "angle " + NumberText(camera.m_viewAngle));
}

// What a camera shows, for all views.
struct CameraFrame
{
    const CCamera* camera;
    const CameraArea* area;
};

// The whole plane, where a camera was never given a size, would be a frame without meaning.
bool HasFrame(const CCamera& camera) { return camera.m_viewWidth > 0.0f && camera.m_viewHeight > 0.0f; }

bool IsSame(const kvMatrix& a, const kvMatrix& b)
{
    return std::equal(std::begin(a.m), std::end(a.m), std::begin(b.m));
}

std::vector<CameraFrame> AllFrames(CameraAreas& areas)
{
    std::vector<CameraFrame> frames;
    areas.resize(static_cast<size_t>(g_CM.m_cameraListSize));
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
    {
        const CCamera* camera = g_CM.m_cameras[slot];
        if (camera == nullptr || !HasFrame(*camera))
            continue;
        CameraArea& area = areas[static_cast<size_t>(slot)];
        if (!area.isKnown || !IsSame(area.view, camera->m_viewMat) || !IsSame(area.projection, camera->m_projMat))
        {
            const ViewGeometry geometry(camera->m_viewMat, camera->m_projMat);
            area = {true,
                    camera->m_viewMat,
                    camera->m_projMat,
                    geometry.Footprint(),
                    geometry.RoomPoint(0.0, 0.0),
                    geometry.RoomPoint(0.0, -0.5)};
        }
        if (!area.seen.empty())
            frames.push_back({camera, &area});
    }
    return frames;
}

void AddDetails(const CameraFrame& frame, Sketch& sketch)
{
    sketch.Text(OverlayKind::OtherCamera, frame.area->seen.front(), "camera " + std::to_string(frame.camera->GetID()));
    if (frame.area->centre && frame.area->top)
        sketch.Arrow(OverlayKind::OtherCamera, *frame.area->centre, *frame.area->top);
}

// Among many cameras only frames that may show are drawn, and their names and arrows only while few of them do: names
// would cover each other, and a driver in software would take longer for them than for the game.
void AddOthers(const std::vector<CameraFrame>& frames, const CCamera* own, Sketch& sketch)
{
    const bool areFew = frames.size() <= DETAILED_LIMIT;
    std::vector<const CameraFrame*> detailed;
    for (const CameraFrame& frame : frames)
        if (frame.camera != own && (sketch.VisiblePolygon(OverlayKind::OtherCamera, frame.area->seen) || areFew))
            detailed.push_back(&frame);
    if (detailed.size() > DETAILED_LIMIT)
        return;
    for (const CameraFrame* frame : detailed)
        AddDetails(*frame, sketch);
}

ViewOverlay OverlayOf(const ViewNote& note, const Port& port, const std::vector<CameraFrame>& frames)
{
    Sketch sketch(note, port);
    AddInstances(note, sketch);
    const CCamera* own = PeekCamera(note.camera);
    if (own != nullptr)
        AddFollowing(*own, sketch);
    AddArea(note, sketch);
    AddOthers(frames, own, sketch);
    if (own != nullptr)
        AddUp(*own, sketch);
    return {note.view, note.camera, note.surface, port, std::move(sketch.lines), std::move(sketch.texts)};
}

// Whether a target at that whole position leaves the edge alone.
bool Keeps(const AxisNote& axis, double position)
{
    return StagesOf(axis, static_cast<float>(position)).border == axis.edge;
}
} // namespace

const OverlayStyle& StyleOf(OverlayKind kind) { return STYLES[static_cast<size_t>(kind)]; }

bool MayShow(const OverlayLine& line, const Port& port)
{
    constexpr double LINE = 4.0; // more than half of any line's width
    const double right = static_cast<double>(port.x) + port.width, bottom = static_cast<double>(port.y) + port.height;
    return std::max(line.from.x, line.to.x) >= port.x - LINE && std::min(line.from.x, line.to.x) <= right + LINE &&
           std::max(line.from.y, line.to.y) >= port.y - LINE && std::min(line.from.y, line.to.y) <= bottom + LINE;
}

Point LabelPlace(const ViewOverlay& overlay)
{
    constexpr double MARGIN = 6.0, DOWN = 0.88; // pixels; of the port's height
    const Port& port = overlay.port;
    return {port.x + MARGIN, port.y + port.height * DOWN};
}

std::string LabelOf(const ViewOverlay& overlay)
{
    const std::string view = overlay.view < 0 ? "no view" : "view " + std::to_string(overlay.view);
    const std::string surface =
        overlay.surface == SCREEN_SURFACE ? "" : " into surface " + std::to_string(overlay.surface);
    return view + surface + ", camera " + std::to_string(overlay.camera);
}

void SpreadTexts(ViewOverlay& overlay, double letterWidth, double lineHeight)
{
    std::vector<const OverlayText*> placed;
    for (OverlayText& text : overlay.texts)
    {
        if (text.kind == OverlayKind::OtherCamera && overlay.texts.size() > SPREAD_LIMIT)
            continue;
        const auto end = [letterWidth](const OverlayText& each)
        { return each.at.x + letterWidth * static_cast<double>(each.text.size()); };
        const auto isCovered = [&](const OverlayText* other)
        {
            return text.at.x < end(*other) && other->at.x < end(text) &&
                   std::abs(text.at.y - other->at.y) < lineHeight * 0.99; // sums are rounded
        };
        auto covered = std::find_if(placed.begin(), placed.end(), isCovered);
        while (covered != placed.end())
        {
            text.at.y = (*covered)->at.y + lineHeight;
            covered = std::find_if(placed.begin(), placed.end(), isCovered);
        }
        placed.push_back(&text);
    }
}

// The two ends are guessed and then asked for, since rounding decides near them.
DeadZone DeadZoneOf(const AxisNote& axis)
{
    const double low = std::ceil(Wide(axis.edge) + Wide(axis.border));
    const double high = std::floor(Wide(axis.edge) + Wide(axis.size) - Wide(axis.border));
    DeadZone zone;
    if (2.0f * axis.border >= axis.size) // the target is centred: the one place that keeps the edge is no zone
        return zone;
    if (!(std::abs(low) < LARGEST_UNIT && std::abs(high) < LARGEST_UNIT))
        return zone;
    for (int offset = 2; offset >= -2; --offset)
        if (Keeps(axis, high + offset))
        {
            zone.high = high + offset + 1.0;
            zone.empty = false;
            break;
        }
    for (zone.low = low - 2.0; !zone.empty && zone.low < zone.high && !Keeps(axis, zone.low);)
        zone.low += 1.0;
    return zone;
}

EdgeRange ReachOf(const AxisNote& axis) { return {StagesOf(axis, -FAR_AWAY).speed, StagesOf(axis, FAR_AWAY).speed}; }

EdgeRange StopsOf(const AxisNote& axis) { return {StagesOf(axis, -FAR_AWAY).room, StagesOf(axis, FAR_AWAY).room}; }

std::vector<ViewOverlay> MakeOverlays(const FrameNotes& notes, const SurfacePlaces& places)
{
    CameraAreas areas;
    return MakeOverlays(notes, places, areas);
}

std::vector<ViewOverlay> MakeOverlays(const FrameNotes& notes, const SurfacePlaces& places, CameraAreas& areas)
{
    std::vector<ViewOverlay> overlays;
    const std::vector<CameraFrame> frames = AllFrames(areas);
    for (const ViewNote& note : notes.Views())
        if (note.surface == SCREEN_SURFACE)
            overlays.push_back(OverlayOf(note, note.port, frames));
    for (const ViewNote* note : notes.SurfaceViews())
        if (const auto place = places.find(note->surface); place != places.end())
            overlays.push_back(OverlayOf(*note, place->second, frames));
    return overlays;
}
} // namespace Runner
