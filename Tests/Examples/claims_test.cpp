// What the tutorial says beside its programs: where its projections map points, and what a stub does. Built from the
// tutorial's own files, with every stub in place.
#include "host.h"
#include "projection.h"

#include <cmath>
#include <cstdio>

namespace
{
int s_failures = 0;

void Expect(const char* what, double found, double expected, double tolerance = 0.0)
{
    if (std::fabs(found - expected) <= tolerance)
        return;
    printf("%s: %g instead of %g\n", what, found, expected);
    ++s_failures;
}

// ---- projections of a flat view of 640 x 480 at (100, 50) ----
// By hand: the view's top left corner is clip (-1, -1) in the module, its bottom right (1, 1); z from -16000 to 16000
// is depth 0 to 1.

struct Point
{
    float x, y, z;
};

// (x, y, z, 1) times view, times projection; a parallel projection leaves w at 1.
void ExpectAt(const char* what, Clip clip, Point room, Point expected)
{
    CCamera camera;
    camera.SetViewWidth(640.0f);
    camera.SetViewHeight(480.0f);
    camera.Build2DView(100.0f + 320.0f, 50.0f + 240.0f);
    kvMatrix all;
    kvMatrix::Multiply(all, camera.m_viewMat, ProjectionFor(clip, camera.m_projMat));
    const auto column = [&](int c)
    { return static_cast<double>(room.x * all.m[c] + room.y * all.m[4 + c] + room.z * all.m[8 + c] + all.m[12 + c]); };
    Expect(what, column(0), static_cast<double>(expected.x), 1e-5);
    Expect(what, column(1), static_cast<double>(expected.y), 1e-5);
    Expect(what, column(2), static_cast<double>(expected.z), 1e-5);
}

void CheckProjections()
{
    ExpectAt("OpenGL, top left, near", Clip::OpenGL, {100, 50, -16000}, {-1, 1, -1});
    ExpectAt("OpenGL, bottom right, far", Clip::OpenGL, {740, 530, 16000}, {1, -1, 1});
    ExpectAt("OpenGL, centre", Clip::OpenGL, {420, 290, 0}, {0, 0, 0});
    ExpectAt("Direct3D, top left, near", Clip::Direct3D, {100, 50, -16000}, {-1, 1, 0});
    ExpectAt("Direct3D, bottom right, far", Clip::Direct3D, {740, 530, 16000}, {1, -1, 1});
    ExpectAt("Vulkan, top left, near", Clip::Vulkan, {100, 50, -16000}, {-1, -1, 0});
    ExpectAt("Vulkan, bottom right, far", Clip::Vulkan, {740, 530, 16000}, {1, 1, 1});
}

// ---- stubs ----

RValue OfObject(KvObjectBase* object)
{
    RValue value = {};
    value.pObj = object;
    value.kind = VALUE_OBJECT;
    return value;
}

void CheckScriptStubs(CCamera& camera)
{
    RValue arguments[2] = {}, result = {};
    arguments[0].val = camera.GetID();
    F_CameraGetViewMat(result, nullptr, nullptr, 1, arguments);
    Expect("camera_get_view_mat without arrays", result.val, -1.0);
    result.val = 7.0;
    F_ViewGetXport(result, nullptr, nullptr, 1, arguments);
    Expect("view_get_xport leaves its result", result.val, 7.0);

    // Under a callback by number the camera stays: it does not follow the walker at (500, 300).
    RValue script = {};
    camera.SetUpdateScript(&script);
    camera.CameraUpdate();
    Expect("x of a camera with an update callback", static_cast<double>(camera.GetViewX()), 0.0);
    script.val = -1.0;
    camera.SetUpdateScript(&script);
    camera.CameraUpdate();
    Expect("x of a camera without", static_cast<double>(camera.GetViewX()), 500.0 + 100.0 - 320.0);
}

// A callback that is an object is reported and not called; the camera's proxy goes with the camera.
void CheckCollectorStubs(CCamera& camera, CInstance& anyObject)
{
    RValue callback = OfObject(&anyObject);
    camera.SetEndScript(&callback);
    camera.End();
    Expect("slots in use", g_slotObjects.m_nCount, 1);
    g_CM.DestroyCamera(camera.GetID());
    Expect("slots in use after the camera", g_slotObjects.m_nCount, 0);
}

void CheckStubs()
{
    g_CM.SetupLumFunctions();
    OpenRoom(1000, 600);
    g_CM.StartRoom();
    CInstance* const walker = NewInstance(500.0f, 300.0f, 0);
    KvRoomView view = {1, 0, 0, 320, 240, 0, 0, 320, 240, 100, 60, -1, -1, 0};
    CCamera& camera = *g_CM.CreateCameraFromView(&view);
    CheckScriptStubs(camera);
    CheckCollectorStubs(camera, *walker);
    g_CM.EndRoom();
    CloseRoom();

    char name[] = "picture.png";
    unsigned char pixel[4] = {};
    Expect("WritePNG32 without files", WritePNG32(name, pixel, 1, 1), 0);
}
} // namespace

int main()
{
    CheckProjections();
    CheckStubs();
    return s_failures;
}
