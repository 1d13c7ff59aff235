// A whole run: from the command line to the exit status.

#include "Runner/Host_Console.h"
#include "Runner/Host_Files.h"
#include "Runner/Host_Memory.h"
#include "Runner/Options.h"
#include "Runner/Screenshot.h"

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace Runner
{
namespace
{
// The first Ctrl-C ends the run cleanly; a second one, while a script does not come back, ends the process.
class InterruptHandler
{
public:
    InterruptHandler()
    {
        ScriptEngine::ClearInterrupt();
        struct sigaction action = {};
        action.sa_handler = [](int) { ScriptEngine::Interrupt(); };
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(SIGINT, &action, &m_before);
    }
    ~InterruptHandler() { sigaction(SIGINT, &m_before, nullptr); }
    InterruptHandler(const InterruptHandler&) = delete;
    InterruptHandler& operator=(const InterruptHandler&) = delete;

private:
    struct sigaction m_before = {};
};

// On a terminal: which frame is being played, in one line that is written over.
class Progress
{
public:
    Progress(FILE* err, int frames, bool quiet)
        : m_err(err), m_frames(frames), m_shown(!quiet && isatty(fileno(err)) != 0)
    {
    }
    ~Progress()
    {
        if (m_any)
            std::fputs("\r\033[K", m_err);
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(int frame)
    {
        if (!m_shown)
            return;
        std::fprintf(m_err, "\rframe %d of %d", frame, m_frames);
        std::fflush(m_err);
        m_any = true;
    }

private:
    FILE* m_err;
    int m_frames;
    bool m_shown;
    bool m_any = false;
};

int Complain(FILE* err, std::string text, int status)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::fprintf(err, "runner: %s\n", text.c_str());
    return status;
}

bool WriteFrame(Game& game, int frame, std::string& why)
{
    char name[32];
    std::snprintf(name, sizeof(name), "frame_%05d.png", frame);
    return WriteScreenshot(game.Screen(), name, why);
}

// Empty when all went well, else the line to show.
std::string Play(Game& game, const RunOptions& options, FILE* err)
{
    Progress progress(err, options.frames, options.quiet);
    std::string why;
    bool good = game.Load();
    for (int frame = 0; good && frame < options.frames && !game.HasEnded() && !ScriptEngine::Interrupted(); ++frame)
    {
        progress.Show(frame);
        good = game.Frame();
        if (good && options.game.draw && frame % options.every == 0 && !WriteFrame(game, frame, why))
            return why;
    }
    good = game.Finish() && good;
    return good || ScriptEngine::Interrupted() ? "" : game.Failure();
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

int PlayAndCheck(const RunOptions& options, FILE* err)
{
    const size_t blocksBefore = CurrentMemoryUse().blocks;
    const InterruptHandler interruptHandler;
    std::string failure;
    {
        Game game(options.game);
        failure = Play(game, options, err);
    }
    if (!failure.empty())
        return Complain(err, failure, EXIT_GAME_ERROR);
    return !options.game.check || LeaksNothing(blocksBefore, err) ? EXIT_DONE : EXIT_GAME_ERROR;
}
} // namespace

int RunnerMain(int argc, char** argv, FILE* out, FILE* err)
{
    RunOptions options;
    switch (ParseOptions(argc, argv, options, out, err))
    {
    case ParseResult::Done: return EXIT_DONE;
    case ParseResult::Wrong: return EXIT_WRONG_USAGE;
    case ParseResult::Play: break;
    }
    SetConsoleOutput(out);
    SetConsoleQuiet(options.quiet);
    SetSaveArea(options.out);
    std::string why;
    const int status =
        options.game.draw && !PrepareSaveArea(why) ? Complain(err, why, EXIT_GAME_ERROR) : PlayAndCheck(options, err);
    SetConsoleOutput(nullptr);
    SetConsoleQuiet(false);
    return status;
}
} // namespace Runner
