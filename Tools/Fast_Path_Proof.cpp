// The proof that the module's short ways give the bits of their definitions: matrices and cameras made against short
// cuts, by the hundred million. The suite has a small share of it (Tests/Module/Fast_Paths_test.cpp).
//
//   fast_path_proof [MATRICES [AREAS [SEED]]]    100,000,000 matrices, 10,000,000 areas and seed 1 unless given
//
// Exit status 1, with the first ten matrices, where anything differs.
#include "Platform/Strict_Float.h"

#include "Tests/Support/Fast_Paths.h"

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

using namespace Recording;

namespace
{
constexpr uint32_t SHAPES = static_cast<uint32_t>(MatrixShape::Count);
constexpr const char* SHAPE_NAMES[SHAPES] = {"flat",          "almost flat",     "any bits", "affine",
                                             "powers of two", "nearly singular", "small",    "not numbers"};

struct Counts
{
    uint64_t tried = 0, regular = 0, wrong = 0;
};

void Show(const kvMatrix& matrix)
{
    for (const uint32_t word : matrix.u)
        std::printf(" %08x", word);
    std::printf("\n");
}

void Take(Counts& counts, bool isRight, const kvMatrix& matrix)
{
    ++counts.tried;
    if (isRight || ++counts.wrong > 10)
        return;
    Show(matrix);
}

double Seconds() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

uint64_t ProveInverses(uint64_t count, AwkwardNumbers& source)
{
    const double start = Seconds();
    Counts counts[SHAPES];
    for (uint64_t i = 0; i < count; ++i)
    {
        const auto shape = static_cast<uint32_t>(i % SHAPES);
        const kvMatrix matrix = source.Shaped(static_cast<MatrixShape>(shape));
        Take(counts[shape], InvertsByDefinition(matrix), matrix);
        kvMatrix inverse = matrix;
        counts[shape].regular += inverse.Invert() ? 1 : 0;
    }
    uint64_t wrong = 0;
    for (uint32_t shape = 0; shape < SHAPES; ++shape)
    {
        std::printf("%-16s %12" PRIu64 " matrices, %12" PRIu64 " regular, %" PRIu64 " wrong\n", SHAPE_NAMES[shape],
                    counts[shape].tried, counts[shape].regular, counts[shape].wrong);
        wrong += counts[shape].wrong;
    }
    std::printf("inverses: %" PRIu64 " wrong, %.0f s\n", wrong, Seconds() - start);
    return wrong;
}

// A camera of each sort in turn: built from its view, with two matrices that were set, with any inverses at all.
void Prepare(CCamera& camera, uint64_t number, AwkwardNumbers& source)
{
    const auto shape = [&source] { return static_cast<MatrixShape>(source.Below(SHAPES)); };
    if (number % 3 == 0)
    {
        camera.m_viewX = source.Entry(source.Below(4));
        camera.m_viewY = source.Entry(source.Below(4));
        camera.m_viewWidth = source.Entry(source.Below(4));
        camera.m_viewHeight = source.Entry(source.Below(4));
        camera.m_viewAngle = source.Below(2) == 0 ? source.Zero() : source.Between(-720.0f, 720.0f);
        return camera.BuildView();
    }
    kvMatrix projection = source.Shaped(shape());
    projection._34 = source.Zero(); // parallel
    camera.SetViewMat(source.Shaped(shape()));
    camera.SetProjMat(projection);
    if (number % 3 == 1)
        return;
    camera.m_invViewProjMat = source.Shaped(shape());
    camera.m_invViewMat = source.Shaped(shape());
}

uint64_t ProveAreas(uint64_t count, AwkwardNumbers& source)
{
    const double start = Seconds();
    Counts stored, areas;
    for (uint64_t i = 0; i < count; ++i)
    {
        CCamera camera;
        Prepare(camera, i, source);
        if (i % 3 != 2)
            Take(stored, StoresInversesByDefinition(camera), camera.m_viewProjMat);
        Take(areas, PublishesTheStatedArea(camera), camera.m_invViewProjMat);
    }
    std::printf("%" PRIu64 " cameras with three inverses each, %" PRIu64 " wrong\n", stored.tried, stored.wrong);
    std::printf("%" PRIu64 " areas, %" PRIu64 " wrong, %.0f s\n", areas.tried, areas.wrong, Seconds() - start);
    return stored.wrong + areas.wrong;
}

uint64_t NumberFrom(int argc, char** argv, int index, uint64_t unlessGiven)
{
    return argc > index ? std::strtoull(argv[index], nullptr, 10) : unlessGiven;
}
} // namespace

int main(int argc, char** argv)
{
    Listen(0);
    const uint64_t matrices = NumberFrom(argc, argv, 1, 100000000), areas = NumberFrom(argc, argv, 2, 10000000);
    AwkwardNumbers source(static_cast<uint32_t>(NumberFrom(argc, argv, 3, 1)));
    const uint64_t wrong = ProveInverses(matrices, source);
    return ProveAreas(areas, source) + wrong == 0 ? 0 : 1;
}
