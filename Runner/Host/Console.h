#pragma once
// The debug console. dbg_csol works from before main on and writes to the standard error output.

#include <cstdio>
#include <string>

namespace Runner
{
void SetConsoleOutput(FILE* out); // not owned; must stay open while it is set. Null: the standard error output
void SetConsoleQuiet(bool quiet); // true: prints nothing
void PrintLine(const std::string& line);
} // namespace Runner
