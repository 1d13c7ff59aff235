#pragma once
// What the recording host keeps between calls. Private to its sources.

#include "Tests/Support/Recording_Host.h"

#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>

namespace Recording
{
struct Block
{
    size_t size;
    bool isText; // from KvRealloc
};

struct NamedObject
{
    CObject object;
    std::vector<std::unique_ptr<KvListNode<CInstance>>> nodes;
};

struct World
{
    std::map<int, CInstance*> instances;
    std::map<int, NamedObject> objects;
    std::vector<std::unique_ptr<CRoom>> rooms;
    std::vector<std::unique_ptr<CViewGM>> views;
    std::function<void(CInstance&)> onBoundingBox;
    std::map<std::string, std::vector<RValue>> viewValues;
    KvHash<CObject> objectHash;
};

struct Collector
{
    std::set<KvObjectBase*> alive;
    std::set<KvObjectBase*> roots;
    std::vector<KvObjectBase*> contexts;
    std::vector<RValue*> marked;
    bool markResult = true;
    int newGeneration = 0;
};

struct Memory
{
    std::unordered_map<const void*, Block> blocks;
    std::set<const RefDynamicArrayOfRValue*> arrays;
    std::vector<Request> requests;
    int requestCount = 0;
    int refuseIn = 0;
    size_t refuseAbove = SIZE_MAX;
    bool refuseValues = false;
    int lockDepth = 0;
};

struct Disk
{
    std::string area;
    bool refuseOpen = false;
    bool failClose = false;
    int open = 0;
    std::function<bool(unsigned)> onWrite;
    Lines console;
};

struct State
{
    unsigned topics = Topic_Default;
    Lines log, errors, faults;
    std::map<const void*, std::string> names;
    std::map<char, int> counters;
    Memory memory;
    Collector collector;
    World world;
    Disk disk;
    std::map<int, Script> scripts;
    std::vector<Builtin> builtins;
    kvMatrix slots[3] = {};
    bool passesNan = true;
    std::function<void(kvMatrix&)> onProjection, onView;
};

State& TheState(); // made by the first call, never destroyed: the manager's destructor runs after every static's

inline bool Hears(unsigned topic) { return (TheState().topics & topic) != 0; }

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
Format(const char* format, ...);

// Notes a formatted line when somebody listens; the arguments are not even looked at otherwise.
#define RECORD(topic, ...)                                                                                             \
    do                                                                                                                 \
    {                                                                                                                  \
        if (Recording::Hears(topic))                                                                                   \
            Recording::Note(Recording::Format(__VA_ARGS__));                                                           \
    } while (false)

void Fault(const std::string& text);
void GiveName(const void* thing, char letter); // the next of that letter
void GiveName(const void* thing, const std::string& name);

// For collector objects of the host itself: they name themselves.
constexpr int HOST_OBJECT = -1;

void ResetCollector();
void ResetMemory();
void ResetWorld();
void ResetDisk();
} // namespace Recording
