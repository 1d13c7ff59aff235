#pragma once
// The fields of a running room's view that scripts set and saves keep, besides its camera.

#include <cstdint>
#include <variant>

namespace Runner
{
constexpr int SCREEN_SURFACE = -1;

struct ViewFields
{
    bool visible = false;
    int32_t xport = 0, yport = 0, wport = 0, hport = 0; // on the game's screen
    int32_t surface = SCREEN_SURFACE;                   // drawn into instead of the screen, over its whole size
};

// In the order of the saved record.
constexpr std::variant<bool ViewFields::*, int32_t ViewFields::*> VIEW_FIELDS[] = {
    &ViewFields::visible, &ViewFields::xport, &ViewFields::yport,
    &ViewFields::wport,   &ViewFields::hport, &ViewFields::surface,
};
} // namespace Runner
