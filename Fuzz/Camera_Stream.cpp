// The module's stream of saved cameras, damaged in any way, over cameras that are already there.
//
// Input: how many cameras are there (with a callable each), the request for memory that is refused, then the stream.

#include "Fuzz/Module_Session.h"

#include "Files/Graphics/Camera_State.h"

#include <algorithm>
#include <vector>

namespace
{
using namespace Recording;
using Bytes = std::vector<uint8_t>;

constexpr size_t LARGEST_BLOCK = 4 * 1024; // a memory cap: identifiers up to about 500 find a place
constexpr size_t ITEM = 4;                 // bytes

// A reader cannot see the end of a buffer and asks as often as the count says: counts that lead far behind the end
// would only read zeros for minutes. Some slots behind the end are left.
void BoundTheCount(Bytes& stream)
{
    int32_t count = 0;
    if (stream.size() < ITEM)
        return;
    std::memcpy(&count, stream.data(), ITEM);
    count = std::min(count, static_cast<int32_t>(stream.size() / ITEM + 8));
    std::memcpy(stream.data(), &count, ITEM);
}

void CreateCameras(size_t count)
{
    for (size_t i = 0; i < count; ++i)
        if (CCamera* camera = g_CM.CreateCamera())
        {
            RValue callable = OfObject(NewCallable());
            camera->SetBeginScript(&callable);
            camera->SetEndScript(&callable);
        }
}

void Load(const Bytes& stream)
{
    Buffer buffer;
    buffer.bytes = stream;
    Fuzz::Require(g_CM.DeSerialize(&buffer), "a load has failed");
    Fuzz::ModuleSession::RequireRules();
}

Bytes Save()
{
    Buffer buffer;
    g_CM.Serialize(&buffer);
    return buffer.bytes;
}

size_t CamerasInTable()
{
    const auto empty = std::count(g_CM.m_cameras, g_CM.m_cameras + g_CM.m_cameraListSize, nullptr);
    return static_cast<size_t>(g_CM.m_cameraListSize - empty);
}

Bytes LoadedIntoNewManager(const Bytes& stream)
{
    Fuzz::ModuleSession::RenewManager();
    Load(stream);
    return Save();
}

// Whatever a stream has brought can be used as any camera.
void UseEveryCamera()
{
    for (int slot = 0; slot < g_CM.m_cameraListSize; ++slot)
    {
        CCamera* const camera = g_CM.m_cameras[slot];
        if (camera == nullptr)
            continue;
        Fuzz::Require(g_CM.GetCamera(slot) == camera, "a look-up finds another camera");
        camera->Begin();
        camera->CameraUpdate();
        camera->ApplyMatrices();
        camera->End();
    }
    Fuzz::ModuleSession::RequireRules();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Fuzz::SlowInputWatch watch(data, size);
    const Fuzz::ModuleSession session;
    RefuseAbove(LARGEST_BLOCK);
    Bytes stream(data + std::min<size_t>(size, 2), data + size);
    BoundTheCount(stream);
    CreateCameras(size > 0 ? data[0] % 8 : 0);
    RefuseRequest(size > 1 ? data[1] % 16 : 0);
    Load(stream);
    RefuseRequest(0);
    Fuzz::Require(LiveBlocks() == 2 + CamerasInTable(), "a load has lost a block");

    // What was loaded is saved, and comes back the same for ever.
    const Bytes once = LoadedIntoNewManager(Save());
    Fuzz::Require(LoadedIntoNewManager(once) == once, "a saved state has changed by a load");
    UseEveryCamera();
    return 0;
}
