#pragma once
// The one registry of cameras. Game thread only; no locks.
//
// R1 A camera's identifier is the index of its slot in m_cameras. Freed identifiers are handed out again.
// R2 The manager owns every camera of the table, and each stands there once.
// R3 The room list and the active camera only point at cameras that the table holds.
// R4 A camera has at most one proxy, which points back at it and is a root of the collector exactly while it lives.
// R5 The cached slot is -1 or lies inside the table.
// R6 Entries that hold no camera are null.
//
// Exceptions. A host may break R1 with CCamera::SetID, or by reading a record into a registered camera: look-ups then
// scan, and the lowest slot wins. Clean leaves entries that point at freed cameras until the host has refilled the
// table (R2, R3, R6). A host that writes entries itself, of the table or of the room's list, keeps the rules itself.
// Validate checks all six.

#include "Files/Buffer/Buffer.h"
#include "Files/Graphics/Camera.h"
#include "Files/Instance/Instance.h"
#include "Files/Room/Room.h"

#include <cstdint>

constexpr int ROOM_CAMERAS = 1 + ROOM_VIEWS;                // the default camera, then a camera for each view
constexpr int CAMERA_ID_LAST_LOADED = 16 * 1024 * 1024 - 1; // a saved identifier above it is damage, not a camera

// The largest table that a camera of the last identifier can have made. Larger counts come from damaged streams and are
// clamped, so that a load ends.
constexpr int CAMERA_SLOTS_LAST_LOADED = 2 * (CAMERA_ID_LAST_LOADED + 1);

class CCameraManager
{
public:
    // ---- the record ----
    CCamera* m_activeCamera;      // null: none
    CInstance* m_pScriptInstance; // self and other of the callbacks; from StartRoom to EndRoom, else null
    CCamera** m_cameras;          // the table, m_cameraListSize entries
    CCamera** m_roomcameras;      // the running room's cameras, ROOM_CAMERAS entries; tried first by look-ups
    int32_t m_cameraListSize;
    int32_t m_InitialLoadHighPoint; // lowest slot that new cameras take and that a room's end sweeps
    int32_t m_lastCamPos;           // slot of the last look-up, -1 for none

    // ---- life ----
    // One empty slot. m_InitialLoadHighPoint keeps what the (zeroed, static) storage holds. Without memory for the two
    // tables the program ends with a message: nobody is there to be told.
    CCameraManager();
    ~CCameraManager(); // frees every camera and both tables
    CCameraManager(const CCameraManager&) = delete;
    CCameraManager& operator=(const CCameraManager&) = delete;

    // Frees every camera and forgets the active camera and the script instance. The entries of the table and of the
    // room list stay as they are and dangle: the caller refills or clears both before anything else is asked.
    void Clean();

    // ---- look-up: any integer may be asked ----
    CCamera* GetCamera(int id); // cached slot, room list, table; null when there is none
    void SetActiveCamera(int id);
    CCamera* GetActiveCamera() { return m_activeCamera; }
    int FindCameraInList(int id); // the slot, or -1

    // ---- creation and destruction; null when memory is refused ----
    CCamera* CreateCamera();
    CCamera* CloneCamera(int id); // view state, target, callbacks and matrices; null for an unknown camera
    void DestroyCamera(int id);

    // ---- rooms (Camera_Rooms.cpp) ----
    CCamera* CreateCameraFromView(KvRoomView* view); // takes null: null
    void StartRoom();
    void EndRoom(); // destroys clones that are not persistent, at the high point and above
    void BuildRoomCameraList();

    // Registers a camera under an identifier, in place of the camera that has it; -1 picks a free slot.
    // Not registered, and still the caller's: another negative identifier, or a table that cannot grow.
    // The camera must not stand in another slot.
    void AddCameraToList(CCamera* camera, int id);

    // ---- events of the host ----
    void SetupLumFunctions();       // enters the 47 built-ins (Function_Table.cpp); once
    void SetInitialLoadHighPoint(); // after the game's load: the number of slots in use. Weak: a host may bring its own
    CInstance* GetScriptInstance(); // weak, too

    // ---- saved state (Camera_State.cpp) ----
    void Serialize(IBuffer* buffer);
    bool DeSerialize(IBuffer* buffer); // frees the camera in slot 0, then adds what the stream holds; always true

    // ---- checks ----
    const char* Validate() const; // null, or which of R1..R6 does not hold. Walks everything: debug and tests

private:
    friend class CCamera;
    friend class CCameraHandle;

    CCamera* NewCamera(int line);       // default state, not placed
    CCamera* NewPlacedCamera(int line); // null when the camera or its slot was refused
    bool PlaceInFreeSlot(CCamera* camera);
    bool GrowTable(int64_t size);
    void Store(CCamera* camera, int slot);
    void FreeCamera(CCamera* camera); // the table is the caller's to mend
    void DestroySlot(int slot);
    void DestroyOccupant(int slot);
    CCamera* FindInRoomList(int id) const;
    int FindInTable(int id);     // the slot of that number, or the scan; caches the slot
    int ScanTable(int id) const; // the lowest slot whose camera bears the identifier, or -1
    bool IsInTable(const CCamera* camera) const;
    int SlotOf(const CCamera* camera) const; // -1 for a camera that is not registered

    // Whether the slot holds a camera of that identifier. Any two integers may be asked.
    bool HoldsAt(int slot, int id) const
    {
        return slot >= 0 && slot < m_cameraListSize && m_cameras[slot] != nullptr && m_cameras[slot]->m_ID == id;
    }

    static void IdentifierChanged(const CCamera* camera); // by SetID or by a record: see ms_identifiersChanged
    void ClearForLoad();
    void LoadCamera(IBuffer* buffer);

    // True once SetID or a record has changed a registered camera's identifier, until Clean. A camera in a lower slot
    // may bear the identifier then, so that look-ups scan instead of asking the slot of that number.
    static bool ms_identifiersChanged;
    static uint32_t ms_cleanings; // number of calls of Clean: older entries of the table must not be followed
};

extern CCameraManager g_CM; // every built-in and the host go through this one
