#pragma once
// Matrices and vectors.
//
// Storage    row-major: _12 is row 1, column 2, and m[1].
// Vectors    rows, multiplied on the left: p' = p * M, so the fourth row holds the translation.
// Products   a * b applies a first: room * view * projection.
// Handed     left-handed; depth 0 (near) to 1 (far).
// Room y     grows downwards; a camera's own up vector follows its build (see Camera.h).
// Angles     degrees in every interface; RADIANS_PER_DEGREE converts them.
// Floats     strictly 32 bits, no fused or reordered operations (Strict_Float.h).
//
// The builders are the host's. Each entry lies within 4 units in the last place of its definition; of a sum, in the
// last place of its largest term. A host whose saves and traces shall agree with other machines keeps the reference's
// bits as well, which come from one order of operations, each rounded to float:
//   entries     from left to right as they are written below: 2n/w is (2 * n) / w, nf/(n-f) is (n * f) / (n - f)
//   sums        over rows, columns and x, y, z from left to right: ((a1 * b1 + a2 * b2) + a3 * b3) + a4 * b4
//   norm(v)     each component divided by sqrt((x * x + y * y) + z * z); no product with a reciprocal
//   cross(a, b) (a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x)
//   LookAtLH    the fourth row is -((x.x * eye.x + x.y * eye.y) + x.z * eye.z), likewise for y and z, then 1

#include <cstdint>

constexpr float RADIANS_PER_DEGREE = 0.017453292f; // pi / 180, rounded to float

struct kvVector3
{
    float x, y, z;
};

struct kvMatrix
{
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic" // a nameless struct: every compiler that we know takes it
#elif defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4201)
#endif
    union
    {
        struct
        {
            float _11, _12, _13, _14;
            float _21, _22, _23, _24;
            float _31, _32, _33, _34;
            float _41, _42, _43, _44;
        };
        float m[16];
        uint32_t u[16]; // the same bits, for exact copies and comparisons
    };
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#elif defined(_MSC_VER)
#pragma warning(pop)
#endif

    // out = a * b; out may be a or b. Host.
    static void Multiply(kvMatrix& out, const kvMatrix& a, const kvMatrix& b);

    // Room to view space: the eye at the origin, looking along +z. Host.
    // z = norm(at - eye), x = norm(cross(up, z)), y = cross(z, x) are the first three columns.
    static void LookAtLH(kvMatrix& out, const kvVector3& eye, const kvVector3& at, const kvVector3& up);

    // Parallel projection of a box of width x height about the z axis. Host.
    // _11 = 2/w, _22 = 2/h, _33 = 1/(f-n), _43 = n/(n-f), _44 = 1.
    static void OrthoLH(kvMatrix& out, float width, float height, float zNear, float zFar);

    // Perspective projection; width and height are those of the near plane. Host.
    // _11 = 2n/w, _22 = 2n/h, _33 = f/(f-n), _34 = 1, _43 = nf/(n-f).
    static void PerspectiveLH(kvMatrix& out, float width, float height, float zNear, float zFar);

    // Replaces the matrix by its inverse and answers true; answers false and changes nothing when the determinant is
    // exactly zero. Not finite where the determinant is tiny or not a number. Module: Matrix_Invert.cpp.
    bool Invert();
};

static_assert(sizeof(kvMatrix) == 64, "sixteen floats");
