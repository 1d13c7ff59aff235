#include "Runner/Save/Withheld_Callbacks.h"

#include "Files/Graphics/Camera_Manager.h"
#include "Runner/Host/Value.h"
#include "Runner/World/Camera_Callbacks.h"

namespace Runner
{
WithheldCallbacks::WithheldCallbacks()
{
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
        if (g_CM.m_cameras[slot] != nullptr)
            WithholdFrom(*g_CM.m_cameras[slot]);
}

WithheldCallbacks::~WithheldCallbacks()
{
    for (const Withheld& withheld : m_withheld)
        withheld.camera.*withheld.callback.value = withheld.value;
}

void WithheldCallbacks::WithholdFrom(CCamera& camera)
{
    for (const CameraCallback& callback : CAMERA_CALLBACKS)
    {
        RValue& value = camera.*callback.value;
        int number = -1;
        if (KvKind(value) == VALUE_OBJECT || ScriptNumberOf(value, number))
            continue;
        m_withheld.push_back({camera, callback, value});
        value = MakeReal(number);
    }
}

std::string WithheldCallbacks::Line() const
{
    if (m_withheld.empty())
        return "";
    const Withheld& first = m_withheld.front();
    const size_t others = m_withheld.size() - 1;
    return std::string("the ") + first.callback.name + " script of camera " + std::to_string(first.camera.GetID()) +
           " is not saved: it is " + Describe(first.value) + ", neither a function nor a number" +
           (others == 0 ? "" : " (other such callbacks, not saved either: " + std::to_string(others) + ")");
}
} // namespace Runner
