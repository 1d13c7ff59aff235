#pragma once
// What this host offers beyond the module's interfaces: a world, a room, a buffer to save into.
#include <Files/Graphics/Graphics_Support.h>

#include <cstddef>
#include <cstdint>
#include <vector>

// ---- world: objects are numbers from 0; instances live until they are destroyed or the room is closed ----
CInstance* NewInstance(float x, float y, int objectIndex); // takes the next identifier
void DestroyInstance(CInstance* instance);                 // takes null; the pointer is stale afterwards
void DeriveObject(int objectIndex, int parent); // before its instances, which are the parent's, too; never in a circle

// ---- room: its views have no camera at first ----
void OpenRoom(int width, int height); // room units; Run_Room points at it until CloseRoom
void CloseRoom();                     // destroys the instances, too

// ---- graphics: the matrices that were set last, for your renderer to draw with ----
const kvMatrix& MatrixOf(eMatrix slot);

// ---- saves: items of four bytes, lowest byte first; what the module writes and reads is of these two types ----
class SaveBuffer final : public IBuffer
{
public:
    int WriteTyped(eBuffer_Type type, RValue& value) override; // at the end; 1 for a type that is not kept
    int ReadTyped(eBuffer_Type type, RValue& value) override;  // at the position; 1 past the end, value is then 0
    void Rewind() { m_position = 0; }

    std::vector<uint8_t> bytes; // the saved state: write it to a file, read it back

private:
    size_t m_position = 0; // of the next item to be read
};
