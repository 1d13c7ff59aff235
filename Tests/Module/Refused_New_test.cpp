// Objects that the module makes with new: a refusal is reported or borne, and nothing is stored. The program's operator
// new that does not throw is replaced here; it refuses when a test asks it to.
#include "Tests/Module/Manager_Fixture.h"

#include <gmock/gmock.h>
#include <new>

using namespace Recording;
using testing::ElementsAre;

namespace
{
bool s_refuses = false;

class RefusedNew : public ManagerTest
{
protected:
    template <typename Action> static void WhileRefused(Action action)
    {
        s_refuses = true;
        action();
        s_refuses = false;
    }
};
} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return s_refuses ? nullptr : ::operator new(size);
}

namespace
{
struct CallbackSetter
{
    const char* name;
    void (CCamera::*set)(RValue*);
    RValue* (CCamera::*get)();
};

TEST_F(RefusedNew, OfAProxyIsReportedAndLeavesTheCallback)
{
    const CallbackSetter setters[] = {
        {"camera_set_begin_script", &CCamera::SetBeginScript, &CCamera::GetBeginScript},
        {"camera_set_end_script", &CCamera::SetEndScript, &CCamera::GetEndScript},
        {"camera_set_update_script", &CCamera::SetUpdateScript, &CCamera::GetUpdateScript}};
    CCamera& camera = *g_CM.CreateCamera();
    RValue callable = OfObject(NewCallable());
    for (const CallbackSetter& setter : setters)
    {
        RValue before = Real(5);
        (camera.*setter.set)(&before);
        Errors().clear();
        WhileRefused([&] { (camera.*setter.set)(&callable); });
        EXPECT_THAT(Errors(),
                    ElementsAre(std::string(setter.name) + " :: out of memory, the callback was not changed"));
        EXPECT_EQ(Describe(*(camera.*setter.get)()), "real 5") << setter.name;
        EXPECT_EQ(camera.pGCProxy, nullptr);
        EXPECT_EQ(ContextDepth(), 0);
    }
    camera.SetEndScript(&callable);
    EXPECT_EQ(Describe(camera.m_endScript), Describe(callable)) << "the next one is stored";
}

TEST_F(RefusedNew, OfTheScriptInstanceStartsTheRoomWithoutOne)
{
    CreateCameras(2);
    RunRoom({1});
    WhileRefused([] { g_CM.StartRoom(); });
    EXPECT_EQ(g_CM.GetScriptInstance(), nullptr);
    EXPECT_EQ(RoomList()[1], 1) << "the list is built all the same";
    g_CM.EndRoom();
}
} // namespace
