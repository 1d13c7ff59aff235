#pragma once
// A process that gives up what a game does not need, before it reads a byte of the game (--confined).

#include <cstddef>
#include <string>
#include <vector>

namespace Runner
{
struct RunOptions;

struct ConfinedTo
{
    std::vector<std::string> readable; // files, and folders with what is in them; those that do not exist count nothing
    std::vector<std::string> writable; // the same; what is there may also be read, made, replaced and removed
    bool draws = false;                // the driver needs threads, code made at run time, and its own files
    size_t memory = 0;                 // bytes of data that the process may have; 0 for no limit
};

// From now on this process and its threads reach no other file and no network, start no program and no process, and
// send no signal to others. There is no way back. False: this build or this kernel cannot; why says which part, and the
// process may be confined in part already.
bool ConfineProcess(const ConfinedTo& to, std::string& why);

// What a run needs: the folders of its games and of the kit, the files that it starts from, and the save area.
ConfinedTo NeedsOf(const RunOptions& options);

// Whether every file that the run is asked to write stands in the save area; why names the option of one that does not.
bool WritesIntoSaveArea(const RunOptions& options, std::string& why);
} // namespace Runner
