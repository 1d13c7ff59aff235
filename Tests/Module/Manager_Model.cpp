#include "Tests/Module/Manager_Model.h"

#include <algorithm>

namespace Recording
{
std::vector<std::unique_ptr<ModelCamera>> ManagerModel::MakeSlots(size_t count)
{
    return std::vector<std::unique_ptr<ModelCamera>>(count);
}

std::array<int, ROOM_VIEWS> ManagerModel::MakeViews()
{
    std::array<int, ROOM_VIEWS> views = {};
    views.fill(-1);
    return views;
}

bool ManagerModel::CachedHas(int id)
{
    const ModelCamera* camera = cached == -1 ? nullptr : At(cached);
    return camera != nullptr && camera->id == id;
}

int ManagerModel::Scan(int id)
{
    for (int slot = 0; slot < Size(); ++slot)
        if (At(slot) != nullptr && At(slot)->id == id)
            return cached = slot;
    return -1;
}

ModelCamera* ManagerModel::Find(int id)
{
    if (CachedHas(id))
        return At(cached);
    for (ModelCamera* camera : room)
        if (camera != nullptr && camera->id == id)
            return camera;
    return id == -1 ? nullptr : At(Scan(id));
}

int ManagerModel::FindSlot(int id)
{
    if (id == -1)
        return -1;
    return CachedHas(id) ? cached : Scan(id);
}

ModelCamera* ManagerModel::Place(std::unique_ptr<ModelCamera> camera)
{
    const int size = Size();
    int slot = std::max(highPoint, 0);
    while (slot < size && At(slot) != nullptr)
        ++slot;
    if (slot >= size)
    {
        slots.resize(2 * slots.size());
        slot = size;
    }
    camera->id = slot;
    cached = slot;
    slots[static_cast<size_t>(slot)] = std::move(camera);
    return At(slot);
}

ModelCamera* ManagerModel::Create() { return Place(std::make_unique<ModelCamera>()); }

ModelCamera* ManagerModel::Clone(int id)
{
    const ModelCamera* source = Find(id);
    if (source == nullptr)
        return nullptr;
    auto clone = std::make_unique<ModelCamera>(*source);
    clone->real = nullptr;
    clone->isClone = true;
    clone->hasProxy = source->holdsCallable;
    return Place(std::move(clone));
}

void ManagerModel::Destroy(int id)
{
    const int slot = FindSlot(id);
    if (slot == -1)
        return;
    if (active == At(slot))
        active = nullptr;
    slots[static_cast<size_t>(slot)].reset();
    cached = -1;
    BuildRoomList();
}

void ManagerModel::BuildRoomList()
{
    if (!roomRuns)
        return;
    room[0] = ForRoomList(defaultCamera);
    for (size_t view = 0; view < ROOM_VIEWS; ++view)
        room[view + 1] = ForRoomList(views[view]);
}

void ManagerModel::StartRoom()
{
    hasScriptInstance = true;
    BuildRoomList();
}

void ManagerModel::EndRoom()
{
    hasScriptInstance = false;
    for (int slot = std::max(highPoint, 0); slot < Size(); ++slot)
    {
        const ModelCamera* camera = At(slot);
        if (camera != nullptr && camera->isClone && !camera->isPersistent)
            Destroy(camera->id);
    }
    room.fill(nullptr);
}

bool ManagerModel::AddAt(CCamera* real, int id)
{
    auto camera = std::make_unique<ModelCamera>();
    camera->real = real;
    if (id == -1)
        return Place(std::move(camera)) != nullptr;
    if (id < 0)
        return false;
    const size_t slot = static_cast<size_t>(id);
    if (id >= Size())
        slots.resize(id < 2 * Size() ? 2 * slots.size() : slot + 16);
    if (slots[slot] != nullptr)
        Destroy(id);
    camera->id = id;
    slots[slot] = std::move(camera);
    return true;
}

bool ManagerModel::IdentifiersAreSlots() const
{
    for (size_t slot = 0; slot < slots.size(); ++slot)
        if (slots[slot] != nullptr && slots[slot]->id != static_cast<int>(slot))
            return false;
    return true;
}

size_t ManagerModel::Proxies() const
{
    size_t count = 0;
    for (const auto& camera : slots)
        count += camera != nullptr && camera->hasProxy ? 1u : 0u;
    return count;
}
} // namespace Recording
