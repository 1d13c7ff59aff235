#include "Runner/Window/Window.h"

#ifdef RUNNER_WITHOUT_WINDOW
#include "Runner/Draw/Device.h"
#endif

namespace Runner
{
bool Window::TakeCommand(Command& command)
{
    if (m_commands.empty())
        return false;
    command = m_commands.front();
    m_commands.pop_front();
    return true;
}

#ifdef RUNNER_WITHOUT_WINDOW
std::unique_ptr<Window> Window::Open(const WindowOptions&, std::string& why)
{
    why =
        "this runner was built without a window: ./play builds one; without --window the game is played into pictures";
    return nullptr;
}
#endif
} // namespace Runner
