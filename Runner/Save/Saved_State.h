#pragma once
// A saved game as plain data, between the running game and the file. A file is read into it and checked before anything
// of the running game changes.
//
// Every list has an order that does not depend on the machine: the same game saved at the same frame gives the same
// bytes everywhere.

#include "Runner/Base/Held_Text.h"
#include "Runner/Game/Game_Identity.h"
#include "Runner/World/Instance_Fields.h"
#include "Runner/World/View_Fields.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace Runner
{
struct SavedGame
{
    GameIdentity identity;
    int32_t screenWidth = 0, screenHeight = 0;
    int32_t frame = 0; // frames played before the save
    int32_t room = 0;
    int32_t nextRoom = -1; // requested and not yet entered; -1 for none
    uint64_t randomPosition = 0, randomIncrement = 0;
};

struct SavedView
{
    int32_t camera = -1;
    ViewFields fields;
    bool isNew = false; // not in a file: the room starts it, since the saved room had no such view
};

struct SavedInstance
{
    int32_t id = 0;
    int32_t object = 0;
    bool isDestroyed = false; // while the frame was drawn: removed by the next step
    bool isDeactivated = false;
    float x = 0.0f, y = 0.0f;
    InstanceFields fields;
    uint32_t variables = 0; // the script's: 1 + the number of a table; 0 for none
};

struct SavedWorld
{
    int32_t nextId = 0;
    std::vector<SavedInstance> instances; // in the order of creation
};

// What the module's stream does not hold about a camera.
struct SavedCameraFlags
{
    int32_t id = 0;
    bool isClone = false, isPersistent = false;
    bool isOfRoom = false; // made for a view of the running room, and destroyed with it
};

struct SavedCameras
{
    int32_t defaultCamera = -1;    // g_DefaultCameraID
    int32_t ownDefaultCamera = -1; // the one that the Runner made; -1 when a script destroyed it
    int32_t activeCamera = -1;
    int32_t highPoint = 0;
    std::vector<SavedCameraFlags> flags; // of every camera, ascending by identifier
    std::vector<uint8_t> stream;         // written by the module
};

struct SavedSurface // without its content
{
    int32_t number = 0, width = 0, height = 0;
};

struct SavedTileMap
{
    int32_t number = 0;
    int32_t sprite = 0, columns = 0, rows = 0;
    float tileWidth = 0.0f, tileHeight = 0.0f;
    std::vector<int32_t> tiles; // frames row by row, -1 for none
};

// ---- cells of the room's map that differ from its file ----

struct SavedMapCell
{
    int32_t column = 0, row = 0; // in the room
    int32_t tileset = -1;        // by number; -1 for an empty cell
    uint32_t tile = 0;           // its id there, with the flags of a cell
};

struct SavedMapLayer
{
    int32_t number = 0; // in the map's layers
    std::string name;
    std::vector<SavedMapCell> cells; // ascending by row, then by column
};

struct SavedMap
{
    std::vector<std::string> tilesets; // the names of all; empty when there are no layers
    std::vector<SavedMapLayer> layers; // those that were changed, ascending by number
};

// ---- layers of the room's map that are shown or hidden otherwise than in its file ----

struct SavedShownLayer
{
    int32_t number = 0; // in the map's layers
    std::string name;
    bool visible = true; // of its own: the groups around it may be hidden
};

// ---- what scripts have stored ----

struct TableNumber
{
    uint32_t number = 0;
};

struct InstanceNumber // stands for an instance's self
{
    int32_t id = 0;
};

using SavedKey = std::variant<bool, int64_t, double, HeldText>;
using SavedValue = std::variant<bool, int64_t, double, HeldText, TableNumber, InstanceNumber>;

struct SavedEntry
{
    SavedKey key;
    SavedValue value;
};

struct SavedTable
{
    std::vector<SavedEntry> entries; // ascending by key
};

// Tables are named by number, so that a table stored in two places is here once.
struct SavedValues
{
    std::vector<SavedTable> tables; // table 0 is vars
};

// ---- names, by which another version of the game finds what the numbers mean ----

struct SavedCameraName
{
    int32_t id = 0;
    std::string name;
};

struct SavedNames
{
    int32_t version = 0;   // game_version; 0 when the game declares none
    int32_t autosaves = 0; // made so far: they choose the slot of the next one
    std::string room;
    std::string nextRoom;                 // empty for none
    uint32_t views = 0;                   // a bit for each view that the room's description has
    std::vector<std::string> objects;     // by index; empty for one that was given no name
    std::vector<std::string> sprites;     // by number: FILE#0, FILE#1; empty for one that is of no file
    std::vector<std::string> scripts;     // by number; empty for one that was given no name
    std::vector<SavedCameraName> cameras; // those that were given one, ascending by identifier
};

// The screen as the last frame drew it, small. It depends on the graphics driver, so that comparisons leave it out.
struct SavedThumbnail
{
    int32_t width = 0, height = 0;
    std::vector<uint8_t> rgb; // rows from the top down; empty when nothing was drawn
};

struct SavedState
{
    uint32_t fileVersion = 0; // of the file that it was read from
    SavedGame game;
    std::vector<SavedView> views; // all eight
    SavedWorld world;
    SavedCameras cameras;
    std::vector<SavedSurface> surfaces; // ascending by number
    std::vector<SavedTileMap> tileMaps; // ascending by number
    SavedMap map;
    std::vector<SavedShownLayer> shownLayers; // ascending by number
    SavedValues values;
    SavedNames names; // empty in a file of version 1
    SavedThumbnail thumbnail;
};
} // namespace Runner
