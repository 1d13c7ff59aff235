#pragma once
// The signals that end a run: SIGINT, which Ctrl-C sends, and SIGTERM.

#include <csignal>

namespace Runner
{
// While it lives, the first signal of each kind interrupts the run (ScriptEngine::Interrupt), and the second one of
// that kind has the system's effect: it ends the process, even inside a library that does not come back.
class InterruptHandler
{
public:
    InterruptHandler();
    ~InterruptHandler();
    InterruptHandler(const InterruptHandler&) = delete;
    InterruptHandler& operator=(const InterruptHandler&) = delete;

    static const char* Word(); // "interrupted" or "terminated", for the signal that came last
    static int Status();       // of the process: 128 plus the signal's number. A signal must have come

private:
    struct sigaction m_interruptBefore = {};
    struct sigaction m_terminateBefore = {};
};
} // namespace Runner
