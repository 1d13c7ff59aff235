#pragma once
// What tests of the built-ins share: calls by handler, and a camera's view properties as one line of text.

#include "Tests/Support/Fixture.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace Recording
{
constexpr int UNKNOWN_CAMERA = 77; // names no camera in any of these tests

class BuiltinTest : public ModuleTest
{
protected:
    static std::string Answer(TFunction handler, const std::vector<RValue>& args)
    {
        return Describe(Call(handler, args));
    }

    // What the host hears of these topics during one call.
    static Lines LogOf(TFunction handler, const std::vector<RValue>& args, unsigned topics)
    {
        Listen(topics);
        TakeLog();
        Call(handler, args);
        return TakeLog();
    }

    // x, y, width, height, speeds, borders, angle, target: one comparison shows a stray store.
    static std::string Properties(const CCamera& camera)
    {
        std::string text;
        for (float property :
             {camera.m_viewX, camera.m_viewY, camera.m_viewWidth, camera.m_viewHeight, camera.m_viewSpeedX,
              camera.m_viewSpeedY, camera.m_viewBorderX, camera.m_viewBorderY, camera.m_viewAngle})
            text += Describe(property) + " ";
        return text + std::to_string(camera.m_targetInstance);
    }
};
} // namespace Recording
