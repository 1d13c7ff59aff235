// Where hosts find the fields. Only pointers may move a field between targets.
#include "Files/Graphics/Graphics_Support.h"

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace
{
constexpr size_t POINTER = sizeof(void*);

struct Field
{
    const char* name;
    size_t offset;
    size_t expected;
};

void ExpectFields(const std::vector<Field>& fields)
{
    for (const Field& field : fields)
        EXPECT_EQ(field.offset, field.expected) << field.name;
}

#define FIELD(type, name, expected)                                                                                    \
    Field { #name, offsetof(type, name), expected }

TEST(Layout, ValueIsFourWordsInOrder)
{
    ExpectFields({FIELD(RValue, val, 0), FIELD(RValue, v32, 0), FIELD(RValue, v64, 0), FIELD(RValue, pRefString, 0),
                  FIELD(RValue, pRefArray, 0), FIELD(RValue, ptr, 0), FIELD(RValue, pObj, 0), FIELD(RValue, flags, 8),
                  FIELD(RValue, kind, 12)});
    EXPECT_EQ(sizeof(RValue), 16u);
    EXPECT_EQ(sizeof(KvRValue), 16u);
}

TEST(Layout, ViewRecordIsFourteenWordsInOrder)
{
    ExpectFields({FIELD(KvRoomView, visible, 0), FIELD(KvRoomView, xview, 4), FIELD(KvRoomView, yview, 8),
                  FIELD(KvRoomView, wview, 12), FIELD(KvRoomView, hview, 16), FIELD(KvRoomView, xport, 20),
                  FIELD(KvRoomView, yport, 24), FIELD(KvRoomView, wport, 28), FIELD(KvRoomView, hport, 32),
                  FIELD(KvRoomView, hborder, 36), FIELD(KvRoomView, vborder, 40), FIELD(KvRoomView, hspeed, 44),
                  FIELD(KvRoomView, vspeed, 48), FIELD(KvRoomView, index, 52)});
    EXPECT_EQ(sizeof(KvRoomView), 56u);
}

TEST(Layout, MatrixIsSixteenFloatsRowByRow)
{
    ExpectFields({FIELD(kvMatrix, _11, 0), FIELD(kvMatrix, _12, 4), FIELD(kvMatrix, _14, 12), FIELD(kvMatrix, _21, 16),
                  FIELD(kvMatrix, _22, 20), FIELD(kvMatrix, _31, 32), FIELD(kvMatrix, _33, 40),
                  FIELD(kvMatrix, _34, 44), FIELD(kvMatrix, _41, 48), FIELD(kvMatrix, _44, 60), FIELD(kvMatrix, m, 0),
                  FIELD(kvMatrix, u, 0)});
    EXPECT_EQ(sizeof(kvMatrix), 64u);
    EXPECT_EQ(sizeof(kvVector3), 12u);
}

// The script fields need 8-byte alignment; the words before them come out even on both kinds of target.
TEST(Layout, CameraRecordFollowsItsOrder)
{
    const size_t rectangle = POINTER + 6 * 64;
    const size_t target = rectangle + 9 * 4;
    const size_t scripts = (target + 8 + 7) / 8 * 8;
    const size_t flags = scripts + 3 * 16;
    ExpectFields({FIELD(CCamera, pGCProxy, 0),
                  FIELD(CCamera, m_projMat, POINTER),
                  FIELD(CCamera, m_viewMat, POINTER + 64),
                  FIELD(CCamera, m_viewProjMat, POINTER + 128),
                  FIELD(CCamera, m_invProjMat, POINTER + 192),
                  FIELD(CCamera, m_invViewMat, POINTER + 256),
                  FIELD(CCamera, m_invViewProjMat, POINTER + 320),
                  FIELD(CCamera, m_viewX, rectangle),
                  FIELD(CCamera, m_viewY, rectangle + 4),
                  FIELD(CCamera, m_viewWidth, rectangle + 8),
                  FIELD(CCamera, m_viewHeight, rectangle + 12),
                  FIELD(CCamera, m_viewSpeedX, rectangle + 16),
                  FIELD(CCamera, m_viewSpeedY, rectangle + 20),
                  FIELD(CCamera, m_viewBorderX, rectangle + 24),
                  FIELD(CCamera, m_viewBorderY, rectangle + 28),
                  FIELD(CCamera, m_viewAngle, rectangle + 32),
                  FIELD(CCamera, m_targetInstance, target),
                  FIELD(CCamera, m_cachedFrame, target),
                  FIELD(CCamera, m_ID, target + 4),
                  FIELD(CCamera, m_beginScript, scripts),
                  FIELD(CCamera, m_endScript, scripts + 16),
                  FIELD(CCamera, m_updateScript, scripts + 32),
                  FIELD(CCamera, m_is2D, flags),
                  FIELD(CCamera, m_isViewDirty, flags + 1),
                  FIELD(CCamera, m_isClone, flags + 2),
                  FIELD(CCamera, m_isPersistent, flags + 3)});
}

#if UINTPTR_MAX == 0xFFFFFFFFu
TEST(Layout, CameraRecordHasTheDevicesOffsets)
{
    ExpectFields({FIELD(CCamera, m_projMat, 4), FIELD(CCamera, m_viewX, 388), FIELD(CCamera, m_viewAngle, 420),
                  FIELD(CCamera, m_targetInstance, 424), FIELD(CCamera, m_ID, 428), FIELD(CCamera, m_beginScript, 432),
                  FIELD(CCamera, m_endScript, 448), FIELD(CCamera, m_updateScript, 464), FIELD(CCamera, m_is2D, 480),
                  FIELD(CCamera, m_isPersistent, 483)});
}
#endif

TEST(Layout, ManagerRecordFollowsItsOrder)
{
    ExpectFields({FIELD(CCameraManager, m_activeCamera, 0), FIELD(CCameraManager, m_pScriptInstance, POINTER),
                  FIELD(CCameraManager, m_cameras, 2 * POINTER), FIELD(CCameraManager, m_roomcameras, 3 * POINTER),
                  FIELD(CCameraManager, m_cameraListSize, 4 * POINTER),
                  FIELD(CCameraManager, m_InitialLoadHighPoint, 4 * POINTER + 4),
                  FIELD(CCameraManager, m_lastCamPos, 4 * POINTER + 8)});
}

TEST(Layout, StringRecordHoldsTextCountAndLength)
{
    ExpectFields(
        {FIELD(RefString, m_thing, 0), FIELD(RefString, m_refCount, POINTER), FIELD(RefString, m_size, POINTER + 4)});
}

TEST(Layout, KindsHaveTheirNumbers)
{
    const std::vector<uint32_t> kinds = {
        VALUE_REAL, VALUE_STRING, VALUE_ARRAY, VALUE_PTR,      VALUE_VEC3, VALUE_UNDEFINED, VALUE_OBJECT,   VALUE_INT32,
        VALUE_VEC4, VALUE_VEC44,  VALUE_INT64, VALUE_ACCESSOR, VALUE_NULL, VALUE_BOOL,      VALUE_ITERATOR, VALUE_REF};
    for (uint32_t number = 0; number < kinds.size(); ++number)
        EXPECT_EQ(kinds[number], number);
    EXPECT_EQ(VALUE_UNSET, 0xFFFFFFu);
}

TEST(Layout, BufferTypesHaveTheirNumbers)
{
    const std::vector<int> types = {eBuffer_None, eBuffer_U8,     eBuffer_S8,  eBuffer_U16, eBuffer_S16,
                                    eBuffer_U32,  eBuffer_S32,    eBuffer_F16, eBuffer_F32, eBuffer_D64,
                                    eBuffer_Bool, eBuffer_String, eBuffer_U64, eBuffer_Text};
    for (int number = 0; number < static_cast<int>(types.size()); ++number)
        EXPECT_EQ(types[static_cast<size_t>(number)], number);
}
} // namespace
