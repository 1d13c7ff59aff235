#include "Benchmarks/Peers.h"

#include <Eigen/Dense>

#include <cmath>
#include <cstring>

namespace
{
using Eigen::Matrix4f;
using Eigen::Vector3f;

struct Camera
{
    Matrix4f products[BENCH_PRODUCTS];
};

Camera s_cameras[BENCH_VIEWS];

// The library has neither of these; written as its users write them.
void LookAt(Matrix4f& out, const Vector3f& eye, const Vector3f& at, const Vector3f& up)
{
    const Vector3f z = (at - eye).normalized();
    const Vector3f x = up.cross(z).normalized();
    const Vector3f y = z.cross(x);
    out << x.transpose(), -x.dot(eye), y.transpose(), -y.dot(eye), z.transpose(), -z.dot(eye), 0, 0, 0, 1;
}

void Ortho(Matrix4f& out, float width, float height, float zNear, float zFar)
{
    out.setZero();
    out(0, 0) = 2.0f / width;
    out(1, 1) = 2.0f / height;
    out(2, 2) = 1.0f / (zFar - zNear);
    out(2, 3) = zNear / (zNear - zFar);
    out(3, 3) = 1.0f;
}

void Rebuild(int slot, const BenchView* view)
{
    Matrix4f* const products = s_cameras[slot].products;
    const float x = view->x + view->width * 0.5f;
    const float y = view->y + view->height * 0.5f;
    const float angle = -(view->angle * 0.017453292f);
    LookAt(products[BENCH_VIEW], {x, y, -16000.0f}, {x, y, 0.0f}, {sinf(angle), cosf(angle), 0.0f});
    Ortho(products[BENCH_PROJ], view->width, view->height, 0.0f, 32000.0f);
    products[BENCH_VIEW_PROJ].noalias() = products[BENCH_PROJ] * products[BENCH_VIEW];
    products[BENCH_INV_PROJ] = products[BENCH_PROJ].inverse();
    products[BENCH_INV_VIEW] = products[BENCH_VIEW].inverse();
    products[BENCH_INV_VIEW_PROJ] = products[BENCH_VIEW_PROJ].inverse();
}

void Products(int slot, float (*out)[16])
{
    for (int i = 0; i < BENCH_PRODUCTS; ++i)
        std::memcpy(out[i], s_cameras[slot].products[i].data(), sizeof out[i]);
}

void InvertAll(const float (*in)[16], float (*out)[16], int count)
{
    for (int i = 0; i < count; ++i)
    {
        const Eigen::Map<const Matrix4f, Eigen::Aligned16> from(in[i]);
        Eigen::Map<Matrix4f, Eigen::Aligned16> to(&out[i][0]);
        to = from.inverse();
    }
}
} // namespace

const BenchLibrary BENCH_EIGEN = {"Eigen", Rebuild, Products, InvertAll};
