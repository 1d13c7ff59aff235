#include "Platform/Strict_Float.h"

#include "Files/Graphics/Camera.h"

#include "Files/Graphics/Camera_GCProxy.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Matrix_Invert.h"
#include "Files/Graphics/Values.h"

using namespace CameraModule;

namespace
{

constexpr kvMatrix IDENTITY = {{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};

uint32_t s_births; // constructions so far, from which each camera takes its number

void Discard(RValue& field)
{
    ReleaseValue(field);
    field = EmptyValue(VALUE_UNDEFINED);
}

} // namespace

CCamera::CCamera()
    : m_projMat(IDENTITY), m_viewMat(IDENTITY), m_viewProjMat(IDENTITY), m_invProjMat(IDENTITY), m_invViewMat(IDENTITY),
      m_invViewProjMat(IDENTITY), m_beginScript(RealValue(-1.0)), m_endScript(RealValue(-1.0)),
      m_updateScript(RealValue(-1.0)), m_birth(++s_births)
{
}

CCamera::~CCamera()
{
    if (pGCProxy != nullptr)
    {
        pGCProxy->Detach();
        pGCProxy = nullptr;
    }
    Discard(m_beginScript);
    Discard(m_endScript);
    Discard(m_updateScript);
}

void CCamera::CopyFrom(CCamera* source)
{
    m_projMat = source->m_projMat;
    m_viewMat = source->m_viewMat;
    m_viewProjMat = source->m_viewProjMat;
    m_invProjMat = source->m_invProjMat;
    m_invViewMat = source->m_invViewMat;
    m_invViewProjMat = source->m_invViewProjMat;
    m_viewX = source->m_viewX;
    m_viewY = source->m_viewY;
    m_viewWidth = source->m_viewWidth;
    m_viewHeight = source->m_viewHeight;
    m_viewAngle = source->m_viewAngle;
}

void CCamera::CopyViewFrom(const CCamera& source)
{
    m_viewX = source.m_viewX;
    m_viewY = source.m_viewY;
    m_viewWidth = source.m_viewWidth;
    m_viewHeight = source.m_viewHeight;
    m_viewSpeedX = source.m_viewSpeedX;
    m_viewSpeedY = source.m_viewSpeedY;
    m_viewBorderX = source.m_viewBorderX;
    m_viewBorderY = source.m_viewBorderY;
    m_viewAngle = source.m_viewAngle;
    m_targetInstance = source.m_targetInstance;
}

void CCamera::SetID(int id)
{
    if (id != m_ID)
        CCameraManager::IdentifierChanged(this);
    m_ID = id;
}

void CCamera::SetProjMat(const kvMatrix& projection)
{
    m_projMat = projection;
    StoreInverse(m_invProjMat, m_projMat);
    UpdateProducts();
}

void CCamera::SetViewMat(const kvMatrix& view)
{
    m_viewMat = view;
    StoreInverse(m_invViewMat, m_viewMat);
    UpdateProducts();
}

void CCamera::UpdateAfterBuild()
{
    kvMatrix::Multiply(m_viewProjMat, m_viewMat, m_projMat);
    if (InvertFlatCamera())
    {
        m_is2D = true; // the nine elements are among the zeros of its shapes
    }
    else
    {
        UpdateEachInverse();
        Update2D();
    }
    m_isViewDirty = false;
}

void CCamera::UpdateProducts()
{
    kvMatrix::Multiply(m_viewProjMat, m_viewMat, m_projMat);
    StoreInverse(m_invViewProjMat, m_viewProjMat);
    Update2D();
}

// A float is zero, of either sign, when no bit but the sign is set: nine zeros are found by one comparison.
void CCamera::Update2D()
{
    const uint32_t* const projection = m_projMat.u;
    const uint32_t* const view = m_viewMat.u;
    const uint32_t bits = projection[11] |                                                // no perspective
                          projection[4] | projection[8] | projection[1] | projection[9] | // a box along the axes
                          projection[2] | projection[6] | view[2] | view[6];              // seen straight along z
    m_is2D = (bits << 1) == 0;
}
