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
// While it lives, that signal has no effect. SIGXFSZ, which comes at a write beyond the user's limit on the sizes of
// files, would end the process before it can say why; ignored, the write fails and its reason is told.
class IgnoredSignal
{
public:
    explicit IgnoredSignal(int signal);
    ~IgnoredSignal();
    IgnoredSignal(const IgnoredSignal&) = delete;
    IgnoredSignal& operator=(const IgnoredSignal&) = delete;

private:
    const int m_signal;
    struct sigaction m_before = {};
};
} // namespace Runner
