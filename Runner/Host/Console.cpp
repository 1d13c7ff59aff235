#include "Runner/Host/Console.h"

#include "Files/IO/Debug_Console.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

namespace
{
// What a terminal takes for a command (colours, titles, what is typed next) becomes '?'; lines and tabs stay. A file
// gets every byte.
std::string WithoutCommands(const char* text, size_t size)
{
    std::string shown(text, size);
    for (size_t i = 0; i < size; ++i)
    {
        const auto byte = static_cast<unsigned char>(shown[i]);
        const bool isCommand = (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
        const bool startsCommand = byte == 0xC2 && i + 1 < size && static_cast<unsigned char>(shown[i + 1]) < 0xA0;
        if (isCommand || startsCommand)
            shown[i] = '?';
        if (startsCommand)
            shown[i + 1] = '?';
    }
    return shown;
}

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
        std::string shown;
        if (isatty(fileno(out)) == 1)
        {
            shown = WithoutCommands(text, size);
            text = shown.data();
        }
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
