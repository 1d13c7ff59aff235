#include "Runner/Host/Code.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <map>

namespace
{
constexpr size_t ERROR_TEXT_MAX = 1024;

// Made on first use and never destroyed: built-ins may be entered before main, and errors reported after it.
struct Code
{
    std::vector<Runner::Builtin> builtins;
    std::map<std::string, size_t, std::less<>> places; // name to index in builtins
    std::string error;
    bool errorWaits = false;
};

const Runner::BuiltinCall* s_call = nullptr;

Code& TheCode()
{
    static Code& code = *new Code;
    return code;
}

// Makes one line: line ends at the end are cut, those inside become blanks.
std::string AsOneLine(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    for (char& c : text)
        if (c == '\n' || c == '\r')
            c = ' ';
    return text;
}
} // namespace

void Function_Add(const char* name, TFunction handler, int argc, bool)
{
    if (name == nullptr || handler == nullptr)
        return;
    Code& code = TheCode();
    const auto place = code.places.emplace(name, code.builtins.size());
    if (place.second)
        code.builtins.push_back({name, handler, argc});
    else
        code.builtins[place.first->second] = {name, handler, argc};
}

void KvError(const char* format, ...)
{
    Code& code = TheCode();
    if (code.errorWaits)
        return;
    char text[ERROR_TEXT_MAX];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    code.error = length < 0 ? "an error whose message cannot be formatted" : AsOneLine(text);
    code.errorWaits = true;
}

namespace Runner
{
const std::vector<Builtin>& Builtins() { return TheCode().builtins; }

void ForgetBuiltinsAfter(size_t count)
{
    std::vector<Builtin>& builtins = TheCode().builtins;
    builtins.erase(builtins.begin() + static_cast<ptrdiff_t>(std::min(count, builtins.size())), builtins.end());
}

const Builtin* FindBuiltin(std::string_view name)
{
    const Code& code = TheCode();
    const auto place = code.places.find(name);
    return place != code.places.end() ? &code.builtins[place->second] : nullptr;
}

bool HasError() { return TheCode().errorWaits; }

std::string TakeError()
{
    Code& code = TheCode();
    code.errorWaits = false;
    std::string error;
    error.swap(code.error);
    return error;
}

BuiltinCall::BuiltinCall() : m_outer(s_call) { s_call = this; }
BuiltinCall::~BuiltinCall() { s_call = m_outer; }
const BuiltinCall* BuiltinCall::Current() { return s_call; }
} // namespace Runner
