#pragma once
// Makes of an editor's map what a room needs: sprites, layers, instances, views.

#include "Runner/Api/Api_Functions.h"
#include "Runner/World/Running_Room.h"

#include <map>
#include <string>

namespace Runner
{
// Reads a map as files of the game: every file counts as code. Throws ScriptError.
MapModel ReadGameMap(const Arguments& call, const std::string& file);

// Objects of the game by the classes of a map's objects.
using ObjectsByClass = std::map<std::string, int>;

// Fills the room's size, background, views, instances and map. The pictures become sprites of the game. Throws
// ScriptError.
void MakeRoomOfMap(const Arguments& call, MapModel model, const ObjectsByClass& objects, RoomSpec& spec);
} // namespace Runner
