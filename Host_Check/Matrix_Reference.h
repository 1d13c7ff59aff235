#pragma once
// The definitions of Platform/Matrix.h twice: in double precision, to measure a host against, and in the reference's
// order of float operations, for its bits.

#include "Platform/Matrix.h"

namespace HostCheck
{

// The sixteen entries of a definition. largest: of each entry, the largest term of its sum, whose last place counts.
struct Exact
{
    double entry[16];
    double largest[16];
};

Exact ExactProduct(const kvMatrix& a, const kvMatrix& b);
Exact ExactLookAt(const kvVector3& eye, const kvVector3& at, const kvVector3& up);
Exact ExactOrtho(float width, float height, float zNear, float zFar);
Exact ExactPerspective(float width, float height, float zNear, float zFar);

kvMatrix ReferenceProduct(const kvMatrix& a, const kvMatrix& b);
kvMatrix ReferenceLookAt(const kvVector3& eye, const kvVector3& at, const kvVector3& up);
kvMatrix ReferenceOrtho(float width, float height, float zNear, float zFar);
kvMatrix ReferencePerspective(float width, float height, float zNear, float zFar);

} // namespace HostCheck
