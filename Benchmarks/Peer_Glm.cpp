// Compiled twice, with the library's default types and with its aligned ones. The two settings give the library's
// templates different meanings, so the second build lives in a namespace of another name.

#ifdef BENCH_WITH_SIMD
#define GLM_FORCE_INTRINSICS
#define GLM_FORCE_DEFAULT_ALIGNED_GENTYPES
#define glm glm_simd
#define BENCH_LIBRARY BENCH_GLM_SIMD
#define BENCH_STEPPER BENCH_GLM_SIMD_STEPPER
#define BENCH_NAME "glm SIMD"
#else
#define BENCH_LIBRARY BENCH_GLM
#define BENCH_STEPPER BENCH_GLM_STEPPER
#define BENCH_NAME "glm"
#endif

#include "Benchmarks/Peer_Glm.h"
#include "Benchmarks/Peers.h"
#include "Files/Graphics_API/Graphics_API.h"
#include "Files/Instance/Instance.h"
#include "Files/Room/Room.h"

#include <glm/glm.hpp>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/type_ptr.hpp>

#include <cstring>

namespace
{
using glm::mat4;
using glm::vec3;
using glm::vec4;

mat4 s_cameras[BENCH_VIEWS][BENCH_PRODUCTS];
BenchFollower s_followers[BENCH_VIEWS];

void Build(mat4 (&camera)[BENCH_PRODUCTS], float x, float y, float width, float height, float degrees)
{
    const float angle = -glm::radians(degrees);
    const vec3 up(glm::sin(angle), glm::cos(angle), 0.0f);
    camera[BENCH_VIEW] = glm::lookAtLH(vec3(x, y, -16000.0f), vec3(x, y, 0.0f), up);
    camera[BENCH_PROJ] = glm::orthoLH_ZO(-width * 0.5f, width * 0.5f, -height * 0.5f, height * 0.5f, 0.0f, 32000.0f);
    camera[BENCH_VIEW_PROJ] = camera[BENCH_PROJ] * camera[BENCH_VIEW];
    camera[BENCH_INV_PROJ] = glm::inverse(camera[BENCH_PROJ]);
    camera[BENCH_INV_VIEW] = glm::inverse(camera[BENCH_VIEW]);
    camera[BENCH_INV_VIEW_PROJ] = glm::inverse(camera[BENCH_VIEW_PROJ]);
}

void Rebuild(int slot, const BenchView* view)
{
    Build(s_cameras[slot], view->x + view->width * 0.5f, view->y + view->height * 0.5f, view->width, view->height,
          view->angle);
}

void Products(int slot, float (*out)[16])
{
    for (int i = 0; i < BENCH_PRODUCTS; ++i)
        std::memcpy(out[i], glm::value_ptr(s_cameras[slot][i]), sizeof out[i]);
}

void InvertAll(const float (*in)[16], float (*out)[16], int count)
{
    for (int i = 0; i < count; ++i)
    {
        mat4 matrix; // the copy that a user of the library makes too; compilers see through it
        std::memcpy(&matrix, in[i], sizeof matrix);
        matrix = glm::inverse(matrix);
        std::memcpy(out[i], &matrix, sizeof matrix);
    }
}

// ---- the step ----

float FollowAxis(float edge, float size, float border, float speed, float target, float roomSize)
{
    float wanted = edge;
    if (2.0f * border >= size)
        wanted = target - size * 0.5f;
    else if (target - border < edge)
        wanted = target - border;
    else if (target + border > edge + size)
        wanted = target + border - size;
    wanted = glm::min(glm::max(wanted, 0.0f), roomSize - size);
    return speed < 0.0f ? wanted : glm::clamp(wanted, edge - speed, edge + speed);
}

void Follow(BenchFollower& camera)
{
    const CInstance* const target = CInstance::ms_ID2Instance.Find(camera.target);
    if (target == nullptr || (target->m_flags & (eInstanceFlag_Marked | eInstanceFlag_Deactivated)) != 0)
        return;
    camera.x = FollowAxis(camera.x, camera.width, camera.borderX, camera.speedX, glm::floor(target->x),
                          static_cast<float>(Run_Room->r_width));
    camera.y = FollowAxis(camera.y, camera.height, camera.borderY, camera.speedY, glm::floor(target->y),
                          static_cast<float>(Run_Room->r_height));
    camera.isDirty = true;
}

void Publish(const mat4& clipToRoom, const mat4& viewToRoom)
{
    const vec3 across(clipToRoom * vec4(1, 0, 0, 1) - clipToRoom * vec4(-1, 0, 0, 1));
    const vec3 down(clipToRoom * vec4(0, 1, 0, 1) - clipToRoom * vec4(0, -1, 0, 1));
    const float w = glm::length(across);
    const float h = glm::length(down);
    float angle = glm::acos(glm::clamp(down.y / h, -1.0f, 1.0f));
    if (down.x < 0.0f)
        angle = 6.2831855f - angle;
    g_ViewAreaX = viewToRoom[3].x - w * 0.5f;
    g_ViewAreaY = viewToRoom[3].y - h * 0.5f;
    g_ViewAreaW = w;
    g_ViewAreaH = h;
    g_ViewAreaA = glm::degrees(angle);
    SetViewExtents(g_ViewAreaX, g_ViewAreaY, g_ViewAreaW, g_ViewAreaH, g_ViewAreaA);
}

void Step(int slot)
{
    BenchFollower& camera = s_followers[slot];
    mat4(&matrices)[BENCH_PRODUCTS] = s_cameras[slot];
    if (camera.target >= 0)
        Follow(camera);
    if (camera.isDirty)
        Build(matrices, camera.x + camera.width * 0.5f, camera.y + camera.height * 0.5f, camera.width, camera.height,
              camera.angle);
    camera.isDirty = false;
    Publish(matrices[BENCH_INV_VIEW_PROJ], matrices[BENCH_INV_VIEW]);
    Graphics::SetMatrix(eM_View, glm::value_ptr(matrices[BENCH_VIEW]));
    Graphics::SetMatrix(eM_Projection, glm::value_ptr(matrices[BENCH_PROJ]));
}

void Set(int slot, const BenchFollower& camera)
{
    s_followers[slot] = camera;
    s_followers[slot].isDirty = true;
}
} // namespace

const BenchLibrary BENCH_LIBRARY = {BENCH_NAME, Rebuild, Products, InvertAll};
const BenchStepper BENCH_STEPPER = {BENCH_NAME, Set, Step};
