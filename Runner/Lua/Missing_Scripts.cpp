#include "Runner/Lua/Missing_Scripts.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Runner/Host/Console.h"
#include "Runner/World/Camera_Callbacks.h"

#include <algorithm>
#include <string>

namespace Runner
{
namespace
{
// An update script replaces following even when its number has no script.
std::string Line(int cameraId, const std::string& callback, int number)
{
    const std::string effect = callback == "update" ? " and the camera does not follow its target" : "";
    return "camera " + std::to_string(cameraId) + ": its " + callback + " script is number " + std::to_string(number) +
           ", which script_add never gave, so nothing runs" + effect +
           "; set a number from script_add, or -1 for no script";
}
} // namespace

// The module does not say which callback asks, so each that has the number is told.
void MissingScripts::Tell(Warnings& warnings, int cameraId, int number)
{
    const CCamera* camera = m_told.size() < LINES_AT_MOST ? g_CM.GetCamera(cameraId) : nullptr;
    if (camera == nullptr)
        return;
    for (const CameraCallback& callback : CAMERA_CALLBACKS)
    {
        int own = -1;
        if (ScriptNumberOf(camera->*callback.value, own) && own == number)
            TellOnce(warnings, cameraId, {camera->m_birth, callback.name, number});
    }
}

void MissingScripts::TellOnce(Warnings& warnings, int cameraId, const Callback& callback)
{
    const bool isKnown = std::find(m_told.begin(), m_told.end(), callback) != m_told.end();
    if (isKnown || m_told.size() >= LINES_AT_MOST)
        return;
    m_told.push_back(callback);
    warnings.Tell(Line(cameraId, callback.name, callback.number));
    if (m_told.size() == LINES_AT_MOST)
        PrintLine("further callbacks with a number that script_add never gave are not told");
}
} // namespace Runner
