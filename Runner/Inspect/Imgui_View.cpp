// The inspector's windows by Dear ImGui.
#include "Runner/Inspect/Inspector_View.h"

#include "Files/Graphics/Camera.h"
#include "Runner/Draw/Gl_Kept_Picture.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Inspect/Imgui_Overlays.h"
#include "Runner/Inspect/Number_Text.h"
#include "Runner/Inspect/View_Drag.h"

#include <GLES2/gl2.h>
#include <imgui.h>
#include <imgui_impl_opengl3.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <tuple>

namespace Runner
{
namespace
{
constexpr ImGuiKey_ KEY_MAP[PANEL_KEYS] = {
    ImGuiKey_Tab,    ImGuiKey_LeftArrow, ImGuiKey_RightArrow, ImGuiKey_UpArrow,   ImGuiKey_DownArrow,
    ImGuiKey_Home,   ImGuiKey_End,       ImGuiKey_Delete,     ImGuiKey_Backspace, ImGuiKey_Enter,
    ImGuiKey_Escape, ImGuiKey_A,         ImGuiKey_C,          ImGuiKey_V,         ImGuiKey_X,
};
constexpr float PANEL_SHARE = 0.36f;   // of the canvas' width, at first
constexpr int SETTLING = 4;            // draws in which the library finds its sizes
constexpr float PANEL_AGE = 1.0f / 15; // seconds for which a picture of the panel is shown again

class ImguiView : public InspectorView
{
public:
    ImguiView()
    {
        IMGUI_CHECKVERSION();
        ImGui::CreateContext();
        ImGuiIO& io = ImGui::GetIO();
        io.IniFilename = nullptr; // no file beside the game's own
        io.LogFilename = nullptr;
        for (int key = 0; key < PANEL_KEYS; ++key)
            io.KeyMap[KEY_MAP[key]] = key;
        ImGui::StyleColorsDark();
        ImGui_ImplOpenGL3_Init("#version 100");
    }

    ~ImguiView() override
    {
        ImGui_ImplOpenGL3_Shutdown();
        ImGui::DestroyContext();
    }
    ImguiView(const ImguiView&) = delete;
    ImguiView& operator=(const ImguiView&) = delete;

    std::vector<CameraChange> Draw(Inspector& inspector, const Game& game, const Profile* profile,
                                   const InspectorCanvas& canvas, const PanelInput& input) override
    {
        m_made.clear();
        m_frame = game.FrameNumber();
        m_waited += input.seconds;
        std::vector<ViewOverlay> overlays =
            MakeOverlays(inspector.Notes(), SurfacePlacesOf(inspector.Notes(), *game.CurrentPainter()), m_areas);
        const bool isLeftAlone = IsLeftAlone(inspector, canvas, input);
        const bool isKept = isLeftAlone && m_hasPicture && m_waited < PANEL_AGE;
        if (!isKept)
        {
            const bool isResized = Feed(canvas, input);
            ImGui_ImplOpenGL3_NewFrame();
            ImGui::NewFrame();
            m_overlays.DrawSurfaces(overlays, *game.CurrentPainter(), canvas, isResized);
            DragInViews(inspector, canvas);
            DrawPanel(inspector, profile, isResized);
            ImGui::Render();
        }
        m_overlays.DrawScreen(overlays, canvas, SeenPart(canvas));
        if (!isKept)
            m_hasPicture = isLeftAlone && KeepPanel();
        if (m_hasPicture)
            m_picture.Show(m_panel.x, m_panel.y, canvas.height);
        else
            ShowPanel(canvas);
        changes.insert(changes.end(), m_made.begin(), m_made.end());
        return m_made;
    }

    bool WantsMouse() const override { return ImGui::GetIO().WantCaptureMouse || m_drag.What() != Grip::None; }
    bool WantsKeyboard() const override { return ImGui::GetIO().WantCaptureKeyboard; }

private:
    // Nothing points at the panel and nothing is typed into it: it only shows, and alone.
    bool IsLeftAlone(const Inspector& inspector, const InspectorCanvas& canvas, const PanelInput& input)
    {
        const ImGuiIO& io = ImGui::GetIO();
        const ImVec2 size(static_cast<float>(canvas.width), static_cast<float>(canvas.height));
        const bool isSettled = m_settled >= SETTLING && size.x == io.DisplaySize.x && size.y == io.DisplaySize.y;
        m_settled = std::min(m_settled + 1, SETTLING);
        const auto isDown = [](bool button) { return button; };
        const bool isPressed = std::any_of(input.buttons.begin(), input.buttons.end(), isDown) ||
                               std::any_of(input.clicked.begin(), input.clicked.end(), isDown);
        const float x = input.mouseX - static_cast<float>(m_panel.x), y = input.mouseY - static_cast<float>(m_panel.y);
        const bool isOver =
            x >= 0 && x < static_cast<float>(m_panel.width) && y >= 0 && y < static_cast<float>(m_panel.height);
        return isSettled && m_isOpen && inspector.Notes().SurfaceViews().empty() && !io.WantCaptureMouse &&
               !io.WantCaptureKeyboard && !isPressed && !isOver;
    }

    // True: the canvas has another size than before.
    bool Feed(const InspectorCanvas& canvas, const PanelInput& input)
    {
        ImGuiIO& io = ImGui::GetIO();
        const ImVec2 size(static_cast<float>(canvas.width), static_cast<float>(canvas.height));
        const bool isResized = size.x != io.DisplaySize.x || size.y != io.DisplaySize.y;
        io.DisplaySize = size;
        io.FontGlobalScale = canvas.scale;
        io.DeltaTime = std::max(m_waited, 1e-4f);
        io.MousePos = ImVec2(input.mouseX, input.mouseY);
        io.MouseWheel = input.wheel;
        for (size_t button = 0; button < input.buttons.size(); ++button)
            io.MouseDown[button] = input.buttons[button] || input.clicked[button];
        for (size_t key = 0; key < input.keys.size(); ++key)
            io.KeysDown[key] = input.keys[key] || input.typed[key];
        io.KeyCtrl = input.control;
        io.KeyShift = input.shift;
        io.AddInputCharactersUTF8(input.text.c_str());
        m_waited = 0.0f;
        return isResized;
    }

    // ---- over the views ----

    // On the screen where the panel is not; it often takes a whole side of it.
    Port SeenPart(const InspectorCanvas& canvas) const
    {
        const bool isBeside = m_isOpen && m_isAlone && m_panel.y <= 0 && m_panel.height >= canvas.height &&
                              m_panel.x + m_panel.width >= canvas.width;
        return {0, 0, isBeside ? std::max(m_panel.x, 0) : canvas.width, canvas.height};
    }

    // A drag begins outside of the panel and goes on wherever the mouse is.
    void DragInViews(Inspector& inspector, const InspectorCanvas& canvas)
    {
        const ImGuiIO& io = ImGui::GetIO();
        const Point at = OnScreen(io.MousePos, canvas);
        if (!io.MouseDown[0])
            m_drag = ViewDrag();
        else if (ImGui::IsMouseClicked(0) && !io.WantCaptureMouse)
        {
            m_drag = ViewDrag::Begin(inspector.Notes(), at);
            if (m_drag.What() != Grip::None)
                inspector.Select(m_drag.Camera());
        }
        else if (m_drag.What() != Grip::None && (io.MouseDelta.x != 0.0f || io.MouseDelta.y != 0.0f))
            for (const CameraChange& change : m_drag.To(at, m_frame))
                m_made.push_back(change);
    }

    // ---- the panel ----

    void DrawPanel(Inspector& inspector, const Profile* profile, bool isResized)
    {
        const ImGuiIO& io = ImGui::GetIO();
        const ImGuiCond placing = PlacingOf(isResized);
        const float width =
            std::min(io.DisplaySize.x, std::max(io.DisplaySize.x * PANEL_SHARE, 380.0f * io.FontGlobalScale));
        ImGui::SetNextWindowPos(ImVec2(io.DisplaySize.x - width, 0.0f), placing);
        ImGui::SetNextWindowSize(ImVec2(width, io.DisplaySize.y), placing);
        m_isAlone = inspector.Notes().SurfaceViews().empty();
        ImGui::SetNextWindowBgAlpha(m_isAlone ? 0.0f : 0.9f);
        m_isOpen = ImGui::Begin("Inspector");
        const ImVec2 at = ImGui::GetWindowPos(), size = ImGui::GetWindowSize();
        m_panel = {static_cast<int>(at.x), static_cast<int>(at.y), static_cast<int>(size.x), static_cast<int>(size.y)};
        if (m_isOpen && ImGui::BeginTabBar("pages"))
        {
            if (ImGui::BeginTabItem("Cameras"))
            {
                DrawCameras(inspector);
                ImGui::EndTabItem();
            }
            if (profile != nullptr && ImGui::BeginTabItem("Where the frame goes"))
            {
                DrawProfile(profile->Content());
                ImGui::EndTabItem();
            }
            ImGui::EndTabBar();
        }
        ImGui::End();
    }

    // The ground of the panel is cleared and not blended, where no other window can lie behind it: for a driver in
    // software that is half of the panel's cost.
    static void FillGround(int x, int low, int width, int height)
    {
        glScissor(x, low, std::max(width, 0), std::max(height, 0));
        glClearColor(0.06f, 0.06f, 0.08f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    void ShowPanel(const InspectorCanvas& canvas) const
    {
        if (m_isAlone && m_isOpen)
            FillGround(m_panel.x, canvas.height - m_panel.y - m_panel.height, m_panel.width, m_panel.height);
        ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
    }

    // Draws the panel into the picture of it, upside down as that wants it. False where the driver has none.
    bool KeepPanel()
    {
        if (!m_picture.Begin(m_panel.width, m_panel.height))
            return false;
        FillGround(0, 0, m_panel.width, m_panel.height);
        ImDrawData& data = *ImGui::GetDrawData();
        data.DisplayPos = ImVec2(static_cast<float>(m_panel.x), static_cast<float>(m_panel.y));
        data.DisplaySize = ImVec2(static_cast<float>(m_panel.width), static_cast<float>(m_panel.height));
        const float edges = 2.0f * data.DisplayPos.y + data.DisplaySize.y; // the upper and the lower one
        for (int i = 0; i < data.CmdListsCount; ++i)
        {
            for (ImDrawVert& corner : data.CmdLists[i]->VtxBuffer)
                corner.pos.y = edges - corner.pos.y;
            for (ImDrawCmd& command : data.CmdLists[i]->CmdBuffer)
                std::tie(command.ClipRect.y, command.ClipRect.w) =
                    std::make_pair(edges - command.ClipRect.w, edges - command.ClipRect.y);
        }
        ImGui_ImplOpenGL3_RenderDrawData(&data);
        m_picture.End();
        return true;
    }

    void DrawCameras(Inspector& inspector)
    {
        const PanelContent content = inspector.Content();
        if (ImGui::BeginListBox("##cameras", ImVec2(-FLT_MIN, 6.0f * ImGui::GetTextLineHeightWithSpacing())))
        {
            ImGuiListClipper clipper; // of a thousand cameras, those that the box shows
            clipper.Begin(static_cast<int>(content.cameras.size()));
            while (clipper.Step())
                for (int row = clipper.DisplayStart; row < clipper.DisplayEnd; ++row)
                    ListCamera(content.cameras[static_cast<size_t>(row)], content.selected, inspector);
            ImGui::EndListBox();
        }
        DrawAside(content.aside, inspector);
        const CCamera* camera = PeekCamera(content.selected);
        if (camera == nullptr)
            return;
        ImGui::TextColored(ImVec4(1.0f, 0.85f, 0.4f, 1.0f), "Why did camera %d move?", content.selected);
        for (const std::string& line : content.reason)
            ImGui::TextWrapped("%s", line.c_str());
        if (ImGui::Button("Copy as Lua") && copy != nullptr)
            copy(content.lua);
        DrawChanges();
        for (const PanelSection& section : content.sections)
            DrawSection(section, *camera);
    }

    static void ListCamera(const PanelCamera& camera, int selected, Inspector& inspector)
    {
        const std::string label = camera.text + "##" + std::to_string(camera.slot);
        if (ImGui::Selectable(label.c_str(), camera.id == selected))
            inspector.Select(camera.id);
    }

    void DrawAside(const PanelAside& aside, Inspector& inspector)
    {
        if (aside.changes.empty())
            return;
        ImGui::TextColored(ImVec4(1.0f, 0.85f, 0.4f, 1.0f), "Changed by hand before the reload");
        for (const std::string& text : aside.texts)
            ImGui::TextWrapped("%s", text.c_str());
        if (ImGui::Button("Copy as Lua##aside") && copy != nullptr)
            copy(aside.lua);
        ImGui::SameLine();
        if (!ImGui::Button("Apply again"))
            return;
        for (CameraChange change : aside.changes)
        {
            change.frame = m_frame;
            m_made.push_back(change);
        }
        inspector.aside.clear();
    }

    // One line also without any, so that nothing below moves away under the mouse with the first change.
    void DrawChanges()
    {
        if (changes.empty())
            return ImGui::NewLine();
        const CameraChange& last = changes.back();
        ImGui::TextDisabled("%zu changes by hand, the last: camera %d, %s = %s", changes.size(), last.camera,
                            last.field.c_str(), NumberText(last.value).c_str());
    }

    void DrawSection(const PanelSection& section, const CCamera& camera)
    {
        const bool isOpen = std::string(section.title) != "matrices";
        if (!ImGui::CollapsingHeader(section.title, isOpen ? ImGuiTreeNodeFlags_DefaultOpen : 0))
            return;
        if (!ImGui::BeginTable(section.title, 2, ImGuiTableFlags_SizingStretchProp))
            return;
        ImGui::TableSetupColumn("name", ImGuiTableColumnFlags_WidthFixed, 7.5f * ImGui::GetFontSize());
        ImGui::TableSetupColumn("value", ImGuiTableColumnFlags_WidthStretch);
        for (const PanelRow& row : section.rows)
            DrawRow(row, camera);
        ImGui::EndTable();
    }

    void DrawRow(const PanelRow& row, const CCamera& camera)
    {
        ImGui::TableNextRow();
        ImGui::TableNextColumn();
        ImGui::TextUnformatted(row.name.c_str());
        if (ImGui::IsItemHovered())
            ImGui::SetTooltip("%s%s%s%s%s", row.meaning.c_str(), *row.range == '\0' ? "" : "\nrange: ", row.range,
                              row.setBy.empty() ? "" : "\nset by ", row.setBy.c_str());
        ImGui::TableNextColumn();
        if (row.field == nullptr)
            ImGui::TextUnformatted(row.value.c_str());
        else
            DrawEditor(row, *row.field, camera);
    }

    // By dragging, or by typing after a double click.
    void DrawEditor(const PanelRow& row, const CameraField& field, const CCamera& camera)
    {
        ImGui::SetNextItemWidth(9.0f * ImGui::GetFontSize());
        const std::string label = std::string("##") + field.name;
        float value = ValueOf(camera, field);
        bool isChanged = false;
        if (field.member != nullptr)
            isChanged = ImGui::DragFloat(label.c_str(), &value, 0.5f, 0.0f, 0.0f, "%.7g");
        else
        {
            int target = camera.m_targetInstance;
            isChanged = ImGui::InputInt(label.c_str(), &target, 0, 0, ImGuiInputTextFlags_EnterReturnsTrue);
            value = static_cast<float>(target);
        }
        if (isChanged && std::isfinite(value)) // a typed number may be too large
            m_made.push_back({m_frame, camera.GetID(), field.name, value});
        ImGui::SameLine();
        ImGui::TextDisabled("%s", field.member == nullptr ? row.value.c_str() : row.unit);
    }

    static void DrawProfile(const ProfileContent& content)
    {
        ImGui::Text("the last %zu frames, milliseconds a frame", content.frames);
        if (!ImGui::BeginTable("parts", 3, ImGuiTableFlags_SizingFixedFit)) // whole names
            return;
        const auto row = [](const char* name, double milliseconds, const std::string& more)
        {
            ImGui::TableNextRow();
            ImGui::TableNextColumn();
            ImGui::TextUnformatted(name);
            ImGui::TableNextColumn();
            ImGui::Text("%9.3f", milliseconds);
            ImGui::TableNextColumn();
            ImGui::TextUnformatted(more.c_str());
        };
        row("a frame", content.whole, "");
        row("the longest", content.longest, "");
        for (int part = 0; part < FRAME_PARTS; ++part)
            row(NameOf(static_cast<FramePart>(part)), content.parts[static_cast<size_t>(part)], "");
        row("the rest", content.rest, "");
        for (const DearEvent& event : content.dearest)
            row((event.owner + ": " + event.event).c_str(), event.milliseconds,
                NumberText(static_cast<float>(event.calls)) + " calls");
        ImGui::EndTable();
    }

    CameraAreas m_areas;
    ImguiOverlays m_overlays;
    GlKeptPicture m_picture;   // of the panel, while nobody uses it
    bool m_hasPicture = false; // it is that of the panel as it stands
    float m_waited = 0.0f;     // seconds since the panel was made anew
    int m_settled = 0;         // draws, up to SETTLING
    Port m_panel;              // on the canvas, as it was made last
    bool m_isOpen = false;     // it is not rolled up
    bool m_isAlone = true;     // no other window can lie behind it
    ViewDrag m_drag;
    std::vector<CameraChange> m_made;
    int m_frame = 0;
};
} // namespace

std::unique_ptr<InspectorView> InspectorView::Open() { return std::make_unique<ImguiView>(); }
} // namespace Runner
