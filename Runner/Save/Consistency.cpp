#include "Files/Graphics/Camera_State.h"
#include "Runner/Save/Sections.h"

#include <algorithm>
#include <cmath>

namespace Runner
{
namespace
{
constexpr size_t CameraRecordSize()
{
    size_t items = 0;
    for (const CameraStateField& field : CAMERA_STATE)
        items += static_cast<size_t>(field.count);
    return 4 * items;
}

// Reads the module's stream: the slot count and the identifiers of its cameras, ascending. False when the bytes are not
// exactly one stream, or when a camera is not in the slot of its identifier.
bool ReadIdentifiers(const std::vector<uint8_t>& stream, std::vector<int32_t>& ids, int32_t& slots)
{
    ByteReader io(stream.data(), stream.size());
    io(slots);
    for (int32_t slot = 0; slot < slots && !io.Failed(); ++slot)
    {
        uint32_t isThere = 0;
        io(isThere);
        if (isThere > 1)
            return false;
        if (isThere == 0)
            continue;
        int32_t id = -1;
        io(id);
        for (size_t item = 4; item < CameraRecordSize(); item += 4)
        {
            uint32_t ignored = 0;
            io(ignored);
        }
        if (id != slot)
            return false;
        ids.push_back(id);
    }
    return !io.Failed() && io.Left() == 0 && slots >= 0;
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
