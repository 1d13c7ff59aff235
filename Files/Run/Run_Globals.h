#pragma once

#include <cstdint>

class CInstance;

extern int Current_Object;   // who runs now: an object, or a camera during its callbacks
extern bool g_fIsJSProject;  // scripts run in the global instance instead of the cameras' own
extern CInstance* g_pGlobal; // the global instance
