#include "Runner/App/Interrupt.h"

#include "Runner/Lua/Script_Engine.h"

namespace Runner
{
namespace
{
constexpr int STATUS_OF_SIGNALS = 128; // as shells count

volatile std::sig_atomic_t s_signal = 0;

void Catch(int signal, struct sigaction& before)
{
    struct sigaction action = {};
    action.sa_handler = [](int number)
    {
        s_signal = number;
        ScriptEngine::Interrupt();
    };
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signal, &action, &before);
}
} // namespace

InterruptHandler::InterruptHandler()
{
    ScriptEngine::ClearInterrupt();
    Catch(SIGINT, m_interruptBefore);
    Catch(SIGTERM, m_terminateBefore);
}

InterruptHandler::~InterruptHandler()
{
    sigaction(SIGINT, &m_interruptBefore, nullptr);
    sigaction(SIGTERM, &m_terminateBefore, nullptr);
}

const char* InterruptHandler::Word() { return s_signal == SIGTERM ? "terminated" : "interrupted"; }

int InterruptHandler::Status() { return STATUS_OF_SIGNALS + s_signal; }

IgnoredSignal::IgnoredSignal(int signal) : m_signal(signal)
{
    struct sigaction ignored = {};
    ignored.sa_handler = SIG_IGN;
    sigaction(signal, &ignored, &m_before);
}

IgnoredSignal::~IgnoredSignal() { sigaction(m_signal, &m_before, nullptr); }
} // namespace Runner
