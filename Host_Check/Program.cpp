// The command line and what is printed.

#include "Host_Check/Host_Check.h"

#include <cstdio>
#include <cstring>

namespace HostCheck
{
namespace
{

constexpr int BROKEN = 1, BAD_COMMAND_LINE = 2;

struct CommandLine
{
    Options options;
    bool tap = false, list = false, help = false;
};

constexpr char HELP[] =
    "host_check [--level NAME] [--tap] [--same-bits] [--only CHECK] [--list] [--no-fork]\n"
    "\n"
    "  --level NAME  follow, built-ins, callbacks, saves or images: that level and those before it (all without it)\n"
    "  --tap         prints the Test Anything Protocol\n"
    "  --same-bits   counts whether matrices have the reference's bits\n"
    "  --only CHECK  runs the check of that name alone\n"
    "  --list        names all checks with their sentences, and the sentences that no check can test\n"
    "  --no-fork     runs all checks in this process: for a debugger\n"
    "\n"
    "Exit status: 0 every promise that was tested holds, 1 one is broken, 2 a mistake on the command line.\n";

// Takes one argument, and the one behind it where it has a value. False, and said why, for a mistake.
bool Take(CommandLine& line, int argc, char** argv, int& index)
{
    const char* word = argv[index];
    const char* value = index + 1 < argc ? argv[index + 1] : nullptr;
    const bool takesValue = std::strcmp(word, "--level") == 0 || std::strcmp(word, "--only") == 0;
    if (takesValue && value == nullptr)
    {
        std::fprintf(stderr, "host_check: %s needs a name behind it\n", word);
        return false;
    }
    index += takesValue ? 1 : 0;
    if (std::strcmp(word, "--level") == 0 && !FindLevel(value, line.options.level))
    {
        std::fprintf(stderr,
                     "host_check: there is no level %s; levels are follow, built-ins, callbacks, saves, images\n",
                     value);
        return false;
    }
    if (std::strcmp(word, "--only") == 0)
        line.options.only = value;
    else if (std::strcmp(word, "--tap") == 0)
        line.tap = true;
    else if (std::strcmp(word, "--same-bits") == 0)
        line.options.sameBits = true;
    else if (std::strcmp(word, "--no-fork") == 0)
        line.options.contained = false;
    else if (std::strcmp(word, "--list") == 0)
        line.list = true;
    else if (std::strcmp(word, "--help") == 0)
        line.help = true;
    else if (!takesValue)
    {
        std::fprintf(stderr, "host_check: unknown argument %s; --help names all\n", word);
        return false;
    }
    return true;
}

// How many checks a run has: those of its levels, or the one that was named.
struct Planned
{
    const Options& options;
    int count;
};

void Plan(const Outcome& outcome, void* context)
{
    Planned& planned = *static_cast<Planned*>(context);
    const bool isNamed = planned.options.only == nullptr || std::strcmp(planned.options.only, outcome.name) == 0;
    planned.count += isNamed && outcome.level <= planned.options.level ? 1 : 0;
}

void ListOne(const Outcome& outcome, void*)
{
    std::printf("%-10s %-30s %s\n           %s\n", NameOf(outcome.level), outcome.name, outcome.header,
                outcome.sentence);
}

void ListAll()
{
    ListChecks(ListOne, nullptr);
    int count = 0;
    const Untested* untested = UntestedSentences(count);
    std::printf("\nSentences without a check:\n");
    for (int i = 0; i < count; ++i)
        std::printf("%s\n           %s\n           (%s)\n", untested[i].header, untested[i].sentence, untested[i].why);
}

// ---- as text: only what does not hold ----
void PrintText(const Outcome& outcome, void*)
{
    if (outcome.verdict == Verdict::NotTested)
        std::printf("not tested  %s: %s\n", outcome.name, outcome.saw);
    if (outcome.verdict != Verdict::Broken && outcome.verdict != Verdict::NotCounted)
        return;
    std::printf("%s  %s (level %s)\n  %s promises: %s\n  seen: %s\n",
                outcome.verdict == Verdict::Broken ? "BROKEN    " : "not counted", outcome.name, NameOf(outcome.level),
                outcome.header, outcome.sentence, outcome.saw);
}

void PrintTotals(const Totals& totals, Level level)
{
    std::printf("level %s: %d promises hold, %d broken, %d not tested", NameOf(level), totals.held, totals.broken,
                totals.notTested);
    if (totals.notCounted > 0)
        std::printf(", %d not counted (--same-bits counts it)", totals.notCounted);
    std::printf("\n");
}

// ---- as TAP ----
// A quoted scalar of the diagnosis: quotes and backslashes are escaped.
void PrintField(const char* name, const char* text)
{
    std::printf("  %s: \"", name);
    for (; *text != '\0'; ++text)
    {
        if (*text == '"' || *text == '\\')
            std::putchar('\\');
        std::putchar(static_cast<unsigned char>(*text) < 0x20 ? ' ' : *text);
    }
    std::printf("\"\n");
}

void PrintTap(const Outcome& outcome, void* context)
{
    int& number = *static_cast<int*>(context);
    const bool isOk = outcome.verdict == Verdict::Holds || outcome.verdict == Verdict::NotTested;
    std::printf("%s %d - %s", isOk ? "ok" : "not ok", ++number, outcome.name);
    if (outcome.verdict == Verdict::NotTested)
        std::printf(" # SKIP %s", outcome.saw);
    if (outcome.verdict == Verdict::NotCounted)
        std::printf(" # TODO counted with --same-bits");
    std::printf("\n");
    if (isOk)
        return;
    std::printf("  ---\n");
    PrintField("level", NameOf(outcome.level));
    PrintField("header", outcome.header);
    PrintField("promise", outcome.sentence);
    PrintField("seen", outcome.saw);
    std::printf("  ...\n");
}

} // namespace

int Main(int argc, char** argv, const Hooks& hooks)
{
    CommandLine line;
    for (int i = 1; i < argc; ++i)
        if (!Take(line, argc, argv, i))
            return BAD_COMMAND_LINE;
    if (line.help)
        return std::fputs(HELP, stdout) < 0 ? BAD_COMMAND_LINE : 0;
    if (line.list)
    {
        ListAll();
        return 0;
    }
    Planned planned = {line.options, 0};
    ListChecks(Plan, &planned);
    if (planned.count == 0)
    {
        std::fprintf(stderr, "host_check: level %s has no check %s; --list names all\n", NameOf(line.options.level),
                     line.options.only);
        return BAD_COMMAND_LINE;
    }
    int number = 0;
    if (line.tap)
        std::printf("TAP version 13\n1..%d\n", planned.count);
    const Totals totals = Run(hooks, line.options, line.tap ? PrintTap : PrintText, &number);
    if (!line.tap)
        PrintTotals(totals, line.options.level);
    return totals.broken == 0 ? 0 : BROKEN;
}

} // namespace HostCheck
