#pragma once
// A window without a display: acts stand for the user, and a device that draws nothing for the driver.

#include "Runner/Draw/Device.h"
#include "Runner/Input/Input_Names.h"
#include "Runner/Window/Window.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace RunnerTest
{
class BlankDevice : public Runner::Device
{
public:
    int LargestTexture() const override { return 4096; }
    unsigned CreateTexture(int, int, const uint8_t*) override { return ++m_last; }
    void DeleteTexture(unsigned) override {}
    unsigned CreateTarget(int, int, unsigned& texture) override
    {
        texture = ++m_last;
        return ++m_last;
    }
    void DeleteTarget(unsigned) override {}
    unsigned CreateMesh() override { return ++m_last; }
    void SetMesh(unsigned, const std::vector<Runner::Vertex>&) override {}
    void DeleteMesh(unsigned) override {}
    void Clear(const Runner::DrawState&, const float (&)[4]) override {}
    void DrawTriangles(const Runner::DrawState&, const std::vector<Runner::Vertex>&,
                       const std::vector<uint16_t>&) override
    {
    }
    void DrawMesh(const Runner::DrawState&, unsigned, int) override {}
    void BeginScreen() override {}
    void TakeBackScreen() override {}
    void Finish() override {}
    void Show(const Runner::Showing&) override {}
    void Read(unsigned, int width, int height, uint8_t* rgba) override
    {
        std::fill(rgba, rgba + 4 * width * height, uint8_t{0});
    }
    bool IsLost() override { return false; }
    std::string Driver() const override { return "blank"; }
    std::string TakeError() override { return ""; }

private:
    unsigned m_last = 0; // that was created
};

// What is seen of a window after it is gone.
struct WindowLog
{
    int shown = 0, toggles = 0;
    std::string title;
};

class ScriptedWindow : public Runner::Window
{
public:
    using Act = std::function<void(ScriptedWindow&)>;
    static constexpr int64_t LOOK = 17000000; // nanoseconds, a little more than a step of a game

    // One act at each look at the events, which takes LOOK; after the last act the window is closed.
    ScriptedWindow(std::vector<Act> acts, WindowLog& log) : m_acts(std::move(acts)), m_log(log) {}

    void Order(Runner::Command command) { m_commands.push_back(command); }
    void Press(const char* key, bool isDown = true)
    {
        const int number = Runner::FindKey(key);
        m_input.Key(number, number, isDown);
    }
    void Mouse(float x, float y, bool isDown)
    {
        m_input.MoveMouse(x, y);
        m_input.MouseButton(0, isDown);
    }
    void Focus(bool hasFocus) { m_hasFocus = hasFocus; }
    void Minimise(bool isMinimised) { m_isVisible = !isMinimised; }

    // ---- as the Runner sees it ----
    std::unique_ptr<Runner::Device> OpenDevice(int, int, std::string&) override
    {
        return std::make_unique<BlankDevice>();
    }
    void Show(Runner::PixelSize screen) override { m_screen = screen; }
    void Swap() override { ++m_log.shown; }
    void ToggleFullscreen() override { ++m_log.toggles; }
    Runner::PixelSize Pixels() const override { return {800, 600}; }
    bool IsVisible() const override { return m_isVisible; }
    int64_t Now() const override { return m_now; }
    void* Native() override { return nullptr; }

    void Poll(int) override
    {
        m_now += LOOK;
        if (m_next < m_acts.size())
            m_acts[m_next++](*this);
        else
            m_isClosed = true;
    }

private:
    const std::vector<Act> m_acts;
    WindowLog& m_log;
    size_t m_next = 0;
    int64_t m_now = 1;
    bool m_isVisible = true;
};
} // namespace RunnerTest
