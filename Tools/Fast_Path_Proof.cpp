// The proof that the module's short ways give the bits of their definitions: matrices and cameras made against short
// cuts, by the hundred million, on all processors. The suite has a small share of it
// (Tests/Module/Fast_Paths_test.cpp).
//
//   fast_path_proof [MATRICES [CAMERAS [SEED]]]    100,000,000 matrices, 10,000,000 cameras and seed 1 unless given
//
// Exit status 1, with the first ten matrices, where anything differs.
#include "Platform/Strict_Float.h"

#include "Tests/Support/Fast_Paths.h"
#include "Tools/Proof_Workers.h"

#include <cinttypes>

using namespace Recording;

namespace
{
constexpr uint32_t SHAPES = static_cast<uint32_t>(MatrixShape::Count);
constexpr const char* SHAPE_NAMES[SHAPES] = {"flat",          "almost flat",     "any bits", "affine",
                                             "powers of two", "nearly singular", "small",    "not numbers"};
constexpr uint32_t SORTS = 4;
constexpr const char* SORT_NAMES[SORTS] = {"built, awkward", "built, of games", "set matrices", "any inverses"};

struct Counts
{
    uint64_t tried = 0, regular = 0, wrong = 0;

    void Add(const Counts& other)
    {
        tried += other.tried;
        regular += other.regular;
        wrong += other.wrong;
    }
};

struct Tally
{
    Counts shapes[SHAPES]; // of matrices that were inverted
    Counts sorts[SORTS];   // of cameras
};

void Show(const kvMatrix& matrix)
{
    for (const uint32_t word : matrix.u)
        std::printf(" %08x", word);
    std::printf("\n");
}

void Take(Counts& counts, bool isRight, bool isRegular, const kvMatrix& matrix)
{
    ++counts.tried;
    counts.regular += isRegular ? 1 : 0;
    if (!isRight && ++counts.wrong <= 10)
        Show(matrix);
}

void ProveInverses(Tally& tally, uint64_t count, AwkwardNumbers& source)
{
    for (uint64_t i = 0; i < count; ++i)
    {
        const auto shape = static_cast<uint32_t>(i % SHAPES);
        const kvMatrix matrix = source.Shaped(static_cast<MatrixShape>(shape));
        kvMatrix inverse = matrix;
        const bool isRegular = inverse.Invert();
        Take(tally.shapes[shape], InvertsByDefinition(matrix), isRegular, matrix);
    }
}

// ---- cameras ----

// What the host does to each projection that it builds: nothing, or another entry in one place.
struct ProjectionChange
{
    bool isOn = false;
    uint32_t place = 0;
    float value = 0.0f;

    void Draw(AwkwardNumbers& source)
    {
        isOn = source.Below(8) == 0;
        place = source.Below(16);
        value = source.Below(2) == 0 ? source.Zero() : source.Entry(source.Below(4));
    }
};

void BuildAwkward(CCamera& camera, AwkwardNumbers& source)
{
    camera.m_viewX = source.Entry(source.Below(4));
    camera.m_viewY = source.Entry(source.Below(4));
    camera.m_viewWidth = source.Entry(source.Below(4));
    camera.m_viewHeight = source.Entry(source.Below(4));
    camera.m_viewAngle = source.Below(2) == 0 ? source.Zero() : source.Between(-720.0f, 720.0f);
    camera.BuildView();
}

// Nearly all of these take the way that inverts the three matrices of a flat camera at once.
void BuildOfGames(CCamera& camera, AwkwardNumbers& source)
{
    const float far = source.Below(4) == 0 ? 1e9f : 5000.0f;
    camera.m_viewX = source.Below(8) == 0 ? source.Zero() : source.Between(-far, far);
    camera.m_viewY = source.Below(8) == 0 ? source.Zero() : source.Between(-far, far);
    camera.m_viewWidth = source.Between(0.5f, 4000.0f);
    camera.m_viewHeight = source.Between(0.5f, 4000.0f);
    if (source.Below(8) == 0)
        camera.m_viewHeight = -camera.m_viewHeight;
    static constexpr float TURN = 22.5f;
    const uint32_t flavour = source.Below(4);
    camera.m_viewAngle = flavour == 0   ? source.Zero()
                         : flavour == 1 ? TURN * static_cast<float>(source.Below(33)) - 360.0f
                                        : source.Between(-360.0f, 360.0f);
    camera.BuildView();
}

void SetMatrices(CCamera& camera, AwkwardNumbers& source)
{
    const auto shape = [&source] { return static_cast<MatrixShape>(source.Below(SHAPES)); };
    kvMatrix projection = source.Shaped(shape());
    projection._34 = source.Zero(); // parallel
    camera.SetViewMat(source.Shaped(shape()));
    camera.SetProjMat(projection);
}

void SetAnyInverses(CCamera& camera, AwkwardNumbers& source)
{
    SetMatrices(camera, source);
    camera.m_invViewProjMat = source.Shaped(static_cast<MatrixShape>(source.Below(SHAPES)));
    camera.m_invViewMat = source.Shaped(static_cast<MatrixShape>(source.Below(SHAPES)));
}

// The area that a camera publishes is compared for parallel cameras; a host's projection may be another.
void ProveCameras(Tally& tally, uint64_t count, AwkwardNumbers& source)
{
    static constexpr void (*PREPARE[SORTS])(CCamera&, AwkwardNumbers&) = {BuildAwkward, BuildOfGames, SetMatrices,
                                                                          SetAnyInverses};
    ProjectionChange change;
    OnProjection(
        [&change](kvMatrix& projection)
        {
            if (change.isOn)
                projection.m[change.place] = change.value;
        });
    for (uint64_t i = 0; i < count; ++i)
    {
        const auto sort = static_cast<uint32_t>(i % SORTS);
        CCamera camera;
        change.Draw(source);
        PREPARE[sort](camera, source);
        const bool hasOwnInverses = sort + 1 < SORTS, isParallel = camera.IsOrthoProj();
        const bool isRight =
            (!hasOwnInverses || StoresInversesByDefinition(camera)) && (!isParallel || PublishesTheStatedArea(camera));
        Take(tally.sorts[sort], isRight, camera.Is2D(), camera.m_viewProjMat);
    }
}

// ---- what is told ----

uint64_t Tell(const char* name, const char* things, const char* regular, const Counts& counts)
{
    std::printf("%-16s %12" PRIu64 " %s, %12" PRIu64 " %s, %" PRIu64 " wrong\n", name, counts.tried, things,
                counts.regular, regular, counts.wrong);
    return counts.wrong;
}

uint64_t TellAll(const std::vector<Tally>& tallies)
{
    Tally sum;
    for (const Tally& tally : tallies)
    {
        for (uint32_t shape = 0; shape < SHAPES; ++shape)
            sum.shapes[shape].Add(tally.shapes[shape]);
        for (uint32_t sort = 0; sort < SORTS; ++sort)
            sum.sorts[sort].Add(tally.sorts[sort]);
    }
    uint64_t wrong = 0;
    for (uint32_t shape = 0; shape < SHAPES; ++shape)
        wrong += Tell(SHAPE_NAMES[shape], "matrices", "regular", sum.shapes[shape]);
    for (uint32_t sort = 0; sort < SORTS; ++sort)
        wrong += Tell(SORT_NAMES[sort], "cameras", "flat", sum.sorts[sort]);
    return wrong;
}
} // namespace

int main(int argc, char** argv)
{
    using namespace ProofWorkers;
    Listen(0);
    const uint64_t matrices = NumberFrom(argc, argv, 1, 100000000), cameras = NumberFrom(argc, argv, 2, 10000000);
    const auto seed = static_cast<uint32_t>(NumberFrom(argc, argv, 3, 1));
    const auto work = [=](Tally& tally, unsigned number, unsigned count)
    {
        AwkwardNumbers source(Seed(seed, number));
        ProveInverses(tally, Share(matrices, count, number), source);
        ProveCameras(tally, Share(cameras, count, number), source);
    };
    return Prove<Tally>("fast_path_proof", work, TellAll);
}
