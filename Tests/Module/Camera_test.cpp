// The record: defaults, accessors, destruction.

#include "Tests/Support/Fixture.h"
#include "Tests/Support/Numbers.h"

#include <cstring>
#include <limits>
#include <memory>

using namespace Recording;

namespace
{

// Which bytes of a camera differ from an earlier copy of them.
class Snapshot
{
public:
    explicit Snapshot(const CCamera& camera)
    {
        std::memcpy(m_bytes, static_cast<const void*>(&camera), sizeof m_bytes);
    }

    bool OnlyChanged(const CCamera& camera, const void* field, size_t size) const
    {
        const unsigned char* now = reinterpret_cast<const unsigned char*>(&camera);
        const size_t first = static_cast<size_t>(static_cast<const unsigned char*>(field) - now);
        for (size_t i = 0; i < sizeof m_bytes; ++i)
            if (now[i] != m_bytes[i] && (i < first || i >= first + size))
                return false;
        return true;
    }

private:
    unsigned char m_bytes[sizeof(CCamera)];
};

struct FloatField
{
    const char* name;
    float CCamera::*field;
    void (CCamera::*set)(float);
    float (CCamera::*get)() const;
};

const FloatField FLOAT_FIELDS[] = {
    {"ViewX", &CCamera::m_viewX, &CCamera::SetViewX, &CCamera::GetViewX},
    {"ViewY", &CCamera::m_viewY, &CCamera::SetViewY, &CCamera::GetViewY},
    {"ViewWidth", &CCamera::m_viewWidth, &CCamera::SetViewWidth, &CCamera::GetViewWidth},
    {"ViewHeight", &CCamera::m_viewHeight, &CCamera::SetViewHeight, &CCamera::GetViewHeight},
    {"ViewSpeedX", &CCamera::m_viewSpeedX, &CCamera::SetViewSpeedX, &CCamera::GetViewSpeedX},
    {"ViewSpeedY", &CCamera::m_viewSpeedY, &CCamera::SetViewSpeedY, &CCamera::GetViewSpeedY},
    {"ViewBorderX", &CCamera::m_viewBorderX, &CCamera::SetViewBorderX, &CCamera::GetViewBorderX},
    {"ViewBorderY", &CCamera::m_viewBorderY, &CCamera::SetViewBorderY, &CCamera::GetViewBorderY},
    {"ViewAngle", &CCamera::m_viewAngle, &CCamera::SetViewAngle, &CCamera::GetViewAngle},
};

struct MatrixField
{
    const char* name;
    kvMatrix CCamera::*field;
    kvMatrix (CCamera::*get)() const;
};

const MatrixField MATRIX_FIELDS[] = {
    {"ProjMat", &CCamera::m_projMat, &CCamera::GetProjMat},
    {"ViewMat", &CCamera::m_viewMat, &CCamera::GetViewMat},
    {"ViewProjMat", &CCamera::m_viewProjMat, &CCamera::GetViewProjMat},
    {"InvProjMat", &CCamera::m_invProjMat, &CCamera::GetInvProjMat},
    {"InvViewMat", &CCamera::m_invViewMat, &CCamera::GetInvViewMat},
    {"InvViewProjMat", &CCamera::m_invViewProjMat, &CCamera::GetInvViewProjMat},
};

} // namespace

class Camera : public ModuleTest
{
protected:
    CCamera camera; // of the test's own, never registered
};

// ---- defaults ----

TEST_F(Camera, ANewCameraHasNoProxyNoIdentifierAndNoTarget)
{
    EXPECT_EQ(camera.pGCProxy, nullptr);
    EXPECT_EQ(camera.GetID(), -1);
    EXPECT_EQ(camera.GetTargetInstance(), -1);
}

TEST_F(Camera, ANewCameraHasIdentityMatrices)
{
    for (const MatrixField& matrix : MATRIX_FIELDS)
        EXPECT_EQ(camera.*matrix.field, Identity()) << matrix.name;
}

TEST_F(Camera, ANewCameraHasAllViewParametersZero)
{
    for (const FloatField& field : FLOAT_FIELDS)
        EXPECT_EQ(camera.*field.field, 0.0f) << field.name;
}

TEST_F(Camera, ANewCameraHasTheRealMinusOneForEachScript)
{
    for (const RValue* script : {&camera.m_beginScript, &camera.m_endScript, &camera.m_updateScript})
    {
        EXPECT_EQ(script->kind, VALUE_REAL + 0u);
        EXPECT_EQ(script->flags, 0u);
        EXPECT_EQ(script->val, -1.0);
    }
}

TEST_F(Camera, ANewCameraIsFlatCleanNoCloneAndNotPersistent)
{
    EXPECT_TRUE(camera.Is2D());
    EXPECT_TRUE(camera.IsOrthoProj());
    EXPECT_FALSE(camera.IsViewDirty());
    EXPECT_FALSE(camera.IsCloned());
    EXPECT_FALSE(camera.isPersistent());
}

TEST_F(Camera, TheConstructorLeavesNothingToTheStorage)
{
    alignas(CCamera) unsigned char storage[2][sizeof(CCamera)];
    std::memset(storage[0], 0x00, sizeof storage[0]);
    std::memset(storage[1], 0xCD, sizeof storage[1]);
    CCamera* clear = new (storage[0]) CCamera;
    CCamera* littered = new (storage[1]) CCamera;
    for (const MatrixField& matrix : MATRIX_FIELDS)
        EXPECT_EQ(clear->*matrix.field, littered->*matrix.field) << matrix.name;
    const auto sameFrom = [&](size_t first, size_t last)
    { return std::memcmp(storage[0] + first, storage[1] + first, last - first) == 0; };
    EXPECT_TRUE(sameFrom(offsetof(CCamera, m_viewX), offsetof(CCamera, m_ID) + sizeof(int32_t)));
    EXPECT_TRUE(sameFrom(offsetof(CCamera, m_beginScript), offsetof(CCamera, m_isPersistent) + sizeof(bool)));
    clear->~CCamera();
    littered->~CCamera();
}

TEST_F(Camera, ConstructionAsksNothingOfTheHost)
{
    TakeLog();
    Listen(Topic_All);
    CCamera another;
    EXPECT_EQ(TakeLog(), None());
}

// ---- accessors ----

TEST_F(Camera, EachViewParameterIsABareStoreOfItsBits)
{
    const float values[] = {12.5f, -0.0f, NOT_A_NUMBER, -std::numeric_limits<float>::infinity(), 1e-42f};
    for (const FloatField& field : FLOAT_FIELDS)
        for (float value : values)
        {
            const Snapshot before(camera);
            (camera.*field.set)(value);
            EXPECT_EQ(std::memcmp(&(camera.*field.field), &value, sizeof value), 0) << field.name << " " << value;
            EXPECT_TRUE(before.OnlyChanged(camera, &(camera.*field.field), sizeof(float))) << field.name;
            const float read = (camera.*field.get)();
            EXPECT_EQ(std::memcmp(&read, &value, sizeof value), 0) << field.name << " " << value;
        }
}

TEST_F(Camera, ViewParametersLeaveTheDirtyFlagAsItIs)
{
    for (bool dirty : {false, true})
        for (const FloatField& field : FLOAT_FIELDS)
        {
            camera.m_isViewDirty = dirty;
            (camera.*field.set)(7.0f);
            EXPECT_EQ(camera.IsViewDirty(), dirty) << field.name;
        }
}

TEST_F(Camera, SetViewDirtySetsTheFlagAlone)
{
    const Snapshot before(camera);
    camera.SetViewDirty();
    EXPECT_TRUE(camera.IsViewDirty());
    EXPECT_TRUE(before.OnlyChanged(camera, &camera.m_isViewDirty, sizeof(bool)));
}

TEST_F(Camera, TheTargetAndTheCachedFrameAreOneWord)
{
    camera.SetTargetInstance(100017);
    EXPECT_EQ(camera.GetCachedFrame(), 100017);
    EXPECT_EQ(camera.m_cachedFrame, 100017);
    camera.SetCachedFrame(-12);
    EXPECT_EQ(camera.GetTargetInstance(), -12);
    EXPECT_EQ(camera.m_targetInstance, -12);
}

TEST_F(Camera, TheTargetTakesAnyInteger)
{
    for (int target : {INT32_MIN, -1, 0, 99999, 100000, INT32_MAX})
    {
        const Snapshot before(camera);
        camera.SetTargetInstance(target);
        EXPECT_EQ(camera.GetTargetInstance(), target);
        EXPECT_TRUE(before.OnlyChanged(camera, &camera.m_targetInstance, sizeof(int32_t)));
    }
}

TEST_F(Camera, TheIdentifierIsAPlainStore)
{
    for (int id : {0, 41, INT32_MAX, -7, -1})
    {
        const Snapshot before(camera);
        camera.SetID(id);
        EXPECT_EQ(camera.GetID(), id);
        EXPECT_TRUE(before.OnlyChanged(camera, &camera.m_ID, sizeof(int32_t)));
    }
}

TEST_F(Camera, CloneAndPersistentFlagsAreIndependent)
{
    camera.SetCloned(true);
    EXPECT_TRUE(camera.IsCloned());
    EXPECT_FALSE(camera.isPersistent());
    camera.SetPersistent(true);
    camera.SetCloned(false);
    EXPECT_FALSE(camera.IsCloned());
    EXPECT_TRUE(camera.isPersistent());
    camera.SetPersistent(false);
    EXPECT_FALSE(camera.isPersistent());
}

TEST_F(Camera, ScriptGettersPointAtTheFieldsThemselves)
{
    EXPECT_EQ(camera.GetBeginScript(), &camera.m_beginScript);
    EXPECT_EQ(camera.GetEndScript(), &camera.m_endScript);
    EXPECT_EQ(camera.GetUpdateScript(), &camera.m_updateScript);
}

TEST_F(Camera, EachMatrixGetterReturnsACopyOfItsField)
{
    float next = 1.0f;
    for (const MatrixField& matrix : MATRIX_FIELDS)
        for (float& entry : (camera.*matrix.field).m)
            entry = next++;
    for (const MatrixField& matrix : MATRIX_FIELDS)
    {
        kvMatrix copy = (camera.*matrix.get)();
        EXPECT_EQ(copy, camera.*matrix.field) << matrix.name;
        copy._11 = -1.0f;
        EXPECT_NE(copy, camera.*matrix.field) << matrix.name;
    }
}

// ---- destruction ----

TEST_F(Camera, DestructionReleasesEachScriptOnceInOrder)
{
    auto dying = std::make_unique<CCamera>();
    dying->m_updateScript = OfArray(NewArray(std::vector<double>{1.0}));
    dying->m_beginScript = OfArray(NewArray(std::vector<double>{2.0}));
    dying->m_endScript = OfArray(NewArray(std::vector<double>{3.0}));
    TakeLog();
    dying.reset();
    EXPECT_EQ(TakeLog(), (Lines{"Array_DecRef(A2)", "Array_SetOwner(A2)", "Array_DecRef(A3)", "Array_SetOwner(A3)",
                                "Array_DecRef(A1)", "Array_SetOwner(A1)"}));
    EXPECT_EQ(LiveArrays(), 0u);
}

TEST_F(Camera, DestructionDropsOneReferenceToASharedString)
{
    Owned text(NewString("shared"));
    text.pRefString->m_refCount = 3;
    {
        CCamera dying;
        dying.m_beginScript = text;
        dying.m_updateScript = text;
    }
    EXPECT_EQ(text.pRefString->m_refCount, 1);
}

TEST_F(Camera, DestructionOfACameraWithScriptNumbersAsksNothingOfTheHost)
{
    auto dying = std::make_unique<CCamera>();
    dying->m_beginScript = Int32(5);
    dying->m_endScript = Real(3.0);
    TakeLog();
    dying.reset();
    EXPECT_EQ(TakeLog(), None());
}

TEST_F(Camera, DestructionCutsTheProxyOffBeforeItReleasesScripts)
{
    auto dying = std::make_unique<CCamera>();
    dying->pGCProxy = new Camera_GCProxy(dying.get());
    Camera_GCProxy* proxy = dying->pGCProxy;
    dying->m_endScript = OfArray(NewArray(std::vector<double>{}));
    TakeLog();
    dying.reset();
    EXPECT_EQ(TakeLog(), (Lines{"RemoveGlobalObject(O1)", "Array_DecRef(A1)", "Array_SetOwner(A1)"}));
    EXPECT_EQ(proxy->pCamObj, nullptr);
    EXPECT_FALSE(IsRoot(proxy));
    EXPECT_EQ(LiveObjects(), 1u) << "the proxy is left to the collector";
}
