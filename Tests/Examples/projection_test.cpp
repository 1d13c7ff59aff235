// The tutorial's projections: where corners and depths of a flat view of 640 x 480 at (100, 50) come to lie. By hand:
// the view's top left corner is clip (-1, -1) in the module, its bottom right (1, 1); z from -16000 to 16000 is depth 0
// to 1.
#include "projection.h"

#include <cmath>
#include <cstdio>

namespace
{
struct Clipped
{
    float x, y, z;
};

// (x, y, z, 1) times view, times projection; a parallel projection leaves w at 1.
Clipped Map(float x, float y, float z, const CCamera& camera, Clip clip)
{
    kvMatrix all;
    kvMatrix::Multiply(all, camera.m_viewMat, ProjectionFor(clip, camera.m_projMat));
    const auto column = [&](int c) { return x * all.m[c] + y * all.m[4 + c] + z * all.m[8 + c] + all.m[12 + c]; };
    return {column(0), column(1), column(2)};
}

int Expect(const char* what, Clipped found, Clipped expected)
{
    const float miss = std::fmax(std::fabs(found.x - expected.x),
                                 std::fmax(std::fabs(found.y - expected.y), std::fabs(found.z - expected.z)));
    if (miss < 1e-5f)
        return 0;
    printf("%s: %g, %g, %g instead of %g, %g, %g\n", what, static_cast<double>(found.x), static_cast<double>(found.y),
           static_cast<double>(found.z), static_cast<double>(expected.x), static_cast<double>(expected.y),
           static_cast<double>(expected.z));
    return 1;
}
} // namespace

int main()
{
    CCamera camera;
    camera.SetViewWidth(640.0f);
    camera.SetViewHeight(480.0f);
    camera.Build2DView(100.0f + 320.0f, 50.0f + 240.0f);

    int failures = Expect("OpenGL, top left, near", Map(100, 50, -16000, camera, Clip::OpenGL), {-1, 1, -1});
    failures += Expect("OpenGL, bottom right, far", Map(740, 530, 16000, camera, Clip::OpenGL), {1, -1, 1});
    failures += Expect("OpenGL, centre", Map(420, 290, 0, camera, Clip::OpenGL), {0, 0, 0});
    failures += Expect("Direct3D, top left, near", Map(100, 50, -16000, camera, Clip::Direct3D), {-1, 1, 0});
    failures += Expect("Direct3D, bottom right, far", Map(740, 530, 16000, camera, Clip::Direct3D), {1, -1, 1});
    failures += Expect("Vulkan, top left, near", Map(100, 50, -16000, camera, Clip::Vulkan), {-1, -1, 0});
    failures += Expect("Vulkan, bottom right, far", Map(740, 530, 16000, camera, Clip::Vulkan), {1, 1, 1});
    return failures;
}
