#include "Runner/Save/Camera_Stream.h"

#include "Runner/Save/Byte_Stream.h"

namespace Runner
{
bool ReadCameraStream(const std::vector<uint8_t>& stream, CameraRecords& records)
{
    ByteReader io(stream.data(), stream.size());
    records = CameraRecords();
    io(records.slots);
    for (int32_t slot = 0; slot < records.slots && !io.Failed(); ++slot)
    {
        uint32_t isThere = 0;
        io(isThere);
        if (isThere > 1)
            return false;
        if (isThere == 0)
            continue;
        CameraRecord& record = records.cameras[slot];
        record.resize(CameraItemCount());
        for (uint32_t& item : record)
            io(item);
    }
    return !io.Failed() && io.Left() == 0 && records.slots >= 0;
}

std::vector<uint8_t> WriteCameraStream(const CameraRecords& records)
{
    ByteWriter io;
    io(records.slots);
    for (int32_t slot = 0; slot < records.slots; ++slot)
    {
        const auto found = records.cameras.find(slot);
        const bool isThere = found != records.cameras.end();
        io(uint32_t{isThere ? 1u : 0u});
        if (isThere)
            for (const uint32_t item : found->second)
                io(item);
    }
    return io.Bytes();
}
} // namespace Runner
