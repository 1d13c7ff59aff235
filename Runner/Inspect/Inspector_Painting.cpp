// The inspector's drawing by the painter.
#include "Runner/Draw/Painter.h"
#include "Runner/Host/Graphics.h"
#include "Runner/Inspect/Inspector.h"

#include <algorithm>

namespace Runner
{
namespace
{
constexpr float LINE_HEIGHT = 13.0f, MARGIN = 8.0f, CHARACTER = 8.0f;
constexpr float VALUE_COLUMN = 11.0f * CHARACTER, MEANING_COLUMN = 26.0f * CHARACTER;
constexpr size_t LINE_CHARACTERS = 104; // of a panel's line
constexpr size_t CAMERAS_SHOWN = 12;
constexpr unsigned WHITE = 0xFFFFFF, GREY = 0xA8A8A8, YELLOW = 0x60D8FF, GROUND = 0x241C18; // blue, green, red

unsigned ColourOf(OverlayKind kind)
{
    const OverlayStyle& style = StyleOf(kind);
    return static_cast<unsigned>(style.red) | static_cast<unsigned>(style.green) << 8 |
           static_cast<unsigned>(style.blue) << 16;
}

// Lines that lie far outside would lose their precision in the driver.
bool IsNear(const Point& from, const Point& to)
{
    constexpr double LIMIT = 1e5;
    return std::max({from.x, from.y, to.x, to.y}) < LIMIT && std::min({from.x, from.y, to.x, to.y}) > -LIMIT;
}

void PaintText(float x, float y, const std::string& text, unsigned colour, Painter& painter)
{
    painter.SetColour(colour);
    painter.Text(x, y, text);
}

void PaintShadowedText(float x, float y, const std::string& text, unsigned colour, Painter& painter)
{
    painter.SetAlpha(0.65f);
    painter.SetColour(0);
    painter.Rectangle(x - 2.0f, y - 1.0f, x + Painter::TextWidth(text) + 2.0f, y + 12.0f);
    painter.SetAlpha(1.0f);
    PaintText(x, y, text, colour, painter);
}

void PaintOverlay(ViewOverlay overlay, Painter& painter)
{
    SpreadTexts(overlay, static_cast<double>(CHARACTER), static_cast<double>(LINE_HEIGHT));
    const float left = static_cast<float>(overlay.port.x), top = static_cast<float>(overlay.port.y);
    painter.SetPort(overlay.port);
    SetFlatView(left, top, static_cast<float>(overlay.port.width), static_cast<float>(overlay.port.height));
    for (const OverlayLine& line : overlay.lines)
    {
        if (!MayShow(line, overlay.port) || !IsNear(line.from, line.to))
            continue;
        painter.SetColour(ColourOf(line.kind));
        painter.Line(static_cast<float>(line.from.x), static_cast<float>(line.from.y), static_cast<float>(line.to.x),
                     static_cast<float>(line.to.y), StyleOf(line.kind).width);
    }
    for (const OverlayText& text : overlay.texts)
        if (IsNear(text.at, text.at))
            PaintShadowedText(static_cast<float>(text.at.x), static_cast<float>(text.at.y), text.text,
                              ColourOf(text.kind), painter);
    const Point place = LabelPlace(overlay);
    PaintShadowedText(static_cast<float>(place.x), static_cast<float>(place.y), LabelOf(overlay), WHITE, painter);
}

// ---- the panel ----

// Breaks a text after the last blank that fits; each further line is indented.
std::vector<std::string> Broken(const std::string& text, size_t most)
{
    std::vector<std::string> lines;
    for (size_t at = 0; at < text.size();)
    {
        const std::string indent = lines.empty() ? "" : "  ";
        const size_t room = most - indent.size();
        size_t length = std::min(room, text.size() - at);
        const size_t blank = at + length < text.size() ? text.rfind(' ', at + length) : std::string::npos;
        if (blank != std::string::npos && blank > at)
            length = blank - at;
        lines.push_back(indent + text.substr(at, length));
        at += length;
        while (at < text.size() && text[at] == ' ')
            ++at;
    }
    return lines;
}

struct PanelCell
{
    float x;
    unsigned colour;
    std::string text;
};
using PanelLine = std::vector<PanelCell>;

void AddTitle(const std::string& title, std::vector<PanelLine>& lines)
{
    lines.push_back({});
    lines.push_back({{0.0f, YELLOW, title}});
}

void AddCameras(const PanelContent& content, std::vector<PanelLine>& lines)
{
    lines.push_back({{0.0f, YELLOW, "cameras (" + std::to_string(content.cameras.size()) + ")"}});
    size_t shown = 0;
    for (const PanelCamera& camera : content.cameras)
        if (shown++ < CAMERAS_SHOWN)
            lines.push_back({{0.0f, camera.id == content.selected ? WHITE : GREY,
                              (camera.id == content.selected ? "> " : "  ") + camera.text}});
    if (content.cameras.size() > CAMERAS_SHOWN)
        lines.push_back({{0.0f, GREY, "  and " + std::to_string(content.cameras.size() - CAMERAS_SHOWN) + " more"}});
}

void AddRow(const PanelRow& row, std::vector<PanelLine>& lines)
{
    constexpr size_t VALUE_CHARACTERS = 14, MEANING_CHARACTERS = LINE_CHARACTERS - 26;
    PanelLine line = {{0.0f, GREY, row.name}, {VALUE_COLUMN, WHITE, row.value}};
    if (row.value.size() <= VALUE_CHARACTERS)
        line.push_back({MEANING_COLUMN, GREY, row.meaning.substr(0, MEANING_CHARACTERS)});
    lines.push_back(std::move(line));
}

// A matrix: its name, then its four rows.
void AddMatrixRow(const PanelRow& row, std::vector<PanelLine>& lines)
{
    if (!row.name.empty())
        lines.push_back({{0.0f, GREY, row.name + ": " + row.meaning}});
    lines.push_back({{2.0f * CHARACTER, WHITE, row.value}});
}

std::vector<PanelLine> LinesOf(const PanelContent& content)
{
    std::vector<PanelLine> lines;
    AddCameras(content, lines);
    if (!content.aside.texts.empty())
        AddTitle("changed by hand before the reload", lines);
    for (const std::string& text : content.aside.texts)
        lines.push_back({{0.0f, WHITE, text}});
    if (content.selected < 0)
        return lines;
    AddTitle("why did camera " + std::to_string(content.selected) + " move?", lines);
    for (const std::string& reason : content.reason)
        for (const std::string& part : Broken(reason, LINE_CHARACTERS))
            lines.push_back({{0.0f, WHITE, part}});
    for (const PanelSection& section : content.sections)
    {
        AddTitle(section.title, lines);
        const bool isMatrices = std::string(section.title) == "matrices";
        for (const PanelRow& row : section.rows)
            (isMatrices ? AddMatrixRow : AddRow)(row, lines);
    }
    AddTitle("as Lua", lines);
    for (size_t at = 0; at < content.lua.size();)
    {
        const size_t end = std::min(content.lua.find('\n', at), content.lua.size());
        for (const std::string& part : Broken(content.lua.substr(at, end - at), LINE_CHARACTERS))
            lines.push_back({{0.0f, WHITE, part}});
        at = end + 1;
    }
    return lines;
}

constexpr int LEGEND_LINES = (OVERLAY_KINDS + 1) / 2 + 2;

void PaintLegend(float left, float top, Painter& painter)
{
    PaintText(left, top, "over the views", YELLOW, painter);
    for (int i = 0; i < OVERLAY_KINDS; ++i)
    {
        const auto kind = static_cast<OverlayKind>(i);
        const int line = 1 + i / 2;
        const float x = left + static_cast<float>(i % 2) * 400.0f;
        const float y = top + LINE_HEIGHT * static_cast<float>(line);
        painter.SetColour(ColourOf(kind));
        painter.Rectangle(x, y + 3.0f, x + 18.0f, y + 9.0f);
        PaintText(x + 26.0f, y, StyleOf(kind).name, WHITE, painter);
    }
}
} // namespace

void PaintOverlays(const std::vector<ViewOverlay>& overlays, Painter& painter)
{
    for (const ViewOverlay& overlay : overlays)
        PaintOverlay(overlay, painter);
}

int PanelHeight(const PanelContent& content)
{
    return static_cast<int>(2.0f * MARGIN +
                            LINE_HEIGHT * static_cast<float>(LinesOf(content).size() + size_t{LEGEND_LINES}));
}

void PaintPanel(const PanelContent& content, float left, float height, Painter& painter)
{
    const Port port = {static_cast<int>(left), 0, PANEL_WIDTH, static_cast<int>(height)};
    painter.SetPort(port);
    SetFlatView(left, 0.0f, static_cast<float>(PANEL_WIDTH), height);
    painter.SetAlpha(1.0f);
    painter.SetColour(GROUND);
    painter.Rectangle(left, 0.0f, left + static_cast<float>(PANEL_WIDTH), height);
    float y = MARGIN;
    for (const PanelLine& line : LinesOf(content))
    {
        for (const PanelCell& cell : line)
            PaintText(left + MARGIN + cell.x, y, cell.text, cell.colour, painter);
        y += LINE_HEIGHT;
    }
    PaintLegend(left + MARGIN, y + LINE_HEIGHT, painter);
}
} // namespace Runner
