#pragma once
// From SDL's numbers to those of Runner/Input.

#include <SDL.h>

namespace Runner
{
int PositionOf(SDL_Scancode code); // NO_NAME for a key without a number
int NameOf(const SDL_Keysym& key); // what the layout writes on the key; else the name of its position
int MouseButtonOf(uint8_t button); // NO_NAME for one that has no name
} // namespace Runner
