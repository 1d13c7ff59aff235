#include "Runner/Inspect/Imgui_Overlays.h"

#include "Runner/Draw/Painter.h"
#include "Runner/Inspect/Frame_Notes.h"
#include "Runner/World/View_Fields.h"

#include <imgui_impl_opengl3.h>

#include <algorithm>

namespace Runner
{
namespace
{
constexpr float SURFACE_SHARE = 0.25f; // of the canvas' width, for the window of a surface, at most
constexpr float SURFACE_MARGIN = 8.0f; // pixels between windows

ImU32 ColourOf(OverlayKind kind)
{
    const OverlayStyle& style = StyleOf(kind);
    return IM_COL32(style.red, style.green, style.blue, 255);
}

void AddText(ImDrawList& list, const ImVec2& at, ImU32 colour, const std::string& text)
{
    const ImVec2 size = ImGui::CalcTextSize(text.c_str());
    list.AddRectFilled(ImVec2(at.x - 2.0f, at.y - 1.0f), ImVec2(at.x + size.x + 2.0f, at.y + size.y + 1.0f),
                       IM_COL32(0, 0, 0, 165));
    list.AddText(at, colour, text.c_str());
}

// The texts of an overlay, with its name over a view of the screen; a window has its title.
void AddTexts(ImDrawList& list, ViewOverlay& overlay, const InspectorCanvas& canvas)
{
    const ImVec2 letter = ImGui::CalcTextSize("m");
    const double letterWidth = static_cast<double>(letter.x) * canvas.screenWidth / std::max(1, canvas.game.width);
    const double lineHeight = static_cast<double>(letter.y) * canvas.screenHeight / std::max(1, canvas.game.height);
    SpreadTexts(overlay, letterWidth, lineHeight);
    const Port& port = overlay.port;
    for (const OverlayText& text : overlay.texts)
        if (text.at.x < port.x + port.width && text.at.y < port.y + port.height &&
            text.at.x + letterWidth * static_cast<double>(text.text.size()) > port.x && text.at.y + lineHeight > port.y)
            AddText(list, OnCanvas(text.at, canvas), ColourOf(text.kind), text.text);
    if (overlay.surface == SCREEN_SURFACE)
        AddText(list, OnCanvas(LabelPlace(overlay), canvas), IM_COL32_WHITE, LabelOf(overlay));
}

// The part of the canvas that a port takes.
Port PortOnCanvas(const Port& port, const InspectorCanvas& canvas)
{
    const ImVec2 low = OnCanvas({static_cast<double>(port.x), static_cast<double>(port.y)}, canvas);
    const ImVec2 high =
        OnCanvas({static_cast<double>(port.x) + port.width, static_cast<double>(port.y) + port.height}, canvas);
    const int x = static_cast<int>(low.x), y = static_cast<int>(low.y);
    return {x, y, static_cast<int>(high.x) - x, static_cast<int>(high.y) - y};
}

void PushClip(ImDrawList& list, const Port& port)
{
    list.PushClipRect(ImVec2(static_cast<float>(port.x), static_cast<float>(port.y)),
                      ImVec2(static_cast<float>(port.x + port.width), static_cast<float>(port.y + port.height)), true);
}

// In the window of the library that is being made.
void DrawInWindow(ViewOverlay& overlay, const InspectorCanvas& canvas)
{
    ImDrawList& list = *ImGui::GetWindowDrawList();
    PushClip(list, PortOnCanvas(overlay.port, canvas));
    for (const OverlayLine& line : overlay.lines)
        if (MayShow(line, overlay.port))
            list.AddLine(OnCanvas(line.from, canvas), OnCanvas(line.to, canvas), ColourOf(line.kind),
                         StyleOf(line.kind).width);
    AddTexts(list, overlay, canvas);
    list.PopClipRect();
}

// Draws a list that no window has.
void Render(ImDrawList& list, const InspectorCanvas& canvas)
{
    ImDrawList* lists[] = {&list};
    ImDrawData data;
    data.Valid = true;
    data.CmdLists = lists;
    data.CmdListsCount = 1;
    data.TotalIdxCount = list.IdxBuffer.Size;
    data.TotalVtxCount = list.VtxBuffer.Size;
    data.DisplaySize = ImVec2(static_cast<float>(canvas.width), static_cast<float>(canvas.height));
    data.FramebufferScale = ImVec2(1.0f, 1.0f);
    ImGui_ImplOpenGL3_RenderDrawData(&data);
}

// A number of the driver, in the pointer type that the library has for it.
ImTextureID TextureOf(unsigned texture)
{
    return reinterpret_cast<ImTextureID>(static_cast<intptr_t>(texture)); // NOLINT(performance-no-int-to-ptr)
}

// At first the windows stand below each other on the left. top: of the next one.
void DrawSurface(ViewOverlay& overlay, unsigned texture, const InspectorCanvas& canvas, ImGuiCond placing, float& top)
{
    const auto width = static_cast<float>(overlay.port.width), height = static_cast<float>(overlay.port.height);
    const float share = std::min(1.0f, SURFACE_SHARE * static_cast<float>(canvas.width) / width);
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImVec2 size(width * share + 2.0f * style.WindowPadding.x,
                      height * share + 2.0f * style.WindowPadding.y + ImGui::GetFrameHeight());
    ImGui::SetNextWindowPos(ImVec2(SURFACE_MARGIN, top), placing);
    ImGui::SetNextWindowSize(size, placing);
    top += size.y + SURFACE_MARGIN;
    const std::string title = LabelOf(overlay) + "###surface" + std::to_string(overlay.surface);
    if (ImGui::Begin(title.c_str(), nullptr, ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoFocusOnAppearing))
    {
        const ImVec2 room = ImGui::GetContentRegionAvail();
        const float scale = std::max(0.01f, std::min(room.x / width, room.y / height));
        ImGui::Image(TextureOf(texture), ImVec2(width * scale, height * scale));
        const ImVec2 low = ImGui::GetItemRectMin();
        DrawInWindow(overlay, {canvas.width,
                               canvas.height,
                               {static_cast<int>(low.x), static_cast<int>(low.y), static_cast<int>(width * scale),
                                static_cast<int>(height * scale)},
                               overlay.port.width,
                               overlay.port.height,
                               canvas.scale});
    }
    ImGui::End();
}
} // namespace

ImVec2 OnCanvas(const Point& point, const InspectorCanvas& canvas)
{
    return {static_cast<float>(canvas.game.x + point.x * canvas.game.width / canvas.screenWidth),
            static_cast<float>(canvas.game.y + point.y * canvas.game.height / canvas.screenHeight)};
}

Point OnScreen(const ImVec2& at, const InspectorCanvas& canvas)
{
    return {(static_cast<double>(at.x) - canvas.game.x) * canvas.screenWidth / canvas.game.width,
            (static_cast<double>(at.y) - canvas.game.y) * canvas.screenHeight / canvas.game.height};
}

ImGuiCond PlacingOf(bool isResized) { return isResized ? ImGuiCond_Always : ImGuiCond_FirstUseEver; }

SurfacePlaces SurfacePlacesOf(const FrameNotes& notes, const Painter& painter)
{
    SurfacePlaces places;
    for (const ViewNote* note : notes.SurfaceViews())
        if (painter.SurfaceTexture(note->surface) != 0)
            places[note->surface] = {0, 0, note->port.width, note->port.height};
    return places;
}

ImguiOverlays::ImguiOverlays()
{
    std::string ignored; // without the program there are no lines
    m_lines.Open(ignored);
}

void ImguiOverlays::DrawSurfaces(std::vector<ViewOverlay>& overlays, const Painter& painter,
                                 const InspectorCanvas& canvas, bool isResized)
{
    float top = SURFACE_MARGIN;
    for (ViewOverlay& overlay : overlays)
        if (overlay.surface != SCREEN_SURFACE)
            DrawSurface(overlay, painter.SurfaceTexture(overlay.surface), canvas, PlacingOf(isResized), top);
}

void ImguiOverlays::DrawScreen(std::vector<ViewOverlay>& overlays, const InspectorCanvas& canvas, const Port& seen)
{
    ImDrawList list(ImGui::GetDrawListSharedData());
    list._ResetForNewFrame();
    list.PushTextureID(ImGui::GetIO().Fonts->TexID);
    list.PushClipRectFullScreen();
    PushClip(list, seen);
    for (ViewOverlay& overlay : overlays)
    {
        if (overlay.surface != SCREEN_SURFACE)
            continue;
        DrawLines(overlay, canvas, seen);
        PushClip(list, PortOnCanvas(overlay.port, canvas));
        AddTexts(list, overlay, canvas);
        list.PopClipRect();
    }
    Render(list, canvas);
}

void ImguiOverlays::DrawLines(const ViewOverlay& overlay, const InspectorCanvas& canvas, const Port& seen)
{
    for (const OverlayLine& line : overlay.lines)
    {
        if (!MayShow(line, overlay.port))
            continue;
        const OverlayStyle& style = StyleOf(line.kind);
        const ImVec2 from = OnCanvas(line.from, canvas), to = OnCanvas(line.to, canvas);
        m_lines.Add(
            from.x, from.y, to.x, to.y, style.width,
            {static_cast<uint8_t>(style.red), static_cast<uint8_t>(style.green), static_cast<uint8_t>(style.blue)});
    }
    const Port port = PortOnCanvas(overlay.port, canvas);
    const int right = std::min(port.x + port.width, seen.x + seen.width);
    m_lines.Draw({port.x, port.y, std::min(port.width, right - port.x), port.height}, canvas.height);
}
} // namespace Runner
