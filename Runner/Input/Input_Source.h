#pragma once

#include "Runner/Input/Input_Frame.h"

namespace Runner
{
// Where the input of a run's frames comes from, and what keeps their time: a window waits for the next step, a file
// answers at once.
class InputSource
{
public:
    virtual ~InputSource() = default;

    // Answers the input of the next frame; called once before each. False: the run ends here.
    virtual bool Next(InputFrame& frame) = 0;
};

// Nobody touches anything.
class NoInput : public InputSource
{
public:
    bool Next(InputFrame& frame) override
    {
        frame = InputFrame();
        return true;
    }
};
} // namespace Runner
