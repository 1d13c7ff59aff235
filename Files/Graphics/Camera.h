#pragma once
// One camera: a rectangle of a room, the matrices that show it, the target that it follows, its callbacks.
//
// Units      room units and degrees; a positive angle rotates the view as the builds in Camera_View.cpp say.
// Matrices   conventions of Platform/Matrix.h. Inputs are the rectangle and the angle; the builds and the two matrix
//            setters alone write matrices. Nothing is validated: a width of 0 or a NaN gives matrices that show
//            nothing.
// Vertical   the 2D build maps a larger room y to a larger clip y, the 3D build to a smaller one. Both are meant; a
//            host that draws room y downwards negates clip y for flat views.
//
// Kept by the two matrix setters:
// C1 m_invProjMat, m_invViewMat and m_invViewProjMat are the inverses of their matrices; of a singular matrix, a copy.
// C2 m_viewProjMat = m_viewMat * m_projMat.
// C3 m_is2D is Update2D's answer for the current matrices.
// Kept by every store of a callback:
// C4 each script field holds a reference of its own to what it refers to (Value_Ownership.h).
// C5 a camera that holds a callable object has a proxy, and pGCProxy->pCamObj is the camera.

#include "Files/Buffer/Buffer.h"
#include "Files/LLVM/RValue.h"
#include "Platform/Matrix.h"

#include <cstddef>
#include <cstdint>

class CInstance;
class Camera_GCProxy;
struct CFollowAxis;

class CCamera
{
public:
    // ---- the record ----
    Camera_GCProxy* pGCProxy = nullptr; // keeps callable callbacks alive; made with the first. Owned by the collector

    kvMatrix m_projMat;        // view to clip space; identity at first, like all six
    kvMatrix m_viewMat;        // room to view space
    kvMatrix m_viewProjMat;    // room to clip space
    kvMatrix m_invProjMat;     // clip to view space
    kvMatrix m_invViewMat;     // view to room space; its fourth row is the eye's position
    kvMatrix m_invViewProjMat; // clip to room space

    float m_viewX = 0.0f;      // left edge, room units
    float m_viewY = 0.0f;      // top edge
    float m_viewWidth = 0.0f;  // width of what is seen
    float m_viewHeight = 0.0f; // height of what is seen
    float m_viewSpeedX = 0.0f; // largest step per update when following; negative for no limit
    float m_viewSpeedY = 0.0f;
    float m_viewBorderX = 0.0f; // distance that a followed target keeps from the left and right edges: between them
    float m_viewBorderY = 0.0f; // lies the dead zone, in which it moves without moving the view
    float m_viewAngle = 0.0f;   // rotation, degrees

    union
    {
        int32_t m_targetInstance = -1; // what to follow: an object 0.., an instance 100000.., negative for nothing
        int32_t m_cachedFrame;         // the same word under the name that the host's frame cache uses
    };
    int32_t m_ID = -1; // slot in the manager's table, -1 until placed

    RValue m_beginScript; // callbacks: a script index, -1 (at first) for none, or a callable object. Owned
    RValue m_endScript;
    RValue m_updateScript; // runs instead of target following

    bool m_is2D = true;          // a parallel projection of a view that looks straight along z
    bool m_isViewDirty = false;  // rectangle or angle changed since the matrices were built
    bool m_isClone = false;      // made by CloneCamera: goes with its room unless persistent
    bool m_isPersistent = false; // a clone that stays

    uint32_t m_birth; // number of this construction: tells a camera from a later one at the same address

    // ---- life ----
    CCamera();  // the defaults above
    ~CCamera(); // detaches the proxy, releases the three callbacks and leaves them undefined
    CCamera(const CCamera&) = delete;
    CCamera& operator=(const CCamera&) = delete;

    // Copies the six matrices, the rectangle and the angle, as they stand; nothing else. Takes itself.
    void CopyFrom(CCamera* source);
    void CopyViewFrom(const CCamera& source); // what a clone takes: the nine view values and the target

    // ---- identifier: the manager's to give ----
    void SetID(int id); // a registered camera can be found by the new number, but keeps its slot
    int GetID() const { return m_ID; }

    // ---- matrices ----
    void SetProjMat(const kvMatrix& projection); // both keep C1..C3 and leave m_isViewDirty as it is
    void SetViewMat(const kvMatrix& view);
    kvMatrix GetProjMat() const { return m_projMat; }
    kvMatrix GetViewMat() const { return m_viewMat; }
    kvMatrix GetViewProjMat() const { return m_viewProjMat; }
    kvMatrix GetInvProjMat() const { return m_invProjMat; }
    kvMatrix GetInvViewMat() const { return m_invViewMat; }
    kvMatrix GetInvViewProjMat() const { return m_invViewProjMat; }
    bool IsOrthoProj() const { return m_projMat._34 == 0.0f; } // NaN counts as perspective
    bool Is2D() const { return m_is2D; }
    void Update2D(); // C3: nine elements of the current matrices are all zero. A view rotated about z still counts

    // ---- view parameters: bare stores; call SetViewDirty where the matrices depend on the change ----
    void SetViewX(float x) { m_viewX = x; }
    void SetViewY(float y) { m_viewY = y; }
    void SetViewWidth(float width) { m_viewWidth = width; }
    void SetViewHeight(float height) { m_viewHeight = height; }
    void SetViewSpeedX(float speed) { m_viewSpeedX = speed; }
    void SetViewSpeedY(float speed) { m_viewSpeedY = speed; }
    void SetViewBorderX(float border) { m_viewBorderX = border; }
    void SetViewBorderY(float border) { m_viewBorderY = border; }
    void SetViewAngle(float degrees) { m_viewAngle = degrees; }
    void SetTargetInstance(int target) { m_targetInstance = target; }
    void SetCachedFrame(int frame) { m_cachedFrame = frame; }
    float GetViewX() const { return m_viewX; }
    float GetViewY() const { return m_viewY; }
    float GetViewWidth() const { return m_viewWidth; }
    float GetViewHeight() const { return m_viewHeight; }
    float GetViewSpeedX() const { return m_viewSpeedX; }
    float GetViewSpeedY() const { return m_viewSpeedY; }
    float GetViewBorderX() const { return m_viewBorderX; }
    float GetViewBorderY() const { return m_viewBorderY; }
    float GetViewAngle() const { return m_viewAngle; }
    int GetTargetInstance() const { return m_targetInstance; }
    int GetCachedFrame() const { return m_cachedFrame; }

    // ---- flags ----
    void SetViewDirty() { m_isViewDirty = true; }
    bool IsViewDirty() const { return m_isViewDirty; }
    void SetCloned(bool clone) { m_isClone = clone; }
    bool IsCloned() const { return m_isClone; }
    void SetPersistent(bool persistent) { m_isPersistent = persistent; }
    bool isPersistent() const { return m_isPersistent; }

    // ---- building (Camera_View.cpp): both matrices, and the view is clean afterwards ----
    void BuildView(); // about the rectangle's centre; the current projection picks 2D or 3D
    void BuildViewIfDirty();
    void Build2DView(float x, float y); // flat, centred on room point x, y
    void Build3DView(float x, float y); // perspective; the plane z = 0 shows exactly the rectangle's size
    kvVector3 GetCamPos() const;        // the eye, room units
    kvVector3 GetCamDir() const;        // unit vectors; not finite where the matrix column has no length
    kvVector3 GetCamUp() const;
    kvVector3 GetCamRight() const; // (s, s, s) of _31 alone: games depend on it

    // ---- drawing through the camera (Camera_Apply.cpp, Camera_Follow.cpp) ----
    void Begin();         // begin callback
    void CameraUpdate();  // update callback, or else one step after the target; the view is clean afterwards
    void ApplyMatrices(); // publishes the visible area, then sets the graphics layer's view and projection
    void End();           // end callback

    // Runs a callback in the manager's script instance with Current_Object set to the camera's identifier. False: the
    // value says that there is none. The callback may do anything, even destroy this camera: callers ask again
    // (CCameraHandle) before they touch it.
    bool ExecuteScript(RValue* script);

    // ---- what CameraUpdate follows, and by which numbers (Camera_Follow.h): nothing is changed ----
    // A step is FollowAxisX().StepAfter(target.x).speed, and likewise for y. CameraUpdate has a stale bounding box of
    // the target computed first; who only looks need not, where that computation leaves x and y alone.
    CInstance* FindTarget() const;   // the instance that m_targetInstance stands for now; null for none
    CFollowAxis FollowAxisX() const; // of the present record and the running room, to which it points
    CFollowAxis FollowAxisY() const;

    // ---- callbacks (Camera_Script.cpp): the value is checked, reported if it cannot run, and stored all the same ----
    void SetBeginScript(RValue* script);
    void SetEndScript(RValue* script);
    void SetUpdateScript(RValue* script);
    RValue* GetBeginScript() { return &m_beginScript; }
    RValue* GetEndScript() { return &m_endScript; }
    RValue* GetUpdateScript() { return &m_updateScript; }
    void Mark4GC(uint32_t* marks, int count); // marks the three callbacks for the collector; uses neither argument

    // ---- saved state (Camera_State.cpp): 112 items of 4 bytes; without the proxy, m_isClone and m_isPersistent ----
    void Serialize(IBuffer* buffer);
    void DeSerialize(IBuffer* buffer);

private:
    void UpdateAfterBuild();        // C1..C3 once for both new matrices; the view is clean
    void UpdateProducts();          // C2, C3 and the product's inverse
    void UpdateEachInverse();       // of the three matrices
    bool InvertFlatCamera();        // the same at once; false, with no inverse to be relied on, unless all are flat
    bool UpdateByScript();          // false where the update callback is none that can run
    void Follow(CInstance& target); // one step of the rectangle, and a build
    void SetScript(RValue& field, RValue* script, const char* builtin);
};

// Reports "<name> :: invalid script reference" when the value cannot be a callback.
void ValidateValidScriptValue(RValue* value, const char* name);

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(offsetof(CCamera, m_projMat) == 4 && offsetof(CCamera, m_viewX) == 388, "the record's order");
static_assert(offsetof(CCamera, m_targetInstance) == 424 && offsetof(CCamera, m_ID) == 428, "the record's order");
static_assert(offsetof(CCamera, m_beginScript) == 432 && offsetof(CCamera, m_updateScript) == 464,
              "the record's order");
static_assert(offsetof(CCamera, m_is2D) == 480 && offsetof(CCamera, m_isPersistent) == 483, "the record's order");
static_assert(sizeof(CCamera) == 488, "the birth number takes what was padding");
#else
static_assert(offsetof(CCamera, m_projMat) == 8 && offsetof(CCamera, m_viewX) == 392, "the record's order");
static_assert(offsetof(CCamera, m_targetInstance) == 428 && offsetof(CCamera, m_ID) == 432, "the record's order");
static_assert(offsetof(CCamera, m_beginScript) == 440 && offsetof(CCamera, m_updateScript) == 472,
              "the record's order");
static_assert(offsetof(CCamera, m_is2D) == 488 && offsetof(CCamera, m_isPersistent) == 491, "the record's order");
static_assert(sizeof(CCamera) == 496, "the birth number takes what was padding");
#endif
