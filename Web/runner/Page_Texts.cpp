#include "Web/runner/Page_Texts.h"

#include "Runner/Game/Game.h"
#include "Runner/Inspect/Overlay.h"
#include "Web/runner/Json_Text.h"

#include <cctype>
#include <limits>

namespace Runner
{
namespace
{
constexpr double FARTHEST = 1e5; // of what a canvas draws well, pixels

// "name.lua:12: what happened" in its parts; a line without a place is its message.
struct PlacedLine
{
    std::string file, message;
    int line = 0;
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The place is the first ":12: " of the line: no file's name has blanks behind a number there.
PlacedLine Placed(const std::string& text)
{
    for (size_t colon = text.find(':'); colon != std::string::npos; colon = text.find(':', colon + 1))
    {
        size_t end = colon + 1;
        while (end < text.size() && IsDigit(text[end]))
            ++end;
        if (end > colon + 1 && end < colon + 9 && text.compare(end, 2, ": ") == 0)
            return {text.substr(0, colon), text.substr(end + 2), std::stoi(text.substr(colon + 1, end - colon - 1))};
    }
    return {"", text, 0};
}

void AddStack(const std::vector<StackLevel>& stack, JsonText& json)
{
    const auto addLocal = [&json](const auto& local)
    {
        json.Field("name", local.first);
        json.Field("value", local.second);
    };
    json.Objects("stack", stack,
                 [&](const StackLevel& level)
                 {
                     json.Field("place", level.place);
                     json.Objects("locals", level.locals, addLocal);
                 });
}

void AddRow(const PanelRow& row, int camera, JsonText& json)
{
    const CCamera* shown = row.field == nullptr ? nullptr : PeekCamera(camera);
    json.Field("name", row.name);
    json.Field("value", row.value);
    json.Field("unit", row.unit);
    json.Field("range", row.range);
    json.Field("meaning", row.meaning);
    json.Field("setBy", row.setBy);
    json.Field("field", row.field == nullptr ? "" : row.field->name);
    json.Field("number", shown == nullptr ? std::numeric_limits<double>::quiet_NaN()
                                          : static_cast<double>(ValueOf(*shown, *row.field)));
}

void AddSections(const PanelContent& content, JsonText& json)
{
    json.Objects("sections", content.sections,
                 [&](const PanelSection& section)
                 {
                     json.Field("title", section.title);
                     json.Objects("rows", section.rows,
                                  [&](const PanelRow& row) { AddRow(row, content.selected, json); });
                 });
}

void AddCameras(const PanelContent& content, JsonText& json)
{
    json.Objects("cameras", content.cameras,
                 [&json](const PanelCamera& camera)
                 {
                     json.Field("id", camera.id);
                     json.Field("slot", camera.slot);
                     json.Field("text", camera.text);
                 });
}

void AddAside(const PanelAside& aside, JsonText& json)
{
    json.Name("aside");
    json.Open('{');
    size_t next = 0;
    json.Objects("changes", aside.changes,
                 [&](const auto& change)
                 {
                     json.Field("camera", change.camera);
                     json.Field("field", change.field);
                     json.Field("value", static_cast<double>(change.value));
                     json.Field("text", aside.texts[next++]);
                 });
    json.Field("lua", aside.lua);
    json.Close('}');
}

bool IsNear(const Point& point) { return std::fabs(point.x) < FARTHEST && std::fabs(point.y) < FARTHEST; }

void AddLines(const ViewOverlay& overlay, JsonText& json)
{
    json.Name("lines");
    json.Open('[');
    for (const OverlayLine& line : overlay.lines)
        if (MayShow(line, overlay.port) && IsNear(line.from) && IsNear(line.to))
            for (const double number : {static_cast<double>(line.kind), line.from.x, line.from.y, line.to.x, line.to.y})
                json.Number(number);
    json.Close(']');
}

void AddText(int kind, const Point& at, const std::string& text, JsonText& json)
{
    json.Open('{');
    json.Field("kind", kind);
    json.Field("x", at.x);
    json.Field("y", at.y);
    json.Field("text", text);
    json.Close('}');
}

void AddTexts(const ViewOverlay& overlay, JsonText& json)
{
    constexpr int NO_KIND = -1; // white: whose view it is
    json.Name("texts");
    json.Open('[');
    for (const OverlayText& text : overlay.texts)
        if (IsNear(text.at))
            AddText(static_cast<int>(text.kind), text.at, text.text, json);
    const std::string view = overlay.view < 0 ? "no view, " : "view " + std::to_string(overlay.view) + ", ";
    AddText(NO_KIND, LabelPlace(overlay), view + "camera " + std::to_string(overlay.camera), json);
    json.Close(']');
}
} // namespace

std::string FailureJson(const Game& game)
{
    const FailureReport report = DescribeFailure(game);
    const PlacedLine placed = Placed(report.line);
    JsonText json;
    json.Open('{');
    json.Field("text", report.line);
    json.Field("message", placed.message);
    json.Field("file", placed.file);
    json.Field("line", placed.line);
    json.Field("event", report.event);
    json.Field("object", game.scripts.Trouble().object);
    json.Field("room", report.room);
    json.Field("frame", report.frame);
    AddStack(report.stack, json);
    json.Close('}');
    return json.Whole();
}

std::string PanelJson(const PanelContent& content, int frame)
{
    JsonText json;
    json.Open('{');
    json.Field("frame", frame);
    AddCameras(content, json);
    json.Field("selected", content.selected);
    AddSections(content, json);
    json.Name("reason");
    json.Open('[');
    for (const std::string& line : content.reason)
        json.Text(line);
    json.Close(']');
    json.Field("lua", content.lua);
    AddAside(content.aside, json);
    json.Close('}');
    return json.Whole();
}

std::string StylesJson()
{
    JsonText json;
    json.Open('[');
    for (int kind = 0; kind < OVERLAY_KINDS; ++kind)
    {
        const OverlayStyle& style = StyleOf(static_cast<OverlayKind>(kind));
        char colour[16];
        std::snprintf(colour, sizeof colour, "#%02x%02x%02x", static_cast<unsigned>(style.red & 255),
                      static_cast<unsigned>(style.green & 255), static_cast<unsigned>(style.blue & 255));
        json.Open('{');
        json.Field("name", style.name);
        json.Field("colour", colour);
        json.Field("width", static_cast<double>(style.width));
        json.Close('}');
    }
    json.Close(']');
    return json.Whole();
}

std::string OverlaysJson(const FrameNotes& notes)
{
    JsonText json;
    json.Open('[');
    for (const ViewOverlay& overlay : MakeOverlays(notes))
    {
        json.Open('{');
        json.Field("x", overlay.port.x);
        json.Field("y", overlay.port.y);
        json.Field("width", overlay.port.width);
        json.Field("height", overlay.port.height);
        AddLines(overlay, json);
        AddTexts(overlay, json);
        json.Close('}');
    }
    json.Close(']');
    return json.Whole();
}
} // namespace Runner
