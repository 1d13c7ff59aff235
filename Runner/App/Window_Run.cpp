#include "Runner/App/Window_Run.h"

#include "Runner/Api/Api.h"
#include "Runner/App/Live_Run.h"
#include "Runner/App/Pages.h"
#include "Runner/App/Run_Start.h"
#include "Runner/App/Window_Inspector.h"
#include "Runner/App/Window_Stage.h"
#include "Runner/Base/Printable.h"
#include "Runner/Draw/Device.h"
#include "Runner/Host/Files.h"

#include <filesystem>
#include <functional>
#include <utility>

namespace Runner
{
namespace
{
class WindowRun
{
public:
    WindowRun(const RunOptions& options, Window& window, FILE* err)
        : m_options(options), m_menuOut(options.out), m_window(window), m_err(err), m_recordWanted(options.record)
    {
        m_window.onLost = [this] { EndWithoutDisplay(m_err, m_rescue ? m_rescue() : ""); };
    }
    ~WindowRun() { m_window.onLost = nullptr; }
    WindowRun(const WindowRun&) = delete;
    WindowRun& operator=(const WindowRun&) = delete;

    Outcome Play()
    {
        const std::vector<MenuEntry> games =
            m_options.menu.empty() ? std::vector<MenuEntry>() : FindGames(m_options.menu);
        if (!m_options.menu.empty() && games.empty())
            return {"--menu: there is no game in \"" + m_options.menu + "\": it holds NAME/NAME.lua", EXIT_GAME_ERROR};
        if (!games.empty())
            m_window.Show({SCREEN_WIDTH_UNLESS_SET, SCREEN_HEIGHT_UNLESS_SET}); // most games have this size
        Outcome outcome;
        do
        {
            const int chosen = games.empty() ? -1 : ShowMenu(m_window, games);
            if (!games.empty() && chosen < 0)
                break;
            if (chosen >= 0)
                Choose(games[static_cast<size_t>(chosen)]);
            outcome = PlayUntilItIsLeft();
        } while (!games.empty() && !m_window.IsClosed() && !ScriptEngine::Interrupted());
        return outcome;
    }

private:
    // What a run must keep when it cannot end as others do: closes its recording and answers why not, in one line.
    using Rescue = std::function<std::string()>;

    class RescueScope
    {
    public:
        RescueScope(Rescue& place, Rescue rescue) : m_place(place) { m_place = std::move(rescue); }
        ~RescueScope() { m_place = nullptr; }
        RescueScope(const RescueScope&) = delete;
        RescueScope& operator=(const RescueScope&) = delete;

    private:
        Rescue& m_place;
    };

    // Each game of the menu has a save area of its own.
    void Choose(const MenuEntry& game)
    {
        m_options.game.file = game.file;
        m_options.out = m_menuOut + "/" + game.name;
        SetSaveArea(m_options.out);
    }

    // Starts a failed game again as long as the user wants it.
    Outcome PlayUntilItIsLeft()
    {
        for (;;)
        {
            FailureReport report;
            Outcome outcome = PlayOnce(report);
            if (outcome.line.empty() || ScriptEngine::Interrupted())
                return outcome;
            std::fprintf(m_err, "runner: %s\n", outcome.line.c_str());
            ShowDetails(outcome, m_err);
            if (!std::exchange(m_wantsAgain, false) && !ShowErrorPage(m_window, report, m_last))
                return {"", EXIT_GAME_ERROR};
            KeepRecording();
        }
    }

    // A game that starts again is recorded beside the run that failed, which shows how it came about.
    void KeepRecording()
    {
        std::error_code ignored;
        if (m_options.record.empty() || !std::filesystem::exists(m_options.record, ignored))
            return;
        m_options.record = FreeName(m_recordWanted);
        std::fprintf(m_err, "runner: the game that starts again is recorded in %s\n",
                     PrintableName(m_options.record).c_str());
    }

    // "run.2.rec" for "run.rec", or the next number.
    static std::string FreeName(const std::filesystem::path& wanted)
    {
        std::error_code ignored;
        for (int number = 2;; ++number)
        {
            std::filesystem::path name = wanted;
            name.replace_filename(wanted.stem().string() + "." + std::to_string(number) + wanted.extension().string());
            if (!std::filesystem::exists(name, ignored))
                return name.string();
        }
    }

    Outcome PlayLive(const RunOptions& options, RunStart& start, FailureReport& report)
    {
        LiveRun run(options, m_window, start, m_err);
        const RescueScope rescue(m_rescue, [&run] { return run.Rescue(); });
        Outcome outcome = run.Play(report, m_last);
        start.ShowNotice(m_err);
        m_wantsAgain = run.WantsAgain();
        report.line = outcome.line;
        outcome.details = report.Details();
        return outcome;
    }

    // report: filled when the outcome has a line.
    Outcome PlayOnce(FailureReport& report)
    {
        m_last = Picture();
        RunOptions options = m_options;
        if (options.settings.empty())
            options.settings = options.out + "/settings.txt";
        RunStart start;
        std::string why;
        if (!start.Open(options, why))
        {
            report.line = why;
            return {why, EXIT_GAME_ERROR};
        }
        if (LiveRun::Fits(options))
            return PlayLive(options, start, report);
        WindowInspector* watching = nullptr;
        LiveInspector* live = nullptr;
        const auto open = [this, &watching](int width, int height, std::string& error)
        {
            if (watching != nullptr)
                watching->LoseView();
            return m_window.OpenDevice(width, height, error);
        };
        options.game.openDevice = [&open, &live](int width, int height, std::string& error)
        { return OpenWatchedDevice(open, live, width, height, error); };
        Game game(options.game, OpenApi);
        GamePicture picture(game);
        WindowStage stage(m_window, picture, options.keys, start.Player());
        LiveInspector watcher(game);
        WindowInspector inspector(m_window, game, watcher);
        watching = &inspector;
        live = &watcher;
        watcher.onChange = [&start](const CameraChange& change) {
            start.KeepByHand({change.camera, change.field, change.value});
        };
        stage.overlay = [&inspector](const Port& where) { inspector.Draw(where); };
        stage.toggleInspector = [&inspector] { inspector.Toggle(); };
        if (m_options.inspect)
            inspector.Toggle();
        stage.SetPaced(!options.unpaced);
        if (options.paceSeconds > 0)
            stage.KeepTimes();
        const RescueScope rescue(m_rescue,
                                 [&start, &game]
                                 {
                                     std::string lost;
                                     start.Finish(game, lost);
                                     game.Finish();
                                     return lost;
                                 });
        Outcome outcome = Session(game, options, start, stage, m_err).Play();
        stage.TellRate(m_err);
        start.ShowNotice(m_err);
        TellWarnings(game, m_err);
        if (game.scripts.Failed())
            report = DescribeFailure(game);
        if (game.FrameNumber() > 0)
            m_last = game.Screen();
        report.line = outcome.line;
        return outcome;
    }

    RunOptions m_options;
    const std::string m_menuOut; // where the games of the menu have their save areas
    Window& m_window;
    FILE* m_err;
    const std::string m_recordWanted; // by the user, for the first run
    Rescue m_rescue;                  // of the running game; null for none
    Picture m_last;                   // that the game showed before it failed
    bool m_wantsAgain = false;        // the error page has been shown, and the game is to start again
};
} // namespace

Outcome PlayInWindow(const RunOptions& options, FILE* err, const WindowOpener& open)
{
    std::string why;
    const std::string title =
        options.menu.empty() ? options.game.file.substr(options.game.file.rfind('/') + 1) : "Games";
    const auto window = open({title, options.scale, options.fullscreen, options.keys, !options.unpaced}, why);
    return window == nullptr ? Outcome{why, EXIT_GAME_ERROR} : WindowRun(options, *window, err).Play();
}
} // namespace Runner
