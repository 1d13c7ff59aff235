#include "Tests/Support/Reference.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Reference
{
namespace
{
constexpr double PI = 3.14159265358979323846;
constexpr double RADIANS = PI / 180.0;
constexpr double EYE_DISTANCE = 16000.0;
constexpr double FAR_PLANE = 32000.0;

Vector Minus(const Vector& a, const Vector& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
double Dot(const Vector& a, const Vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
double Length(const Vector& a) { return std::sqrt(Dot(a, a)); }

Vector Cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Unit(const Vector& a)
{
    const double length = Length(a);
    return {a.x / length, a.y / length, a.z / length};
}

void EliminateColumn(double (&rows)[4][8], int column)
{
    int pivot = column;
    for (int row = column + 1; row < 4; ++row)
        if (std::fabs(rows[row][column]) > std::fabs(rows[pivot][column]))
            pivot = row;
    std::swap(rows[column], rows[pivot]);
    const double divisor = rows[column][column];
    for (double& entry : rows[column])
        entry /= divisor;
    for (int row = 0; row < 4; ++row)
    {
        const double factor = row == column ? 0.0 : rows[row][column];
        for (int k = 0; k < 8; ++k)
            rows[row][k] -= factor * rows[column][k];
    }
}

// The six products of the 3x3 minor without that row and column: their sum with signs, and of their magnitudes.
struct Minor
{
    double value, size;
};

Minor MinorOf(const Matrix& a, int row, int column)
{
    static const int orders[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}, {0, 2, 1}, {1, 0, 2}, {2, 1, 0}}; // 3 even, 3 odd
    Minor minor = {};
    for (int term = 0; term < 6; ++term)
    {
        double product = 1.0;
        for (int k = 0; k < 3; ++k)
        {
            const int c = orders[term][k];
            product *= a.m[k + (k >= row ? 1 : 0)][c + (c >= column ? 1 : 0)];
        }
        minor.value += term < 3 ? product : -product;
        minor.size += std::fabs(product);
    }
    return minor;
}

Vector UpOf(double degrees) { return {std::sin(-degrees * RADIANS), std::cos(-degrees * RADIANS), 0.0}; }
} // namespace

Matrix Widen(const kvMatrix& matrix)
{
    Matrix wide = {};
    for (int i = 0; i < 16; ++i)
        wide.m[i / 4][i % 4] = static_cast<double>(matrix.m[i]);
    return wide;
}

Matrix Identity()
{
    Matrix identity = {};
    for (int i = 0; i < 4; ++i)
        identity.m[i][i] = 1.0;
    return identity;
}

Matrix Magnitudes(const Matrix& a)
{
    Matrix result = {};
    for (int i = 0; i < 16; ++i)
        result.m[i / 4][i % 4] = std::fabs(a.m[i / 4][i % 4]);
    return result;
}

Matrix Product(const Matrix& a, const Matrix& b)
{
    Matrix result = {};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            for (int k = 0; k < 4; ++k)
                result.m[row][column] += a.m[row][k] * b.m[k][column];
    return result;
}

Matrix Inverse(const Matrix& a)
{
    double rows[4][8] = {};
    for (int row = 0; row < 4; ++row)
    {
        std::copy(a.m[row], a.m[row] + 4, rows[row]);
        rows[row][4 + row] = 1.0;
    }
    for (int column = 0; column < 4; ++column)
        EliminateColumn(rows, column);
    Matrix result = {};
    for (int row = 0; row < 4; ++row)
        std::copy(rows[row] + 4, rows[row] + 8, result.m[row]);
    return result;
}

Matrix InverseSize(const Matrix& a)
{
    double determinant = 0.0, determinantSize = 0.0;
    for (int k = 0; k < 4; ++k)
    {
        const Minor minor = MinorOf(a, 0, k);
        determinant += (k % 2 == 0 ? 1.0 : -1.0) * a.m[0][k] * minor.value;
        determinantSize += std::fabs(a.m[0][k]) * minor.size;
    }
    Matrix size = {};
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
        {
            const Minor minor = MinorOf(a, j, i);
            const double entry = std::fabs(minor.value / determinant);
            size.m[i][j] = minor.size / std::fabs(determinant) + entry * determinantSize / std::fabs(determinant);
        }
    return size;
}

static double Column(const Matrix& a, const Vector& p, int column)
{
    return p.x * a.m[0][column] + p.y * a.m[1][column] + p.z * a.m[2][column] + a.m[3][column];
}

Vector Map(const Matrix& a, const Vector& point)
{
    return {Column(a, point, 0), Column(a, point, 1), Column(a, point, 2)};
}

Vector Project(const Matrix& a, const Vector& point)
{
    const double w = Column(a, point, 3);
    const Vector mapped = Map(a, point);
    return {mapped.x / w, mapped.y / w, mapped.z / w};
}

Matrix LookAt(const Vector& eye, const Vector& at, const Vector& up)
{
    const Vector z = Unit(Minus(at, eye));
    const Vector x = Unit(Cross(up, z));
    const Vector y = Cross(z, x);
    return {{{x.x, y.x, z.x, 0.0},
             {x.y, y.y, z.y, 0.0},
             {x.z, y.z, z.z, 0.0},
             {-Dot(x, eye), -Dot(y, eye), -Dot(z, eye), 1.0}}};
}

Matrix Ortho(double width, double height, double zNear, double zFar)
{
    Matrix result = {};
    result.m[0][0] = 2.0 / width;
    result.m[1][1] = 2.0 / height;
    result.m[2][2] = 1.0 / (zFar - zNear);
    result.m[3][2] = zNear / (zNear - zFar);
    result.m[3][3] = 1.0;
    return result;
}

Matrix Perspective(double width, double height, double zNear, double zFar)
{
    Matrix result = {};
    result.m[0][0] = 2.0 * zNear / width;
    result.m[1][1] = 2.0 * zNear / height;
    result.m[2][2] = zFar / (zFar - zNear);
    result.m[2][3] = 1.0;
    result.m[3][2] = zNear * zFar / (zNear - zFar);
    return result;
}

Frame Flat(double x, double y, double width, double height, double degrees)
{
    const Vector at = {x + width / 2, y + height / 2, 0.0};
    return {LookAt({at.x, at.y, -EYE_DISTANCE}, at, UpOf(degrees)), Ortho(width, height, 0.0, FAR_PLANE)};
}

Frame Deep(double x, double y, double width, double height, double degrees)
{
    const Vector at = {x + width / 2, y + height / 2, 0.0};
    return {LookAt({at.x, at.y, -width}, at, UpOf(degrees)), Perspective(1.0, -height / width, 1.0, FAR_PLANE)};
}

double AngleSlack(double degrees, double slack)
{
    const double cosine = std::cos(degrees * RADIANS);
    const double middle = std::acos(cosine);
    const double low = std::acos(std::max(cosine - slack, -1.0));
    const double high = std::acos(std::min(cosine + slack, 1.0));
    return std::max(std::fabs(low - middle), std::fabs(high - middle)) / RADIANS;
}

double Turn(double a, double b)
{
    const double apart = std::fabs(std::fmod(a - b, 360.0));
    return std::min(apart, 360.0 - apart);
}

// The target stays in the dead zone when the edge lies between two bounds; each wish after that is a clamp.
double Follow(const Axis& axis)
{
    const double target = std::floor(axis.target);
    const double lowest = target + axis.border - axis.size, highest = target - axis.border;
    double wanted = lowest < highest ? std::clamp(axis.edge, lowest, highest) : target - axis.size / 2;
    wanted = std::max(wanted, 0.0);
    if (axis.hasRoom)
        wanted = std::min(wanted, axis.roomSize - axis.size);
    return axis.speed < 0 ? wanted : std::clamp(wanted, axis.edge - axis.speed, axis.edge + axis.speed);
}
} // namespace Reference
