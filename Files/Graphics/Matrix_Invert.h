#pragma once

#include "Platform/Matrix.h"

namespace CameraModule
{

// Stores the inverse of the matrix and answers true; answers false and stores nothing when the determinant is exactly
// zero. inverse may be the matrix itself.
bool InvertTo(kvMatrix& inverse, const kvMatrix& matrix);

// Stores the inverse of the matrix or, where it is singular, a copy of the matrix itself.
inline void StoreInverse(kvMatrix& inverse, const kvMatrix& matrix)
{
    if (!InvertTo(inverse, matrix))
        inverse = matrix;
}

} // namespace CameraModule
