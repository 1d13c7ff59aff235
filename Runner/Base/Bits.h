#pragma once

#include <cstring>

namespace Runner
{
// Reinterprets the bits of a value as another type of the same size. Copied, because a cast of the pointer would break
// the aliasing rule.
template <typename To, typename From> inline To BitsOf(From from)
{
    static_assert(sizeof(To) == sizeof(From), "both types have the same size");
    To to;
    std::memcpy(&to, &from, sizeof(to));
    return to;
}
} // namespace Runner
