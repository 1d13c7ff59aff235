#include "Files/Run/Run_Globals.h"
#include "Runner/Api/Api_Functions.h"
#include "Runner/Draw/Screenshot.h"
#include "Runner/Game/Game.h"
#include "Runner/Host/Collector.h"
#include "Runner/Host/Console.h"

#include <climits>

namespace Runner
{
namespace
{
constexpr size_t WORK_FOR_A_KILOBYTE = 64; // of a collection, in instructions

constexpr size_t WORK_OF_A_LINE = 400; // on the console
constexpr size_t WORK_OF_A_PIXEL = 10; // of a picture in a file

// ---- scripts ----

int ScriptAdd(Arguments& call)
{
    const int reference = call.Function(1);
    return call.Return(call.game.scripts.numbered.Add(reference, call.Has(2) ? call.Text(2) : ""));
}

int ScriptCall(Arguments& call)
{
    const int reference = call.game.scripts.numbered.Find(call.Whole(1));
    if (reference < 0)
        call.FailArgument(1, "is a number from script_add, got " + DescribeAt(call.L, 1));
    ScriptEngine::Push(call.L, reference);
    lua_call(call.L, 0, 0);
    return 0;
}

int ScriptExists(Arguments& call) { return call.Return(call.game.scripts.numbered.Find(call.Whole(1)) >= 0); }

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
        call.FailArgument(1, "is 0 or more, got " + DescribeAt(call.L, 1));
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
    luai_work(WORK_OF_A_LINE);
    PrintLog(ShownText(call, 1) + "\n");
    return 0;
}

int CollectAll(Arguments& call)
{
    luai_work(static_cast<size_t>(lua_gc(call.L, LUA_GCCOUNT)) * WORK_FOR_A_KILOBYTE);
    lua_gc(call.L, LUA_GCCOLLECT);
    Collector::Collect(true);
    return 0;
}

Answer TakeScreenshot(Game& game, const std::string& name, const std::string& format)
{
    const Painter* painter = game.CurrentPainter();
    Answer answer;
    if (painter == nullptr)
        answer.why = "nothing has been drawn yet";
    else if (!painter->Draws())
        answer.why = "nothing is drawn with --no-draw, so there is no picture";
    else
    {
        const Picture screen = game.Screen();
        luai_work(screen.rgba.size() / 4 * WORK_OF_A_PIXEL);
        answer.done = WriteScreenshot(screen, name, format, answer.why);
    }
    return answer;
}

int Screenshot(Arguments& call)
{
    const std::string name = call.Text(1);
    const std::string format = call.Has(2) ? call.Text(2) : "";
    if (call.Has(2) && format != "bmp" && format != "png")
        call.FailArgument(2, "is \"bmp\" or \"png\", got " + DescribeAt(call.L, 2));
    return ReturnTold(call,
                      call.game.Ask(Question::Screenshot, [&] { return TakeScreenshot(call.game, name, format); }));
}

int GameEnd(Arguments& call)
{
    call.game.End();
    return 0;
}

constexpr ApiFunction FUNCTIONS[] = {
    {"script_add", 1, {"function", "script_name"}, ScriptAdd},
    {"include", 1, {"file"}, Include},
    {"camera_current", 0, {}, CameraCurrent},
    {"random", 0, {}, RandomNumber},
    {"random_range", 2, {"low", "high"}, RandomRange},
    {"irandom", 1, {"n"}, RandomWhole},
    {"random_set_seed", 1, {"seed"}, RandomSetSeed},
    {"frame_number", 0, {}, FrameNumber},
    {"log", 1, {"text"}, Log},
    {"collect", 0, {}, CollectAll},
    {"screenshot", 1, {"name", "format"}, Screenshot},
    {"game_end", 0, {}, GameEnd},
    {"script_call", 1, {"script"}, ScriptCall},
    {"script_exists", 1, {"script"}, ScriptExists},
};
} // namespace

ApiTable SystemApi() { return {FUNCTIONS, std::size(FUNCTIONS)}; }
} // namespace Runner
