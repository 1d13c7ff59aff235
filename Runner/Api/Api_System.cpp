#include "Files/Run/Run_Globals.h"
#include "Runner/Api/Api.h"
#include "Runner/Draw/Screenshot.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Console.h"

#include <climits>

namespace Runner
{
namespace
{
// ---- scripts ----

int ScriptAdd(Arguments& call) { return call.Return(call.game.numberedScripts.Add(call.Function(1))); }

int Include(Arguments& call)
{
    call.game.scripts.Include(call.L, call.Text(1));
    return 1;
}

int CameraCurrent(Arguments& call) { return call.Return(Current_Object); }

// ---- random numbers ----

int RandomNumber(Arguments& call) { return call.Return(call.game.random.Next01()); }

int RandomRange(Arguments& call)
{
    const double low = call.Number(1);
    const double high = call.Number(2);
    return call.Return(low + (high - low) * call.game.random.Next01());
}

int RandomWhole(Arguments& call)
{
    const int highest = call.Whole(1);
    if (highest < 0)
        call.Fail("argument 1 must be 0 or more, got " + std::to_string(highest));
    return call.Return(call.game.random.Range(0, highest));
}

int RandomSetSeed(Arguments& call)
{
    call.game.random.Seed(static_cast<uint32_t>(call.Whole(1)));
    return 0;
}

// ---- the game ----

int FrameNumber(Arguments& call) { return call.Return(call.game.FrameNumber()); }

int Log(Arguments& call)
{
    PrintLine(ShownText(call, 1));
    return 0;
}

int CollectAll(Arguments& call)
{
    lua_gc(call.L, LUA_GCCOLLECT);
    Collector::Collect(true);
    return 0;
}

// A failure that the game can live with: one line on the console says why.
int ReturnTold(const Arguments& call, bool done, const std::string& why)
{
    if (!done && !why.empty())
        PrintLine(std::string(call.Name()) + "() - " + why);
    return call.Return(done);
}

int Screenshot(Arguments& call)
{
    const std::string name = call.Text(1);
    const std::string format = call.Has(2) ? call.Text(2) : "";
    if (call.Has(2) && format != "bmp" && format != "png")
        call.Fail("argument 2 must be \"bmp\" or \"png\"");
    const Painter* painter = call.game.CurrentPainter();
    std::string why;
    if (painter == nullptr)
        why = "nothing has been drawn yet";
    else if (!painter->Draws())
        why = "nothing is drawn with --no-draw, so there is no picture";
    return ReturnTold(call, why.empty() && WriteScreenshot(call.game.Screen(), name, format, why), why);
}

int GameSave(Arguments& call)
{
    std::string why;
    return ReturnTold(call, call.game.request.AskSave(call.Text(1), why), why);
}

int GameLoad(Arguments& call)
{
    std::string why;
    return ReturnTold(call, call.game.request.AskLoad(call.game, call.Text(1), why), why);
}

int GameEnd(Arguments& call)
{
    call.game.End();
    return 0;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"script_add", 1, 1, ScriptAdd},
    {"include", 1, 1, Include},
    {"camera_current", 0, 0, CameraCurrent},
    {"random", 0, 0, RandomNumber},
    {"random_range", 2, 2, RandomRange},
    {"irandom", 1, 1, RandomWhole},
    {"random_set_seed", 1, 1, RandomSetSeed},
    {"frame_number", 0, 0, FrameNumber},
    {"log", 1, 1, Log},
    {"collect", 0, 0, CollectAll},
    {"screenshot", 1, 2, Screenshot},
    {"game_save", 1, 1, GameSave},
    {"game_load", 1, 1, GameLoad},
    {"game_end", 0, 0, GameEnd},
};
} // namespace

ApiTable SystemApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
