#pragma once

#include "Files/LLVM/RValue.h"

#include <cstdint>

class CInstance;

constexpr int ROOM_VIEWS = 8;

// A view of a running room. A host keeps the view's other properties in a class of its own that derives from this.
class CViewGM
{
public:
    int32_t cameraID; // the camera through which the view draws, -1 for none
};

class CRoom
{
public:
    int32_t r_width, r_height;   // room units
    CViewGM* r_view[ROOM_VIEWS]; // never null while the room runs
};

// A view as the game data describes it.
struct KvRoomView
{
    int32_t visible;
    int32_t xview, yview, wview, hview; // rectangle in the room
    int32_t xport, yport, wport, hport; // rectangle on the screen
    int32_t hborder, vborder;           // margins that a followed target keeps
    int32_t hspeed, vspeed;             // largest step when following, negative for no limit
    int32_t index;                      // what the view follows: an object or an instance, -1 for nothing
};

static_assert(sizeof(KvRoomView) == 56, "fourteen words, as in the game data");

extern CRoom* Run_Room;       // the running room; null between rooms
extern int g_DefaultCameraID; // draws rooms that use no views; -1 for none

// Properties of the running room's views, for scripts. False when there is no such view; the accessor has then
// reported it. A getter writes *out, a setter reads *value, which comes as a real.
bool GV_ViewCamera(CInstance* self, int view, RValue* out);
bool GV_ViewVisible(CInstance* self, int view, RValue* out);
bool GV_ViewXport(CInstance* self, int view, RValue* out);
bool GV_ViewYport(CInstance* self, int view, RValue* out);
bool GV_ViewWport(CInstance* self, int view, RValue* out);
bool GV_ViewHport(CInstance* self, int view, RValue* out);
bool GV_ViewSurfaceID(CInstance* self, int view, RValue* out);
bool SV_ViewCamera(CInstance* self, int view, RValue* value);
bool SV_ViewVisible(CInstance* self, int view, RValue* value);
bool SV_ViewXport(CInstance* self, int view, RValue* value);
bool SV_ViewYport(CInstance* self, int view, RValue* value);
bool SV_ViewWport(CInstance* self, int view, RValue* value);
bool SV_ViewHport(CInstance* self, int view, RValue* value);
bool SV_ViewSurfaceID(CInstance* self, int view, RValue* value);
