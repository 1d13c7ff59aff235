// The textbook's formulas in plain loops, and the module's own definition of the inverse without its fast paths.

#include "Platform/Strict_Float.h"

#include "Benchmarks/Peers.h"
#include "Files/Graphics/Matrix_Adjugate.h"

#include <cmath>
#include <cstring>

namespace
{
using Matrix = float[16];

Matrix s_cameras[BENCH_VIEWS][BENCH_PRODUCTS];

struct Vector
{
    float x, y, z;
};

float Dot(const Vector& a, const Vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

Vector Cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Normalised(const Vector& v)
{
    const float length = sqrtf(Dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

void LookAt(Matrix& out, const Vector& eye, const Vector& at, const Vector& up)
{
    const Vector z = Normalised({at.x - eye.x, at.y - eye.y, at.z - eye.z});
    const Vector x = Normalised(Cross(up, z));
    const Vector y = Cross(z, x);
    const Matrix view = {x.x, y.x, z.x, 0, x.y,          y.y,          z.y,          0,
                         x.z, y.z, z.z, 0, -Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1};
    std::memcpy(out, view, sizeof view);
}

void Ortho(Matrix& out, float width, float height, float zNear, float zFar)
{
    const float depth = zFar - zNear;
    const Matrix projection = {2 / width, 0, 0, 0, 0, 2 / height, 0, 0, 0, 0, 1 / depth, 0, 0, 0, -zNear / depth, 1};
    std::memcpy(out, projection, sizeof projection);
}

void Multiply(Matrix& out, const Matrix& a, const Matrix& b)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k)
                sum += a[4 * row + k] * b[4 * k + column];
            out[4 * row + column] = sum;
        }
}

void Invert(Matrix& out, const Matrix& in) { CameraModule::InvertByDefinition(out, in); }

void Rebuild(int slot, const BenchView* view)
{
    Matrix* const camera = s_cameras[slot];
    const float x = view->x + view->width * 0.5f;
    const float y = view->y + view->height * 0.5f;
    const float angle = -(view->angle * 0.017453292f);
    LookAt(camera[BENCH_VIEW], {x, y, -16000.0f}, {x, y, 0.0f}, {sinf(angle), cosf(angle), 0.0f});
    Ortho(camera[BENCH_PROJ], view->width, view->height, 0.0f, 32000.0f);
    Multiply(camera[BENCH_VIEW_PROJ], camera[BENCH_VIEW], camera[BENCH_PROJ]);
    Invert(camera[BENCH_INV_PROJ], camera[BENCH_PROJ]);
    Invert(camera[BENCH_INV_VIEW], camera[BENCH_VIEW]);
    Invert(camera[BENCH_INV_VIEW_PROJ], camera[BENCH_VIEW_PROJ]);
}

void Products(int slot, float (*out)[16]) { std::memcpy(out, s_cameras[slot], sizeof s_cameras[slot]); }

void InvertAll(const float (*in)[16], float (*out)[16], int count)
{
    for (int i = 0; i < count; ++i)
        Invert(out[i], in[i]);
}
} // namespace

const BenchLibrary BENCH_SCALAR = {"scalar", Rebuild, Products, InvertAll};
