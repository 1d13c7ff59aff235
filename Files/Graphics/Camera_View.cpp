// The two builds, and the camera's frame read back from its matrices.
#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Graphics/Trigonometry.h"
#include "Platform/Compiler.h"

#include <cmath>

namespace
{

constexpr float FLAT_EYE_Z = -16000.0f; // a flat view shows what lies within 16000 of z = 0
constexpr float DEPTH_RANGE = 32000.0f;

// A view that looks along +z at the room point (x, y), rotated by the angle. Inlined, because a call costs a rebuild
// some percent.
CAMERA_ALWAYS_INLINE void LookAlongZ(kvMatrix& view, float x, float y, float eyeZ, float degrees)
{
    const float angle = degrees * -RADIANS_PER_DEGREE; // 0 gives minus zero
    const kvVector3 eye = {x, y, eyeZ};
    const kvVector3 at = {x, y, 0.0f};
    const SineCosine turn = GR_SinCos(angle);
    kvMatrix::LookAtLH(view, eye, at, {turn.sine, turn.cosine, 0.0f});
}

kvVector3 Normalised(float x, float y, float z)
{
    const float inverseLength = 1.0f / sqrtf(x * x + y * y + z * z);
    return {x * inverseLength, y * inverseLength, z * inverseLength};
}

} // namespace

void CCamera::BuildView()
{
    const float x = m_viewX + m_viewWidth * 0.5f;
    const float y = m_viewY + m_viewHeight * 0.5f;
    if (IsOrthoProj())
        Build2DView(x, y);
    else
        Build3DView(x, y);
}

void CCamera::BuildViewIfDirty()
{
    if (m_isViewDirty)
        BuildView();
}

void CCamera::Build2DView(float x, float y)
{
    LookAlongZ(m_viewMat, x, y, FLAT_EYE_Z, m_viewAngle);
    kvMatrix::OrthoLH(m_projMat, m_viewWidth, m_viewHeight, 0.0f, DEPTH_RANGE);
    UpdateAfterBuild();
}

void CCamera::Build3DView(float x, float y)
{
    LookAlongZ(m_viewMat, x, y, -m_viewWidth, m_viewAngle);
    kvMatrix::PerspectiveLH(m_projMat, 1.0f, -m_viewHeight / m_viewWidth, 1.0f,
                            DEPTH_RANGE); // the negative height flips y
    UpdateAfterBuild();
}

kvVector3 CCamera::GetCamPos() const { return {m_invViewMat._41, m_invViewMat._42, m_invViewMat._43}; }

kvVector3 CCamera::GetCamDir() const { return Normalised(m_viewMat._13, m_viewMat._23, m_viewMat._33); }

kvVector3 CCamera::GetCamUp() const { return Normalised(m_viewMat._12, m_viewMat._22, m_viewMat._32); }

kvVector3 CCamera::GetCamRight() const { return Normalised(m_viewMat._31, m_viewMat._31, m_viewMat._31); }
