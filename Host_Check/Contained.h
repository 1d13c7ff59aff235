#pragma once
// A check in a process of its own, so that a host which crashes or hangs in it harms no other check.

#include "Host_Check/Check.h"

namespace HostCheck
{

// Runs the check in this process.
void RunHere(const Check& check, Trial& trial);

// Runs the check in a child process; here where the system has no fork. A child that ends without an answer, or is not
// back after so many seconds, has broken its promise.
void RunContained(const Check& check, Trial& trial, unsigned seconds);

} // namespace HostCheck
