// Files/Room: the running room's views as scripts see them.

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Room/Room.h"
#include "Runner/Host/Value.h"
#include "Runner/World/Running_Room.h"

CRoom* Run_Room = nullptr;
int g_DefaultCameraID = -1;

namespace
{
// A view of the running room. Null when there is none, which is then reported in the built-in's name.
Runner::View* FindView(const char* builtin, int view)
{
    const Runner::Rooms* rooms = Runner::Rooms::Current();
    Runner::RunningRoom* room = rooms == nullptr ? nullptr : rooms->Running();
    if (room == nullptr)
        KvError("%s() - no room is running", builtin);
    else if (view < 0 || view >= ROOM_VIEWS)
        KvError("%s() - there is no view %d; views are 0 to %d", builtin, view, ROOM_VIEWS - 1);
    else
        return &room->views[static_cast<size_t>(view)];
    return nullptr;
}

template <typename T> bool Get(const char* builtin, T Runner::ViewFields::*property, int view, RValue* out)
{
    const Runner::View* found = FindView(builtin, view);
    if (found != nullptr)
        *out = Runner::MakeReal(static_cast<double>(found->*property));
    return found != nullptr;
}

bool Set(const char* builtin, int32_t Runner::ViewFields::*property, int view, const RValue* value)
{
    Runner::View* found = FindView(builtin, view);
    if (found != nullptr)
        found->*property = KvGetInt32(value, 0);
    return found != nullptr;
}
} // namespace

bool GV_ViewCamera(CInstance*, int view, RValue* out)
{
    const Runner::View* found = FindView("view_get_camera", view);
    if (found != nullptr)
        *out = Runner::MakeReal(found->cameraID);
    return found != nullptr;
}

bool GV_ViewVisible(CInstance*, int view, RValue* out)
{
    return Get("view_get_visible", &Runner::ViewFields::visible, view, out);
}

bool GV_ViewXport(CInstance*, int view, RValue* out)
{
    return Get("view_get_xport", &Runner::ViewFields::xport, view, out);
}

bool GV_ViewYport(CInstance*, int view, RValue* out)
{
    return Get("view_get_yport", &Runner::ViewFields::yport, view, out);
}

bool GV_ViewWport(CInstance*, int view, RValue* out)
{
    return Get("view_get_wport", &Runner::ViewFields::wport, view, out);
}

bool GV_ViewHport(CInstance*, int view, RValue* out)
{
    return Get("view_get_hport", &Runner::ViewFields::hport, view, out);
}

bool GV_ViewSurfaceID(CInstance*, int view, RValue* out)
{
    return Get("view_get_surface_id", &Runner::ViewFields::surface, view, out);
}

// The module's list of the room's cameras is built again at once: the next look-up must find the new camera.
bool SV_ViewCamera(CInstance*, int view, RValue* value)
{
    Runner::View* found = FindView("view_set_camera", view);
    if (found == nullptr)
        return false;
    found->cameraID = KvGetInt32(value, 0);
    g_CM.BuildRoomCameraList();
    return true;
}

bool SV_ViewVisible(CInstance*, int view, RValue* value)
{
    Runner::View* found = FindView("view_set_visible", view);
    if (found != nullptr)
        found->visible = KvGetBool(value, 0);
    return found != nullptr;
}

bool SV_ViewXport(CInstance*, int view, RValue* value)
{
    return Set("view_set_xport", &Runner::ViewFields::xport, view, value);
}

bool SV_ViewYport(CInstance*, int view, RValue* value)
{
    return Set("view_set_yport", &Runner::ViewFields::yport, view, value);
}

bool SV_ViewWport(CInstance*, int view, RValue* value)
{
    return Set("view_set_wport", &Runner::ViewFields::wport, view, value);
}

bool SV_ViewHport(CInstance*, int view, RValue* value)
{
    return Set("view_set_hport", &Runner::ViewFields::hport, view, value);
}

bool SV_ViewSurfaceID(CInstance*, int view, RValue* value)
{
    return Set("view_set_surface_id", &Runner::ViewFields::surface, view, value);
}
