// The proof that the Runner's matrix builders give the bits of their definitions: looks, parallel projections and their
// products by the hundred million, made against short cuts, on all processors. The suite has a small share of it
// (Tests/Runner/Host/Matrix_Bits_test.cpp).
//
//   builder_proof [ROUNDS [SEED]]    100,000,000 rounds of one matrix of each kind, and seed 1 unless given
//
// Exit status 1, with the first ten matrices of each kind, where anything differs.
#include "Platform/Strict_Float.h"

#include "Tests/Runner/Support/Matrix_Definitions.h"
#include "Tests/Support/Awkward_Numbers.h"
#include "Tools/Proof_Workers.h"

#include <cinttypes>

using namespace Recording;

namespace
{
constexpr uint32_t LOOKS = 4;
constexpr uint32_t KINDS = LOOKS + 2;
constexpr const char* KIND_NAMES[KINDS] = {"flat cameras' looks", "looks along z",        "looks of length one",
                                           "any looks",           "parallel projections", "products"};

struct Tally
{
    uint64_t tried[KINDS] = {}, wrong[KINDS] = {};
};

struct Look
{
    kvVector3 eye, at, up;
};

bool SameButForNaNs(const kvMatrix& a, const kvMatrix& b)
{
    for (int i = 0; i < 16; ++i)
        if (!SameButForNaN(a.m[i], b.m[i]))
            return false;
    return true;
}

void Take(Tally& tally, uint32_t kind, const kvMatrix& actual, const kvMatrix& expected)
{
    ++tally.tried[kind];
    if (SameButForNaNs(actual, expected) || ++tally.wrong[kind] > 10)
        return;
    std::printf("%s:", KIND_NAMES[kind]);
    for (int i = 0; i < 16; ++i)
        std::printf(" %08x", actual.u[i]);
    std::printf(" instead of");
    for (int i = 0; i < 16; ++i)
        std::printf(" %08x", expected.u[i]);
    std::printf("\n");
}

// ---- looks ----

float Place(AwkwardNumbers& source)
{
    return source.Below(4) == 0 ? source.Entry(source.Below(4)) : source.Between(-20000.0f, 20000.0f);
}

kvVector3 Turned(AwkwardNumbers& source)
{
    const float angle = source.Between(-400.0f, 400.0f);
    return source.Below(8) == 0 ? kvVector3{source.Zero(), 1.0f, 0.0f} : kvVector3{sinf(angle), cosf(angle), 0.0f};
}

Look FlatLook(AwkwardNumbers& source)
{
    const float x = Place(source), y = Place(source);
    return {{x, y, -16000.0f}, {x, y, 0.0f}, Turned(source)};
}

// At any distance, from the least float to infinity.
Look LookAlongZ(AwkwardNumbers& source)
{
    const float x = Place(source), y = Place(source), z = source.Below(2) == 0 ? source.Zero() : Place(source);
    const float distance = std::ldexp(source.Between(-2.0f, 2.0f), static_cast<int>(source.Below(277)) - 149);
    const kvVector3 up = source.Below(4) == 0 ? kvVector3{Place(source), Place(source), Place(source)} : Turned(source);
    return {{x, y, z}, {x, y, z + distance}, up};
}

// The direction's length is 1 or lies a few floats beside it, where a root and a division could be left out.
Look LookOfLengthOne(AwkwardNumbers& source)
{
    const float angle = source.Between(-4.0f, 4.0f), few = source.Below(2) == 0 ? source.Zero() : 1e-40f;
    float part[3] = {sinf(angle), cosf(angle), few};
    const uint32_t first = source.Below(3);
    if (source.Below(4) == 0)
        part[source.Below(3)] *= 1.0f + source.Between(-3e-7f, 3e-7f);
    const kvVector3 at = {part[first], part[(first + 1) % 3], part[(first + 2) % 3]};
    return {{0.0f, 0.0f, 0.0f}, at, source.Below(2) == 0 ? Turned(source) : kvVector3{few, few, 1.0f}};
}

Look AnyLook(AwkwardNumbers& source)
{
    const uint32_t flavour = source.Below(5);
    const auto number = [&source, flavour] { return flavour == 4 ? source.AnyBits() : source.Entry(flavour); };
    const auto vector = [&number] { return kvVector3{number(), number(), number()}; };
    const kvVector3 eye = vector(), at = vector();
    return {eye, at, vector()};
}

kvMatrix ProveLook(Tally& tally, uint32_t kind, AwkwardNumbers& source)
{
    static constexpr Look (*DRAW[LOOKS])(AwkwardNumbers&) = {FlatLook, LookAlongZ, LookOfLengthOne, AnyLook};
    const Look look = DRAW[kind](source);
    kvMatrix view;
    kvMatrix::LookAtLH(view, look.eye, look.at, look.up);
    Take(tally, kind, view, MatrixDefinitions::LookAt(look.eye, look.at, look.up));
    return view;
}

// ---- projections and products ----

kvMatrix ProveProjection(Tally& tally, AwkwardNumbers& source)
{
    const bool isOfGame = source.Below(2) == 0;
    const float width = isOfGame ? source.Between(1.0f, 4000.0f) : source.Awkward();
    const float height = isOfGame ? source.Between(-4000.0f, 4000.0f) : source.Awkward();
    const float zNear = isOfGame ? 0.0f : source.Awkward(), zFar = isOfGame ? 32000.0f : source.Awkward();
    kvMatrix projection;
    kvMatrix::OrthoLH(projection, width, height, zNear, zFar);
    Take(tally, LOOKS, projection, MatrixDefinitions::Ortho(width, height, zNear, zFar));
    return projection;
}

// The result may be stored over a factor.
void ProveProduct(Tally& tally, kvMatrix a, kvMatrix b, uint32_t into)
{
    const kvMatrix expected = MatrixDefinitions::Product(a, b);
    kvMatrix apart;
    kvMatrix& product = into == 0 ? a : into == 1 ? b : apart;
    kvMatrix::Multiply(product, a, b);
    Take(tally, LOOKS + 1, product, expected);
}

void ProveRounds(Tally& tally, uint64_t rounds, AwkwardNumbers& source)
{
    for (uint64_t i = 0; i < rounds; ++i)
    {
        const kvMatrix view = ProveLook(tally, static_cast<uint32_t>(i % LOOKS), source);
        const kvMatrix projection = ProveProjection(tally, source);
        const auto shape = static_cast<MatrixShape>(source.Below(static_cast<uint32_t>(MatrixShape::Count)));
        const uint32_t into = source.Below(3);
        ProveProduct(tally, view, source.Below(2) == 0 ? projection : source.Shaped(shape), into);
    }
}

uint64_t TellAll(const std::vector<Tally>& tallies)
{
    uint64_t wrongOfAll = 0;
    for (uint32_t kind = 0; kind < KINDS; ++kind)
    {
        uint64_t tried = 0, wrong = 0;
        for (const Tally& tally : tallies)
        {
            tried += tally.tried[kind];
            wrong += tally.wrong[kind];
        }
        std::printf("%-20s %12" PRIu64 ", %" PRIu64 " wrong\n", KIND_NAMES[kind], tried, wrong);
        wrongOfAll += wrong;
    }
    return wrongOfAll;
}
} // namespace

int main(int argc, char** argv)
{
    using namespace ProofWorkers;
    const uint64_t rounds = NumberFrom(argc, argv, 1, 100000000);
    const auto seed = static_cast<uint32_t>(NumberFrom(argc, argv, 2, 1));
    const auto work = [=](Tally& tally, unsigned number, unsigned count)
    {
        AwkwardNumbers source(Seed(seed, number));
        ProveRounds(tally, Share(rounds, count, number), source);
    };
    return Prove<Tally>("builder_proof", work, TellAll);
}
