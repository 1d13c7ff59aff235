// Saving and loading a camera through the Runner's buffer.

#include "Benchmarks/Bench.h"
#include "Benchmarks/Peers.h"
#include "Files/Graphics/Camera_State.h"
#include "Files/Graphics/Graphics_Support.h"
#include "Runner/Host/Buffer.h"

#include <array>
#include <cstring>
#include <vector>

namespace
{
using namespace Bench;

constexpr size_t RECORD = 448;

// A buffer as it is first written: a vector that grows by a byte at a time, an item's bytes one after another.
class NaiveBuffer
{
public:
    void Rewind() { m_position = 0; }
    void Clear() { m_bytes.clear(); }
    const std::vector<uint8_t>& Bytes() const { return m_bytes; }

    template <typename T> void Put(T item)
    {
        uint32_t bits;
        std::memcpy(&bits, &item, sizeof bits);
        for (int shift = 0; shift < 32; shift += 8)
            m_bytes.push_back(static_cast<uint8_t>(bits >> shift));
    }

    template <typename T> T Take()
    {
        uint32_t bits = 0;
        for (int shift = 0; shift < 32; shift += 8)
            bits |= static_cast<uint32_t>(m_position < m_bytes.size() ? m_bytes[m_position++] : 0) << shift;
        T item;
        std::memcpy(&item, &bits, sizeof item);
        return item;
    }

private:
    std::vector<uint8_t> m_bytes;
    size_t m_position = 0;
};

// The items of a record in their order, for a transfer that takes them one by one.
template <typename Transfer> void EachItem(CCamera& camera, const Transfer& transfer)
{
    transfer(camera.m_ID);
    for (kvMatrix* matrix : {&camera.m_projMat, &camera.m_viewMat, &camera.m_viewProjMat, &camera.m_invProjMat,
                             &camera.m_invViewMat, &camera.m_invViewProjMat})
        for (float& entry : matrix->m)
            transfer(entry);
    for (float* value :
         {&camera.m_viewX, &camera.m_viewY, &camera.m_viewWidth, &camera.m_viewHeight, &camera.m_viewSpeedX,
          &camera.m_viewSpeedY, &camera.m_viewBorderX, &camera.m_viewBorderY, &camera.m_viewAngle})
        transfer(*value);
    transfer(camera.m_targetInstance);
    for (RValue* script : {&camera.m_beginScript, &camera.m_endScript, &camera.m_updateScript})
    {
        int32_t index = static_cast<int32_t>(script->val);
        transfer(index);
        script->val = index;
    }
    for (bool* flag : {&camera.m_is2D, &camera.m_isViewDirty})
    {
        int32_t number = *flag ? 1 : 0;
        transfer(number);
        *flag = number != 0;
    }
}

void SaveNaively(CCamera& camera, NaiveBuffer& buffer)
{
    EachItem(camera, [&](auto& item) { buffer.Put(item); });
}

void LoadNaively(CCamera& camera, NaiveBuffer& buffer)
{
    EachItem(camera, [&](auto& item) { item = buffer.Take<std::decay_t<decltype(item)>>(); });
}

void Prepare(CCamera& camera)
{
    const BenchView view = ViewOf(9);
    camera.SetViewX(view.x);
    camera.SetViewY(view.y);
    camera.SetViewWidth(view.width);
    camera.SetViewHeight(view.height);
    camera.SetViewAngle(view.angle);
    camera.BuildView();
}

// ---- rows ----

void SaveOurs(benchmark::State& state)
{
    CCamera camera;
    Prepare(camera);
    Runner::TypedBuffer buffer;
    for (auto _ : state)
    {
        buffer.Seek(0);
        camera.Serialize(&buffer);
    }
}

void LoadOurs(benchmark::State& state)
{
    CCamera camera;
    Prepare(camera);
    Runner::TypedBuffer buffer;
    camera.Serialize(&buffer);
    for (auto _ : state)
    {
        buffer.Seek(0);
        camera.DeSerialize(&buffer);
    }
}

void SaveNaive(benchmark::State& state)
{
    CCamera camera;
    Prepare(camera);
    NaiveBuffer buffer;
    for (auto _ : state)
    {
        buffer.Clear();
        SaveNaively(camera, buffer);
    }
}

void LoadNaive(benchmark::State& state)
{
    CCamera camera;
    Prepare(camera);
    NaiveBuffer buffer;
    SaveNaively(camera, buffer);
    for (auto _ : state)
    {
        buffer.Rewind();
        LoadNaively(camera, buffer);
        benchmark::ClobberMemory();
    }
}

void Copy(benchmark::State& state)
{
    static std::array<uint8_t, RECORD> from, to;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(from.data());
        std::memcpy(to.data(), from.data(), RECORD);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}

void Check()
{
    CCamera camera;
    Prepare(camera);
    Runner::TypedBuffer ours;
    camera.Serialize(&ours);
    NaiveBuffer naive;
    SaveNaively(camera, naive);
    Require(ours.Size() == RECORD && naive.Bytes().size() == RECORD &&
                std::memcmp(ours.Data(), naive.Bytes().data(), RECORD) == 0,
            "saved camera");
    CCamera loaded;
    LoadNaively(loaded, naive);
    Runner::TypedBuffer again;
    loaded.Serialize(&again);
    Require(again.Size() == RECORD && std::memcmp(ours.Data(), again.Data(), RECORD) == 0, "loaded camera");
}

void AddRows()
{
    Row("save a camera", "ours", SaveOurs);
    Row("save a camera", "naive", SaveNaive);
    Row("save a camera", "memcpy", Copy);
    Row("load a camera", "ours", LoadOurs);
    Row("load a camera", "naive", LoadNaive);
    Row("load a camera", "memcpy", Copy);
}
} // namespace

const Bench::Subject Bench::STATE = {Check, AddRows};
