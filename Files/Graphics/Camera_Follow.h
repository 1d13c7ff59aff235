#pragma once
// The step after a target as arithmetic: what CCamera::CameraUpdate stores, and each stage on the way to it, for a host
// that shows why a camera moved. Nothing here changes anything or calls the host.

#include <cstdint>

// The stages of one axis of a step, in their order. Each is the left or top edge that the stage asks for, but for the
// first two, which are the target's position. The last one is what the camera takes.
struct CFollowStages
{
    float target;  // the target's position as it was given
    float floored; // taken down to whole units
    float border;  // dead zone: the edge that keeps the target a border away from both edges of the view
    float room;    // the same clamped to the room
    float speed;   // the same at most a step of the speed away from the present edge
};

// One axis of a camera that follows. A border of half the size or more centres the target; a speed that is negative or
// NaN is no limit; a NaN elsewhere is kept or passed on, as the comparisons have it.
struct CFollowAxis
{
    float edge;              // present left or top edge, room units
    float size;              // width or height of the view
    float border;            // distance that the target keeps from both edges
    float speed;             // largest step; negative for no limit
    const int32_t* roomSize; // width or height of the room, which must live as long; null without a room

    CFollowStages StepAfter(float target) const;
};
