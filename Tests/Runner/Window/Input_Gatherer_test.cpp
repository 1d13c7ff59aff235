#include "Runner/Window/Input_Gatherer.h"

#include "Runner/Input/Input_Names.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

const int A = FindKey("a"), Q = FindKey("q"), SPACE = FindKey("space");

size_t Number(int key) { return static_cast<size_t>(key); }

TEST(InputGatherer, ATapBetweenTwoFramesIsPressedAndReleasedAndNotHeld)
{
    InputGatherer gatherer;
    gatherer.Key(SPACE, SPACE, true);
    gatherer.Key(SPACE, SPACE, false);
    const InputFrame frame = gatherer.Take();
    EXPECT_TRUE(frame.names.pressed[Number(SPACE)]);
    EXPECT_TRUE(frame.names.released[Number(SPACE)]);
    EXPECT_FALSE(frame.names.held[Number(SPACE)]);
    EXPECT_EQ(gatherer.Take(), InputFrame()) << "the next frame has nothing of it";
}

TEST(InputGatherer, AHeldKeyIsPressedOnceHoweverOftenItRepeats)
{
    InputGatherer gatherer;
    gatherer.Key(SPACE, SPACE, true);
    gatherer.Take();
    gatherer.Key(SPACE, SPACE, true);
    const InputFrame frame = gatherer.Take();
    EXPECT_TRUE(frame.positions.held[Number(SPACE)]);
    EXPECT_TRUE(frame.positions.pressed.none());
}

// On a French keyboard the key in the place of Q writes "a".
TEST(InputGatherer, PositionsAndNamesAreApart)
{
    InputGatherer gatherer;
    gatherer.Key(Q, A, true);
    const InputFrame frame = gatherer.Take();
    EXPECT_TRUE(frame.positions.held[Number(Q)]);
    EXPECT_FALSE(frame.positions.held[Number(A)]);
    EXPECT_TRUE(frame.names.held[Number(A)]);
    EXPECT_FALSE(frame.names.held[Number(Q)]);
}

TEST(InputGatherer, AKeyIsReleasedUnderTheNameWithWhichItWasPressed)
{
    InputGatherer gatherer;
    gatherer.Key(Q, A, true);
    gatherer.Key(Q, Q, false); // the layout has changed meanwhile
    const InputFrame frame = gatherer.Take();
    EXPECT_TRUE(frame.names.held.none());
    EXPECT_TRUE(frame.names.released[Number(A)]);
}

TEST(InputGatherer, ANameIsHeldUntilTheLastKeyOfThatNameIsReleased)
{
    InputGatherer gatherer;
    gatherer.Key(Q, A, true);
    gatherer.Key(A, A, true);
    gatherer.Key(Q, A, false);
    EXPECT_TRUE(gatherer.Take().names.held[Number(A)]);
    gatherer.Key(A, A, false);
    EXPECT_FALSE(gatherer.Take().names.held[Number(A)]);
}

TEST(InputGatherer, KeysAndButtonsThatDoNotExistAreIgnored)
{
    InputGatherer gatherer;
    gatherer.Key(-1, NO_NAME, true);
    gatherer.Key(KEY_COUNT, KEY_COUNT, true);
    gatherer.MouseButton(-1, true);
    gatherer.MouseButton(MOUSE_BUTTON_COUNT, true);
    gatherer.AddPad(7);
    gatherer.PadButton(7, PAD_BUTTON_COUNT, true);
    gatherer.MoveAxis(7, PAD_AXIS_COUNT, 1);
    gatherer.PadButton(8, 0, true);
    gatherer.RemovePad(7);
    EXPECT_EQ(gatherer.Take(), InputFrame());
}

TEST(InputGatherer, LosingTheFocusReleasesEverything)
{
    InputGatherer gatherer;
    gatherer.AddPad(3);
    gatherer.Key(Q, A, true);
    gatherer.MouseButton(0, true);
    gatherer.PadButton(3, 0, true);
    gatherer.MoveAxis(3, 0, 30000);
    gatherer.Take();
    gatherer.ReleaseAll();
    const InputFrame frame = gatherer.Take();
    EXPECT_TRUE(frame.names.held.none());
    EXPECT_TRUE(frame.names.released[Number(A)]);
    EXPECT_EQ(frame.mouse.buttons.held, 0u);
    EXPECT_EQ(frame.mouse.buttons.released, 1u);
    EXPECT_EQ(frame.pads[0].buttons.released, 1u);
    EXPECT_EQ(frame.pads[0].axes[0], 0);
    gatherer.Key(Q, A, true);
    EXPECT_TRUE(gatherer.Take().names.pressed[Number(A)]) << "it can be pressed again";
}

TEST(InputGatherer, AMegabyteOfTextIsCutAtTheLimitBetweenTwoCharacters)
{
    std::string pasted;
    while (pasted.size() < (1u << 20))
        pasted += "\xE2\x82\xAC"; // three bytes each, of which 85 fit into 256
    InputGatherer gatherer;
    gatherer.Type(pasted);
    EXPECT_EQ(gatherer.Take().text, pasted.substr(0, 255));
    EXPECT_EQ(gatherer.Take().text, "") << "the rest is dropped";
}

TEST(InputGatherer, OnlyCharactersOfUtf8AreTyped)
{
    InputGatherer gatherer;
    gatherer.Type("a\xFF"
                  "b\x07\xC3\xA4\xE2\x82");
    EXPECT_EQ(gatherer.Take().text, "ab\xC3\xA4");
}

TEST(InputGatherer, OfTwentyGamepadsTheFirstEightAreSeen)
{
    InputGatherer gatherer;
    for (int identifier = 100; identifier < 120; ++identifier)
        gatherer.AddPad(identifier);
    gatherer.PadButton(107, 2, true);
    gatherer.PadButton(119, 2, true);
    const InputFrame frame = gatherer.Take();
    for (const PadFrame& pad : frame.pads)
        EXPECT_TRUE(pad.connected);
    EXPECT_EQ(frame.pads[7].buttons.held, 4u);
}

TEST(InputGatherer, ANewPadGetsTheLowestFreePlace)
{
    InputGatherer gatherer;
    gatherer.AddPad(10);
    gatherer.AddPad(11);
    gatherer.MoveAxis(10, 1, 500);
    gatherer.RemovePad(10);
    InputFrame frame = gatherer.Take();
    EXPECT_EQ(frame.pads[0], PadFrame());
    EXPECT_TRUE(frame.pads[1].connected);
    gatherer.AddPad(12);
    gatherer.MoveAxis(12, 1, 900);
    frame = gatherer.Take();
    EXPECT_EQ(frame.pads[0].axes[1], 900);
}

TEST(InputGatherer, TheWheelTurnsForOneFrameAndNeverOverflows)
{
    InputGatherer gatherer;
    for (int i = 0; i < 100; ++i)
        gatherer.TurnWheel(2147483647, -2147483647);
    const InputFrame frame = gatherer.Take();
    EXPECT_EQ(frame.mouse.wheelX, 1000);
    EXPECT_EQ(frame.mouse.wheelY, -1000);
    EXPECT_EQ(gatherer.Take().mouse.wheelX, 0);
}

// ---- what no device should send ----

// Two, three and four bytes are one character each; a character that is cut, a byte that begins none, and control
// characters but those of lines and tabs are left out.
TEST(InputGatherer, TypedTextIsWholeCharactersWithoutControls)
{
    InputGatherer gatherer;
    gatherer.Type("a\tb\nc\x1b\x7F\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(gatherer.Take().text, "a\tb\nc\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    gatherer.Type("x\x80\xFF\xE2\x82y\xF0\x9F\x98");
    EXPECT_EQ(gatherer.Take().text, "xy");
}

TEST(InputGatherer, WhatHasNoNumberOrNoPadIsLeftOut)
{
    InputGatherer gatherer;
    gatherer.Key(-1, A, true);
    gatherer.Key(KEY_COUNT, A, true);
    gatherer.Key(A, KEY_COUNT, true);
    gatherer.MouseButton(-1, true);
    gatherer.MouseButton(MOUSE_BUTTON_COUNT, true);
    gatherer.RemovePad(5);
    gatherer.MoveAxis(5, 0, 100);
    gatherer.PadButton(5, 0, true);
    EXPECT_EQ(gatherer.Take(), InputFrame());
    gatherer.Key(A, NO_NAME, true);
    const InputFrame frame = gatherer.Take();
    EXPECT_TRUE(frame.positions.held[Number(A)]);
    EXPECT_TRUE(frame.names.held.none()) << "a key without a name has its place alone";
}

TEST(InputGatherer, APadIsPluggedInOnceAndHasItsOwnAxesAndButtonsAlone)
{
    InputGatherer gatherer;
    gatherer.AddPad(7);
    gatherer.AddPad(7);
    for (const int number : {-1, PAD_AXIS_COUNT})
        gatherer.MoveAxis(7, number, 100);
    for (const int number : {-1, PAD_BUTTON_COUNT})
        gatherer.PadButton(7, number, true);
    InputFrame wanted;
    wanted.pads[0].connected = true;
    EXPECT_EQ(gatherer.Take(), wanted);
}
} // namespace
