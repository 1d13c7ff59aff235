#pragma once
// The module's stream of cameras (Files/Graphics/Camera_State.h) as records, for who changes or compares it without
// making cameras of it.

#include "Files/Graphics/Camera_State.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace Runner
{
// A camera's saved items in the order of the stream, each as its 32 bits.
using CameraRecord = std::vector<uint32_t>;

struct CameraRecords
{
    int32_t slots = 0;                       // of the camera table
    std::map<int32_t, CameraRecord> cameras; // by slot, those that hold one
};

// False when the bytes are not exactly one stream.
bool ReadCameraStream(const std::vector<uint8_t>& stream, CameraRecords& records);
std::vector<uint8_t> WriteCameraStream(const CameraRecords& records);

constexpr size_t CameraItemCount()
{
    size_t items = 0;
    for (const CameraStateField& field : CAMERA_STATE)
        items += static_cast<size_t>(field.count);
    return items;
}

// Where the first item of the field at that offset of CCamera stands in a record.
constexpr size_t CameraItem(size_t offset)
{
    size_t item = 0;
    for (const CameraStateField& field : CAMERA_STATE)
    {
        if (field.offset == offset)
            break;
        item += static_cast<size_t>(field.count);
    }
    return item;
}
} // namespace Runner
