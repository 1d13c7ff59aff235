#include "Runner/Host/Code.h"

#include "Runner/Base/Without_Throwing.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>

namespace
{
constexpr size_t ERROR_TEXT_MAX = 1024;

// Made on first use and never destroyed: built-ins may be entered before main, and errors reported after it.
struct Code
{
    std::vector<Runner::Builtin> builtins;
    std::map<std::string, size_t, std::less<>> places; // name to index in builtins
    char error[ERROR_TEXT_MAX] = {}; // an array: an error may have to be reported when there is no memory
    bool errorWaits = false;
};

const Runner::BuiltinCall* s_call = nullptr;

Code& TheCode()
{
    static Code& code = *new Code;
    return code;
}

bool EndsLine(char c) { return c == '\n' || c == '\r'; }

// Makes one line: line ends at the end are cut, those inside become blanks.
void MakeOneLine(char* text)
{
    size_t size = std::strlen(text);
    while (size > 0 && EndsLine(text[size - 1]))
        text[--size] = '\0';
    std::replace_if(text, text + size, EndsLine, ' ');
}
} // namespace

void Function_Add(const char* name, TFunction handler, int argc, bool)
{
    if (name == nullptr || handler == nullptr)
        return;
    Runner::WithoutThrowing(
        [=]
        {
            Code& code = TheCode();
            const auto place = code.places.emplace(name, code.builtins.size());
            if (place.second)
                code.builtins.push_back({name, handler, argc});
            else
                code.builtins[place.first->second] = {name, handler, argc};
        });
}

void KvError(const char* format, ...)
{
    Code& code = TheCode();
    if (code.errorWaits)
        return;
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(code.error, sizeof(code.error), format, arguments);
    va_end(arguments);
    if (length < 0)
        std::snprintf(code.error, sizeof(code.error), "an error whose message cannot be formatted");
    MakeOneLine(code.error);
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
    std::string error = code.errorWaits ? code.error : "";
    code.errorWaits = false;
    return error;
}

BuiltinCall::BuiltinCall() : m_outer(s_call) { s_call = this; }
BuiltinCall::~BuiltinCall() { s_call = m_outer; }
const BuiltinCall* BuiltinCall::Current() { return s_call; }
} // namespace Runner
