#pragma once
// The properties of a camera that a person can read and change: one list for the panel, for changes by hand, and for
// the lines that make a camera anew.

#include "Files/Graphics/Camera.h"

#include <string>

namespace Runner
{
struct CameraField
{
    const char* name;       // in changes
    const char* unit;       // empty for none
    const char* range;      // which values make sense; none is refused
    const char* meaning;    // in the words of the function that sets it
    const char* setBy;      // the function of scripts
    float CCamera::*member; // null for the target, the one whole number
    bool isOfView;          // the matrices depend on it
};

constexpr int CAMERA_FIELDS_COUNT = 10;
extern const CameraField CAMERA_FIELDS[CAMERA_FIELDS_COUNT];

const CameraField* FindCameraField(const std::string& name); // null when there is none

// A change by hand, as a recording keeps it. It takes effect between two frames.
struct CameraChange
{
    int frame = 0; // frames played before it
    int camera = -1;
    std::string field;
    float value = 0.0f; // a target is a whole number up to 2^24
};

float ValueOf(const CCamera& camera, const CameraField& field);

// Changes the camera as the script function would. False: there is no such camera or field.
bool Apply(const CameraChange& change);
} // namespace Runner
