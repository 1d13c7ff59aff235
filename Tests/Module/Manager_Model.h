#pragma once
// The registry in its simplest form: every rule a loop over a vector. The random walk compares the module with it.

#include "Files/Graphics/Graphics_Support.h"

#include <array>
#include <memory>
#include <vector>

namespace Recording
{
struct ModelCamera
{
    CCamera* real; // the module's camera that this one stands for; null until it is known
    int id;
    bool isClone = false;
    bool isPersistent = false;
    bool holdsCallable = false; // in the begin callback
    bool hasProxy = false;
};

class ManagerModel
{
public:
    std::vector<std::unique_ptr<ModelCamera>> slots = MakeSlots(1);
    std::array<ModelCamera*, ROOM_CAMERAS> room = {};
    ModelCamera* active = nullptr;
    int cached = -1;
    int highPoint = 0;
    bool hasScriptInstance = false;

    // The host's side.
    bool roomRuns = false;
    int defaultCamera = -1;
    std::array<int, ROOM_VIEWS> views = MakeViews();

    int Size() const { return static_cast<int>(slots.size()); }
    ModelCamera* At(int slot) { return InTable(slot) ? slots[static_cast<size_t>(slot)].get() : nullptr; }

    ModelCamera* Find(int id);  // cached slot, room list, table
    int FindSlot(int id);       // cached slot, table
    ModelCamera* Create();      // in the first free slot
    ModelCamera* Clone(int id); // null for an unknown camera
    void Destroy(int id);
    void SetActive(int id) { active = id == -1 ? nullptr : Find(id); }
    void StartRoom();
    void EndRoom();
    void BuildRoomList();
    bool AddAt(CCamera* real, int id); // false: refused

    bool IdentifiersAreSlots() const;
    size_t Proxies() const;

private:
    bool InTable(int slot) const { return slot >= 0 && slot < Size(); }
    bool CachedHas(int id);
    int Scan(int id); // caches what it finds
    ModelCamera* Place(std::unique_ptr<ModelCamera> camera);
    ModelCamera* ForRoomList(int id) { return At(FindSlot(id)); }
    static std::vector<std::unique_ptr<ModelCamera>> MakeSlots(size_t count);
    static std::array<int, ROOM_VIEWS> MakeViews();
};
} // namespace Recording
