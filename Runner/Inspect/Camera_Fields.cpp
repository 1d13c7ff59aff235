#include "Runner/Inspect/Camera_Fields.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Function_Arguments.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Runner
{
namespace
{
constexpr char ROOM_UNITS[] = "room units";
constexpr char ANY[] = "any number";
constexpr char SIZE_RANGE[] = "above 0";
constexpr char BORDER_RANGE[] = "0 to half the size; more centres the target";
constexpr char SPEED_RANGE[] = "0 or more; negative for no limit";
} // namespace

const CameraField CAMERA_FIELDS[CAMERA_FIELDS_COUNT] = {
    {"x", ROOM_UNITS, ANY, KvArguments::X.meaning, "camera_set_view_pos", &CCamera::m_viewX, true},
    {"y", ROOM_UNITS, ANY, KvArguments::Y.meaning, "camera_set_view_pos", &CCamera::m_viewY, true},
    {"width", ROOM_UNITS, SIZE_RANGE, KvArguments::W.meaning, "camera_set_view_size", &CCamera::m_viewWidth, true},
    {"height", ROOM_UNITS, SIZE_RANGE, KvArguments::H.meaning, "camera_set_view_size", &CCamera::m_viewHeight, true},
    {"angle", "degrees", ANY, KvArguments::ANGLE.meaning, "camera_set_view_angle", &CCamera::m_viewAngle, true},
    {"target", "", "object 0.., instance 100000.., -1 for nothing", KvArguments::TARGET.meaning,
     "camera_set_view_target", nullptr, false},
    {"border_x", ROOM_UNITS, BORDER_RANGE, KvArguments::BORDER_X.meaning, "camera_set_view_border",
     &CCamera::m_viewBorderX, false},
    {"border_y", ROOM_UNITS, BORDER_RANGE, KvArguments::BORDER_Y.meaning, "camera_set_view_border",
     &CCamera::m_viewBorderY, false},
    {"speed_x", "room units per update", SPEED_RANGE, KvArguments::SPEED_X.meaning, "camera_set_view_speed",
     &CCamera::m_viewSpeedX, false},
    {"speed_y", "room units per update", SPEED_RANGE, KvArguments::SPEED_Y.meaning, "camera_set_view_speed",
     &CCamera::m_viewSpeedY, false},
};

const CameraField* FindCameraField(const std::string& name)
{
    const auto* found = std::find_if(std::begin(CAMERA_FIELDS), std::end(CAMERA_FIELDS),
                                     [&name](const CameraField& field) { return field.name == name; });
    return found == std::end(CAMERA_FIELDS) ? nullptr : found;
}

float ValueOf(const CCamera& camera, const CameraField& field)
{
    return field.member == nullptr ? static_cast<float>(camera.m_targetInstance) : camera.*field.member;
}

bool Apply(const CameraChange& change)
{
    constexpr float WHOLE_LIMIT = 16777216.0f; // a float holds each whole number up to it
    const CameraField* field = FindCameraField(change.field);
    CCamera* camera = g_CM.GetCamera(change.camera);
    if (field == nullptr || camera == nullptr)
        return false;
    if (field->member != nullptr)
        camera->*field->member = change.value;
    else if (change.value == change.value)
        camera->m_targetInstance = static_cast<int32_t>(std::clamp(change.value, -WHOLE_LIMIT, WHOLE_LIMIT));
    if (field->isOfView)
        camera->SetViewDirty();
    return true;
}
} // namespace Runner
