#pragma once
// What the camera handlers share.

#include "Files/Code/Function.h"
#include "Files/Graphics/Camera_Manager.h"
#include "Files/Graphics/Values.h"

namespace CameraModule
{

// A handler's first step: the result is -1, and the call has the right number of arguments. False: reported.
inline bool CheckCall(RValue& result, int argc, int expected, const char* name)
{
    SetReal(result, -1.0);
    if (argc == expected)
        return true;
    KvError("%s() - wrong number of arguments", name);
    return false;
}

// A handler's second step: the camera that the first argument names. Null: there is nothing to do and nothing to
// report.
inline CCamera* NamedCamera(const RValue* args) { return g_CM.GetCamera(KvGetInt32(args, 0)); }

// Both steps, for handlers that take exactly `expected` arguments.
inline CCamera* BeginCall(RValue& result, int argc, const RValue* args, int expected, const char* name)
{
    return CheckCall(result, argc, expected, name) ? NamedCamera(args) : nullptr;
}

} // namespace CameraModule
