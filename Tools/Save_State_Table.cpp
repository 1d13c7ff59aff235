// Prints Docs/Save_State.md from the module's own list of saved fields, so that the document cannot go stale:
// a test compares both. After a change of the list: save_state_table > Docs/Save_State.md
#include "Files/Graphics/Camera_State.h"

#include <cstdio>

namespace
{

struct TypeText
{
    const char* type;
    const char* note;
};

TypeText Describe(const CameraStateField& field)
{
    switch (field.type)
    {
    case eState_S32: return {"S32", ""};
    case eState_F32: return {"F32", field.count == 16 ? "row by row, as it stands" : ""};
    case eState_Bool: return {"S32", "0 or 1"};
    case eState_Script: return {"S32", "a script index; -1 for none and for callable objects"};
    }
    return {"", ""};
}

constexpr char HEAD[] = R"(# What a saved camera looks like

Made by `save_state_table` from `Files/Graphics/Camera_State.h`; do not edit by hand.

Items are 4 bytes, little-endian, without padding or tags: S32 is a two's-complement integer, F32 an IEEE single. There
is no header, version or length: the host's own file, around the stream, carries these.

## The stream of all cameras

| Item | Type | Meaning |
|---|---|---|
| 1 | S32 | slots in the camera table |
| then, for each slot | S32 | 0: the slot is empty; 1: a camera's record follows |

A loaded camera takes the slot of its identifier, whatever its place in the stream. One whose identifier is negative
(other than -1, which takes a free slot) or above 16,777,215 is dropped. Before reading, the camera in slot 0 is
destroyed; cameras in other slots stay unless theirs is taken.

## A camera's record

| Offset | Items | Type | Field | Notes |
|---|---|---|---|---|
)";

constexpr char TAIL[] = R"(
%d items, %d bytes. Not saved: the collector's proxy, `m_isClone`, `m_isPersistent`.
)";

} // namespace

int main()
{
    fputs(HEAD, stdout);
    int items = 0;
    for (const CameraStateField& field : CAMERA_STATE)
    {
        const TypeText text = Describe(field);
        printf("| %d | %d | %s | `%s` | %s |\n", 4 * items, field.count, text.type, field.name, text.note);
        items += field.count;
    }
    printf(TAIL, items, 4 * items);
    return 0;
}
