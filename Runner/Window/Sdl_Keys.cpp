#include "Runner/Window/Sdl_Keys.h"

#include "Runner/Input/Input_Names.h"

namespace Runner
{
// SDL's numbers up to the right super key are those of the USB page.
int PositionOf(SDL_Scancode code)
{
    const int number = code;
    return number >= SDL_SCANCODE_A && number <= SDL_SCANCODE_RGUI ? number : NO_NAME;
}

// A key that writes a character has the character as its number; every other one has its position with one more bit. A
// character that no key is named after (of a Greek layout, say) leaves the key the name that it has on a US keyboard.
int NameOf(const SDL_Keysym& key)
{
    const bool isPosition = (key.sym & SDLK_SCANCODE_MASK) != 0;
    if (isPosition)
        return PositionOf(static_cast<SDL_Scancode>(key.sym & ~SDLK_SCANCODE_MASK));
    const int name = KeyOfCharacter(static_cast<uint32_t>(key.sym));
    if (name != NO_NAME)
        return name;
    switch (key.sym)
    {
    case SDLK_RETURN: return FindKey("enter");
    case SDLK_ESCAPE: return FindKey("escape");
    case SDLK_BACKSPACE: return FindKey("backspace");
    case SDLK_TAB: return FindKey("tab");
    case SDLK_SPACE: return FindKey("space");
    case SDLK_DELETE: return FindKey("delete");
    default: return PositionOf(key.scancode);
    }
}

int MouseButtonOf(uint8_t button)
{
    return button >= SDL_BUTTON_LEFT && button <= SDL_BUTTON_X2 ? button - SDL_BUTTON_LEFT : NO_NAME;
}
} // namespace Runner
