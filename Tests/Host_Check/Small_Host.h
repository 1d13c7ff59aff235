#pragma once
// A small whole host for the tests of the host check. It keeps every promise, but for the one that g_broken names.

#include "Files/Graphics/Graphics_Support.h"

#include "Tests/Host_Check/Breakages.h"

#include <vector>

namespace SmallHost
{

using ScriptBody = void (*)(KvObjectBase* self, RValue* result, int argc, RValue* args);

// ---- memory ----
extern bool g_refuses; // requests answer null

// ---- collector ----
class Callable : public KvObjectBase
{
public:
    explicit Callable(ScriptBody theBody);
    const ScriptBody body;
};
bool Place(KvObjectBase* object); // in a slot, in the young generation
void Collect();
void KeepWhileRunning(KvObjectBase* object); // a root until let go
void LetGo();
void GameHolds(RefDynamicArrayOfRValue* array);
void GameForgets(RefDynamicArrayOfRValue* array); // it was freed, or is somebody else's alone

// ---- scripts and errors ----
int AddScript(ScriptBody body);
bool TakeError(char* out, int size);
TFunction FindFunction(const char* name);

// ---- world ----
bool OpenRoom(int width, int height, int objects[3]);
CInstance* MakeInstance(int object, float x, float y);

// ---- the rest ----
void MakeSaveArea(); // before a process of its own is started: children share it
void RemoveSaveArea();
const float* MatrixIn(eMatrix slot);

class Buffer final : public IBuffer
{
public:
    int WriteTyped(eBuffer_Type type, RValue& value) override;
    int ReadTyped(eBuffer_Type type, RValue& value) override;

    std::vector<unsigned char> bytes;
    size_t position = 0;
};

} // namespace SmallHost
