// The registry: look-up by identifier, a getter built-in, creation and destruction.

#include "Benchmarks/Bench.h"
#include "Files/Graphics/Graphics_Support.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

namespace
{
using namespace Bench;

constexpr int TABLES[] = {8, 1024, 32768, 262144};
constexpr size_t ASKED = 64;   // cameras that are asked for, anywhere in the table: few enough to stay in the cache
constexpr size_t ORDER = 4096; // identifiers in the order of asking

// A registry of a given size, in a running room whose nine cameras are the first that there are.
class Registry
{
public:
    explicit Registry(int size)
    {
        for (int i = 0; i < size; ++i)
        {
            g_CM.m_InitialLoadHighPoint = i; // the search for a free slot starts where it ends
            CCamera* const camera = g_CM.CreateCamera();
            camera->SetViewX(static_cast<float>(camera->GetID()));
            m_cameras.push_back(camera);
        }
        g_CM.m_InitialLoadHighPoint = 0;
        for (int view = 0; view < ROOM_VIEWS; ++view)
        {
            m_views[static_cast<size_t>(view)].cameraID = view + 1 < size ? view + 1 : -1;
            m_room.r_view[view] = &m_views[static_cast<size_t>(view)];
        }
        g_DefaultCameraID = 0;
        Run_Room = &m_room;
        g_CM.BuildRoomCameraList();
    }
    ~Registry()
    {
        Run_Room = nullptr;
        g_DefaultCameraID = -1;
        for (int entry = 0; entry < ROOM_CAMERAS; ++entry)
            g_CM.m_roomcameras[entry] = nullptr;
        for (size_t i = m_cameras.size(); i-- > 0;)
            g_CM.DestroyCamera(static_cast<int>(i));
    }
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    std::vector<int> RandomOrder() const
    {
        Numbers numbers(7);
        std::array<int, ASKED> asked;
        for (int& id : asked)
            id = static_cast<int>(numbers.Below(static_cast<uint32_t>(m_cameras.size())));
        std::vector<int> order(ORDER);
        for (int& id : order)
            id = asked[numbers.Below(ASKED)];
        return order;
    }

    const std::vector<CCamera*>& Cameras() const { return m_cameras; }

private:
    std::vector<CCamera*> m_cameras; // by identifier
    std::array<CViewGM, ROOM_VIEWS> m_views = {};
    CRoom m_room = {};
};

// Everybody reads a field of the camera that was found.
template <typename Find> void LookUp(benchmark::State& state, const Registry& registry, const Find& find)
{
    const std::vector<int> order = registry.RandomOrder();
    size_t next = 0;
    for (auto _ : state)
    {
        float x = find(order[next])->m_viewX;
        benchmark::DoNotOptimize(x);
        next = (next + 1) % ORDER;
    }
}

void LookUpOurs(benchmark::State& state, int size)
{
    const Registry registry(size);
    LookUp(state, registry, [](int id) { return g_CM.GetCamera(id); });
}

void LookUpArray(benchmark::State& state, int size)
{
    const Registry registry(size);
    CCamera* const* const cameras = registry.Cameras().data();
    LookUp(state, registry, [=](int id) { return cameras[id]; });
}

void LookUpMap(benchmark::State& state, int size)
{
    const Registry registry(size);
    std::unordered_map<int, CCamera*> cameras;
    for (CCamera* camera : registry.Cameras())
        cameras[camera->GetID()] = camera;
    LookUp(state, registry, [&](int id) { return cameras.find(id)->second; });
}

// ---- a getter ----

__attribute__((noinline)) double WidthOf(const CCamera* const* cameras, int id)
{
    return static_cast<double>(cameras[id]->GetViewWidth());
}

void GetterOurs(benchmark::State& state)
{
    const Registry registry(16);
    RValue result = {};
    RValue argument = {};
    argument.kind = VALUE_REAL;
    argument.val = 12.0;
    for (auto _ : state)
    {
        F_CameraGetViewWidth(result, nullptr, nullptr, 1, &argument);
        benchmark::DoNotOptimize(result.val);
    }
}

void GetterDirect(benchmark::State& state)
{
    const Registry registry(16);
    CCamera* const* const cameras = registry.Cameras().data();
    int id = 12;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(id);
        double width = WidthOf(cameras, id);
        benchmark::DoNotOptimize(width);
    }
}

// ---- creation and destruction: the one free slot is the table's last ----

void CreateOurs(benchmark::State& state, int size)
{
    const Registry registry(size - 1);
    Run_Room = nullptr;
    for (auto _ : state)
        g_CM.DestroyCamera(g_CM.CreateCamera()->GetID());
}

void CreateMalloc(benchmark::State& state)
{
    for (auto _ : state)
    {
        void* block = std::malloc(sizeof(CCamera));
        benchmark::DoNotOptimize(block);
        std::memset(block, 0, sizeof(CCamera));
        benchmark::ClobberMemory();
        std::free(block);
    }
}

// Between rooms a script runs in no instance: what is measured is the update around it.
void UpdateScripted(benchmark::State& state, int size)
{
    const Registry registry(size);
    CCamera* const camera = registry.Cameras()[registry.Cameras().size() / 2];
    RValue script = {};
    script.kind = VALUE_REAL;
    script.val = 7.0;
    camera->SetUpdateScript(&script);
    for (auto _ : state)
        camera->CameraUpdate();
}

void Check()
{
    for (const int size : {8, 1024})
    {
        const Registry registry(size);
        for (const int id : registry.RandomOrder())
            Require(g_CM.GetCamera(id) == registry.Cameras()[static_cast<size_t>(id)], "look-up");
    }
    const Registry registry(16);
    RValue result = {};
    RValue argument = {};
    argument.kind = VALUE_REAL;
    argument.val = 12.0;
    F_CameraGetViewWidth(result, nullptr, nullptr, 1, &argument);
    Require(result.val == WidthOf(registry.Cameras().data(), 12), "getter");
}

void AddRows()
{
    for (const int size : TABLES)
    {
        const std::string subject = "camera by identifier, " + std::to_string(size) + " cameras";
        Row(subject, "ours", [=](benchmark::State& state) { LookUpOurs(state, size); });
        Row(subject, "array", [=](benchmark::State& state) { LookUpArray(state, size); });
        Row(subject, "hash map", [=](benchmark::State& state) { LookUpMap(state, size); });
    }
    for (const int size : {8, 10000})
        Row("update around a script, " + std::to_string(size) + " cameras", "ours",
            [=](benchmark::State& state) { UpdateScripted(state, size); });
    Row("getter built-in", "ours", GetterOurs);
    Row("getter built-in", "direct", GetterDirect);
    for (const int size : {8, 100000})
    {
        const std::string subject = "create and destroy, table of " + std::to_string(size);
        Row(subject, "ours", [=](benchmark::State& state) { CreateOurs(state, size); });
        Row(subject, "malloc", CreateMalloc);
    }
}
} // namespace

const Bench::Subject Bench::REGISTRY = {Check, AddRows};
