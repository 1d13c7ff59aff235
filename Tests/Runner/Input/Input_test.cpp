#include "Runner/Input/Input.h"

#include "Runner/Input/Input_Names.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace
{
using namespace Runner;

constexpr int16_t FULL = 32767;

InputFrame WithStick(int16_t x, int16_t y)
{
    InputFrame frame;
    frame.pads[2].connected = true;
    frame.pads[2].axes[0] = x;
    frame.pads[2].axes[1] = y;
    return frame;
}

float StickX(int16_t x, int16_t y, float deadZone)
{
    Input input;
    input.SetDeadZone(deadZone);
    input.BeginFrame(WithStick(x, y));
    return input.Axis(2, 0);
}

// ---- names ----

TEST(InputNames, EveryNamedKeyIsFoundUnderItsNameAlone)
{
    std::set<std::string> names;
    for (int key = 0; key < KEY_COUNT; ++key)
    {
        const std::string name = KeyName(key);
        if (name.empty())
            continue;
        EXPECT_EQ(FindKey(name), key) << name;
        EXPECT_TRUE(names.insert(name).second) << name;
    }
    EXPECT_GT(names.size(), 190u);
}

TEST(InputNames, NumbersAreThoseOfTheUsbPage)
{
    EXPECT_EQ(FindKey("a"), 4);
    EXPECT_EQ(FindKey("0"), 39);
    EXPECT_EQ(FindKey("enter"), 40);
    EXPECT_EQ(FindKey("left_ctrl"), 224);
    EXPECT_EQ(FindKey("\xC3\xA9"), FIRST_LETTER_KEY + 0xE9 - 160);
    EXPECT_EQ(KeyOfCharacter('a'), 4);
    EXPECT_EQ(KeyOfCharacter(0xE9), FindKey("\xC3\xA9"));
}

TEST(InputNames, WhatIsNoNameHasNoNumber)
{
    for (const char* name : {"", "A", "spce", "@a", "\xC3", "\xE2\x82\xAC"})
        EXPECT_EQ(FindKey(name), NO_NAME) << name;
    for (const uint32_t character : {0u, 32u, 127u, 0x416u, 0x110000u})
        EXPECT_EQ(KeyOfCharacter(character), NO_NAME) << character;
    EXPECT_EQ(KeyName(-1), "");
    EXPECT_EQ(KeyName(KEY_COUNT), "");
    EXPECT_EQ(FindPadButton("A"), NO_NAME);
    EXPECT_EQ(FindPadAxis("left"), NO_NAME);
}

// ---- parts ----

TEST(InputState, ATapWithinAFrameIsDownInThatFrame)
{
    const Binding space = {InputPart::KeyName, FindKey("space")};
    InputFrame tap;
    tap.names.pressed[static_cast<size_t>(space.number)] = tap.names.released[static_cast<size_t>(space.number)] = true;
    Input input;
    input.BeginFrame(tap);
    EXPECT_TRUE(input.Down(space) && input.Pressed(space) && input.Released(space));
    input.BeginFrame(InputFrame());
    EXPECT_FALSE(input.Down(space) || input.Pressed(space) || input.Released(space));
}

TEST(InputState, AButtonCountsOnItsPadAndOnAnyWhileItIsConnected)
{
    const Binding start = {InputPart::PadButton, FindPadButton("start")};
    InputFrame frame;
    frame.pads[5].buttons.held = 1u << 6;
    Input input;
    input.BeginFrame(frame);
    EXPECT_FALSE(input.Down(start)) << "the pad is not connected";
    frame.pads[5].connected = true;
    input.BeginFrame(frame);
    EXPECT_TRUE(input.Down(start));
    EXPECT_TRUE(input.Down(start, 5));
    EXPECT_FALSE(input.Down(start, 4));
}

// ---- the dead zone: of 0.2, so the way from 0.2 to 1 is the way from 0 to 1 ----

TEST(InputState, AStickWithinTheDeadZoneIsAtRest)
{
    EXPECT_EQ(StickX(6553, 0, 0.2f), 0.0f) << "0.19998 of the way";
    EXPECT_GT(StickX(6554, 0, 0.2f), 0.0f);
    EXPECT_LT(StickX(6554, 0, 0.2f), 0.001f) << "it grows from 0";
}

TEST(InputState, AStickAtItsEndIsOneInEitherDirection)
{
    EXPECT_EQ(StickX(FULL, 0, 0.2f), 1.0f);
    EXPECT_EQ(StickX(-32768, 0, 0.2f), -1.0f);
    EXPECT_EQ(StickX(FULL, 0, 0.0f), 1.0f);
}

// (0.15, 0.2) is 0.25 from the centre: a quarter way counts 0.05 / 0.8 = 0.0625, of which x has 3/5.
TEST(InputState, TheDeadZoneOfAStickIsRound)
{
    EXPECT_NEAR(StickX(4915, 6553, 0.2f), 0.0375f, 1e-4f);
    EXPECT_NEAR(StickX(FULL, FULL, 0.2f), std::sqrt(0.5f), 1e-6f) << "a corner is no further than the edge";
}

TEST(InputState, ATriggerHasADeadZoneOfItsOwn)
{
    InputFrame frame = WithStick(0, 0);
    frame.pads[2].axes[4] = FULL / 10;
    frame.pads[2].axes[5] = FULL;
    Input input;
    input.BeginFrame(frame);
    EXPECT_EQ(input.Axis(2, 4), 0.0f);
    EXPECT_EQ(input.Axis(2, 5), 1.0f);
}

// ---- actions ----

class InputActions : public testing::Test
{
protected:
    InputActions()
    {
        input.actions.Add({"right",
                           {{InputPart::KeyName, FindKey("d")},
                            {InputPart::PadButton, FindPadButton("dpad_right")},
                            {InputPart::PadAxis, 0, 1.0f}}});
    }

    const Action& Right() const { return *input.actions.Find("right"); }

    Input input;
};

TEST_F(InputActions, AnyBindingPressesAndTheLastOneReleases)
{
    InputFrame key = WithStick(0, 0), both = WithStick(FULL, 0);
    key.names.held[static_cast<size_t>(FindKey("d"))] = both.names.held[static_cast<size_t>(FindKey("d"))] = true;
    input.BeginFrame(key);
    EXPECT_TRUE(input.Pressed(Right()));
    input.BeginFrame(both);
    EXPECT_FALSE(input.Pressed(Right())) << "it was down already";
    input.BeginFrame(WithStick(FULL, 0));
    EXPECT_TRUE(input.Down(Right()));
    EXPECT_FALSE(input.Released(Right()));
    input.BeginFrame(WithStick(0, 0));
    EXPECT_TRUE(input.Released(Right()));
}

TEST_F(InputActions, AnAxisIsDownFromHalfOfItsWayOnAndCountsByItsWay)
{
    input.BeginFrame(WithStick(19000, 0)); // 0.57985, less 0.2, over 0.8: 0.4748
    EXPECT_FALSE(input.Down(Right()));
    EXPECT_NEAR(input.Value(Right()), 0.4748f, 1e-4f);
    input.BeginFrame(WithStick(20000, 0));
    EXPECT_TRUE(input.Down(Right()));
    input.BeginFrame(WithStick(-32768, 0));
    EXPECT_EQ(input.Value(Right()), 0.0f) << "the other half is not bound";
}

TEST_F(InputActions, WithAPadOnlyThatPadCounts)
{
    InputFrame frame = WithStick(FULL, 0);
    frame.names.held[static_cast<size_t>(FindKey("d"))] = true;
    input.BeginFrame(frame);
    EXPECT_TRUE(input.Down(Right(), 2));
    EXPECT_FALSE(input.Down(Right(), 1));
    EXPECT_EQ(input.Value(Right(), 1), 0.0f);
}

TEST_F(InputActions, ASecondActionOfTheSameNameTakesTheFirstOnesPlace)
{
    input.actions.Add({"right", {{InputPart::MouseButton, 0}}});
    EXPECT_EQ(input.actions.All().size(), 1u);
    EXPECT_EQ(Right().bindings.size(), 1u);
}

TEST_F(InputActions, ThereIsALimit)
{
    for (size_t i = 1; i < Actions::LIMIT; ++i)
        EXPECT_TRUE(input.actions.Add({std::to_string(i), {}}));
    EXPECT_FALSE(input.actions.Add({"one more", {}}));
    EXPECT_TRUE(input.actions.Add({"right", {}})) << "one that is there may change";
}
} // namespace
