#include "Benchmarks/Peers.h"

#include <string.h>

#include <cglm/cglm.h>
#include <cglm/clipspace/ortho_lh_zo.h>
#include <cglm/clipspace/view_lh_zo.h>

static mat4 s_cameras[BENCH_VIEWS][BENCH_PRODUCTS];

static void Rebuild(int slot, const struct BenchView* view)
{
    mat4* const camera = s_cameras[slot];
    const float x = view->x + view->width * 0.5f;
    const float y = view->y + view->height * 0.5f;
    const float angle = -glm_rad(view->angle);
    vec3 eye = {x, y, -16000.0f};
    vec3 at = {x, y, 0.0f};
    vec3 up = {sinf(angle), cosf(angle), 0.0f};
    const float right = view->width * 0.5f;
    const float top = view->height * 0.5f;

    glm_lookat_lh_zo(eye, at, up, camera[BENCH_VIEW]);
    glm_ortho_lh_zo(-right, right, -top, top, 0.0f, 32000.0f, camera[BENCH_PROJ]);
    glm_mat4_mul(camera[BENCH_PROJ], camera[BENCH_VIEW], camera[BENCH_VIEW_PROJ]);
    glm_mat4_inv(camera[BENCH_PROJ], camera[BENCH_INV_PROJ]);
    glm_mat4_inv(camera[BENCH_VIEW], camera[BENCH_INV_VIEW]);
    glm_mat4_inv(camera[BENCH_VIEW_PROJ], camera[BENCH_INV_VIEW_PROJ]);
}

static void Products(int slot, float (*out)[16]) { memcpy(out, s_cameras[slot], sizeof s_cameras[slot]); }

static void InvertAll(const float (*in)[16], float (*out)[16], int count)
{
    for (int i = 0; i < count; ++i)
        glm_mat4_inv((vec4*)in[i], (vec4*)out[i]);
}

const struct BenchLibrary BENCH_CGLM = {"cglm", Rebuild, Products, InvertAll};
