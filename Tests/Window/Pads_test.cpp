// The window with gamepads of SDL's own making: plugged in, moved and pulled out as real ones are.
#include "Runner/App/Options.h"
#include "Runner/Draw/Device.h"
#include "Runner/Input/Input_Names.h"
#include "Runner/Window/Window.h"

#include <SDL.h>

#include <gtest/gtest.h>

#include <vector>

namespace
{
using namespace Runner;

class Pads : public testing::Test
{
protected:
    void SetUp() override
    {
        SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1"); // nothing gives this window the focus
        std::string why;
        window = Window::Open({}, why);
        ASSERT_NE(window, nullptr) << why;
    }

    ~Pads() override
    {
        for (SDL_Joystick* const pad : m_pads)
            SDL_JoystickClose(pad);
    }

    void Plug()
    {
        const int index = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX,
                                                    SDL_CONTROLLER_BUTTON_MAX, 0);
        ASSERT_GE(index, 0) << SDL_GetError();
        m_pads.push_back(SDL_JoystickOpen(index));
    }

    // What has happened since the last call.
    InputFrame Frame()
    {
        SDL_GameControllerUpdate();
        window->Poll(0);
        SDL_GameControllerUpdate();
        window->Poll(0);
        return window->TakeInput();
    }

    SDL_Joystick* Pad(size_t number) const { return m_pads[number]; }

    std::unique_ptr<Window> window;

private:
    std::vector<SDL_Joystick*> m_pads;
};

TEST_F(Pads, AreConnectedWhileTheyArePluggedIn)
{
    EXPECT_FALSE(Frame().pads[0].connected);
    Plug();
    EXPECT_TRUE(Frame().pads[0].connected);
    SDL_JoystickDetachVirtual(0);
    EXPECT_FALSE(Frame().pads[0].connected);
    Plug();
    EXPECT_TRUE(Frame().pads[0].connected) << "the place is free again";
}

TEST_F(Pads, AxesAndButtonsArrive)
{
    Plug();
    Frame();
    SDL_JoystickSetVirtualAxis(Pad(0), SDL_CONTROLLER_AXIS_RIGHTX, -20000);
    SDL_JoystickSetVirtualButton(Pad(0), SDL_CONTROLLER_BUTTON_DPAD_LEFT, 1);
    InputFrame frame = Frame();
    const uint32_t left = 1u << static_cast<unsigned>(FindPadButton("dpad_left"));
    EXPECT_EQ(frame.pads[0].axes[static_cast<size_t>(FindPadAxis("right_x"))], -20000);
    EXPECT_EQ(frame.pads[0].buttons.pressed, left);
    EXPECT_EQ(frame.pads[0].buttons.held, left);
    SDL_JoystickSetVirtualButton(Pad(0), SDL_CONTROLLER_BUTTON_DPAD_LEFT, 0);
    frame = Frame();
    EXPECT_EQ(frame.pads[0].buttons.released, left);
    EXPECT_EQ(frame.pads[0].buttons.held, 0u);
}

TEST_F(Pads, EveryButtonHasItsName)
{
    static_assert(PAD_BUTTON_COUNT == SDL_CONTROLLER_BUTTON_MAX && PAD_AXIS_COUNT == SDL_CONTROLLER_AXIS_MAX);
    EXPECT_EQ(FindPadButton("a"), SDL_CONTROLLER_BUTTON_A);
    EXPECT_EQ(FindPadButton("start"), SDL_CONTROLLER_BUTTON_START);
    EXPECT_EQ(FindPadButton("dpad_right"), SDL_CONTROLLER_BUTTON_DPAD_RIGHT);
    EXPECT_EQ(FindPadButton("touchpad"), SDL_CONTROLLER_BUTTON_TOUCHPAD);
    EXPECT_EQ(FindPadAxis("left_trigger"), SDL_CONTROLLER_AXIS_TRIGGERLEFT);
}

TEST_F(Pads, OfTwentyTheFirstEightAreSeen)
{
    for (int i = 0; i < 20; ++i)
        Plug();
    Frame();
    SDL_JoystickSetVirtualButton(Pad(7), 0, 1);
    SDL_JoystickSetVirtualButton(Pad(19), 0, 1);
    const InputFrame frame = Frame();
    for (const PadFrame& pad : frame.pads)
        EXPECT_TRUE(pad.connected);
    EXPECT_EQ(frame.pads[7].buttons.held, 1u);
}

std::vector<uint8_t> Drawn(Painter& painter)
{
    painter.BeginFrame();
    painter.Clear(0x402010);
    painter.SetColour(0x80FF20);
    painter.Circle(20.0f, 17.0f, 11.5f);
    painter.Text(4.0f, 30.0f, "Text");
    painter.EndFrame();
    return painter.ReadScreen().rgba;
}

// By one driver, so the same pixels. One after the other: a process has one kind of context at a time.
TEST_F(Pads, AWindowsDeviceDrawsWhatADeviceWithoutAWindowDraws)
{
    std::string why;
    auto painter = Painter::Open(64, 48, true, why,
                                 [this](int width, int height, std::string& error)
                                 { return window->OpenDevice(width, height, error); });
    ASSERT_NE(painter, nullptr) << why;
    const std::vector<uint8_t> inWindow = Drawn(*painter);
    painter.reset();
    window.reset();
    painter = Painter::Open(64, 48, true, why);
    ASSERT_NE(painter, nullptr) << why;
    EXPECT_EQ(inWindow, Drawn(*painter));
}
} // namespace
