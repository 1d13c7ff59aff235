#pragma once
// The debug console: dbg_csol listens from before main on and writes to the standard error output.
//
// It takes two kinds of text: what a game logs, which its user can silence, and what the host has to report, which is
// always shown.

#include <cstdio>
#include <string>

namespace Runner
{
// The streams are not owned and must stay open while they are set; null: the standard error output. reports: what the
// host has to report goes there; null: to the same stream. Earlier write faults are forgotten.
void SetConsoleOutput(FILE* out, FILE* reports = nullptr);

void SetConsoleQuiet(bool quiet); // true: what games log is not shown

// While one lives, nothing is shown at all: what is played again has been told before.
class ConsoleSilence
{
public:
    ConsoleSilence();
    ~ConsoleSilence();
    ConsoleSilence(const ConsoleSilence&) = delete;
    ConsoleSilence& operator=(const ConsoleSilence&) = delete;
};

void PrintLog(const std::string& text);  // what a game logs, as it stands
void PrintLine(const std::string& line); // what the host has to report, through dbg_csol; a line end is added

// False, and why in one line, once anything could not be written.
bool ConsoleIsGood(std::string& why);
} // namespace Runner
