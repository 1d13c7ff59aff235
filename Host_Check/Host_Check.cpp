#include "Host_Check/Host_Check.h"

#include "Host_Check/Check.h"
#include "Host_Check/Contained.h"

#include <cstdio>
#include <cstring>

namespace HostCheck
{
namespace
{

constexpr const char* LEVEL_NAMES[LEVELS] = {"follow", "built-ins", "callbacks", "saves", "images"};
constexpr char SAME_BITS[] = "matrix.same_bits";

using TableOf = Checks (*)();
constexpr TableOf TABLES[] = {MemoryChecks, MatrixChecks, NumberChecks,    WorldChecks,  GraphicsChecks,
                              ArrayChecks,  TextChecks,   CodeChecks,      ViewChecks,   ScriptChecks,
                              SlotChecks,   MarkChecks,   CollectorChecks, BufferChecks, FileChecks};

// The name of the first hook that the check needs and does not have; null when it has all.
const char* MissingHook(const Hooks& hooks, unsigned needs)
{
    const struct
    {
        unsigned need;
        bool isThere;
        const char* name;
    } entries[] = {
        {1u << 0, hooks.openRoom != nullptr, "openRoom"},
        {1u << 1, hooks.makeInstance != nullptr, "makeInstance"},
        {1u << 2, hooks.changeInstance != nullptr, "changeInstance"},
        {Need_Script, hooks.makeScript != nullptr, "makeScript"},
        {Need_Text, hooks.makeText != nullptr, "makeText"},
        {Need_Collect, hooks.collect != nullptr, "collect"},
        {Need_File, hooks.readFile != nullptr, "readFile"},
        {Need_Buffer, hooks.buffer != nullptr, "buffer"},
        {Need_Refusal, hooks.refuseMemory != nullptr, "refuseMemory"},
        {Need_Error, hooks.takeError != nullptr, "takeError"},
        {Need_Function, hooks.findFunction != nullptr, "findFunction"},
        {Need_Matrix, hooks.readMatrix != nullptr, "readMatrix"},
    };
    for (const auto& entry : entries)
        if ((needs & entry.need) != 0 && !entry.isThere)
            return entry.name;
    return nullptr;
}

void RunOne(const Check& check, const Options& options, Trial& trial)
{
    if (const char* hook = MissingHook(trial.hooks, check.needs))
    {
        char why[80];
        std::snprintf(why, sizeof why, "the hook %s is null", hook);
        return trial.NotTested(why);
    }
    if (options.contained)
        RunContained(check, trial, options.seconds);
    else
        RunHere(check, trial);
    if (trial.verdict == Verdict::Broken && !options.sameBits && std::strcmp(check.name, SAME_BITS) == 0)
        trial.verdict = Verdict::NotCounted;
}

// Calls visit with each check of the level, in the order of the tables.
template <typename Visit> void EachCheckOf(Level level, Visit visit)
{
    for (const TableOf table : TABLES)
    {
        const Checks checks = table();
        for (size_t i = 0; i < checks.count; ++i)
            if (checks.first[i].level == level)
                visit(checks.first[i]);
    }
}

Outcome OutcomeOf(const Check& check, Verdict verdict, const char* saw)
{
    return {check.name, check.level, check.header, check.sentence, verdict, saw};
}

void Count(Totals& totals, Verdict verdict)
{
    switch (verdict)
    {
    case Verdict::Holds: ++totals.held; break;
    case Verdict::Broken: ++totals.broken; break;
    case Verdict::NotTested: ++totals.notTested; break;
    case Verdict::NotCounted: ++totals.notCounted; break;
    }
}

} // namespace

const char* NameOf(Level level) { return LEVEL_NAMES[static_cast<int>(level)]; }

bool FindLevel(const char* name, Level& level)
{
    for (int i = 0; i < LEVELS; ++i)
        if (std::strcmp(name, LEVEL_NAMES[i]) == 0)
        {
            level = static_cast<Level>(i);
            return true;
        }
    return false;
}

Totals Run(const Hooks& hooks, const Options& options, Listener listener, void* context)
{
    Totals totals = {};
    for (int level = 0; level <= static_cast<int>(options.level); ++level)
        EachCheckOf(static_cast<Level>(level),
                    [&](const Check& check)
                    {
                        if (options.only != nullptr && std::strcmp(options.only, check.name) != 0)
                            return;
                        Trial trial(hooks);
                        RunOne(check, options, trial);
                        Count(totals, trial.verdict);
                        listener(OutcomeOf(check, trial.verdict, trial.saw), context);
                    });
    return totals;
}

void ListChecks(Listener listener, void* context)
{
    for (int level = 0; level < LEVELS; ++level)
        EachCheckOf(static_cast<Level>(level),
                    [&](const Check& check) { listener(OutcomeOf(check, Verdict::NotTested, ""), context); });
}

} // namespace HostCheck
