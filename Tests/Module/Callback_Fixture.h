#pragma once
// A camera of a running room whose callback is the test's own, at each moment and in each form that a callback has.

#include "Tests/Module/Manager_Fixture.h"

#include <string>

namespace Recording
{
constexpr int WHO_RAN_BEFORE = 4242;
constexpr int SCRIPT = 11;
constexpr int OTHER_SCRIPT = 12;

// When a callback runs, and whether it is a script index or a callable object.
struct Moment
{
    const char* name;
    void (*set)(CCamera&, RValue*);
    RValue* (*get)(CCamera&);
    void (*run)(CCamera&);
    bool isUpdate;
    TFunction setter;
    bool isCallable;
};
inline void PrintTo(const Moment& moment, std::ostream* out) { *out << moment.name; }

class CameraCallback : public ManagerTest, public testing::WithParamInterface<Moment>
{
protected:
    CameraCallback()
    {
        g_fGarbageCollection = false; // a room's end then deletes the script instance at once
        RunRoom({0});
        g_CM.StartRoom();
        m_camera = g_CM.CreateCamera();
    }

    // Gives the camera the callback of this moment.
    void Give(CCamera* camera, const Script& body, int index = SCRIPT)
    {
        RValue value = ValueOf(body, index);
        GetParam().set(*camera, &value);
    }
    RValue ValueOf(const Script& body, int index)
    {
        if (GetParam().isCallable)
            return OfObject(NewCallable(body));
        SetScript(index, body);
        return Int32(index);
    }
    static void RunOf(CCamera* camera)
    {
        Current_Object = WHO_RAN_BEFORE;
        GetParam().run(*camera);
        EXPECT_EQ(Current_Object, WHO_RAN_BEFORE);
    }
    // Runs the body as the camera's callback, once; whether it ran is checked.
    void RunAs(const Script& body)
    {
        int runs = 0;
        Give(m_camera, [&runs, body](ScriptCall& call) { ++runs, body(call); });
        RunOf(m_camera);
        EXPECT_EQ(runs, 1);
    }
    bool IsUpdate() const { return GetParam().isUpdate; }

    CCamera* m_camera;
};

inline Moment Begin(const char* name, bool isCallable)
{
    return {name,
            [](CCamera& camera, RValue* value) { camera.SetBeginScript(value); },
            [](CCamera& camera) { return camera.GetBeginScript(); },
            [](CCamera& camera) { camera.Begin(); },
            false,
            F_CameraSetBeginScript,
            isCallable};
}

inline Moment End(const char* name, bool isCallable)
{
    return {name,
            [](CCamera& camera, RValue* value) { camera.SetEndScript(value); },
            [](CCamera& camera) { return camera.GetEndScript(); },
            [](CCamera& camera) { camera.End(); },
            false,
            F_CameraSetEndScript,
            isCallable};
}

inline Moment Update(const char* name, bool isCallable)
{
    return {name,
            [](CCamera& camera, RValue* value) { camera.SetUpdateScript(value); },
            [](CCamera& camera) { return camera.GetUpdateScript(); },
            [](CCamera& camera) { camera.CameraUpdate(); },
            true,
            F_CameraSetUpdateScript,
            isCallable};
}

// All six.
inline auto EveryMoment()
{
    return testing::Values(Begin("BeginScript", false), Begin("BeginCallable", true), End("EndScript", false),
                           End("EndCallable", true), Update("UpdateScript", false), Update("UpdateCallable", true));
}
inline std::string MomentName(const testing::TestParamInfo<Moment>& tested) { return tested.param.name; }
} // namespace Recording
