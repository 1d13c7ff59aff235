// The inspector's windows by Dear ImGui.
#include "Runner/Inspect/Inspector_View.h"

#include "Files/Graphics/Camera.h"
#include "Runner/Draw/Painter.h"
#include "Runner/Game/Game.h"
#include "Runner/Inspect/Number_Text.h"
#include "Runner/Inspect/View_Drag.h"

#include <GLES2/gl2.h>
#include <imgui.h>
#include <imgui_impl_opengl3.h>

#include <algorithm>
#include <cfloat>

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
constexpr float SURFACE_SHARE = 0.25f; // the same of the window of a surface, at most
constexpr float SURFACE_MARGIN = 8.0f; // pixels between windows

ImU32 ColourOf(OverlayKind kind)
{
    const OverlayStyle& style = StyleOf(kind);
    return IM_COL32(style.red, style.green, style.blue, 255);
}

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
        Feed(canvas, input);
        ImGui_ImplOpenGL3_NewFrame();
        ImGui::NewFrame();
        DrawOverlays(inspector.Notes(), canvas, *game.CurrentPainter());
        DragInViews(inspector, canvas);
        DrawPanel(inspector, profile, canvas);
        ImGui::Render();
        ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
        changes.insert(changes.end(), m_made.begin(), m_made.end());
        return m_made;
    }

    bool WantsMouse() const override { return ImGui::GetIO().WantCaptureMouse || m_drag.What() != Grip::None; }
    bool WantsKeyboard() const override { return ImGui::GetIO().WantCaptureKeyboard; }

private:
    static void Feed(const InspectorCanvas& canvas, const PanelInput& input)
    {
        ImGuiIO& io = ImGui::GetIO();
        io.DisplaySize = ImVec2(static_cast<float>(canvas.width), static_cast<float>(canvas.height));
        io.FontGlobalScale = canvas.scale;
        io.DeltaTime = std::max(input.seconds, 1e-4f);
        io.MousePos = ImVec2(input.mouseX, input.mouseY);
        io.MouseWheel = input.wheel;
        for (size_t button = 0; button < input.buttons.size(); ++button)
            io.MouseDown[button] = input.buttons[button] || input.clicked[button];
        for (size_t key = 0; key < input.keys.size(); ++key)
            io.KeysDown[key] = input.keys[key] || input.typed[key];
        io.KeyCtrl = input.control;
        io.KeyShift = input.shift;
        io.AddInputCharactersUTF8(input.text.c_str());
    }

    // ---- over the views ----

    static ImVec2 OnCanvas(const Point& point, const InspectorCanvas& canvas)
    {
        return {static_cast<float>(canvas.game.x + point.x * canvas.game.width / canvas.screenWidth),
                static_cast<float>(canvas.game.y + point.y * canvas.game.height / canvas.screenHeight)};
    }

    static Point OnScreen(const ImVec2& at, const InspectorCanvas& canvas)
    {
        return {(static_cast<double>(at.x) - canvas.game.x) * canvas.screenWidth / canvas.game.width,
                (static_cast<double>(at.y) - canvas.game.y) * canvas.screenHeight / canvas.game.height};
    }

    // A surface is shown in a window of its own, in its own pixels.
    static void DrawOverlays(const FrameNotes& notes, const InspectorCanvas& canvas, const Painter& painter)
    {
        SurfacePlaces places;
        for (const ViewNote* note : notes.SurfaceViews())
            if (painter.SurfaceTexture(note->surface) != 0)
                places[note->surface] = {0, 0, note->port.width, note->port.height};
        float top = SURFACE_MARGIN;
        for (ViewOverlay& overlay : MakeOverlays(notes, places))
            if (overlay.surface == SCREEN_SURFACE)
                DrawOverlay(*ImGui::GetBackgroundDrawList(), overlay, canvas);
            else
                DrawSurface(overlay, painter.SurfaceTexture(overlay.surface), canvas, top);
    }

    // At first the windows stand below each other on the left. top: of the next one.
    static void DrawSurface(ViewOverlay& overlay, unsigned texture, const InspectorCanvas& canvas, float& top)
    {
        const auto width = static_cast<float>(overlay.port.width), height = static_cast<float>(overlay.port.height);
        const float share = std::min(1.0f, SURFACE_SHARE * static_cast<float>(canvas.width) / width);
        const ImGuiStyle& style = ImGui::GetStyle();
        const ImVec2 size(width * share + 2.0f * style.WindowPadding.x,
                          height * share + 2.0f * style.WindowPadding.y + ImGui::GetFrameHeight());
        ImGui::SetNextWindowPos(ImVec2(SURFACE_MARGIN, top), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(size, ImGuiCond_FirstUseEver);
        top += size.y + SURFACE_MARGIN;
        const std::string title = LabelOf(overlay) + "###surface" + std::to_string(overlay.surface);
        if (ImGui::Begin(title.c_str(), nullptr, ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoFocusOnAppearing))
        {
            const ImVec2 room = ImGui::GetContentRegionAvail();
            const float scale = std::max(0.01f, std::min(room.x / width, room.y / height));
            ImGui::Image(TextureOf(texture), ImVec2(width * scale, height * scale));
            const ImVec2 low = ImGui::GetItemRectMin();
            DrawOverlay(*ImGui::GetWindowDrawList(), overlay,
                        {canvas.width,
                         canvas.height,
                         {static_cast<int>(low.x), static_cast<int>(low.y), static_cast<int>(width * scale),
                          static_cast<int>(height * scale)},
                         overlay.port.width,
                         overlay.port.height,
                         canvas.scale});
        }
        ImGui::End();
    }

    // A number of the driver, in the pointer type that the library has for it.
    static ImTextureID TextureOf(unsigned texture)
    {
        return reinterpret_cast<ImTextureID>(static_cast<intptr_t>(texture)); // NOLINT(performance-no-int-to-ptr)
    }

    static void DrawOverlay(ImDrawList& list, ViewOverlay& overlay, const InspectorCanvas& canvas)
    {
        const Port& port = overlay.port;
        const ImVec2 letter = ImGui::CalcTextSize("m");
        const double letterWidth = static_cast<double>(letter.x) * canvas.screenWidth / std::max(1, canvas.game.width);
        const double lineHeight = static_cast<double>(letter.y) * canvas.screenHeight / std::max(1, canvas.game.height);
        SpreadTexts(overlay, letterWidth, lineHeight);
        const Point low = {static_cast<double>(port.x), static_cast<double>(port.y)};
        const Point high = {low.x + port.width, low.y + port.height};
        list.PushClipRect(OnCanvas(low, canvas), OnCanvas(high, canvas), true);
        for (const OverlayLine& line : overlay.lines)
            if (MayShow(line, port))
                list.AddLine(OnCanvas(line.from, canvas), OnCanvas(line.to, canvas), ColourOf(line.kind),
                             StyleOf(line.kind).width);
        for (const OverlayText& text : overlay.texts)
            if (text.at.x < high.x && text.at.x + letterWidth * static_cast<double>(text.text.size()) > low.x &&
                text.at.y < high.y && text.at.y + lineHeight > low.y)
                AddText(list, OnCanvas(text.at, canvas), ColourOf(text.kind), text.text);
        if (overlay.surface == SCREEN_SURFACE) // a window has its title
            AddText(list, OnCanvas(LabelPlace(overlay), canvas), IM_COL32_WHITE, LabelOf(overlay));
        list.PopClipRect();
    }

    static void AddText(ImDrawList& list, const ImVec2& at, ImU32 colour, const std::string& text)
    {
        const ImVec2 size = ImGui::CalcTextSize(text.c_str());
        list.AddRectFilled(ImVec2(at.x - 2.0f, at.y - 1.0f), ImVec2(at.x + size.x + 2.0f, at.y + size.y + 1.0f),
                           IM_COL32(0, 0, 0, 165));
        list.AddText(at, colour, text.c_str());
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

    void DrawPanel(Inspector& inspector, const Profile* profile, const InspectorCanvas& canvas)
    {
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        const float width = std::min(display.x, std::max(display.x * PANEL_SHARE, 380.0f * canvas.scale));
        ImGui::SetNextWindowPos(ImVec2(display.x - width, 0.0f), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(width, display.y), ImGuiCond_FirstUseEver);
        const bool isAlone = inspector.Notes().SurfaceViews().empty();
        ImGui::SetNextWindowBgAlpha(isAlone ? 0.0f : 0.9f);
        const bool isOpen = ImGui::Begin("Inspector");
        if (isAlone)
            FillPanel(isOpen, canvas);
        if (isOpen && ImGui::BeginTabBar("pages"))
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

    // The ground of the panel, cleared and not blended: for a driver in software that is half of the panel's cost. Only
    // where no other window can lie behind it.
    void FillPanel(bool isOpen, const InspectorCanvas& canvas)
    {
        const ImVec2 at = ImGui::GetWindowPos(), size = ImGui::GetWindowSize();
        m_ground = {static_cast<int>(at.x), canvas.height - static_cast<int>(at.y + size.y), static_cast<int>(size.x),
                    static_cast<int>(size.y)};
        if (isOpen && m_ground.width > 0 && m_ground.height > 0)
            ImGui::GetBackgroundDrawList()->AddCallback(ClearGround, &m_ground);
    }

    // The library sets its own scissor for each piece that it draws afterwards.
    static void ClearGround(const ImDrawList*, const ImDrawCmd* command)
    {
        const Port& ground = *static_cast<const Port*>(command->UserCallbackData);
        glScissor(ground.x, ground.y, ground.width, ground.height);
        glClearColor(0.06f, 0.06f, 0.08f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
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

    void DrawChanges()
    {
        if (changes.empty())
            return;
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
        if (isChanged)
            m_made.push_back({m_frame, camera.GetID(), field.name, value});
        ImGui::SameLine();
        ImGui::TextDisabled("%s", field.member == nullptr ? row.value.c_str() : row.unit);
    }

    static void DrawProfile(const ProfileContent& content)
    {
        ImGui::Text("the last %zu frames, milliseconds a frame", content.frames);
        if (!ImGui::BeginTable("parts", 3))
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

    ViewDrag m_drag;
    Port m_ground; // of the panel, from the lower left corner as the driver counts
    std::vector<CameraChange> m_made;
    int m_frame = 0;
};
} // namespace

std::unique_ptr<InspectorView> InspectorView::Open() { return std::make_unique<ImguiView>(); }
} // namespace Runner
