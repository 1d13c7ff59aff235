#pragma once

struct kvMatrix;

namespace CameraModule
{

// Stores the inverse of the matrix and answers true; answers false and stores nothing when the determinant is exactly
// zero. inverse may be the matrix itself.
bool InvertTo(kvMatrix& inverse, const kvMatrix& matrix);

} // namespace CameraModule
