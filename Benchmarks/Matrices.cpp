// The rebuild of a flat camera, and the inverse alone.

#include "Platform/Strict_Float.h"

#include "Benchmarks/Bench.h"
#include "Benchmarks/Peers.h"
#include "Files/Graphics/Camera.h"
#include "Files/Graphics/Matrix_Invert.h"

#include <array>
#include <cmath>
#include <cstring>
#include <memory>

namespace
{
using namespace Bench;

constexpr const BenchLibrary* LIBRARIES[] = {&BENCH_CGLM, &BENCH_EIGEN, &BENCH_GLM, &BENCH_GLM_SIMD, &BENCH_SCALAR};

// ---- the rebuild ----

CCamera& CameraOf(int slot)
{
    static const std::unique_ptr<CCamera[]> cameras(new CCamera[BENCH_VIEWS]);
    CCamera& camera = cameras[static_cast<size_t>(slot)];
    const BenchView view = ViewOf(slot);
    camera.SetViewX(view.x);
    camera.SetViewY(view.y);
    camera.SetViewWidth(view.width);
    camera.SetViewHeight(view.height);
    camera.SetViewAngle(view.angle);
    return camera;
}

void RebuildOurs(benchmark::State& state)
{
    std::array<CCamera*, BENCH_VIEWS> cameras;
    for (int slot = 0; slot < BENCH_VIEWS; ++slot)
        cameras[static_cast<size_t>(slot)] = &CameraOf(slot);
    size_t slot = 0;
    for (auto _ : state)
    {
        cameras[slot]->BuildView();
        slot = (slot + 1) % BENCH_VIEWS;
    }
}

void RebuildPeer(benchmark::State& state, const BenchLibrary& library)
{
    std::array<BenchView, BENCH_VIEWS> views;
    for (int slot = 0; slot < BENCH_VIEWS; ++slot)
        views[static_cast<size_t>(slot)] = ViewOf(slot);
    int slot = 0;
    for (auto _ : state)
    {
        library.rebuild(slot, &views[static_cast<size_t>(slot)]);
        slot = (slot + 1) % BENCH_VIEWS;
    }
}

void CheckRebuild(const BenchLibrary& library, int slot)
{
    CCamera& camera = CameraOf(slot);
    camera.BuildView();
    const BenchView view = ViewOf(slot);
    library.rebuild(slot, &view);
    float products[BENCH_PRODUCTS][16];
    library.products(slot, products);
    const kvMatrix* const expected = &camera.m_projMat; // the six follow each other, in this order
    for (int product = 0; product < BENCH_PRODUCTS; ++product)
        RequireNear(products[product], expected[product].m, 2e-5f,
                    std::string("rebuild by ") + library.name + ", matrix " + std::to_string(product));
}

// ---- the inverse ----

struct Matrices
{
    alignas(32) kvMatrix m[BENCH_MATRICES];
};

static_assert(sizeof(kvMatrix) == sizeof(float[16]), "peers take a row of matrices as a row of their numbers");

kvMatrix RandomMatrix(Numbers& numbers)
{
    kvMatrix matrix;
    for (float& entry : matrix.m)
        entry = numbers.Between(-1.0f, 1.0f);
    for (int i = 0; i < 4; ++i)
        matrix.m[5 * i] += 4.0f; // well away from singular, so that every library must agree
    return matrix;
}

kvMatrix ViewMatrix(Numbers& numbers)
{
    kvMatrix view;
    const float angle = numbers.Between(-3.0f, 3.0f);
    const float x = numbers.Between(-5000.0f, 5000.0f);
    const float y = numbers.Between(-5000.0f, 5000.0f);
    kvMatrix::LookAtLH(view, {x, y, -16000.0f}, {x, y, 0.0f}, {sinf(angle), cosf(angle), 0.0f});
    return view;
}

kvMatrix ParallelProjection(Numbers& numbers)
{
    kvMatrix projection;
    const float width = numbers.Between(100.0f, 2000.0f);
    const float height = numbers.Between(100.0f, 2000.0f);
    kvMatrix::OrthoLH(projection, width, height, 0.0f, 32000.0f);
    return projection;
}

kvMatrix FlatProduct(Numbers& numbers)
{
    kvMatrix product = ViewMatrix(numbers);
    kvMatrix::Multiply(product, product, ParallelProjection(numbers));
    return product;
}

struct Kind
{
    const char* subject;
    kvMatrix (*make)(Numbers&);
};
constexpr Kind KINDS[] = {{"inverse, general", RandomMatrix},
                          {"inverse, view", ViewMatrix},
                          {"inverse, parallel projection", ParallelProjection},
                          {"inverse, flat view and projection", FlatProduct}};

void Fill(Matrices& matrices, const Kind& kind)
{
    Numbers numbers(1);
    for (kvMatrix& matrix : matrices.m)
        matrix = kind.make(numbers);
}

// As the setters of a camera do: from one matrix into another.
void InvertAll(const float (*in)[16], float (*out)[16], int count)
{
    const kvMatrix* const from = reinterpret_cast<const kvMatrix*>(in);
    kvMatrix* const to = reinterpret_cast<kvMatrix*>(out);
    for (int i = 0; i < count; ++i)
        CameraModule::InvertTo(to[i], from[i]);
}

void Invert(benchmark::State& state, const Kind& kind, decltype(&InvertAll) invertAll)
{
    static Matrices in, out;
    Fill(in, kind);
    for (auto _ : state)
    {
        invertAll(&in.m->m, &out.m->m, BENCH_MATRICES);
        benchmark::ClobberMemory();
    }
}

void CheckInverse(const Kind& kind, const BenchLibrary& library)
{
    static Matrices in, expected, actual;
    Fill(in, kind);
    InvertAll(&in.m->m, &expected.m->m, BENCH_MATRICES);
    library.invert_all(&in.m->m, &actual.m->m, BENCH_MATRICES);
    for (int i = 0; i < BENCH_MATRICES; ++i)
        RequireNear(actual.m[i].m, expected.m[i].m, 2e-5f,
                    std::string(kind.subject) + " by " + library.name + ", matrix " + std::to_string(i));
}

void Check()
{
    for (const BenchLibrary* library : LIBRARIES)
    {
        for (int slot = 0; slot < BENCH_VIEWS; ++slot)
            CheckRebuild(*library, slot);
        for (const Kind& kind : KINDS)
            CheckInverse(kind, *library);
    }
}

void AddRows()
{
    Row("rebuild of a flat camera", "ours", RebuildOurs);
    for (const BenchLibrary* library : LIBRARIES)
        Row("rebuild of a flat camera", library->name, [=](benchmark::State& state) { RebuildPeer(state, *library); });
    for (const Kind& kind : KINDS)
    {
        Row(kind.subject, "ours", [&](benchmark::State& state) { Invert(state, kind, InvertAll); });
        for (const BenchLibrary* library : LIBRARIES)
            Row(kind.subject, library->name,
                [&kind, library](benchmark::State& state) { Invert(state, kind, library->invert_all); });
    }
}
} // namespace

const Bench::Subject Bench::MATRICES = {Check, AddRows};
