#include "Runner/Draw/Picture.h"
#include "Runner/Save/Camera_Stream.h"
#include "Runner/Save/Sections.h"
#include "Runner/World/Map_Limits.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Runner
{
namespace
{
// Reads the module's stream: the slot count and the identifiers of its cameras, ascending. False when the bytes are not
// exactly one stream, or when a camera is not in the slot of its identifier.
bool ReadIdentifiers(const std::vector<uint8_t>& stream, std::vector<int32_t>& ids, int32_t& slots)
{
    constexpr size_t ID = CameraItem(offsetof(CCamera, m_ID));
    CameraRecords records;
    if (!ReadCameraStream(stream, records))
        return false;
    slots = records.slots;
    for (const auto& [slot, record] : records.cameras)
    {
        if (static_cast<int32_t>(record[ID]) != slot)
            return false;
        ids.push_back(slot);
    }
    return true;
}

bool IsTable(const SavedValues& values, uint32_t number) { return number < values.tables.size(); }

bool EntryIsConsistent(const SavedValues& values, const SavedEntry& entry)
{
    const auto* number = std::get_if<double>(&entry.key);
    const auto* table = std::get_if<TableNumber>(&entry.value);
    return (number == nullptr || !std::isnan(*number)) && (table == nullptr || IsTable(values, table->number));
}
} // namespace

bool CamerasAreConsistent(const SavedCameras& cameras)
{
    std::vector<int32_t> ids;
    int32_t slots = 0;
    if (!ReadIdentifiers(cameras.stream, ids, slots) || cameras.highPoint < 0 || cameras.highPoint > slots)
        return false;
    return std::equal(ids.begin(), ids.end(), cameras.flags.begin(), cameras.flags.end(),
                      [](int32_t id, const SavedCameraFlags& camera) { return id == camera.id; });
}

bool ShownLayersAreConsistent(const SavedState& state)
{
    int64_t last = -1;
    for (const SavedShownLayer& layer : state.shownLayers)
        if (layer.number <= std::exchange(last, layer.number) || layer.number >= static_cast<int>(MapLimits::LAYERS))
            return false;
    return true;
}

bool ThumbnailIsConsistent(const SavedThumbnail& thumbnail)
{
    if (thumbnail.rgb.empty())
        return thumbnail.width == 0 && thumbnail.height == 0;
    const bool isSize = thumbnail.width > 0 && thumbnail.height > 0 && thumbnail.width <= PICTURE_SIDE_LIMIT &&
                        thumbnail.height <= PICTURE_SIDE_LIMIT;
    return isSize &&
           thumbnail.rgb.size() == static_cast<size_t>(thumbnail.width) * static_cast<size_t>(thumbnail.height) * 3;
}

bool ValuesAreConsistent(const SavedState& state)
{
    if (state.values.tables.empty())
        return false;
    for (const SavedTable& table : state.values.tables)
        for (const SavedEntry& entry : table.entries)
            if (!EntryIsConsistent(state.values, entry))
                return false;
    return std::all_of(state.world.instances.begin(), state.world.instances.end(),
                       [&state](const SavedInstance& instance)
                       { return instance.variables == 0 || IsTable(state.values, instance.variables - 1); });
}
} // namespace Runner
