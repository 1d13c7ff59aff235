// Platform/Matrix.h: the builders, within 4 units in the last place of their definitions, and bit for bit.

#include "Platform/Strict_Float.h"

#include "Host_Check/Check.h"
#include "Host_Check/Matrix_Reference.h"

#include <cmath>
#include <cstring>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Platform/Matrix.h";
constexpr double UNITS = 4.0; // in the last place

// Values in [-8, 8) with all mantissa bits in use, the same in every run.
class Numbers
{
public:
    float Next()
    {
        m_state = m_state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<float>(static_cast<int32_t>(m_state >> 40) - (1 << 23)) * (8.0f / 8388608.0f);
    }
    kvVector3 NextVector()
    {
        const float x = Next(), y = Next(), z = Next();
        return {x, y, z};
    }
    kvMatrix NextMatrix()
    {
        kvMatrix matrix;
        for (float& entry : matrix.m)
            entry = Next();
        return matrix;
    }

private:
    uint64_t m_state = 20;
};

struct View
{
    kvVector3 eye, at, up;
};
constexpr View VIEWS[] = {
    {{500.0f, 300.0f, -16000.0f}, {500.0f, 300.0f, 0.0f}, {-0.0f, 1.0f, 0.0f}},
    {{500.5f, 300.25f, -16000.0f}, {500.5f, 300.25f, 0.0f}, {-0.5f, 0.8660254f, 0.0f}},
    {{10.0f, -20.0f, 30.0f}, {-5.0f, 60.0f, 7.0f}, {0.0f, 0.0f, -1.0f}},
    {{0.25f, 0.5f, 0.75f}, {100.0f, 3.0f, -40.0f}, {0.3f, 0.9f, 0.1f}},
    {{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f}, {0.0f, 1.0f, 0.0f}},
};

struct Box
{
    float width, height, zNear, zFar;
};
constexpr Box BOXES[] = {
    {640.0f, 480.0f, 0.0f, 16000.0f}, {1366.0f, 768.0f, 1.0f, 32000.0f}, {0.3f, 7.0f, 0.1f, 1000.0f},
    {2.0f, 2.0f, 1.0f, 3.0f},         {-640.0f, -480.0f, 1.0f, 100.0f},
};

double LastPlace(double number)
{
    int exponent = 0;
    std::frexp(number, &exponent);
    return std::ldexp(1.0, exponent - 24);
}

// Entry by entry. An entry whose definition is zero without a sum must be zero.
void ExpectClose(Trial& trial, const kvMatrix& got, const Exact& exact, const char* what, int number)
{
    for (int i = 0; i < 16; ++i)
    {
        const double entry = static_cast<double>(got.m[i]);
        const double allowed = exact.largest[i] == 0.0 ? 0.0 : UNITS * LastPlace(exact.largest[i]);
        if (!trial.Expect(std::fabs(entry - exact.entry[i]) <= allowed,
                          "%s, case %d: _%d%d is %.9g, its definition %.9g", what, number, i / 4 + 1, i % 4 + 1, entry,
                          exact.entry[i]))
            return;
    }
}

void ExpectSameBits(Trial& trial, const kvMatrix& got, const kvMatrix& reference, const char* what, int number)
{
    for (int i = 0; i < 16; ++i)
        if (!trial.Expect(got.u[i] == reference.u[i],
                          "%s, case %d: _%d%d is %.9g (0x%08x), the reference %.9g (0x%08x)", what, number, i / 4 + 1,
                          i % 4 + 1, static_cast<double>(got.m[i]), static_cast<unsigned>(got.u[i]),
                          static_cast<double>(reference.m[i]), static_cast<unsigned>(reference.u[i])))
            return;
}

void ProductIsClose(Trial& trial)
{
    Numbers numbers;
    for (int i = 0; i < 50; ++i)
    {
        const kvMatrix a = numbers.NextMatrix(), b = numbers.NextMatrix();
        kvMatrix out;
        kvMatrix::Multiply(out, a, b);
        ExpectClose(trial, out, ExactProduct(a, b), "Multiply", i);
    }
}

void ProductMayOverwriteItsFactors(Trial& trial)
{
    Numbers numbers;
    const kvMatrix a = numbers.NextMatrix(), b = numbers.NextMatrix();
    kvMatrix first = a, second = b, both = a;
    kvMatrix::Multiply(first, first, b);
    kvMatrix::Multiply(second, a, second);
    kvMatrix::Multiply(both, both, both);
    ExpectClose(trial, first, ExactProduct(a, b), "Multiply with out = a", 0);
    ExpectClose(trial, second, ExactProduct(a, b), "Multiply with out = b", 0);
    ExpectClose(trial, both, ExactProduct(a, a), "Multiply with out = a = b", 0);
}

// A translation, then a scale: the point 1, 2, 3 goes to (1 + 10) * 2, (2 + 20) * 4, (3 + 30) * 8.
void ProductAppliesTheFirstFactorFirst(Trial& trial)
{
    const kvMatrix move = {{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 10, 20, 30, 1}}};
    const kvMatrix scale = {{{2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 0, 0, 0, 1}}};
    kvMatrix both;
    kvMatrix::Multiply(both, move, scale);
    trial.Expect(both._41 == 20.0f && both._42 == 80.0f && both._43 == 240.0f,
                 "a translation by 10, 20, 30 times a scale by 2, 4, 8 has the fourth row %g, %g, %g",
                 static_cast<double>(both._41), static_cast<double>(both._42), static_cast<double>(both._43));
}

void LookAtIsClose(Trial& trial)
{
    int number = 0;
    for (const View& view : VIEWS)
    {
        kvMatrix out;
        kvMatrix::LookAtLH(out, view.eye, view.at, view.up);
        ExpectClose(trial, out, ExactLookAt(view.eye, view.at, view.up), "LookAtLH", number++);
    }
}

// The point as a row vector times the matrix.
kvVector3 Carry(const kvVector3& p, const kvMatrix& m)
{
    const float w = p.x * m._14 + p.y * m._24 + p.z * m._34 + m._44;
    return {(p.x * m._11 + p.y * m._21 + p.z * m._31 + m._41) / w,
            (p.x * m._12 + p.y * m._22 + p.z * m._32 + m._42) / w,
            (p.x * m._13 + p.y * m._23 + p.z * m._33 + m._43) / w};
}

void ExpectAt(Trial& trial, const kvVector3& got, const kvVector3& expected, const char* what)
{
    const float off = fabsf(got.x - expected.x) + fabsf(got.y - expected.y) + fabsf(got.z - expected.z);
    trial.Expect(off < 1e-4f, "%s comes to %g, %g, %g instead of %g, %g, %g", what, static_cast<double>(got.x),
                 static_cast<double>(got.y), static_cast<double>(got.z), static_cast<double>(expected.x),
                 static_cast<double>(expected.y), static_cast<double>(expected.z));
}

void TheEyeIsTheOrigin(Trial& trial)
{
    kvMatrix out;
    kvMatrix::LookAtLH(out, {10.0f, 20.0f, 30.0f}, {10.0f, 20.0f, 35.0f}, {0.0f, 1.0f, 0.0f});
    ExpectAt(trial, Carry({10.0f, 20.0f, 30.0f}, out), {0.0f, 0.0f, 0.0f}, "the eye");
    ExpectAt(trial, Carry({10.0f, 20.0f, 35.0f}, out), {0.0f, 0.0f, 5.0f}, "a point 5 before the eye");
}

void TheTranslationIsTheFourthRow(Trial& trial)
{
    kvMatrix out;
    kvMatrix::LookAtLH(out, {3.0f, 4.0f, 5.0f}, {3.0f, 4.0f, 6.0f}, {0.0f, 1.0f, 0.0f});
    trial.Expect(out._41 == -3.0f && out._42 == -4.0f && out._43 == -5.0f && out._44 == 1.0f,
                 "the fourth row for an eye at 3, 4, 5 is %g, %g, %g, %g", static_cast<double>(out._41),
                 static_cast<double>(out._42), static_cast<double>(out._43), static_cast<double>(out._44));
}

// Left-handed: with y up and z ahead, x points to the right.
void LeftHandedWithDepthFromZero(Trial& trial)
{
    kvMatrix view, ortho, perspective;
    kvMatrix::LookAtLH(view, {0, 0, 0}, {0, 0, 1}, {0, 1, 0});
    ExpectAt(trial, Carry({1.0f, 0.0f, 0.0f}, view), {1.0f, 0.0f, 0.0f}, "a point to the right");
    kvMatrix::OrthoLH(ortho, 2, 2, 10, 110);
    kvMatrix::PerspectiveLH(perspective, 2, 2, 10, 110);
    for (const kvMatrix* matrix : {&ortho, &perspective})
    {
        ExpectAt(trial, Carry({0.0f, 0.0f, 10.0f}, *matrix), {0.0f, 0.0f, 0.0f}, "a point on the near plane");
        ExpectAt(trial, Carry({0.0f, 0.0f, 110.0f}, *matrix), {0.0f, 0.0f, 1.0f}, "a point on the far plane");
    }
}

void OrthoIsClose(Trial& trial)
{
    int number = 0;
    for (const Box& box : BOXES)
    {
        kvMatrix out;
        std::memset(&out, 0xA5, sizeof out);
        kvMatrix::OrthoLH(out, box.width, box.height, box.zNear, box.zFar);
        ExpectClose(trial, out, ExactOrtho(box.width, box.height, box.zNear, box.zFar), "OrthoLH", number++);
    }
}

void OrthoShowsItsBox(Trial& trial)
{
    kvMatrix out;
    kvMatrix::OrthoLH(out, 640, 480, 0, 100);
    ExpectAt(trial, Carry({-320.0f, -240.0f, 0.0f}, out), {-1.0f, -1.0f, 0.0f}, "the left lower near corner");
    ExpectAt(trial, Carry({320.0f, 240.0f, 100.0f}, out), {1.0f, 1.0f, 1.0f}, "the right upper far corner");
}

void PerspectiveIsClose(Trial& trial)
{
    int number = 0;
    for (const Box& box : BOXES)
    {
        if (box.zNear == 0.0f)
            continue;
        kvMatrix out;
        std::memset(&out, 0xA5, sizeof out);
        kvMatrix::PerspectiveLH(out, box.width, box.height, box.zNear, box.zFar);
        ExpectClose(trial, out, ExactPerspective(box.width, box.height, box.zNear, box.zFar), "PerspectiveLH",
                    number++);
    }
}

void PerspectiveMeasuresTheNearPlane(Trial& trial)
{
    kvMatrix out;
    kvMatrix::PerspectiveLH(out, 4, 3, 2, 200);
    ExpectAt(trial, Carry({2.0f, 1.5f, 2.0f}, out), {1.0f, 1.0f, 0.0f}, "the corner of the near plane");
    ExpectAt(trial, Carry({-20.0f, -15.0f, 20.0f}, out), {-1.0f, -1.0f, 0.909090909f},
             "the opposite edge ten times as far away");
}

void BuildersHaveTheReferencesBits(Trial& trial)
{
    Numbers numbers;
    for (int i = 0; i < 200; ++i)
    {
        const kvMatrix a = numbers.NextMatrix(), b = numbers.NextMatrix();
        kvMatrix out;
        kvMatrix::Multiply(out, a, b);
        ExpectSameBits(trial, out, ReferenceProduct(a, b), "Multiply", i);
        const kvVector3 eye = numbers.NextVector(), at = numbers.NextVector(), up = numbers.NextVector();
        kvMatrix::LookAtLH(out, eye, at, up);
        ExpectSameBits(trial, out, ReferenceLookAt(eye, at, up), "LookAtLH", i);
        const float width = numbers.Next(), height = numbers.Next(), zNear = numbers.Next(), zFar = numbers.Next();
        kvMatrix::OrthoLH(out, width, height, zNear, zFar);
        ExpectSameBits(trial, out, ReferenceOrtho(width, height, zNear, zFar), "OrthoLH", i);
        kvMatrix::PerspectiveLH(out, width, height, zNear, zFar);
        ExpectSameBits(trial, out, ReferencePerspective(width, height, zNear, zFar), "PerspectiveLH", i);
    }
}

constexpr Check CHECKS[] = {
    {"matrix.translation_row", Level::Follow, HEADER,
     "Vectors rows, multiplied on the left: p' = p * M, so the fourth row holds the translation.", Need_Nothing,
     TheTranslationIsTheFourthRow},
    {"matrix.product_order", Level::Follow, HEADER, "Products a * b applies a first: room * view * projection.",
     Need_Nothing, ProductAppliesTheFirstFactorFirst},
    {"matrix.left_handed", Level::Follow, HEADER, "Handed left-handed; depth 0 (near) to 1 (far).", Need_Nothing,
     LeftHandedWithDepthFromZero},
    {"matrix.product", Level::Follow, HEADER,
     "Each entry lies within 4 units in the last place of its definition; of a sum, in the last place of its largest "
     "term.",
     Need_Nothing, ProductIsClose},
    {"matrix.product_in_place", Level::Follow, HEADER, "out = a * b; out may be a or b.", Need_Nothing,
     ProductMayOverwriteItsFactors},
    {"matrix.look_at_eye", Level::Follow, HEADER, "Room to view space: the eye at the origin, looking along +z.",
     Need_Nothing, TheEyeIsTheOrigin},
    {"matrix.look_at", Level::Follow, HEADER,
     "Host. z = norm(at - eye), x = norm(cross(up, z)), y = cross(z, x) are the first three columns.", Need_Nothing,
     LookAtIsClose},
    {"matrix.ortho_box", Level::Follow, HEADER, "Parallel projection of a box of width x height about the z axis.",
     Need_Nothing, OrthoShowsItsBox},
    {"matrix.ortho", Level::Follow, HEADER, "Host. _11 = 2/w, _22 = 2/h, _33 = 1/(f-n), _43 = n/(n-f), _44 = 1.",
     Need_Nothing, OrthoIsClose},
    {"matrix.perspective_near_plane", Level::Follow, HEADER,
     "Perspective projection; width and height are those of the near plane.", Need_Nothing,
     PerspectiveMeasuresTheNearPlane},
    {"matrix.perspective", Level::Follow, HEADER,
     "Host. _11 = 2n/w, _22 = 2n/h, _33 = f/(f-n), _34 = 1, _43 = nf/(n-f).", Need_Nothing, PerspectiveIsClose},
    {"matrix.same_bits", Level::Follow, HEADER,
     "A host whose saves and traces shall agree with other machines keeps the reference's bits as well...",
     Need_Nothing, BuildersHaveTheReferencesBits},
};

} // namespace

Checks MatrixChecks() { return Table(CHECKS); }

} // namespace HostCheck
