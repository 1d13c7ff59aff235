#pragma once

#include "Runner/Api/Map_Room.h"

#include <utility>
#include <vector>

namespace Runner
{
// Views, and the objects of the map that their cameras follow.
using FollowedObjects = std::vector<std::pair<int, int>>;

// Views from the properties of a map: "view0.w" or the member w of a class "view0", with the names that room_add has.
// A target is an object of the map, or the name of one of the game's. Throws ScriptError.
FollowedObjects ReadMapViews(const Arguments& call, const MapModel& model, const ObjectsByClass& objects,
                             RoomSpec& spec);
} // namespace Runner
