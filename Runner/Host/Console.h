#pragma once
// The debug console: dbg_csol listens from before main on and writes to the standard error output.

#include <cstdio>
#include <string>

namespace Runner
{
void SetConsoleOutput(FILE* out); // not owned, open as long as it is set; null: the standard error output
void SetConsoleQuiet(bool quiet); // true: prints nothing
void PrintLine(const std::string& line);
} // namespace Runner
