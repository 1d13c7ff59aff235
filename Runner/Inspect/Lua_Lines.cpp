#include "Runner/Inspect/Lua_Lines.h"

#include "Runner/Inspect/Number_Text.h"
#include "Runner/Inspect/Panel_Content.h"
#include "Runner/Lua/Function_Place.h"
#include "Runner/World/Camera_Callbacks.h"

#include <algorithm>

namespace Runner
{
namespace
{
bool AreSame(const kvMatrix& a, const kvMatrix& b) { return std::equal(a.u, a.u + 16, b.u); }

std::string CreateLine(const CCamera& c)
{
    std::string line = "local camera = camera_create_view(";
    for (const float number : {c.m_viewX, c.m_viewY, c.m_viewWidth, c.m_viewHeight, c.m_viewAngle})
        line += LuaNumber(number) + ", ";
    line += std::to_string(c.m_targetInstance);
    for (const float number : {c.m_viewSpeedX, c.m_viewSpeedY, c.m_viewBorderX, c.m_viewBorderY})
        line += ", " + LuaNumber(number);
    return line + ")\n";
}

std::string MatrixLine(const char* function, const kvMatrix& matrix)
{
    std::string line = std::string(function) + "(camera, { ";
    for (int i = 0; i < 16; ++i)
        line += (i == 0 ? "" : i % 4 == 0 ? ",\n    " : ", ") + LuaNumber(matrix.m[i]);
    return line + " })\n";
}

std::string CallbackLine(const CameraCallback& callback, const CCamera& camera)
{
    const RValue& value = camera.*callback.value;
    const std::string function = std::string("camera_set_") + callback.name + "_script(camera, ";
    int number = -1;
    if (ScriptNumberOf(value, number))
        return number == -1 ? "" : function + std::to_string(number) + ")\n";
    const std::string place = PlaceOf(value);
    return "-- " + function + "...) with the function at " + (place.empty() ? "an unknown place" : place) + "\n";
}
// What the change makes of the property; null for one that none makes.
const CameraChange* LastChange(const std::vector<CameraChange>& changes, int camera, const std::string& field)
{
    const auto found =
        std::find_if(changes.rbegin(), changes.rend(),
                     [&](const CameraChange& change) { return change.camera == camera && change.field == field; });
    return found == changes.rend() ? nullptr : &*found;
}

std::string SetLine(const std::vector<CameraChange>& changes, int id, const std::string& function)
{
    const CCamera* camera = PeekCamera(id);
    std::string line = function + "(" + std::to_string(id);
    for (const CameraField& field : CAMERA_FIELDS)
    {
        if (function != field.setBy)
            continue;
        const CameraChange* change = LastChange(changes, id, field.name);
        line += ", ";
        if (change != nullptr)
            line += LuaNumber(change->value);
        else
            line += camera == nullptr ? "?" : LuaNumber(ValueOf(*camera, field));
    }
    return (camera == nullptr ? "-- " : "") + line + ")\n";
}
} // namespace

std::string LuaLines(const std::vector<CameraChange>& changes)
{
    std::string lines;
    std::vector<std::string> made;
    for (const CameraChange& change : changes)
    {
        const CameraField* field = FindCameraField(change.field);
        const std::string line = field == nullptr ? "" : SetLine(changes, change.camera, field->setBy);
        if (std::find(made.begin(), made.end(), line) == made.end())
            lines += line;
        made.push_back(line);
    }
    return lines;
}

std::string LuaLines(const CCamera& camera)
{
    CCamera made; // what camera_create_view makes of the same numbers
    made.CopyViewFrom(camera);
    made.BuildView();
    std::string lines = CreateLine(camera);
    if (!AreSame(made.m_viewMat, camera.m_viewMat))
        lines += MatrixLine("camera_set_view_mat", camera.m_viewMat);
    if (!AreSame(made.m_projMat, camera.m_projMat))
        lines += MatrixLine("camera_set_proj_mat", camera.m_projMat);
    if (camera.IsViewDirty())
        lines += "camera_set_view_pos(camera, " + LuaNumber(camera.m_viewX) + ", " + LuaNumber(camera.m_viewY) + ")\n";
    for (const CameraCallback& callback : CAMERA_CALLBACKS)
        lines += CallbackLine(callback, camera);
    if (camera.IsCloned())
        lines += std::string("-- it was a clone") + (camera.isPersistent() ? " that stays when its room ends\n" : "\n");
    return lines;
}
} // namespace Runner
