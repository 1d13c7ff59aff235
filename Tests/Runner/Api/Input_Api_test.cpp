// What scripts see of the input, and what they are told about names that do not exist.
#include "Runner/Input/Input_Names.h"

#include "Tests/Runner/Support/Game_Support.h"

namespace
{
using namespace Runner;

class InputApi : public RunnerTest::GameTest
{
protected:
    // A game that logs this expression in every step, after these statements of the main file.
    void Watch(const std::string& expression, const std::string& main = "")
    {
        ASSERT_EQ(Play(main + "\nroom_add{ step = function() print(" + expression + ") end }", 0), "");
    }

    void Frame(const InputFrame& seen) { ASSERT_TRUE(game->Frame(seen)) << game->Failure(); }
};

InputFrame Holding(const char* key)
{
    InputFrame frame;
    frame.names.held[static_cast<size_t>(FindKey(key))] = true;
    return frame;
}

TEST_F(InputApi, NobodyTouchesAnythingUnlessAFrameSaysSo)
{
    Watch("key_down('a'), mouse_down('left'), pad_connected(0), #text_typed(), mouse_x()");
    EXPECT_EQ(PlayOn(1), "");
    EXPECT_EQ(Log(), "false\tfalse\tfalse\t0\t0.0\n");
}

TEST_F(InputApi, KeysAreAskedByNameAndByPlace)
{
    Watch("key_down('q'), key_down('@q'), key_pressed('@q')");
    InputFrame frame = Holding("q");
    frame.positions.pressed[static_cast<size_t>(FindKey("q"))] = true;
    Frame(frame);
    Frame(Holding("q"));
    EXPECT_EQ(Log(), "true\ttrue\ttrue\ntrue\tfalse\tfalse\n");
}

TEST_F(InputApi, TheMouseIsOnTheGamesScreen)
{
    Watch("mouse_x(), mouse_y(), mouse_wheel(), mouse_pressed('right'), mouse_down('left')");
    InputFrame frame;
    frame.mouse.x = 12.125f;
    frame.mouse.y = -3.0f;
    frame.mouse.wheelY = -2;
    frame.mouse.buttons.pressed = 4;
    Frame(frame);
    EXPECT_EQ(Log(), "12.125\t-3.0\t-2\ttrue\tfalse\n");
}

TEST_F(InputApi, TextIsThatOfTheFrame)
{
    Watch("text_typed()");
    InputFrame frame;
    frame.text = "\xC3\xA4 b";
    Frame(frame);
    Frame(InputFrame());
    EXPECT_EQ(Log(), "\xC3\xA4 b\n\n");
}

TEST_F(InputApi, PadsHaveAxesAndButtons)
{
    Watch("pad_connected(1), pad_axis(1, 'right_y'), pad_down(1, 'b'), pad_released(1, 'a')", "pad_set_dead_zone(0)");
    InputFrame frame;
    frame.pads[1].connected = true;
    frame.pads[1].axes[3] = 32767;
    frame.pads[1].buttons.held = 2;
    frame.pads[1].buttons.released = 1;
    Frame(frame);
    EXPECT_EQ(Log(), "true\t1.0\ttrue\ttrue\n");
}

TEST_F(InputApi, AnActionHasSeveralBindings)
{
    Watch("action_down('jump'), action_pressed('jump'), action_value('jump'), action_down('jump', 0)",
          "action_add{ name = 'jump', keys = {'space', '@w'}, mouse = {'left'}, buttons = {'a'}, axes = {'left_y-'} }");
    Frame(Holding("space"));
    InputFrame pad;
    pad.pads[0].connected = true;
    pad.pads[0].axes[1] = -32768;
    Frame(pad);
    EXPECT_EQ(Log(), "true\ttrue\t1.0\tfalse\ntrue\tfalse\t1.0\ttrue\n");
}

TEST_F(InputApi, ASavedGameHoldsNoInput)
{
    Watch("key_pressed('a')", "room = 1");
    Frame(Holding("a"));
    Frame(InputFrame());
    EXPECT_EQ(Log(), "false\nfalse\n") << "held is not pressed";
}

struct Mistake
{
    const char* call;
    const char* wanted;
};

class InputMistakes : public RunnerTest::GameTest, public testing::WithParamInterface<Mistake>
{
};

TEST_P(InputMistakes, AreOneClearLine)
{
    const std::string failure = Run(GetParam().call);
    EXPECT_NE(failure.find(GetParam().wanted), std::string::npos) << failure;
    EXPECT_EQ(failure.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    All, InputMistakes,
    testing::Values(
        Mistake{"key_down('spce')", "key_down: argument 1 (key) is the name of a key, such as \"space\""},
        Mistake{"key_down('spce')", "got the string \"spce\""}, Mistake{"key_pressed('@')", "got the string \"@\""},
        Mistake{"key_down(5)", "argument 1 (key)"}, Mistake{"mouse_down('lft')", "\"left\", \"middle\", \"right\""},
        Mistake{"pad_down(8, 'a')", "argument 1 (pad) is a gamepad, 0 to 7, got the number 8"},
        Mistake{"pad_axis(0, 'left')", "argument 2 (axis)"}, Mistake{"pad_down(0, 'A')", "argument 2 (button)"},
        Mistake{"pad_set_dead_zone(1)", "is 0 to 0.95, got the number 1"},
        Mistake{"action_down('jump')", "is an action that action_add has made, got the string \"jump\""},
        Mistake{"action_add{}", "name"}, Mistake{"action_add{ name = 'a', keys = {'space', 'nope'} }", "keys[2]"},
        Mistake{"action_add{ name = 'a', axes = {'left_x'} }", "axes[1] is half of a gamepad's axis"},
        Mistake{"action_add{ name = 'a', key = {'a'} }", "key"},
        Mistake{"view_to_room(8, 1, 1)", "is a view, 0 to 7"}));
} // namespace
