#pragma once
// What cameras should compute, told a second time in double precision and in the plainest way, to compare with.
//
// Every result comes with the size of what was added up to make it: float errors are relative to that, and not to the
// entry itself, which may be small because large terms cancelled.

#include "Platform/Matrix.h"

namespace Reference
{
constexpr double EPSILON = 1.0 / (1 << 24); // half a unit in the last place of a float near 1

struct Matrix
{
    double m[4][4];
};

struct Vector
{
    double x, y, z;
};

Matrix Widen(const kvMatrix& matrix);
Matrix Identity();
Matrix Magnitudes(const Matrix& a); // each entry without its sign

Matrix Product(const Matrix& a, const Matrix& b); // a first
Matrix Inverse(const Matrix& a);                  // elimination with pivoting; a must be regular
// What a cofactor inversion adds up to make each entry, the determinant's share included.
Matrix InverseSize(const Matrix& a);
Vector Map(const Matrix& a, const Vector& point);     // (x, y, z, 1) * a, without the division
Vector Project(const Matrix& a, const Vector& point); // with it

Matrix LookAt(const Vector& eye, const Vector& at, const Vector& up);
Matrix Ortho(double width, double height, double zNear, double zFar);
Matrix Perspective(double width, double height, double zNear, double zFar);

// A camera's two matrices from its rectangle and angle in degrees.
struct Frame
{
    Matrix view, projection;
};
Frame Flat(double x, double y, double width, double height, double degrees);
Frame Deep(double x, double y, double width, double height, double degrees);

// How far an angle can be off, in degrees, that is the arc cosine of its cosine, when that cosine is off by slack.
double AngleSlack(double degrees, double slack);
// The distance of two angles in degrees, the short way round.
double Turn(double a, double b);

// One axis of one following step.
struct Axis
{
    double target, edge, size, border, speed;
    bool hasRoom;
    double roomSize;
};
double Follow(const Axis& axis); // the new edge
} // namespace Reference
