#pragma once
// An editor's map as tables of Lua. Positions are the room's, layers count from 1.

#include "Runner/Api/Api_Functions.h"
#include "Runner/Game/Room_Map.h"

namespace Runner
{
void PushMap(lua_State* L, const RoomMap& map);
void PushZones(const Arguments& call, const RoomMap& map); // the rectangles of class "zone", as the kit takes them
void PushTile(lua_State* L, const MapModel& model, MapCell number); // nil for a number that is no tile

// How a tile is turned, for scripts: 1 mirrored, 2 upside down, 4 columns exchanged with rows before that, summed.
int TurnOf(MapCell cell);
MapCell FlagsOf(int turn);
} // namespace Runner
