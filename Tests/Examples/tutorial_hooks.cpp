// The host check's hooks for the tutorial's result: those of the starter host, and what the later levels add.
#define HostCheckHooks StarterHooks
#include "check_hooks.cpp"
#undef HostCheckHooks

#include "scripts.h"

#include <cstdio>
#include <utility>

namespace
{
// The tutorial's scripts are bare functions: function N runs the body that was given as the Nth.
constexpr size_t BODIES = 64;
HostCheck::ScriptBody s_bodies[BODIES];
size_t s_bodyCount = 0;

template <size_t N> void RunBody(RValue* result, int argc, RValue* args) { s_bodies[N](nullptr, result, argc, args); }

template <size_t... N> ScriptBody FunctionOf(size_t body, std::index_sequence<N...>)
{
    constexpr ScriptBody functions[] = {RunBody<N>...};
    return functions[body];
}

bool MakeScript(HostCheck::ScriptBody body, bool callable, RValue* out)
{
    if (s_bodyCount == BODIES)
        return false;
    s_bodies[s_bodyCount] = body;
    const ScriptBody function = FunctionOf(s_bodyCount++, std::make_index_sequence<BODIES>());
    *out = callable ? Argument(NewCallable(function)) : Argument(NewScript(function));
    return true;
}

bool MakeText(const char* text, RValue* out)
{
    *out = NewString(text);
    return true;
}

long ReadWholeFile(const char* path, void* out, long size)
{
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr)
        return -1;
    std::fseek(file, 0, SEEK_END);
    const long length = std::ftell(file);
    std::rewind(file);
    const size_t wanted = static_cast<size_t>(length < size ? length : size);
    const bool isRead = std::fread(out, 1, wanted, file) == wanted;
    std::fclose(file);
    return isRead ? length : -1;
}
} // namespace

const HostCheck::Hooks& HostCheckHooks()
{
    static HostCheck::Hooks s_hooks = StarterHooks();
    s_hooks.makeScript = MakeScript;
    s_hooks.makeText = MakeText;
    s_hooks.collect = Collect;
    s_hooks.readFile = ReadWholeFile;
    return s_hooks;
}
