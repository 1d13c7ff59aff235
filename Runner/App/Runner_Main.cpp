// A whole run: from the command line to the exit status.

#include "Runner/Api/Api.h"
#include "Runner/App/Compare_Saves.h"
#include "Runner/App/Comparison.h"
#include "Runner/App/Comparison_Window.h"
#include "Runner/App/Confinement.h"
#include "Runner/App/Interrupt.h"
#include "Runner/App/New_Game.h"
#include "Runner/App/Options.h"
#include "Runner/App/Packed_Game.h"
#include "Runner/App/Run_Start.h"
#include "Runner/App/Session.h"
#include "Runner/App/Targets.h"
#include "Runner/App/Window_Run.h"
#include "Runner/Base/Printable.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"
#include "Runner/Host/Memory.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <new>

namespace Runner
{
namespace
{
// One line, whatever a script put into its error.
int Complain(FILE* err, std::string text, int status)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fprintf(err, "runner: %s\n", Printable(text, text.size()).c_str());
    return status;
}

bool LeaksNothing(size_t blocksBefore, FILE* err)
{
    const size_t blocks = CurrentMemoryUse().blocks;
    if (blocks <= blocksBefore)
        return true;
    std::fprintf(err, "runner: %zu blocks of memory are still alive, %zu were before the game:\n", blocks,
                 blocksBefore);
    ReportLiveBlocks(err);
    return false;
}

Outcome StartAndPlay(const RunOptions& asked, FILE* err)
{
    RunOptions options = asked;
    RunStart start;
    std::string why;
    if (!start.Open(options, why))
        return {why, EXIT_GAME_ERROR};
    Game game(options.game, OpenApi);
    NoInput nobody;
    Outcome outcome = Session(game, options, start, start.Player() != nullptr ? *start.Player() : nobody, err).Play();
    start.ShowNotice(err);
    TellWarnings(game, err);
    return outcome;
}

Outcome Start(const RunOptions& options, FILE* err)
{
    if (options.window && options.Compares())
        return CompareInWindow(options, err);
    if (options.window)
        return PlayInWindow(options, err);
    return options.Compares() ? Compare(options, err) : StartAndPlay(options, err);
}

int PlayAndCheck(const RunOptions& options, FILE* err)
{
    const size_t blocksBefore = CurrentMemoryUse().blocks;
    const InterruptHandler interruptHandler;
    const Outcome outcome = Start(options, err);
    if (!outcome.line.empty())
    {
        Complain(err, outcome.line, outcome.status);
        ShowDetails(outcome, err);
        return outcome.status;
    }
    if (outcome.status != EXIT_DONE)
        return outcome.status;
    const bool clean = LeaksNothing(blocksBefore, err);
    return clean || !options.game.check ? EXIT_DONE : EXIT_GAME_ERROR;
}

// What was asked for instead of a game.
int Print(const std::string& text, FILE* out, FILE* err)
{
    SetConsoleOutput(out);
    PrintLog(text);
    std::string why;
    return ConsoleIsGood(why) ? EXIT_DONE : Complain(err, why, EXIT_GAME_ERROR);
}

int MakeGame(const RunOptions& options, FILE* out, FILE* err)
{
    std::string told;
    return MakeNewGame(options.newGame, told) ? Print(told + "\n", out, err) : Complain(err, told, EXIT_GAME_ERROR);
}

// The save area is there afterwards, because what is not there cannot be left open. Archives are read only then.
bool Confined(const RunOptions& options, std::string& why)
{
    return !options.confined ||
           (WritesIntoSaveArea(options, why) && PrepareSaveArea(why) && ConfineProcess(NeedsOf(options), why));
}

int PlayGame(const RunOptions& asked, FILE* out, FILE* err)
{
    RunOptions options = asked;
    SetConsoleOutput(out);
    SetConsoleQuiet(options.quiet);
    SetSaveArea(options.out);
    PackedGame game, other;
    std::string why;
    if (!Confined(options, why) || !game.Open(options.game.file, why) || !other.Open(options.compare, why))
        return Complain(err, why, EXIT_GAME_ERROR);
    options.archive = game.Archive();
    if (options.watch && !options.archive.empty())
        return Complain(err,
                        "--watch follows files, and " + PrintableName(options.archive) +
                            " is an archive: unpack it, or leave --watch out",
                        EXIT_WRONG_USAGE);
    const bool isReady = (!options.game.draw || PrepareSaveArea(why)) && TargetsAreGood(options, why);
    return isReady ? PlayAndCheck(options, err) : Complain(err, why, EXIT_GAME_ERROR);
}

// Status 0 for saves that are the same, as of other programs that compare.
int CompareTwoSaves(const RunOptions& options, FILE* out, FILE* err)
{
    std::string why;
    if (CompareSaves(options.compareSaves.first, options.compareSaves.second, out, why))
        return EXIT_DONE;
    return why.empty() ? EXIT_GAME_ERROR : Complain(err, why, EXIT_GAME_ERROR);
}

// Where memory runs out and nobody can be told any more: in a destructor, in the library's own handling of an error, or
// below the module, which no exception may pass. The line is written and the process ends, as after a caught one.
class LastWord
{
public:
    explicit LastWord(FILE* err)
        : m_before(std::set_terminate(EndProcess)), m_newBefore(std::set_new_handler(NoteRefusal))
    {
        s_err = err;
        s_isRefused = false;
    }
    ~LastWord()
    {
        std::set_terminate(m_before);
        std::set_new_handler(m_newBefore);
    }
    LastWord(const LastWord&) = delete;
    LastWord& operator=(const LastWord&) = delete;

    static void SayNoMemory(FILE* err) { std::fputs("runner: not enough memory\n", err); }

private:
    [[noreturn]] static void NoteRefusal()
    {
        s_isRefused = true;
        throw std::bad_alloc();
    }

    [[noreturn]] static void SayAndEnd()
    {
        SayNoMemory(s_err);
        std::fflush(nullptr);
        std::_Exit(EXIT_GAME_ERROR);
    }

    // What the library's own functions do not let pass is not known here any more: the refusal has been noted.
    [[noreturn]] static void EndProcess()
    {
        try
        {
            if (std::current_exception() != nullptr)
                std::rethrow_exception(std::current_exception());
        }
        catch (const std::bad_alloc&)
        {
            SayAndEnd();
        }
        catch (...) // a fault of the program's own: what follows shows where
        {
        }
        if (s_isRefused && std::current_exception() == nullptr)
            SayAndEnd();
        std::abort();
    }

    static FILE* s_err;
    static bool s_isRefused;
    const std::terminate_handler m_before;
    const std::new_handler m_newBefore;
};
FILE* LastWord::s_err = nullptr;
bool LastWord::s_isRefused = false;

int Run(int argc, char** argv, FILE* out, FILE* err)
{
    RunOptions options;
    switch (ParseOptions(argc, argv, options, err))
    {
    case ParseResult::Help: return Print(HelpText(), out, err);
    case ParseResult::Version: return Print("runner " CAMERA_VERSION "\n", out, err);
    case ParseResult::NewGame: return MakeGame(options, out, err);
    case ParseResult::CompareSaves: return CompareTwoSaves(options, out, err);
    case ParseResult::Wrong: return EXIT_WRONG_USAGE;
    case ParseResult::Play: break;
    }
    return PlayGame(options, out, err);
}
} // namespace

// Scripts are told themselves when memory runs out; what happens outside of them ends here.
int RunnerMain(int argc, char** argv, FILE* out, FILE* err)
{
    const LastWord lastWord(err);
    const IgnoredSignal noSizeSignal(SIGXFSZ);
    int status = EXIT_GAME_ERROR;
    try
    {
        status = Run(argc, argv, out, err);
    }
    catch (const std::bad_alloc&)
    {
        LastWord::SayNoMemory(err);
    }
    SetConsoleOutput(nullptr);
    SetConsoleQuiet(false);
    return status;
}
} // namespace Runner
