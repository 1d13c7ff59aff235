#include "Runner/Inspect/Panel_Content.h"

#include "Files/Graphics/Camera_GCProxy.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Room/Room.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Value.h"
#include "Runner/Inspect/Lua_Lines.h"
#include "Runner/Inspect/Number_Text.h"
#include "Runner/Inspect/Step_Reason.h"
#include "Runner/Lua/Function_Place.h"
#include "Runner/World/Camera_Callbacks.h"

namespace Runner
{
namespace
{
PanelRow Told(std::string name, std::string value, std::string meaning, std::string setBy = "")
{
    return {std::move(name), std::move(value), "", "", std::move(meaning), std::move(setBy), nullptr};
}

std::string YesNo(bool truth) { return truth ? "yes" : "no"; }

// ---- what a camera follows and who shows it ----

std::string TargetText(const Game& game, const CCamera& camera)
{
    const int target = camera.m_targetInstance;
    if (target < 0)
        return std::to_string(target) + " (nothing)";
    const CInstance* found = camera.FindTarget();
    if (target >= INSTANCE_ID_FIRST)
        return std::to_string(target) + (found == nullptr ? " (not active)" : "");
    const ObjectType* type = game.world.FindObject(target);
    const std::string name = type == nullptr ? "no object" : type->name;
    return std::to_string(target) + " (" + name +
           (found == nullptr ? ", none active)" : ", now " + std::to_string(found->m_id) + ")");
}

// "view 0", "view 0, 2", "the default camera"; empty for a camera that nothing shows.
std::string ShownBy(const Game& game, int id)
{
    std::string views;
    const RunningRoom* room = game.rooms.Running();
    for (int i = 0; room != nullptr && i < ROOM_VIEWS; ++i)
        if (room->views[static_cast<size_t>(i)].visible && room->views[static_cast<size_t>(i)].cameraID == id)
            views += (views.empty() ? "view " : ", ") + std::to_string(i);
    const bool isDefault = id == g_DefaultCameraID;
    return views + (isDefault ? (views.empty() ? "the default camera" : ", the default camera") : "");
}

std::string ListText(const Game& game, const CCamera& camera)
{
    const std::string shown = ShownBy(game, camera.GetID());
    std::string text = std::to_string(camera.GetID()) + ": " + (shown.empty() ? "not shown" : shown);
    if (HasUpdateScript(camera))
        text += ", update callback";
    else if (camera.m_targetInstance >= 0)
        text += ", follows " + TargetText(game, camera);
    return text + (camera.IsCloned() ? ", clone" : "");
}

// ---- sections ----

PanelRow FieldRow(const Game& game, const CCamera& camera, const CameraField& field)
{
    const std::string value = field.member == nullptr ? TargetText(game, camera) : NumberText(ValueOf(camera, field));
    return {field.name, value, field.unit, field.range, field.meaning, field.setBy, &field};
}

PanelSection FieldSection(const char* title, const Game& game, const CCamera& camera, bool ofView)
{
    PanelSection section = {title, {}};
    for (const CameraField& field : CAMERA_FIELDS)
        if (field.isOfView == ofView)
            section.rows.push_back(FieldRow(game, camera, field));
    return section;
}

PanelSection FlagSection(const CCamera& camera)
{
    return {"flags",
            {Told("flat", YesNo(camera.Is2D()), "a parallel projection that looks straight along z"),
             Told("dirty", YesNo(camera.IsViewDirty()), "the view changed since the matrices were built"),
             Told("clone", YesNo(camera.IsCloned()), "goes with its room unless it is persistent"),
             Told("persistent", YesNo(camera.isPersistent()), "a clone that stays")}};
}

std::string CallbackText(const RValue& value)
{
    int number = -1;
    if (ScriptNumberOf(value, number) && number == -1)
        return "none";
    const std::string place = PlaceOf(value);
    const std::string text = KvKind(value) == VALUE_OBJECT ? "function" : Describe(value);
    return place.empty() ? text : text + " at " + place;
}

PanelSection CallbackSection(const CCamera& camera)
{
    constexpr const char* MEANINGS[] = {"runs before the camera's update", "runs instead of following the target",
                                        "runs after the view was drawn"};
    PanelSection section = {"callbacks", {}};
    const char* const* meaning = MEANINGS;
    for (const CameraCallback& callback : CAMERA_CALLBACKS)
        section.rows.push_back(Told(callback.name, CallbackText(camera.*callback.value), *meaning++,
                                    std::string("camera_set_") + callback.name + "_script"));
    return section;
}

PanelSection RegistrySection(const Game& game, const CCamera& camera, int slot)
{
    const std::string shown = ShownBy(game, camera.GetID());
    const Camera_GCProxy* proxy = camera.pGCProxy;
    return {"registry",
            {Told("identifier", std::to_string(camera.GetID()), "the number under which scripts know it"),
             Told("slot", std::to_string(slot), "its place in the manager's table"),
             Told("proxy", proxy == nullptr ? "none" : "collector slot " + std::to_string(proxy->m_slot),
                  "keeps functions in its callbacks alive; made with the first"),
             Told("shown by", shown.empty() ? "nothing" : shown, "visible views and the default camera",
                  "view_set_camera, camera_set_default")}};
}

void AddMatrix(const char* name, const kvMatrix& matrix, const char* meaning, const char* setBy, PanelSection& section)
{
    for (int row = 0; row < 4; ++row)
    {
        std::string value;
        for (int column = 0; column < 4; ++column)
            value += (column == 0 ? "" : "  ") + NumberText(matrix.m[row * 4 + column]);
        section.rows.push_back(Told(row == 0 ? name : "", value, row == 0 ? meaning : "", row == 0 ? setBy : ""));
    }
}

PanelSection MatrixSection(const CCamera& camera)
{
    PanelSection section = {"matrices", {}};
    AddMatrix("view", camera.m_viewMat, "room to view space", "camera_set_view_mat", section);
    AddMatrix("projection", camera.m_projMat, "view to clip space", "camera_set_proj_mat", section);
    AddMatrix("view-projection", camera.m_viewProjMat, "room to clip space: view times projection", "", section);
    AddMatrix("inverse view", camera.m_invViewMat, "view to room space; the fourth row is the eye", "", section);
    AddMatrix("inverse projection", camera.m_invProjMat, "clip to view space", "", section);
    AddMatrix("inverse view-projection", camera.m_invViewProjMat, "clip to room space", "", section);
    return section;
}

int SlotOf(int id)
{
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
        if (g_CM.m_cameras[slot] != nullptr && g_CM.m_cameras[slot]->GetID() == id)
            return slot;
    return -1;
}
} // namespace

const CCamera* PeekCamera(int id)
{
    const int slot = SlotOf(id);
    return slot < 0 ? nullptr : g_CM.m_cameras[slot];
}

void CopyForBuilding(const CCamera& camera, CCamera& built)
{
    built.CopyViewFrom(camera);
    built.SetViewMat(camera.m_viewMat);
    built.SetProjMat(camera.m_projMat);
    built.m_isViewDirty = camera.m_isViewDirty;
}

int SelectCamera(const FrameNotes& notes, int wanted)
{
    if (PeekCamera(wanted) != nullptr)
        return wanted;
    for (const ViewNote& view : notes.Views())
        if (PeekCamera(view.camera) != nullptr)
            return view.camera;
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
        if (g_CM.m_cameras[slot] != nullptr)
            return g_CM.m_cameras[slot]->GetID();
    return -1;
}

PanelAside DescribeAside(const std::vector<CameraChange>& changes)
{
    PanelAside aside;
    aside.changes = changes;
    for (const CameraChange& change : changes)
    {
        const bool isThere = PeekCamera(change.camera) != nullptr;
        aside.texts.push_back("camera " + std::to_string(change.camera) + ": " + change.field + " = " +
                              NumberText(change.value) + (isThere ? "" : " (there is no such camera now)"));
    }
    aside.lua = LuaLines(changes);
    return aside;
}

PanelContent DescribePanel(const Game& game, const FrameNotes& notes, int selected)
{
    PanelContent content;
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
        if (const CCamera* camera = g_CM.m_cameras[slot])
            content.cameras.push_back({camera->GetID(), slot, ListText(game, *camera)});
    content.selected = SelectCamera(notes, selected);
    const int slot = SlotOf(content.selected);
    if (slot < 0)
        return content;
    const CCamera& camera = *g_CM.m_cameras[slot];
    content.sections = {FieldSection("view", game, camera, true),
                        FieldSection("following", game, camera, false),
                        FlagSection(camera),
                        CallbackSection(camera),
                        RegistrySection(game, camera, slot),
                        MatrixSection(camera)};
    content.reason = ReasonLines(notes.StepOf(content.selected), camera);
    content.lua = LuaLines(camera);
    return content;
}
} // namespace Runner
