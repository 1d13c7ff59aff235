// Handlers that create, destroy, select and configure cameras.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Functions.h"

#include "Files/Graphics/Handlers.h"
#include "Files/Room/Room.h"

using namespace CameraModule;

namespace
{

typedef float CCamera::*ViewField;

enum eRebuild
{
    NO_REBUILD,
    REBUILD, // the matrices depend on the fields
};

void GetField(RValue& result, int argc, const RValue* args, ViewField field, const char* name)
{
    const CCamera* const camera = BeginCall(result, argc, args, 1, name);
    if (camera != nullptr)
        SetReal(result, static_cast<double>(camera->*field));
}

// Sets two fields from arguments 1 and 2. One conversion per statement: the order of calls to the host is fixed.
void SetPair(RValue& result, int argc, const RValue* args, ViewField first, ViewField second, eRebuild rebuild,
             const char* name)
{
    CCamera* const camera = BeginCall(result, argc, args, 3, name);
    if (camera == nullptr)
        return;
    const float a = KvGetFloat(args, 1);
    const float b = KvGetFloat(args, 2);
    camera->*first = a;
    camera->*second = b;
    if (rebuild == REBUILD)
        camera->SetViewDirty();
}

float FloatOr(int argc, const RValue* args, int index, float missing)
{
    return index < argc ? KvGetFloat(args, index) : missing;
}

int IntOr(int argc, const RValue* args, int index, int missing)
{
    return index < argc ? KvGetInt32(args, index) : missing;
}

} // namespace

// ---- life and selection ----

void F_CameraCreate(RValue& result, CInstance*, CInstance*, int argc, RValue*)
{
    SetReal(result, -1.0);
    if (argc != 0)
        return KvError("camera_create() - doesn't take any arguments");
    const CCamera* const camera = g_CM.CreateCamera();
    if (camera != nullptr)
        SetReal(result, camera->m_ID);
}

void F_CameraCreateView(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetReal(result, -1.0);
    if (argc < 4)
        return KvError("camera_create_view() - must have at least 4 arguments");
    CCamera* const camera = g_CM.CreateCamera();
    if (camera == nullptr)
        return;
    SetReal(result, camera->m_ID);

    camera->m_viewX = KvGetFloat(args, 0);
    camera->m_viewY = KvGetFloat(args, 1);
    camera->m_viewWidth = KvGetFloat(args, 2);
    camera->m_viewHeight = KvGetFloat(args, 3);
    camera->m_viewAngle = FloatOr(argc, args, 4, 0.0f);
    camera->m_targetInstance = IntOr(argc, args, 5, -1);
    camera->m_viewSpeedX = FloatOr(argc, args, 6, -1.0f);
    camera->m_viewSpeedY = FloatOr(argc, args, 7, -1.0f);
    camera->m_viewBorderX = FloatOr(argc, args, 8, 0.0f);
    camera->m_viewBorderY = FloatOr(argc, args, 9, 0.0f);
    camera->BuildView();
}

void F_CameraDestroy(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const CCamera* const camera = BeginCall(result, argc, args, 1, "camera_destroy");
    if (camera == nullptr)
        return;
    if (camera == g_CM.m_activeCamera)
        g_CM.SetActiveCamera(-1);
    g_CM.DestroyCamera(camera->m_ID);
}

void F_CameraApply(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CCamera* const camera = BeginCall(result, argc, args, 1, "camera_apply");
    if (camera != nullptr)
        camera->ApplyMatrices();
}

void F_CameraGetActive(RValue& result, CInstance*, CInstance*, int, RValue*)
{
    SetReal(result, g_CM.m_activeCamera != nullptr ? g_CM.m_activeCamera->m_ID : -1);
}

void F_CameraGetDefault(RValue& result, CInstance*, CInstance*, int, RValue*)
{
    const CCamera* const camera = g_CM.GetCamera(g_DefaultCameraID);
    SetReal(result, camera != nullptr ? camera->m_ID : -1);
}

void F_CameraSetDefault(RValue&, CInstance*, CInstance*, int, RValue* args)
{
    const int id = KvGetInt32(args, 0);
    if (g_CM.GetCamera(id) != nullptr)
        g_DefaultCameraID = id;
}

// ---- view properties ----

void F_CameraSetViewPos(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetPair(result, argc, args, &CCamera::m_viewX, &CCamera::m_viewY, REBUILD, "camera_set_view_pos");
}

void F_CameraSetViewSize(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetPair(result, argc, args, &CCamera::m_viewWidth, &CCamera::m_viewHeight, REBUILD, "camera_set_view_size");
}

void F_CameraSetViewSpeed(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetPair(result, argc, args, &CCamera::m_viewSpeedX, &CCamera::m_viewSpeedY, NO_REBUILD, "camera_set_view_speed");
}

void F_CameraSetViewBorder(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    SetPair(result, argc, args, &CCamera::m_viewBorderX, &CCamera::m_viewBorderY, NO_REBUILD, "camera_set_view_border");
}

void F_CameraSetViewAngle(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CCamera* const camera = BeginCall(result, argc, args, 2, "camera_set_view_angle");
    if (camera == nullptr)
        return;
    camera->m_viewAngle = KvGetFloat(args, 1);
    camera->SetViewDirty();
}

void F_CameraSetViewTarget(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CCamera* const camera = BeginCall(result, argc, args, 2, "camera_set_view_target");
    if (camera != nullptr)
        camera->m_targetInstance = KvGetInt32(args, 1);
}

void F_CameraSetView(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    CCamera* const camera = BeginCall(result, argc, args, 11, "camera_set_view");
    if (camera == nullptr)
        return;
    constexpr ViewField FIELDS[] = {&CCamera::m_viewX,       &CCamera::m_viewY,       &CCamera::m_viewWidth,
                                    &CCamera::m_viewHeight,  &CCamera::m_viewSpeedX,  &CCamera::m_viewSpeedY,
                                    &CCamera::m_viewBorderX, &CCamera::m_viewBorderY, &CCamera::m_viewAngle};
    int argument = 1;
    for (const ViewField field : FIELDS)
        camera->*field = KvGetFloat(args, argument++);
    camera->m_targetInstance = KvGetInt32(args, argument);
    camera->SetViewDirty();
}

void F_CameraGetViewX(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewX, "camera_get_view_x");
}

void F_CameraGetViewY(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewY, "camera_get_view_y");
}

void F_CameraGetViewWidth(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewWidth, "camera_get_view_width");
}

void F_CameraGetViewHeight(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewHeight, "camera_get_view_height");
}

void F_CameraGetViewSpeedX(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewSpeedX, "camera_get_view_speed_x");
}

void F_CameraGetViewSpeedY(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewSpeedY, "camera_get_view_speed_y");
}

void F_CameraGetViewBorderX(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewBorderX, "camera_get_view_border_x");
}

void F_CameraGetViewBorderY(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewBorderY, "camera_get_view_border_y");
}

void F_CameraGetViewAngle(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    GetField(result, argc, args, &CCamera::m_viewAngle, "camera_get_view_angle");
}

void F_CameraGetViewTarget(RValue& result, CInstance*, CInstance*, int argc, RValue* args)
{
    const CCamera* const camera = BeginCall(result, argc, args, 1, "camera_get_view_target");
    if (camera != nullptr)
        SetReal(result, camera->m_targetInstance);
}
