#include "Runner/Window/Panel_Events.h"
#include "Runner/Window/Sdl_Keys.h"

#include <iterator>

namespace Runner
{
namespace
{
struct KeyOfPanel
{
    SDL_Keycode code;
    PanelKey key;
};

constexpr KeyOfPanel KEYS[] = {
    {SDLK_TAB, PanelKey::Tab},      {SDLK_LEFT, PanelKey::Left},      {SDLK_RIGHT, PanelKey::Right},
    {SDLK_UP, PanelKey::Up},        {SDLK_DOWN, PanelKey::Down},      {SDLK_HOME, PanelKey::Home},
    {SDLK_END, PanelKey::End},      {SDLK_DELETE, PanelKey::Delete},  {SDLK_BACKSPACE, PanelKey::Backspace},
    {SDLK_RETURN, PanelKey::Enter}, {SDLK_KP_ENTER, PanelKey::Enter}, {SDLK_ESCAPE, PanelKey::Escape},
    {SDLK_a, PanelKey::SelectAll},  {SDLK_c, PanelKey::Copy},         {SDLK_v, PanelKey::Paste},
    {SDLK_x, PanelKey::Cut},
};

PanelEvent TakeKey(const SDL_KeyboardEvent& event, PanelInput& input)
{
    input.control = (event.keysym.mod & KMOD_CTRL) != 0;
    input.shift = (event.keysym.mod & KMOD_SHIFT) != 0;
    const bool isDown = event.state == SDL_PRESSED;
    for (const KeyOfPanel& key : KEYS)
    {
        const auto index = static_cast<size_t>(key.key);
        if (key.code != event.keysym.sym)
            continue;
        input.keys[index] = isDown;
        input.typed[index] = input.typed[index] || isDown;
    }
    // Function keys type nothing, and most of the Runner's own keys are among them.
    const bool types = event.keysym.sym < SDLK_F1 || event.keysym.sym > SDLK_F12;
    return isDown && types ? PanelEvent::Keyboard : PanelEvent::None;
}

// SDL counts the mouse in points, of which a fine display has several pixels each.
void MoveMouse(int x, int y, const Window& window, PanelInput& input)
{
    input.mouseX = (static_cast<float>(x) + 0.5f) * window.PixelsPerPoint();
    input.mouseY = (static_cast<float>(y) + 0.5f) * window.PixelsPerPoint();
}

PanelEvent TakeButton(const SDL_MouseButtonEvent& event, const Window& window, PanelInput& input)
{
    MoveMouse(event.x, event.y, window, input);
    constexpr uint8_t BUTTONS[] = {SDL_BUTTON_LEFT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE};
    const bool isDown = event.state == SDL_PRESSED;
    for (size_t i = 0; i < std::size(BUTTONS); ++i)
        if (event.button == BUTTONS[i])
        {
            input.buttons[i] = isDown;
            input.clicked[i] = input.clicked[i] || isDown;
        }
    return isDown ? PanelEvent::Mouse : PanelEvent::None;
}

PanelEvent TakeMotion(const SDL_MouseMotionEvent& event, const Window& window, PanelInput& input)
{
    MoveMouse(event.x, event.y, window, input);
    return PanelEvent::Mouse;
}
} // namespace

PanelEvent TakePanelEvent(const void* event, Window& window, PanelInput& input)
{
    const SDL_Event& seen = *static_cast<const SDL_Event*>(event);
    switch (seen.type)
    {
    case SDL_MOUSEMOTION: return TakeMotion(seen.motion, window, input);
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP: return TakeButton(seen.button, window, input);
    case SDL_MOUSEWHEEL: input.wheel += static_cast<float>(seen.wheel.y); return PanelEvent::Mouse;
    case SDL_KEYDOWN:
    case SDL_KEYUP: return TakeKey(seen.key, input);
    case SDL_TEXTINPUT: input.text += seen.text.text; return PanelEvent::Keyboard;
    default: return PanelEvent::None;
    }
}

void CopyToClipboard(const std::string& text) { SDL_SetClipboardText(text.c_str()); }
} // namespace Runner
