// Scripts that the module calls, and where they stand, asked for while a game runs and while none does.
#include "Runner/Lua/Function_Place.h"

#include "Files/Graphics/Graphics_Support.h"
#include "Files/Javascript/Callable.h"
#include "Files/Script/Script.h"
#include "Runner/Host/Value.h"
#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using namespace Runner;

class HostScript : public RunnerTest::GameTest
{
protected:
    // The function that the statements leave as the begin callback of camera 1.
    RValue& Callback(const std::string& function)
    {
        EXPECT_EQ(Run("camera_set_begin_script(camera_create(), " + function + ")"), "");
        return g_CM.GetCamera(1)->m_beginScript;
    }
};

TEST_F(HostScript, AFunctionIsCalledWithItsArgumentsAndAnswers)
{
    RValue& sum = Callback("function(a, b) return a + b end");
    RValue arguments[] = {MakeReal(40), MakeReal(2)}, result = MakeUndefined();
    Call_RValue(nullptr, &result, &sum, 2, arguments);
    EXPECT_EQ(result.val, 42.0);
}

TEST_F(HostScript, WhatIsNoFunctionIsNotCalled)
{
    ASSERT_EQ(Run(""), "");
    RValue result = MakeReal(5), number = MakeReal(0), nothing = MakeObject(nullptr);
    for (RValue* callable : {static_cast<RValue*>(nullptr), &number, &nothing})
        Call_RValue(nullptr, &result, callable, 0, nullptr);
    EXPECT_EQ(result.val, 5.0);
    EXPECT_EQ(game->Failure(), "");
}

TEST_F(HostScript, NoScriptRunsAfterAFailureOrWithoutAGame)
{
    RValue result = MakeReal(5);
    EXPECT_FALSE(Script_Perform(0, nullptr, nullptr, 0, &result, nullptr));
    EXPECT_NE(Play("script_add(function() return 1 end) error('here')"), "");
    EXPECT_FALSE(Script_Perform(0, nullptr, nullptr, 0, &result, nullptr));
    EXPECT_EQ(result.val, 5.0);
    ASSERT_EQ(Play("script_add(function() return 1 end) room_add{}"), "");
    EXPECT_TRUE(Script_Perform(0, nullptr, nullptr, 0, &result, nullptr));
    EXPECT_EQ(result.val, 1.0);
}

TEST_F(HostScript, ThePlaceOfAFunctionIsItsFileAndLine)
{
    EXPECT_EQ(PlaceOf(MakeReal(0)), "") << "there is no game";
    EXPECT_EQ(PlaceOf(Callback("\nfunction() end")), "main.lua:3");
    EXPECT_EQ(PlaceOf(Callback("print")), "a C function");
    EXPECT_EQ(PlaceOf(MakeReal(7)), "") << "no script has that number";
    RValue text = MakeString("text");
    EXPECT_EQ(PlaceOf(text), "");
    Release(text);
    EXPECT_EQ(PlaceOf(MakeObject(nullptr)), "");
}
} // namespace
