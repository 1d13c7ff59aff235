// The window by SDL.
#include "Runner/Draw/Gl_Device.h"
#include "Runner/Input/Input_Names.h"
#include "Runner/Window/Sdl_Keys.h"
#include "Runner/Window/Step_Clock.h"
#include "Runner/Window/Window.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Runner
{
namespace
{
constexpr int SMALLEST_SIDE = 1;
constexpr float OF_DISPLAY = 0.8f; // what a window takes of the display unless its scale is given

// Names the window systems to try, unless the environment names one: asked to choose, SDL may answer with one that
// shows nothing, and the game would be played unseen.
void ChooseWindowSystem()
{
#ifdef __linux__
    if (std::getenv("SDL_VIDEODRIVER") == nullptr)
        SDL_SetHint(SDL_HINT_VIDEODRIVER, std::getenv("WAYLAND_DISPLAY") != nullptr ? "wayland,x11" : "x11");
#endif
}

// ---- a display that goes away ----

std::function<void()>* s_onLost = nullptr; // of the open window

// X's library ends the process by itself after its handler of broken connections, in the middle of whatever the program
// does. SDL loads that library, so its function is asked for by name.
int LoseDisplay(void*)
{
    if (s_onLost != nullptr && *s_onLost)
        (*s_onLost)();
    return 0;
}

void WatchDisplay(std::function<void()>& onLost)
{
    using Handler = int (*)(void* display);
    using SetHandler = Handler (*)(Handler handler);
    const char* const driver = SDL_GetCurrentVideoDriver();
    s_onLost = &onLost;
    if (driver == nullptr || std::strcmp(driver, "x11") != 0)
        return; // SDL reports a Wayland display that is gone as the wish to quit
    void* const library = SDL_LoadObject("libX11.so.6");
    if (const auto set = reinterpret_cast<SetHandler>(SDL_LoadFunction(library, "XSetIOErrorHandler")))
        set(LoseDisplay);
}

std::string SdlLine(const char* what) { return std::string(what) + ": " + SDL_GetError(); }

// Each device has its own context in the window: what it made goes with it.
class SdlContext : public GlContext
{
public:
    SdlContext(SDL_Window* window, SDL_GLContext context) : m_window(window), m_context(context)
    {
        MakeCurrent();
        for (const char* const kind : {"KHR", "EXT"})
            if (m_status == nullptr && SDL_GL_ExtensionSupported((std::string("GL_") + kind + "_robustness").c_str()))
                m_status = reinterpret_cast<ResetStatus>(
                    SDL_GL_GetProcAddress((std::string("glGetGraphicsResetStatus") + kind).c_str()));
    }
    bool HasWindow() const override { return true; }
    // The driver draws while the next frame is worked out: waiting here would leave all processors but one idle.
    void EndFrame() override { glFlush(); }
    bool IsLost() override { return m_status != nullptr && m_status() != GL_NO_ERROR; }

    ~SdlContext() override
    {
        Forget();
        SDL_GL_DeleteContext(m_context);
    }

private:
    void Activate() override { SDL_GL_MakeCurrent(m_window, m_context); }

    using ResetStatus = GLenum(GL_APIENTRYP)();

    SDL_Window* m_window;
    SDL_GLContext m_context;
    ResetStatus m_status = nullptr; // null for a driver that does not tell
};

// One that tells of a reset, or else any.
SDL_GLContext MakeContext(SDL_Window* window)
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_RESET_NOTIFICATION, SDL_GL_CONTEXT_RESET_LOSE_CONTEXT);
    const SDL_GLContext context = SDL_GL_CreateContext(window);
    if (context != nullptr)
        return context;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_RESET_NOTIFICATION, SDL_GL_CONTEXT_RESET_NO_NOTIFICATION);
    return SDL_GL_CreateContext(window);
}

class SdlWindow : public Window
{
public:
    explicit SdlWindow(const WindowOptions& options) : m_options(options) {}
    ~SdlWindow() override;

    bool Start(std::string& why);
    std::unique_ptr<Device> OpenDevice(int width, int height, std::string& error) override;
    void Show(PixelSize screen) override;
    void Swap() override { SDL_GL_SwapWindow(m_window); }
    void Poll(int milliseconds) override;
    void ToggleFullscreen() override;
    PixelSize Pixels() const override;
    float PixelsPerPoint() const override;
    bool IsVisible() const override { return (SDL_GetWindowFlags(m_window) & SDL_WINDOW_MINIMIZED) == 0; }
    int64_t Now() const override;
    void* Native() override { return m_window; }

private:
    void Take(const SDL_Event& event);
    void TakeKey(const SDL_KeyboardEvent& key);
    void TakeMouse(const SDL_Event& event);
    void TakePad(const SDL_Event& event);
    void TakeWindow(const SDL_WindowEvent& event);
    void Paste();
    float ScaleFor(PixelSize screen) const;

    const WindowOptions m_options;
    SDL_Window* m_window = nullptr;
    bool m_isShown = false;
};

// ---- life ----

bool SdlWindow::Start(std::string& why)
{
    SDL_SetMainReady();
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1"); // the Runner has its own
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    ChooseWindowSystem();
    const char* const headless = "; without --window the game is played into pictures (./demo does so)";
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
    {
        why = SdlLine("there is no display for a window") + headless;
        return false;
    }
    WatchDisplay(onLost);
    SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER); // a game goes without pads where there are none
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_ES);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 2);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 0);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 0);
    m_window =
        SDL_CreateWindow(m_options.title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, 640, 360,
                         SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI);
    if (m_window == nullptr)
        why = SdlLine("the display gives no window") + headless;
    return m_window != nullptr;
}

SdlWindow::~SdlWindow()
{
    s_onLost = nullptr;
    if (m_window != nullptr)
        SDL_DestroyWindow(m_window);
    SDL_Quit();
}

std::unique_ptr<Device> SdlWindow::OpenDevice(int width, int height, std::string& error)
{
    const SDL_GLContext context = MakeContext(m_window);
    if (context == nullptr)
    {
        error = SdlLine("cannot draw: the display gives no OpenGL ES 2 context");
        return nullptr;
    }
    auto device = std::make_unique<GlDevice>(std::make_unique<SdlContext>(m_window, context));
    if (!device->Open(width, height, error))
        return nullptr;
    SDL_GL_SetSwapInterval(m_options.waitsForDisplay ? 1 : 0);
    return device;
}

// ---- the window ----

int64_t SdlWindow::Now() const
{
    const uint64_t perSecond = SDL_GetPerformanceFrequency();
    const uint64_t count = SDL_GetPerformanceCounter();
    return static_cast<int64_t>(count / perSecond) * NANOSECONDS +
           static_cast<int64_t>(count % perSecond * NANOSECONDS / perSecond);
}

// Whole pixels of the display for one of the game, unless the screen is larger than the display.
float SdlWindow::ScaleFor(PixelSize screen) const
{
    SDL_Rect display = {0, 0, screen.width, screen.height};
    SDL_GetDisplayUsableBounds(std::max(0, SDL_GetWindowDisplayIndex(m_window)), &display);
    const float fit = std::min(static_cast<float>(display.w) * OF_DISPLAY / static_cast<float>(screen.width),
                               static_cast<float>(display.h) * OF_DISPLAY / static_cast<float>(screen.height));
    if (m_options.scale > 0)
        return static_cast<float>(m_options.scale);
    const bool isLarger = screen.width > display.w || screen.height > display.h;
    return isLarger ? fit : std::max(1.0f, std::floor(fit));
}

void SdlWindow::Show(PixelSize screen)
{
    m_screen = screen;
    if (m_isShown)
        return;
    m_isShown = true;
    const float scale = ScaleFor(screen);
    const auto side = [scale](int pixels) { return static_cast<int>(static_cast<float>(pixels) * scale); };
    SDL_SetWindowMinimumSize(m_window, SMALLEST_SIDE, SMALLEST_SIDE);
    SDL_SetWindowSize(m_window, side(screen.width), side(screen.height));
    SDL_SetWindowPosition(m_window, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED);
    SDL_ShowWindow(m_window);
    if (m_options.fullscreen)
        ToggleFullscreen();
}

PixelSize SdlWindow::Pixels() const
{
    PixelSize size;
    SDL_GL_GetDrawableSize(m_window, &size.width, &size.height);
    return {std::max(1, size.width), std::max(1, size.height)};
}

float SdlWindow::PixelsPerPoint() const
{
    int width = 1, height = 1;
    SDL_GetWindowSize(m_window, &width, &height);
    return static_cast<float>(Pixels().width) / static_cast<float>(std::max(1, width));
}

void SdlWindow::ToggleFullscreen()
{
    const bool isFull = (SDL_GetWindowFlags(m_window) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0;
    SDL_SetWindowFullscreen(m_window, isFull ? 0 : SDL_WINDOW_FULLSCREEN_DESKTOP);
}

// ---- events ----

void SdlWindow::Poll(int milliseconds)
{
    SDL_Event event;
    const bool any = milliseconds > 0 ? SDL_WaitEventTimeout(&event, milliseconds) != 0 : SDL_PollEvent(&event) != 0;
    if (!any)
        return;
    do
    {
        if (observer == nullptr || !observer(&event))
            Take(event);
    } while (SDL_PollEvent(&event) != 0);
}

void SdlWindow::Take(const SDL_Event& event)
{
    switch (event.type)
    {
    case SDL_QUIT: m_isClosed = true; break;
    case SDL_WINDOWEVENT: TakeWindow(event.window); break;
    case SDL_KEYDOWN:
    case SDL_KEYUP: TakeKey(event.key); break;
    case SDL_TEXTINPUT: m_input.Type(event.text.text); break;
    case SDL_MOUSEMOTION:
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
    case SDL_MOUSEWHEEL: TakeMouse(event); break;
    default: TakePad(event); break;
    }
}

void SdlWindow::TakeWindow(const SDL_WindowEvent& event)
{
    if (event.event == SDL_WINDOWEVENT_CLOSE)
        m_isClosed = true;
    if (event.event == SDL_WINDOWEVENT_FOCUS_GAINED)
        m_hasFocus = true;
    if (event.event == SDL_WINDOWEVENT_FOCUS_LOST)
    {
        m_hasFocus = false;
        m_input.ReleaseAll();
    }
}

void SdlWindow::Paste()
{
    char* const text = SDL_GetClipboardText();
    if (text != nullptr)
        m_input.Type(text);
    SDL_free(text);
}

void SdlWindow::TakeKey(const SDL_KeyboardEvent& key)
{
    const bool isDown = key.state == SDL_PRESSED;
    const int name = NameOf(key.keysym);
    Command command = Command::Help;
    if (m_options.keys.Find(name, command))
    {
        if (isDown && key.repeat == 0)
            m_commands.push_back(command);
        return;
    }
    if (isDown && (key.keysym.mod & KMOD_CTRL) != 0 && name == FindKey("v"))
        Paste();
    m_input.Key(PositionOf(key.keysym.scancode), name, isDown);
}

// SDL counts the mouse in points, of which a fine display has several pixels each.
void SdlWindow::TakeMouse(const SDL_Event& event)
{
    if (event.type == SDL_MOUSEWHEEL)
    {
        const int sign = event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -1 : 1;
        m_input.TurnWheel(event.wheel.x * sign, event.wheel.y * sign);
        return;
    }
    const bool isMotion = event.type == SDL_MOUSEMOTION;
    int width = 1, height = 1;
    SDL_GetWindowSize(m_window, &width, &height);
    const PixelSize pixels = Pixels();
    const auto toPixels = [](int point, int points, int all)
    { return (static_cast<float>(point) + 0.5f) * static_cast<float>(all) / static_cast<float>(std::max(1, points)); };
    const ScreenPoint place =
        Box().ToScreen(toPixels(isMotion ? event.motion.x : event.button.x, width, pixels.width),
                       toPixels(isMotion ? event.motion.y : event.button.y, height, pixels.height));
    m_input.MoveMouse(place.x, place.y);
    if (!isMotion)
        m_input.MouseButton(MouseButtonOf(event.button.button), event.type == SDL_MOUSEBUTTONDOWN);
}

void SdlWindow::TakePad(const SDL_Event& event)
{
    switch (event.type)
    {
    case SDL_CONTROLLERDEVICEADDED:
        if (SDL_GameController* const pad = SDL_GameControllerOpen(event.cdevice.which))
            m_input.AddPad(SDL_JoystickInstanceID(SDL_GameControllerGetJoystick(pad)));
        break;
    case SDL_CONTROLLERDEVICEREMOVED:
        m_input.RemovePad(event.cdevice.which);
        SDL_GameControllerClose(SDL_GameControllerFromInstanceID(event.cdevice.which));
        break;
    case SDL_CONTROLLERAXISMOTION: m_input.MoveAxis(event.caxis.which, event.caxis.axis, event.caxis.value); break;
    case SDL_CONTROLLERBUTTONDOWN:
    case SDL_CONTROLLERBUTTONUP:
        m_input.PadButton(event.cbutton.which, event.cbutton.button, event.cbutton.state == SDL_PRESSED);
        break;
    default: break;
    }
}
} // namespace

std::unique_ptr<Window> Window::Open(const WindowOptions& options, std::string& why)
{
    auto window = std::make_unique<SdlWindow>(options);
    if (!window->Start(why))
        return nullptr;
    return window;
}
} // namespace Runner
