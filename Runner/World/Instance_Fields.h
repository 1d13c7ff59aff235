#pragma once
// The fields of an instance that scripts set and saves keep, besides its position: one list for all who go through
// them.

#include "Runner/World/Object_Type.h"

#include <cstdint>
#include <variant>

namespace Runner
{
struct InstanceFields
{
    int32_t sprite = NO_SPRITE;
    float frame = 0.0f; // whole part counts; wraps round
    float angle = 0.0f; // degrees, counter-clockwise on the screen
    float scaleX = 1.0f, scaleY = 1.0f;
    uint32_t colour = 0xFFFFFF; // multiplies the sprite's
    float alpha = 1.0f;
    float depth = 0.0f; // larger is further away
    bool visible = true;
    bool solid = false; // for the game's own use
};

struct InstanceField
{
    const char* name; // in scripts
    std::variant<float InstanceFields::*, int32_t InstanceFields::*, uint32_t InstanceFields::*, bool InstanceFields::*>
        member;
};

// In the order of the saved record, so a new field goes to the end and makes a new version of the save file. An int32_t
// is a sprite's number, a uint32_t a colour; a float is finite.
constexpr InstanceField INSTANCE_FIELDS[] = {
    {"sprite", &InstanceFields::sprite}, {"frame", &InstanceFields::frame},   {"angle", &InstanceFields::angle},
    {"xscale", &InstanceFields::scaleX}, {"yscale", &InstanceFields::scaleY}, {"colour", &InstanceFields::colour},
    {"alpha", &InstanceFields::alpha},   {"depth", &InstanceFields::depth},   {"visible", &InstanceFields::visible},
    {"solid", &InstanceFields::solid},
};
} // namespace Runner
