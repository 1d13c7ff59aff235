// Files/Room: the properties of views, as built-ins read and write them.

#include "Host_Check/Check.h"

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Room/Room.h";

struct Property
{
    const char* name;
    bool (*get)(CInstance* self, int view, RValue* out);
    bool (*set)(CInstance* self, int view, RValue* value);
    double sample; // another for each, to see mix-ups
};
// No surface is bound: -1. The camera is set to none, since any host knows it.
constexpr Property PROPERTIES[] = {
    {"Camera", GV_ViewCamera, SV_ViewCamera, -1},
    {"Visible", GV_ViewVisible, SV_ViewVisible, 1},
    {"Xport", GV_ViewXport, SV_ViewXport, 11},
    {"Yport", GV_ViewYport, SV_ViewYport, 22},
    {"Wport", GV_ViewWport, SV_ViewWport, 333},
    {"Hport", GV_ViewHport, SV_ViewHport, 244},
    {"SurfaceID", GV_ViewSurfaceID, SV_ViewSurfaceID, -1},
};
constexpr int VIEW = 3;

double NumberOf(const RValue& value) { return KvGetReal(&value, 0); }

void PropertiesKeepWhatIsWritten(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen())
        return;
    for (const Property& property : PROPERTIES)
    {
        RValue value = Real(property.sample);
        trial.Expect(property.set(nullptr, VIEW, &value), "SV_View%s of view %d answers false", property.name, VIEW);
    }
    for (const Property& property : PROPERTIES)
    {
        RValue out = OfKind(VALUE_UNSET);
        trial.Expect(property.get(nullptr, VIEW, &out), "GV_View%s of view %d answers false", property.name, VIEW);
        trial.Expect(KvKind(out) != VALUE_UNSET, "GV_View%s has written nothing", property.name);
        trial.Expect(NumberOf(out) == property.sample, "GV_View%s answers %g after %g was set", property.name,
                     NumberOf(out), property.sample);
    }
}

void ViewsDoNotShareProperties(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen())
        return;
    for (int view = 0; view < ROOM_VIEWS; ++view)
    {
        RValue value = Real(100 + view);
        SV_ViewXport(nullptr, view, &value);
    }
    for (int view = 0; view < ROOM_VIEWS; ++view)
    {
        RValue out = OfKind(VALUE_UNSET);
        GV_ViewXport(nullptr, view, &out);
        trial.Expect(NumberOf(out) == 100 + view, "the x of view %d's port is %g, not %d", view, NumberOf(out),
                     100 + view);
    }
}

void CameraIsTheViewsOwn(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen() || Run_Room == nullptr)
        return;
    CCamera* camera = g_CM.CreateCamera();
    if (!trial.Expect(camera != nullptr, "no memory for a camera"))
        return;
    RValue value = Real(camera->GetID());
    SV_ViewCamera(nullptr, VIEW, &value);
    trial.Expect(Run_Room->r_view[VIEW]->cameraID == camera->GetID(),
                 "cameraID of a view is %d after SV_ViewCamera(%d)", static_cast<int>(Run_Room->r_view[VIEW]->cameraID),
                 camera->GetID());
    RValue none = Real(-1);
    SV_ViewCamera(nullptr, VIEW, &none);
    g_CM.DestroyCamera(camera->GetID());
}

void NoSuchViewIsFalse(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen())
        return;
    for (const int view : {-1, ROOM_VIEWS, 1000000})
        for (const Property& property : PROPERTIES)
        {
            RValue value = Real(property.sample);
            trial.Expect(!property.get(nullptr, view, &value), "GV_View%s of view %d answers true", property.name,
                         view);
            trial.Expect(!property.set(nullptr, view, &value), "SV_View%s of view %d answers true", property.name,
                         view);
        }
    ForgetErrors(trial);
}

void NoSuchViewIsReported(Trial& trial)
{
    const OpenRoom room(trial);
    if (!room.IsOpen())
        return;
    char text[80];
    for (const Property& property : PROPERTIES)
    {
        RValue value = Real(0);
        ForgetErrors(trial);
        property.get(nullptr, ROOM_VIEWS, &value);
        trial.Expect(trial.hooks.takeError(text, sizeof text), "GV_View%s of view %d reports nothing", property.name,
                     ROOM_VIEWS);
        property.set(nullptr, -1, &value);
        trial.Expect(trial.hooks.takeError(text, sizeof text), "SV_View%s of view -1 reports nothing", property.name);
    }
}

constexpr char ACCESSORS[] = "A getter writes *out, a setter reads *value, which comes as a real.";
constexpr char NO_VIEW[] = "False when there is no such view; the accessor has then reported it.";

constexpr Check CHECKS[] = {
    {"view.properties", Level::BuiltIns, HEADER, ACCESSORS, Need_Room, PropertiesKeepWhatIsWritten},
    {"view.own_properties", Level::BuiltIns, HEADER, "Properties of the running room's views, for scripts.", Need_Room,
     ViewsDoNotShareProperties},
    {"view.camera", Level::BuiltIns, HEADER, ACCESSORS, Need_Room, CameraIsTheViewsOwn},
    {"view.missing", Level::BuiltIns, HEADER, NO_VIEW, Need_Room, NoSuchViewIsFalse},
    {"view.missing_reported", Level::BuiltIns, HEADER, NO_VIEW, Need_Room | Need_Error, NoSuchViewIsReported},
};

} // namespace

Checks ViewChecks() { return Table(CHECKS); }

} // namespace HostCheck
