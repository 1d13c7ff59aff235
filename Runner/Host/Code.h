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

const std::vector<Builtin>& Builtins();            // in the order in which they were entered; a name stands there once
const Builtin* FindBuiltin(std::string_view name); // null when there is none; valid until the next Function_Add
void ForgetBuiltinsAfter(size_t count);            // keeps the first count

// A script error waits from KvError until it is taken. Further errors are dropped while one waits: the first is the
// cause, the rest follow from it.
bool HasError();
std::string TakeError(); // one line without its end; empty when none waits
} // namespace Runner
