#pragma once
// The built-ins that were entered with Function_Add, and the error that a handler left behind.

#include "Files/Code/Function.h"

#include <string>
#include <string_view>
#include <vector>

namespace Runner
{
struct Builtin
{
    std::string name; // as scripts call it
    TFunction handler;
    int argc; // as scripts see it
};

const std::vector<Builtin>& Builtins();            // in the order of Function_Add; each name once
const Builtin* FindBuiltin(std::string_view name); // null when there is none; valid until the next Function_Add
void ForgetBuiltinsAfter(size_t count);            // keeps the first count

// The script error that KvError has stored and nobody has taken yet. While one is pending further errors are dropped:
// the first is the cause, the others follow from it. Whoever calls the module outside of a script takes it there.
bool HasError();
std::string TakeError(); // one line without its line end; empty when none is pending
} // namespace Runner
