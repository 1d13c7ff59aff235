// Input as text: what each line does to the frames, and the one line that a wrong one gives.
#include "Runner/Input/Input_Script.h"

#include "Runner/Input/Input_Names.h"

#include <gtest/gtest.h>

namespace
{
using namespace Runner;

std::string Wrong(const std::string& text)
{
    InputScript script;
    std::string why;
    const bool isRead = script.Read(text, "it.txt", why);
    EXPECT_EQ(isRead, why.empty());
    return why;
}

// The frames from 0 on that a text makes.
std::vector<InputFrame> Frames(const std::string& text, size_t count)
{
    InputScript script;
    std::string why;
    EXPECT_TRUE(script.Read(text, "it.txt", why)) << why;
    std::vector<InputFrame> frames(count);
    for (InputFrame& frame : frames)
        EXPECT_TRUE(script.Next(frame));
    return frames;
}

TEST(InputScriptText, AKeyGoesDownStaysAndGoesUpAtItsFrames)
{
    const auto frames = Frames("1 key a down # and a comment\n\n3 key a up\n3 key space tap\n", 5);
    const auto a = static_cast<size_t>(FindKey("a")), space = static_cast<size_t>(FindKey("space"));
    EXPECT_FALSE(frames[0].names.held[a]);
    EXPECT_TRUE(frames[1].names.held[a] && frames[1].names.pressed[a] && frames[1].positions.held[a]);
    EXPECT_TRUE(frames[2].names.held[a]);
    EXPECT_FALSE(frames[2].names.pressed[a]);
    EXPECT_TRUE(frames[3].names.released[a]);
    EXPECT_FALSE(frames[3].names.held[a]);
    EXPECT_TRUE(frames[3].names.pressed[space] && frames[3].names.released[space]);
    EXPECT_FALSE(frames[3].names.held[space] || frames[4].names.released[space]);
}

TEST(InputScriptText, ThePointerStaysAndTheWheelAndTextLastForOneFrame)
{
    const auto frames = Frames("0 mouse 12.5 -3\n0 wheel -1 2\n0 button right tap\n0 text a # b\n", 2);
    EXPECT_EQ(frames[1].mouse.x, 12.5f);
    EXPECT_EQ(frames[1].mouse.y, -3.0f);
    EXPECT_EQ(frames[0].mouse.wheelX, -1);
    EXPECT_EQ(frames[0].mouse.wheelY, 2);
    EXPECT_EQ(frames[1].mouse.wheelY, 0);
    EXPECT_EQ(frames[0].mouse.buttons.pressed, 1u << static_cast<unsigned>(FindMouseButton("right")));
    EXPECT_EQ(frames[0].text, "a # b") << "no comment can follow a text";
    EXPECT_EQ(frames[1].text, "");
}

// Half of 32767, rounded; the whole way down is -32767.
TEST(InputScriptText, APadIsPluggedInMovedAndPulledOut)
{
    const auto frames = Frames("0 pad 3 on\n1 pad 3 button a down\n1 pad 3 axis left_x 0.5\n1 pad 3 axis left_y -1\n"
                               "2 pad 3 off\n",
                               3);
    EXPECT_TRUE(frames[0].pads[3].connected);
    EXPECT_EQ(frames[1].pads[3].buttons.held, 1u << static_cast<unsigned>(FindPadButton("a")));
    EXPECT_EQ(frames[1].pads[3].axes[static_cast<size_t>(FindPadAxis("left_x"))], 16384);
    EXPECT_EQ(frames[1].pads[3].axes[static_cast<size_t>(FindPadAxis("left_y"))], -32767);
    EXPECT_FALSE(frames[2].pads[3].connected);
    EXPECT_EQ(frames[2].pads[3].buttons.held, 0u) << "a pad that comes back starts anew";
}

TEST(InputScriptText, AWrongEventIsNamedWithTheShapeThatItMustHave)
{
    const std::string on = "0 pad 0 on\n";
    const std::pair<const char*, std::string> wrong[] = {
        {"0 key", "write FRAME key NAME"},
        {"0 key spce tap", "write FRAME key NAME"},
        {"0 key a press", "write FRAME key NAME"},
        {"0 mouse 1", "write FRAME mouse X Y"},
        {"0 mouse x 1", "write FRAME mouse X Y"},
        {"0 mouse 1 2y", "write FRAME mouse X Y"},
        {"0 mouse 1 1e30", "write FRAME mouse X Y"},
        {"0 mouse -1e30 1", "write FRAME mouse X Y"},
        {"0 button left", "write FRAME button left|middle"},
        {"0 button fourth tap", "write FRAME button left|middle"},
        {"0 wheel 1", "write FRAME wheel X Y"},
        {"0 wheel 1.5 0", "write FRAME wheel X Y"},
        {"0 wheel 0 1001", "write FRAME wheel X Y"},
        {"0 wheel 0 -1001", "write FRAME wheel X Y"},
        {"0 pad", "write FRAME pad NUMBER on|off"},
        {"0 pad 99 on", "write FRAME pad NUMBER on|off"},
        {"0 pad 0 plugged", "write FRAME pad NUMBER on|off"},
        {"0 pad 1 button a tap", "write FRAME pad NUMBER on|off"},
        {"0 pad 0 button z tap", "write FRAME pad NUMBER on|off"},
        {"0 pad 0 button a", "write FRAME pad NUMBER on|off"},
        {"0 pad 0 axis left 1", "write FRAME pad NUMBER on|off"},
        {"0 pad 0 axis left_x 1.5", "write FRAME pad NUMBER on|off"},
        {"0 pad 0 wheel left_x 1", "write FRAME pad NUMBER on|off"},
        {"0 jump", "\"jump\" is none of key, mouse, button, wheel, pad, text"},
        {"0", "a line is FRAME EVENT"},
        {"one key a tap", "a line is FRAME EVENT"},
        {"-1 key a tap", "a line is FRAME EVENT"},
        {"99999999999 key a tap", "a line is FRAME EVENT"},
    };
    for (const auto& [line, part] : wrong)
    {
        const std::string why = Wrong(on + line + "\n");
        EXPECT_EQ(why.rfind("it.txt:2: " + part, 0), 0u) << line << ": " << why;
    }
}

TEST(InputScriptText, FramesMustNotGoBack)
{
    EXPECT_EQ(Wrong("5 key a tap\n4 key b tap\n"),
              "it.txt:2: a line is FRAME EVENT, and no frame is smaller than the one before");
}
} // namespace
