#pragma once
// The host check: tests on a runner's own host what the interface headers promise the module.
//
// Link CameraModule::host_check with the host's sources and nothing else: the library brings a main. It calls
// HostCheckHooks for what the interface alone cannot do; the library has one that hands over nothing.
// Docs/Host_Check.md tells how to write one, what each level asks for, and what is not tested.
//
// Plain C++17, no dependency: for hosts with and without exceptions and run-time type information.

#include "Files/Graphics/Graphics_Support.h"

namespace HostCheck
{

// The body of a script or a callable that a check makes. args and argc are null and 0 for a script run by its index.
using ScriptBody = void (*)(KvObjectBase* self, RValue* result, int argc, RValue* args);

enum class InstanceChange
{
    Move,       // to the position
    Deactivate, // it takes no part in the game
    Activate,
    Destroy, // as a script would do it: it may stay until the end of the step
};

enum class BufferStep
{
    Open,   // answers an empty buffer to write to
    Rewind, // reading starts at the first item; answers the buffer
    Close,  // the check is done with the buffer; answers null
};

// What the interface cannot do. A null entry skips the checks that need it, and they are named. Entries that answer
// false or null say that the host could not: the check says so and fails.
struct Hooks
{
    // Ends the running room, if any; then opens one of width x height with its views and makes it the running one,
    // unless width is 0. objects receives the indices of three objects that then exist: a parent, a child of it, and
    // one of which there is no instance. A room's instances go with it.
    bool (*openRoom)(int width, int height, int objects[3]);
    // A new instance in the running room, in its object's lists and in the table of instances.
    CInstance* (*makeInstance)(int object, float x, float y);
    bool (*changeInstance)(CInstance* instance, InstanceChange change, float x, float y);

    // Writes to out what a camera can hold as a callback: a callable object that nobody else refers to, or, when
    // callable is false, the number of a script. Either runs body.
    bool (*makeScript)(ScriptBody body, bool callable, RValue* out);
    // Writes a new string value to out; the caller gets its one reference.
    bool (*makeText)(const char* text, RValue* out);
    // Frees each object of the collector that no root leads to, before it returns.
    void (*collect)();

    // Reads the file that LoadSave::fopen has written under that path. Answers its size, -1 when there is none; at most
    // size bytes are stored.
    long (*readFile)(const char* path, void* out, long size);
    // The buffer of a saved state.
    IBuffer* (*buffer)(IBuffer* buffer, BufferStep step);

    // After true the next request for memory through MemoryManager or KvRealloc answers null, as later ones may; after
    // false all are served again.
    void (*refuseMemory)(bool refuse);
    // Whether an error was reported since the last call; its text, cut to size, goes to out.
    bool (*takeError)(char* out, int size);
    // The handler that scripts call by that name; null when there is none.
    TFunction (*findFunction)(const char* name);
    // The sixteen floats of a matrix slot of the graphics layer.
    bool (*readMatrix)(eMatrix slot, float out[16]);
};

// What a host must keep to get that far. Each level takes in those before it; they are the steps of the tutorial.
enum class Level
{
    Follow,    // values, memory, matrices, instances, rooms and their views
    BuiltIns,  // scripts call built-ins: arrays, strings, errors, properties of views
    Callbacks, // scripts, callables and the collector
    Saves,     // the buffer of the saved state
    Images,    // files in the save area, the console
};
constexpr int LEVELS = 5;
const char* NameOf(Level level);                // follow, built-ins, callbacks, saves, images
bool FindLevel(const char* name, Level& level); // false when there is no such level

enum class Verdict
{
    Holds,
    Broken,
    NotTested,  // a hook is missing, or the host leaves out what it may leave out
    NotCounted, // broken, but only told: the same bits, where they were not asked for
};

struct Outcome
{
    const char* name;     // of the check: subject.promise
    Level level;          // the first that needs it
    const char* header;   // that makes the promise
    const char* sentence; // as it stands there
    Verdict verdict;
    const char* saw; // what was seen instead, or why it was not tested; "" when the promise holds
};

struct Options
{
    Level level = Level::Images; // this one and those below
    bool sameBits = false;       // count "same bits as the reference"
    const char* only = nullptr;  // the check of that name alone
    // Each check runs in a process of its own where the system has fork: a check that crashes its host, never comes
    // back or leaves a mess behind then harms no other. Otherwise all run in this process.
    bool contained = true;
    unsigned seconds = 20; // that a contained check may take
};

struct Totals
{
    int held, broken, notTested, notCounted;
};

using Listener = void (*)(const Outcome& outcome, void* context);

// Runs the checks in the order of levels and headers; the listener hears of each when it is over.
Totals Run(const Hooks& hooks, const Options& options, Listener listener, void* context);

// The sentences of the interface headers that no check can test, each with the reason.
struct Untested
{
    const char* header;
    const char* sentence;
    const char* why;
};
const Untested* UntestedSentences(int& count);

// Every check there is, in the order of Run: its verdict is NotTested.
void ListChecks(Listener listener, void* context);

// The program: reads the command line, prints, and answers 0 when every promise of the level holds, 1 when one is
// broken, 2 for a mistake on the command line.
int Main(int argc, char** argv, const Hooks& hooks);

} // namespace HostCheck

// The integrator's. The library's own, with every entry null, is taken where there is none.
const HostCheck::Hooks& HostCheckHooks();
