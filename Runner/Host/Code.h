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

// A call of a built-in while it runs. It knows what its arguments should be. Calls may nest; the innermost is asked.
class BuiltinCall
{
public:
    BuiltinCall();
    virtual ~BuiltinCall();
    BuiltinCall(const BuiltinCall&) = delete;
    BuiltinCall& operator=(const BuiltinCall&) = delete;

    // The start of an error: "camera_set_view_pos: argument 2 (x) is a number"; empty when the value, an argument or an
    // element of one, is not of this call.
    virtual std::string Expectation(const RValue& value) const = 0;

    static const BuiltinCall* Current(); // null while none runs

private:
    const BuiltinCall* m_outer;
};
} // namespace Runner
