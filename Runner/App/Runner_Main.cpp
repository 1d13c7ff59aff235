// A whole run: from the command line to the exit status.

#include "Runner/Api/Api.h"
#include "Runner/App/Contact_Sheet.h"
#include "Runner/App/Options.h"
#include "Runner/Draw/Screenshot.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"
#include "Runner/Host/Memory.h"
#include "Runner/Save/Saved_Game.h"

#include <algorithm>
#include <csignal>
#include <new>
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

// The pictures of a run.
class Album
{
public:
    explicit Album(const RunOptions& options) : m_options(options), m_sheet(options.frames) {}

    bool Take(Game& game, int frame, std::string& why)
    {
        if (!m_options.game.draw)
            return true;
        const bool single = frame % m_options.every == 0;
        const bool small = !m_options.contactSheet.empty() && m_sheet.Wants(frame);
        if (!single && !small)
            return true;
        const Picture screen = game.Screen();
        if (small)
            m_sheet.Add(screen);
        return !single || WriteScreenshot(screen, FrameName(frame), "png", why);
    }

    void Finish(std::string& why) const
    {
        if (!m_sheet.IsEmpty())
            WriteScreenshot(m_sheet.Sheet(), m_options.contactSheet, "", why);
    }

private:
    static std::string FrameName(int frame)
    {
        char name[32];
        std::snprintf(name, sizeof(name), "frame_%05d.png", frame);
        return name;
    }

    const RunOptions& m_options;
    ContactSheet m_sheet;
};

// Writes what --save-at asks for, in its frame.
bool SaveInTime(Game& game, const RunOptions& options, std::string& why)
{
    const auto& [frame, file] = options.saveAt;
    return frame != game.FrameNumber() || SaveGame(game, file, why);
}

void FinishFiles(Game& game, const RunOptions& options, std::string& why)
{
    if (why.empty() && game.FrameNumber() < options.saveAt.first)
        why = "--save-at " + std::to_string(options.saveAt.first) + ": the game has stopped after " +
              std::to_string(game.FrameNumber()) + " frames";
    if (why.empty() && !options.screenshot.empty())
        WriteScreenshot(game.Screen(), options.screenshot, "", why);
}

// saved: what to go on from, null for a new game. Empty when all went well, else the line to show.
std::string Play(Game& game, const RunOptions& options, const SavedState* saved, FILE* err)
{
    Progress progress(err, options.frames, options.quiet);
    Album album(options);
    std::string why;
    bool good = game.Load();
    if (good && saved != nullptr && !FitsGame(game, *saved, options.load, why))
        return why;
    if (good && saved != nullptr)
        good = RestoreGame(game, *saved);
    for (int frame = 0; good && frame < options.frames && !game.HasEnded() && !ScriptEngine::Interrupted(); ++frame)
    {
        progress.Show(frame);
        good = game.Frame();
        if (good && (!album.Take(game, frame, why) || !SaveInTime(game, options, why)))
            return why;
    }
    album.Finish(why);
    if (good && !ScriptEngine::Interrupted())
        FinishFiles(game, options, why);
    good = game.Finish() && good;
    return good || ScriptEngine::Interrupted() ? why : game.Failure();
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

// The numbers that the main file draws must be those of then, so the seed comes from the saved game.
std::string LoadAndPlay(const RunOptions& options, FILE* err)
{
    GameOptions gameOptions = options.game;
    SavedState saved;
    std::string why;
    const bool isLoading = !options.load.empty();
    if (isLoading && !ReadSavedGame(options.load, saved, why))
        return why;
    if (isLoading && !options.isSeedGiven)
        gameOptions.seed = saved.game.identity.seed;
    Game game(gameOptions, OpenApi);
    return Play(game, options, isLoading ? &saved : nullptr, err);
}

int PlayAndCheck(const RunOptions& options, FILE* err)
{
    const size_t blocksBefore = CurrentMemoryUse().blocks;
    const InterruptHandler interruptHandler;
    const std::string failure = LoadAndPlay(options, err);
    if (!failure.empty())
        return Complain(err, failure, EXIT_GAME_ERROR);
    const bool clean = LeaksNothing(blocksBefore, err);
    return clean || !options.game.check ? EXIT_DONE : EXIT_GAME_ERROR;
}

int Run(int argc, char** argv, FILE* out, FILE* err)
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
    return options.game.draw && !PrepareSaveArea(why) ? Complain(err, why, EXIT_GAME_ERROR)
                                                      : PlayAndCheck(options, err);
}
} // namespace

// Scripts are told themselves when memory runs out; what happens outside of them ends here.
int RunnerMain(int argc, char** argv, FILE* out, FILE* err)
{
    int status = EXIT_GAME_ERROR;
    try
    {
        status = Run(argc, argv, out, err);
    }
    catch (const std::bad_alloc&)
    {
        std::fputs("runner: not enough memory\n", err);
    }
    SetConsoleOutput(nullptr);
    SetConsoleQuiet(false);
    return status;
}
} // namespace Runner
