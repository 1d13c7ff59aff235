#pragma once
// The rooms of a game as scripts describe them, the running one, and its views.
//
// A room starts with a camera for each view of its description; scripts may exchange or destroy these cameras. Those
// that are left are destroyed when the room ends. Between rooms, Run_Room is null and the module's room list is empty.

#include "Files/Graphics/Camera_Handle.h"
#include "Files/Room/Room.h"
#include "Runner/World/Map_Model.h"
#include "Runner/World/View_Fields.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Runner
{
constexpr int NO_ROOM = -1;
constexpr int NO_CAMERA = -1;
constexpr int NO_MAP = -1;
constexpr int ROOM_SIDE_LIMIT = 1000000;

// The room's functions, as Lua references; -1 for none.
struct RoomScripts
{
    int create = -1, load = -1, step = -1, draw = -1, drawGui = -1;
};

// What an object of a map adds to the instance that is made of it.
struct PlacedObject
{
    int id = 0; // of the map's object
    bool visible = true;
    float angle = 0.0f;
    float depth = 0.0f; // of its layer, added to the object's
    MapProperties properties;
    unsigned followers = 0; // views whose cameras follow it, a bit each
};

// An instance that the room starts with.
struct RoomPlacement
{
    int object;
    float x, y;
    std::shared_ptr<const PlacedObject> placed = nullptr; // null: it comes from no map
};

struct RoomSpec
{
    std::string name;
    int width = 0, height = 0; // 1 to ROOM_SIDE_LIMIT
    unsigned background = 0;   // runner colour
    std::array<std::optional<KvRoomView>, ROOM_VIEWS> views;
    std::vector<RoomPlacement> instances; // in the order of creation
    RoomScripts scripts;
    int map = NO_MAP; // the game's, whose layers the room draws
};

class View : public CViewGM, public ViewFields
{
public:
    int missingSurface = SCREEN_SURFACE; // a surface that was reported as missing; SCREEN_SURFACE for none
};

class RunningRoom : public CRoom
{
public:
    RunningRoom(int index, const RoomSpec& spec);
    RunningRoom(const RunningRoom&) = delete;
    RunningRoom& operator=(const RunningRoom&) = delete;

    const int index;
    const RoomSpec& spec;
    std::array<View, ROOM_VIEWS> views; // r_view points at these
    unsigned background;

    bool HasVisibleView() const;
};

class Rooms
{
public:
    Rooms();
    ~Rooms(); // ends the running room
    Rooms(const Rooms&) = delete;
    Rooms& operator=(const Rooms&) = delete;

    static Rooms* Current(); // null while there are none

    int Add(RoomSpec spec); // the index
    const RoomSpec* Find(int index) const;
    int Count() const { return static_cast<int>(m_specs.size()); }

    RunningRoom* Running() const { return m_running.get(); } // null between rooms

    // Makes the room the running one, with cameras for its views, and tells the module. The caller creates the room's
    // instances. The index must exist, and no room may be running. Throws std::bad_alloc where the module, which goes
    // on without, was refused a camera or the instance of its scripts.
    RunningRoom& Start(int index);
    void End(); // destroys the view cameras that are left, and the room; nothing happens when no room runs

    std::vector<int> OwnCameras() const; // identifiers of the cameras made for views that still exist
    void MakeCamera(size_t view); // for a view of the running room, as its description says; nothing for one without
    void AdoptCameras(const std::vector<int>& ids); // these are made for views: a saved game has brought them back

private:
    void DestroyCameras();

    std::vector<std::unique_ptr<RoomSpec>> m_specs; // by index; their addresses stay
    std::unique_ptr<RunningRoom> m_running;
    std::vector<CCameraHandle>
        m_ownCameras; // made for views; their numbers may go to other cameras before the room ends
};
} // namespace Runner
