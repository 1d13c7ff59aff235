#pragma once
// The fields that describe a room, for every function that adds one.

#include "Runner/Api/Api_Functions.h"
#include "Runner/World/Running_Room.h"

#include <string>

namespace Runner
{
// A view from a table of Lua. where: what errors put before the name of a field.
KvRoomView ReadView(const Arguments& call, int table, const std::string& where);

// Name, background, views, instances and scripts; views and the background keep what they are where no field is given.
void ReadRoomFields(const Arguments& call, Fields& fields, RoomSpec& spec);
} // namespace Runner
