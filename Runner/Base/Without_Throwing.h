#pragma once

namespace Runner
{
// Runs what the module has asked of the host. The module is built without exceptions, so none may pass it: half of what
// it was doing would be left undone. A refused allocation ends the process here, and RunnerMain's handler says so.
template <typename Body> auto WithoutThrowing(const Body& body) noexcept { return body(); }
} // namespace Runner
