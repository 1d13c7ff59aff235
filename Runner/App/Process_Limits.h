#pragma once
// The parts of a confined process, in the order in which they are to be called. Each holds for the rest of its life.

#include <cstddef>
#include <string>
#include <vector>

namespace Runner
{
// Bytes of data, 0 for no limit; no image of the process when it crashes.
bool LimitResources(size_t memory, std::string& why);

// The file system by Landlock, and what else it knows: connections and signals.
bool ConfineFiles(const std::vector<std::string>& readable, const std::vector<std::string>& writable, std::string& why);

// System calls by a filter: only those of a list. mayMakeCode: also threads, and memory that can be executed.
bool ConfineCalls(bool mayMakeCode, std::string& why);
} // namespace Runner
