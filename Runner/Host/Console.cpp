#include "Runner/Host/Console.h"

#include "Files/IO/Debug_Console.h"

#include <cerrno>
#include <cstring>

namespace
{
class Console final : public CDebugConsole
{
public:
    void Output(const char* text) override
    {
        if (text != nullptr)
            Write(m_reports != nullptr ? m_reports : m_out, text, std::strlen(text));
    }

    void Write(FILE* stream, const char* text, size_t size)
    {
        if (m_silences > 0)
            return;
        FILE* out = stream != nullptr ? stream : stderr;
        if (std::fwrite(text, 1, size, out) != size || std::fflush(out) != 0)
            m_fault = m_fault == 0 ? errno : m_fault;
    }

    FILE* m_out = nullptr;
    FILE* m_reports = nullptr;
    bool m_quiet = false;
    int m_silences = 0; // that are alive
    int m_fault = 0;    // errno of the first write that failed
};

Console s_console; // initialised at compile time, so usable before main
} // namespace

CDebugConsole* dbg_csol = &s_console;

namespace Runner
{
void SetConsoleOutput(FILE* out, FILE* reports)
{
    s_console.m_out = out;
    s_console.m_reports = reports;
    s_console.m_fault = 0;
}

void SetConsoleQuiet(bool quiet) { s_console.m_quiet = quiet; }

ConsoleSilence::ConsoleSilence() { ++s_console.m_silences; }

ConsoleSilence::~ConsoleSilence() { --s_console.m_silences; }

void PrintLog(const std::string& text)
{
    if (!s_console.m_quiet)
        s_console.Write(s_console.m_out, text.data(), text.size());
}

void PrintLine(const std::string& line)
{
    if (dbg_csol != nullptr)
        dbg_csol->Output((line + "\n").c_str());
}

bool ConsoleIsGood(std::string& why)
{
    if (s_console.m_fault != 0)
        why = std::string("cannot print: ") + std::strerror(s_console.m_fault);
    return s_console.m_fault == 0;
}
} // namespace Runner
