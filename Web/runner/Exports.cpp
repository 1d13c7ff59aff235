// What the page calls: C functions on the one game of this program. runner.js wraps them.
//
// A function that answers a text or bytes answers their address; page_size is their length, and they live until the
// next call. Memory that runs out outside of a script ends the program: page_flags says so from then on.

#include "Files/Graphics/Graphics_Support.h"
#include "Runner/App/Options.h"
#include "Runner/Host/Console.h"
#include "Runner/Host/Files.h"
#include "Runner/Input/Input_Names.h"
#include "Runner/Save/Capture.h"
#include "Web/runner/Canvas_Device.h"
#include "Web/runner/Page_Run.h"
#include "Web/runner/Page_Texts.h"

#include <emscripten.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <memory>
#include <new>

#define PAGE_CALL extern "C" EMSCRIPTEN_KEEPALIVE

namespace
{
using namespace Runner;

enum Flag : int
{
    FLAG_FAILED = 1,
    FLAG_AT_END = 2,
    FLAG_DEAD = 4,
    FLAG_PLAYING = 8,
};

constexpr double MILLION = 1e6; // nanoseconds of a millisecond

RunOptions s_options;
RunStart s_start;
std::unique_ptr<PageRun> s_run;
std::string s_answer;
bool s_isDead = false;

int64_t Nanoseconds(double milliseconds) { return static_cast<int64_t>(milliseconds * MILLION); }

// What runs the game: no exception leaves the program.
template <typename Answer, typename Act> Answer Guarded(Answer otherwise, Act act)
{
    if (s_isDead || s_run == nullptr)
        return otherwise;
    try
    {
        return act(*s_run);
    }
    catch (const std::bad_alloc&)
    {
        s_isDead = true;
        return otherwise;
    }
}

const char* Say(std::string text)
{
    s_answer = std::move(text);
    return s_answer.c_str();
}

const char* SayBytes(const std::vector<uint8_t>& bytes) { return Say({bytes.begin(), bytes.end()}); }

// Arguments with a line each, behind the program's name.
std::vector<std::string> Split(const char* lines)
{
    std::vector<std::string> arguments = {"runner"};
    std::string text = lines;
    for (size_t start = 0; start < text.size();)
    {
        const size_t end = std::min(text.find('\n', start), text.size());
        arguments.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return arguments;
}

std::vector<char*> Pointers(std::vector<std::string>& arguments)
{
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    return pointers;
}

// A line that a function writes to a stream, without its program's name and its end.
template <typename Write> std::string Written(Write write)
{
    char* text = nullptr;
    size_t size = 0;
    FILE* const stream = open_memstream(&text, &size);
    write(stream);
    std::fclose(stream);
    std::string line(text, size);
    std::free(text);
    return line.substr(0, line.find('\n'));
}

bool Open(const char* lines, std::string& why)
{
    std::vector<std::string> arguments = Split(lines);
    std::vector<char*> pointers = Pointers(arguments);
    ParseResult parsed = ParseResult::Wrong;
    why = Written([&](FILE* err)
                  { parsed = ParseOptions(static_cast<int>(pointers.size()), pointers.data(), s_options, err); });
    if (parsed != ParseResult::Play || !why.empty())
        return false;
    s_options.frames = INT_MAX;
    SetConsoleOutput(stdout, stderr);
    SetSaveArea(s_options.out);
    if (!PrepareSaveArea(why) || !s_start.Open(s_options, why))
        return false;
    s_run = std::make_unique<PageRun>(s_options, s_start, stderr);
    s_run->Start(why);
    return why.empty();
}
} // namespace

// ---- life ----

// Null when the game stands at its start, or has failed there (page_flags); otherwise why it cannot be opened.
PAGE_CALL const char* page_open(const char* arguments)
{
    std::string why;
    try
    {
        if (Open(arguments, why))
            return nullptr;
    }
    catch (const std::bad_alloc&)
    {
        why = "not enough memory";
    }
    s_run.reset();
    return Say(why);
}

// The whole command line, instead of page_open. Answers the exit status.
PAGE_CALL int page_command(const char* lines)
{
    std::vector<std::string> arguments = Split(lines);
    std::vector<char*> pointers = Pointers(arguments);
    const int status = RunnerMain(static_cast<int>(pointers.size()), pointers.data(), stdout, stderr);
    std::fflush(nullptr);
    return status;
}

PAGE_CALL void page_close()
{
    Guarded(0,
            [](PageRun& run)
            {
                run.Close();
                return 0;
            });
    s_run.reset();
}

PAGE_CALL int page_size() { return static_cast<int>(s_answer.size()); }

// A program that has no game is at its end, and lives.
PAGE_CALL int page_flags()
{
    const int flags =
        Guarded(static_cast<int>(FLAG_AT_END),
                [](PageRun& run)
                {
                    const int failed = run.Now().Failure().empty() ? 0 : FLAG_FAILED;
                    return failed | (run.IsAtEnd() ? FLAG_AT_END : 0) | (run.IsPlaying() ? FLAG_PLAYING : 0);
                });
    return s_isDead ? FLAG_DEAD : flags;
}

PAGE_CALL int page_frame()
{
    return Guarded(0, [](PageRun& run) { return run.Position(); });
}

PAGE_CALL int page_frames()
{
    return Guarded(0, [](PageRun& run) { return run.Frames(); });
}

PAGE_CALL int page_width()
{
    return Guarded(0, [](PageRun& run) { return run.Screen().width; });
}

PAGE_CALL int page_height()
{
    return Guarded(0, [](PageRun& run) { return run.Screen().height; });
}

PAGE_CALL int page_warnings()
{
    return Guarded(0, [](PageRun& run) { return static_cast<int>(run.Now().scripts.warnings.Count()); });
}

PAGE_CALL const char* page_failure()
{
    return Guarded("", [](PageRun& run) { return Say(FailureJson(run.Now())); });
}

// ---- time: milliseconds of the page's clock ----

PAGE_CALL void page_play(int isPlaying, double now)
{
    Guarded(0,
            [=](PageRun& run)
            {
                run.Play(isPlaying != 0, Nanoseconds(now));
                return 0;
            });
}

PAGE_CALL void page_slow(int isSlow)
{
    Guarded(0,
            [=](PageRun& run)
            {
                run.Slow(isSlow != 0);
                return 0;
            });
}

PAGE_CALL int page_tick(double now, double budget)
{
    return Guarded(0, [=](PageRun& run) { return run.Tick(Nanoseconds(now), Nanoseconds(budget)); });
}

PAGE_CALL int page_step()
{
    return Guarded(0, [](PageRun& run) { return run.Step() ? 1 : 0; });
}

PAGE_CALL int page_approach(int frame, int isReload)
{
    return Guarded(1, [=](PageRun& run) { return run.Approach(frame, isReload != 0) ? 1 : 0; });
}

// ---- picture ----

PAGE_CALL void page_show(int width, int height)
{
    Guarded(0,
            [=](PageRun& run)
            {
                run.Show({std::max(1, width), std::max(1, height)});
                return 0;
            });
}

// The canvas' context was lost, and is there again.
PAGE_CALL void page_restore_context()
{
    LoseCanvasDevices();
    Guarded(0,
            [](PageRun& run)
            {
                run.RenewDevice();
                return 0;
            });
}

// The pixels of the last frame, page_width times page_height; nothing without drawing.
PAGE_CALL const char* page_picture()
{
    return Guarded("",
                   [](PageRun& run)
                   {
                       const Painter* painter = run.Now().CurrentPainter();
                       const bool any = painter != nullptr && painter->Draws() && run.Position() > 0;
                       return any ? SayBytes(run.Now().Screen().rgba) : Say("");
                   });
}

// ---- devices ----

// character: what the layout writes on the key, 0 for a key that writes none.
PAGE_CALL void page_key(int position, int character, int isDown)
{
    const int written = character > 0 ? KeyOfCharacter(static_cast<uint32_t>(character)) : NO_NAME;
    if (s_run != nullptr)
        s_run->Devices().Key(position, written == NO_NAME ? position : written, isDown != 0);
}

PAGE_CALL void page_type(const char* text)
{
    if (s_run != nullptr)
        s_run->Devices().Type(text);
}

PAGE_CALL void page_pointer(double x, double y)
{
    Guarded(0,
            [=](PageRun& run)
            {
                run.MovePointer(static_cast<float>(x), static_cast<float>(y));
                return 0;
            });
}

PAGE_CALL void page_button(int button, int isDown)
{
    Guarded(0,
            [=](PageRun& run)
            {
                run.PressButton(button, isDown != 0);
                return 0;
            });
}

PAGE_CALL void page_wheel(int x, int y)
{
    if (s_run != nullptr)
        s_run->Devices().TurnWheel(x, y);
}

PAGE_CALL void page_pad(int pad, int isConnected)
{
    if (s_run != nullptr)
        isConnected != 0 ? s_run->Devices().AddPad(pad) : s_run->Devices().RemovePad(pad);
}

PAGE_CALL void page_pad_axis(int pad, int axis, int value)
{
    if (s_run != nullptr)
        s_run->Devices().MoveAxis(pad, axis, static_cast<int16_t>(std::clamp(value, -32768, 32767)));
}

PAGE_CALL void page_pad_button(int pad, int button, int isDown)
{
    if (s_run != nullptr)
        s_run->Devices().PadButton(pad, button, isDown != 0);
}

PAGE_CALL void page_release()
{
    if (s_run != nullptr)
        s_run->Devices().ReleaseAll();
}

// ---- inspector ----

PAGE_CALL void page_inspect(int isOn)
{
    Guarded(0,
            [=](PageRun& run)
            {
                run.Inspect(isOn != 0);
                return 0;
            });
}

// camera: INT_MIN for the one that was selected last.
PAGE_CALL const char* page_panel(int camera)
{
    return Guarded("",
                   [=](PageRun& run)
                   {
                       Inspector& inspector = run.CurrentInspector()->Content();
                       if (!run.IsInspecting() && run.Now().FrameNumber() > 0)
                           inspector.Notes().Look(run.Now()); // nobody has watched the last frame
                       if (camera != INT_MIN)
                           inspector.Select(camera);
                       return Say(PanelJson(inspector.Content(), run.Position()));
                   });
}

PAGE_CALL const char* page_styles() { return Say(StylesJson()); }

PAGE_CALL const char* page_overlays()
{
    return Guarded("", [](PageRun& run) { return Say(OverlaysJson(run.CurrentInspector()->Content().Notes())); });
}

PAGE_CALL int page_set(int camera, const char* field, double value)
{
    return Guarded(0, [=](PageRun& run) { return run.ChangeByHand(camera, field, static_cast<float>(value)) ? 1 : 0; });
}

PAGE_CALL const char* page_profile()
{
    return Guarded("", [](PageRun& run) { return Say(run.CurrentInspector()->Times().Text()); });
}

// ---- files ----

PAGE_CALL const char* page_recording()
{
    return Guarded("", [](PageRun& run) { return SayBytes(run.RecordingFile()); });
}

// The running game as a saved game; empty when none can be made.
PAGE_CALL const char* page_save()
{
    return Guarded("",
                   [](PageRun& run)
                   {
                       std::vector<uint8_t> file;
                       std::string missing, why;
                       if (!CaptureGame(run.Now(), file, missing, why))
                           PrintLine("cannot save: " + why);
                       return SayBytes(file);
                   });
}

PAGE_CALL void page_flush() { std::fflush(nullptr); } // the trace is whole in its file
