#pragma once
// A camera remembered across moments at which it may be destroyed: callbacks, frames, the life of a room.
//
// Neither a pointer nor an identifier alone will do: another camera may come to live at the same address, and freed
// identifiers are handed out again. The number of the camera's construction tells them apart.

#include <cstdint>

class CCamera;

class CCameraHandle
{
public:
    CCameraHandle() = default; // of no camera

    // Of a camera that g_CM holds. Of no camera: null, and a camera that is not registered, which only its owner frees.
    explicit CCameraHandle(const CCamera* camera);

    // The camera, or null once it has left the registry. Costs the same however many cameras there are.
    CCamera* Get() const;
    bool IsOfNoCamera() const { return m_slot == -1; }

private:
    int32_t m_slot = -1;      // a registered camera keeps its slot, even when its identifier is changed
    uint32_t m_birth = 0;     // wraps after 2^32 constructions: no game lives so long between two looks
    uint32_t m_cleanings = 0; // since then, no entry of the table has become stale
};
