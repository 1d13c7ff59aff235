#include "Runner/Host/Console.h"

#include "Files/IO/Debug_Console.h"

namespace
{
class Console final : public CDebugConsole
{
public:
    void Output(const char* text) override
    {
        if (m_quiet || text == nullptr)
            return;
        FILE* out = m_out != nullptr ? m_out : stderr;
        std::fputs(text, out);
        std::fflush(out);
    }

    FILE* m_out = nullptr;
    bool m_quiet = false;
};

Console s_console; // initialised at compile time, so usable before main
} // namespace

CDebugConsole* dbg_csol = &s_console;

namespace Runner
{
void SetConsoleOutput(FILE* out) { s_console.m_out = out; }

void SetConsoleQuiet(bool quiet) { s_console.m_quiet = quiet; }

void PrintLine(const std::string& line)
{
    if (dbg_csol != nullptr)
        dbg_csol->Output((line + "\n").c_str());
}
} // namespace Runner
